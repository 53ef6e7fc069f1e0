#include "Models/History/HistoryList.h"

#include <unicode/ucal.h>
#include <unicode/uloc.h>

#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/BrowserStore.h"
#include "Support/LocalDates.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

HistoryStore::Entry visit(const std::string& name, Date at) {
  return {address("https://" + name + "/"), name, 1, at};
}

std::vector<std::string> lines(const std::vector<HistorySection>& sections) {
  std::vector<std::string> lines;
  for (const auto& section : sections) {
    lines.push_back(section.title + ":");
    for (const auto& entry : section.entries) lines.push_back(entry.title);
  }
  return lines;
}

TEST(HistoryList, GroupsByTheLocalDayNewestFirst) {
  using namespace std::chrono;
  // Where the clocks leap at midnight in spring: the 27th of March 2022 begins there at one
  // o'clock.
  UErrorCode error = U_ZERO_ERROR;
  ucal_setDefaultTimeZone(u"Asia/Beirut", &error);
  uloc_setDefault("en_US", &error);
  // Noon in Beirut, UTC+3, on Monday the 28th.
  const Date now = sys_days(2022y / March / 28) + 9h;
  const Date today = sys_days(2022y / March / 27) + 21h;
  const Date yesterday = sys_days(2022y / March / 26) + 22h;
  EXPECT_EQ(local_dates::startOfDay(now), today);
  EXPECT_EQ(local_dates::previousDay(today), yesterday);
  const auto sections = historySections(
      {visit("c", yesterday - 1s), visit("a", now), visit("b", today - 1s), visit("a2", today),
       visit("b2", yesterday), visit("old", now - 40 * 24h), visit("c2", yesterday - 1h)},
      now);
  EXPECT_THAT(lines(sections), ElementsAre("Today:", "a", "a2", "Yesterday:", "b", "b2",
                                           "Saturday, March 26, 2022:", "c", "c2",
                                           "Wednesday, February 16, 2022:", "old"));
  EXPECT_THAT(historySections({}, now), IsEmpty());
}

struct HistoryWindowTest : ModelTest {
  HistoryWindowTest() {
    for (const char* name : {"one", "two", "three"}) {
      store().history->recordVisit(profile, address("https://" + std::string(name) + ".test/"),
                                   name, world.scheduler.now());
      advance(1min);
    }
  }
  std::vector<std::string> shown() {
    list.reload();
    settle();
    return titles();
  }
  std::vector<std::string> titles() {
    std::vector<std::string> titles;
    for (const auto& section : list.sections.peek())
      for (const auto& entry : section.entries) titles.push_back(entry.title);
    return titles;
  }
  const UUID profile = space().profile->id;
  HistoryList list{store()};
};

TEST_F(HistoryWindowTest, ShowsWhatIsRecentOrWhatMatches) {
  for (const auto& [query, count] : {std::pair(" \t", 3u), {"THREE ", 1u}, {"none", 0u}}) {
    list.query = query;
    EXPECT_THAT(shown(), SizeIs(count)) << query;
  }
  list.query = "two";
  list.reload();
  list.query = "one";
  EXPECT_THAT(shown(), ElementsAre("one")) << "the first question's answer comes too late";
}

TEST_F(HistoryWindowTest, OpensAndDeletesWhatItShows) {
  shown();
  const auto entry = list.sections.peek().front().entries.at(1);
  store().choices.learn(suggestion::History{entry}, "t");
  store().choices.learn(suggestion::Search{"tides"}, "t");
  list.open(entry);
  EXPECT_EQ(selected()->url.peek()->text(), "https://two.test/");

  settle();
  list.reload();
  list.remove(entry);
  EXPECT_THAT(titles(), ElementsAre("three", "one"));
  settle();
  EXPECT_THAT(titles(), ElementsAre("three", "one")) << "the answer was on its way";
  EXPECT_THAT(shown(), ElementsAre("three", "one"));
  EXPECT_EQ(store().choices.byProfile[profile].choices.at("t").size(), 1u)
      << "its pick is forgotten";
  store().history = nullptr;
  EXPECT_THAT(shown(), IsEmpty());
}

}  // namespace
}  // namespace orvel::test
