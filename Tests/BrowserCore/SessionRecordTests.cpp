#include "BrowserCore/Session/SessionRecord.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "BrowserCore/Session/InternetDate.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {
namespace {

using namespace std::chrono_literals;

const Date kNow = *internetDate::parse("2026-01-02T03:04:05Z");
const char kID[] = "0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0";

TabRecord tab(std::string title, std::string_view address = "https://a.test/b/c") {
  return {UUID::random(), std::move(title), URL::parse(address), std::nullopt, kNow};
}

SessionRecord session() {
  SessionRecord record;
  record.activeSpaceID = UUID::random();
  record.isSidebarVisible = false;
  record.sidebarWidth = 211.1;
  record.profiles = {{UUID::random(), "Personal", {tab("Favorite")}}};
  FolderRecord folder(UUID::random(), "Folder", true);
  folder.children.emplace_back(tab("Inside"));
  folder.children.emplace_back(FolderRecord(UUID::random(), "Empty", false));
  SpaceRecord space{.id = *record.activeSpaceID,
                    .name = "Personal",
                    .symbol = "person.fill",
                    .hue = 0.1,
                    .profileID = record.profiles[0].id,
                    .selectedTabID = UUID::random(),
                    .pinned = {tab("Pinned"), std::move(folder)},
                    .today = {tab("Today")},
                    .split = {UUID::random(), UUID::random()},
                    .splitWidths = {1.0 / 3, 2.0 / 3},
                    .appearance = "dark"};
  std::get<TabRecord>(space.pinned[0]).pinnedURL = URL::parse("https://pin.test/");
  record.spaces = {space, {.id = UUID::random(), .profileID = UUID::random()}};
  return record;
}

std::optional<SessionRecord> decoded(std::string_view data) {
  auto result = SessionRecord::decode(data, kNow);
  return result ? std::optional(std::move(result->record)) : std::nullopt;
}

std::string failure(std::string_view data) {
  const auto result = SessionRecord::decode(data, kNow);
  return result ? "" : description(result.error());
}

std::string sessionWith(std::string_view spaceFields, std::string_view sessionFields = "") {
  return fmt::format(R"({{"isSidebarVisible":true,"sidebarWidth":1,"profiles":[],"schemaVersion":2,
    "spaces":[{{"id":"{0}","name":"","symbol":"","hue":0,"profileID":"{0}","pinned":[],"today":[]{1}
    }}]{2}}})",
                     kID, spaceFields, sessionFields);
}

std::string nestedFolders(size_t count) {
  std::string pinned;
  for (size_t i = 0; i < count; ++i)
    pinned +=
        fmt::format(R"([{{"folder":{{"id":"{}","name":"","isExpanded":true,"children":)", kID);
  pinned += "[]";
  for (size_t i = 0; i < count; ++i) pinned += "}}]";
  return sessionWith(R"(,"pinned":)" + pinned);
}

TEST(SessionRecord, ComesBackAsItWas) {
  const SessionRecord record = session();
  EXPECT_EQ(decoded(record.encoded()), record);
  SessionRecord changed = record;
  std::get<FolderRecord>(changed.spaces[0].pinned[1]).children.pop_back();
  EXPECT_NE(changed, record);
}

TEST(SessionRecord, WritesTheDocumentedForm) {
  SessionRecord record;
  record.sidebarWidth = 240;
  record.profiles = {{*UUID::parse(kID), "A/\"B\"\n\x01", {}}};
  record.spaces = {{.id = *UUID::parse(kID),
                    .name = "\xff",
                    .symbol = "s",
                    .hue = std::nan(""),
                    .profileID = *UUID::parse(kID),
                    .pinned = {FolderRecord(*UUID::parse(kID), "F", true)},
                    .today = {{*UUID::parse(kID), "T", URL::parse("x:/"), {}, kNow + 750ms}},
                    .splitWidths = {0.5, std::numeric_limits<double>::infinity()}}};
  std::string text = record.encoded();
  std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
  const std::string id = fmt::format("\"id\":\"{}\"", kID);
  EXPECT_EQ(text, R"({"isSidebarVisible":true,"profiles":[{"favorites":[],)" + id +
                      R"(,"name":"A/\"B\"\n\u0001"}],"schemaVersion":2,"sidebarWidth":240,)"
                      R"("spaces":[{"hue":0.94,)" +
                      id + R"(,"name":"�","pinned":[{"folder":{"children":[],)" + id +
                      R"(,"isExpanded":true,"name":"F"}}],"profileID":")" + kID +
                      R"(","symbol":"s","today":[{)" + id +
                      R"(,"lastActiveAt":"2026-01-02T03:04:05Z","title":"T","url":"x:/"}]}]})");
}

TEST(SessionRecord, TakesOptionalFieldsAsTheyCome) {
  for (const char* fields : {"", R"(,"split":[],"splitWidths":null,"appearance":null)"}) {
    const SessionRecord record = decoded(sessionWith(fields)).value();
    EXPECT_TRUE(record.spaces[0].split.empty());
    EXPECT_EQ(record.encoded().find("split"), std::string::npos);
    EXPECT_EQ(record.spaces[0].appearance, std::nullopt);
  }
  const SessionRecord record = decoded(sessionWith(R"(,"appearance":"sepia","new":[{}],"hue":1,
      "profileID":"0f1e2d3c-4b5a-6978-8796-a5b4c3d2e1f0","hue":0.5)",
                                                   R"(,"schemaVersion":2.0)"))
                                   .value();
  EXPECT_EQ(record.spaces[0].appearance, "sepia");
  EXPECT_EQ(record.spaces[0].hue, 0.5) << "of a key that stands twice the last counts";
  EXPECT_EQ(record.spaces[0].profileID.text(), kID);
}

TEST(SessionRecord, NamesThePlaceThatCannotBeDecoded) {
  const auto withTab = [](std::string_view fields) {
    return sessionWith(fmt::format(R"(,"today":[{{"id":"{}","title":"",{}}}])", kID, fields));
  };
  const std::pair<std::string, const char*> cases[] = {
      {"", "it is no JSON from byte 1 on"},
      {"[]", "it is not an object"},
      {"{\"a\":\"\xff\"}", "it is no JSON from byte 7 on"},
      {R"({"a":"\ud800"})", "it is no JSON from byte 13 on"},
      {R"({"schemaVersion":"2"})", "schemaVersion is not an integer"},
      {R"({"schemaVersion":1e30})", "schemaVersion is not an integer"},
      {R"({"schemaVersion":2})", "it has no isSidebarVisible"},
      {R"({"schemaVersion":1,"isSidebarVisible":1})", "isSidebarVisible is not true or false"},
      {sessionWith("", R"(,"spaces":{})"), "spaces is not a list"},
      {sessionWith(R"(,"name":null)"), "spaces[0].name is not a text"},
      {sessionWith(R"(,"hue":"1")"), "spaces[0].hue is not a number"},
      {sessionWith(R"(,"split":["1"])"), "spaces[0].split[0] is not a UUID"},
      {withTab(R"("url":"no address")"), "spaces[0].today[0].url is not an address"},
      {withTab(R"("lastActiveAt":"2026-01-02T03:04:05.5Z")"),
       "spaces[0].today[0].lastActiveAt is not a date in whole seconds"},
  };
  for (const auto& [data, expected] : cases) EXPECT_EQ(failure(data), expected) << data;
}

TEST(SessionRecord, RefusesVersionsItDoesNotKnow) {
  for (const int64_t version : {0, 3, -1}) {
    const auto result =
        SessionRecord::decode(fmt::format(R"({{"schemaVersion":{}}})", version), kNow);
    ASSERT_FALSE(result) << version;
    EXPECT_EQ(std::get<SessionError>(result.error()).unsupportedVersion, version);
  }
}

TEST(SessionRecord, UpgradesTheFirstVersion) {
  const std::string other = "11111111-2222-3333-4444-555555555555";
  const std::string body = fmt::format(
      R"("isSidebarVisible":false,"sidebarWidth":300,"profiles":[{{"id":"{0}","name":"N","hue":0.3,
      "symbol":"star","selectedTabID":"{1}","pinnedTabs":[{{"id":"{0}","title":"P","url":"a:b",
      "pinnedURL":"a:c"}}],"tabs":[{{"id":"{1}","title":"T"}}]}}])",
      kID, other);
  const UUID id = *UUID::parse(kID);
  const UUID otherID = *UUID::parse(other);
  const SessionRecord expected{
      .activeSpaceID = std::nullopt,
      .isSidebarVisible = false,
      .sidebarWidth = 300,
      .profiles = {{id, "N", {{id, "P", URL::parse("a:b"), URL::parse("a:c"), kNow}}}},
      .spaces = {{.id = id,
                  .name = "N",
                  .symbol = "star",
                  .hue = 0.3,
                  .profileID = id,
                  .selectedTabID = otherID,
                  .today = {{otherID, "T", std::nullopt, std::nullopt, kNow}}}}};
  for (const char* version : {"", R"("schemaVersion":null,)", R"("schemaVersion":1,)"}) {
    const auto result = SessionRecord::decode(fmt::format("{{{}{}}}", version, body), kNow);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->sourceVersion, 1);
    EXPECT_EQ(result->record, expected);
  }
  EXPECT_EQ(decoded(fmt::format(R"({{"activeProfileID":"{}",{}}})", kID, body))->activeSpaceID, id);
}

TEST(SessionRecord, BearsFoldersAsDeepAsTheyCome) {
  EXPECT_EQ(decoded(nestedFolders(100))->spaces[0].pinned.size(), 1u);
  const SessionRecord record = decoded(nestedFolders(FolderRecord::kMaxLevels)).value();
  SessionRecord copy = record;
  EXPECT_EQ(copy, record);
  EXPECT_EQ(decoded(copy.encoded()), record);
  copy = SessionRecord();
  EXPECT_FALSE(decoded(nestedFolders(FolderRecord::kMaxLevels + 1)));
  EXPECT_EQ(failure(nestedFolders(100'000)), "it nests deeper than 60100 levels");
  EXPECT_FALSE(decoded(std::string(1'000'000, '[')));
}

TEST(SessionRecord, BearsTenMegabytesOfAnything) {
  const auto repeated = [](std::string_view piece) {
    std::string result;
    while (result.size() < 10'000'000) result += piece;
    return result;
  };
  for (const std::string& data :
       {repeated("[],"), repeated("\""), repeated(R"({"a":1},)"), repeated(" "), repeated("9")}) {
    EXPECT_FALSE(decoded(data));
    EXPECT_FALSE(decoded("[" + data + "1]"));
  }
  EXPECT_TRUE(decoded(sessionWith(R"(,"name":")" + repeated("\\u00e9") + "\"")));
  EXPECT_TRUE(decoded(sessionWith("", "," + repeated(R"("a":1,)") + R"("a":1)")));
}

TEST(ArchivedTabRecord, IsKeptAsABareList) {
  const std::vector<ArchivedTabRecord> archive{{tab("A"), UUID::random(), kNow},
                                               {tab("B"), UUID::random(), kNow + 1s}};
  EXPECT_EQ(ArchivedTabRecord::decode(ArchivedTabRecord::encoded(archive)), archive);
  EXPECT_EQ(ArchivedTabRecord::decode("[]"), std::vector<ArchivedTabRecord>());
  EXPECT_EQ(ArchivedTabRecord::decode("{}"), std::nullopt);
  EXPECT_EQ(ArchivedTabRecord::decode("[{}]"), std::nullopt);
}

TEST(InternetDate, ReadsAndWritesWholeSeconds) {
  const std::pair<const char*, const char*> same[] = {
      {"2026-01-02T03:04:05Z", "2026-01-02T03:04:05Z"},
      {"2024-02-29t23:59:59z", "2024-02-29T23:59:59Z"},
      {"2026-01-01T00:30:00+01:45", "2025-12-31T22:45:00Z"},
      {"2026-01-01T23:30:00-01:00", "2026-01-02T00:30:00Z"},
      {"9999-12-31T23:59:59Z", "9999-12-31T23:59:59Z"},
  };
  for (const auto& [text, expected] : same)
    EXPECT_EQ(internetDate::text(internetDate::parse(text).value()), expected);
  for (const char* text :
       {"", "2026-01-02", "2026-01-02T03:04:05", "2026-01-02T03:04:05.0Z", "2026-02-29T00:00:00Z",
        "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z", "2026-01-02T24:00:00Z",
        "2026-01-02T23:59:60Z", "2026-01-02T03:04:05+0000", "2026-01-02T03:04:05+24:00",
        "2026-01-02 03:04:05Z", "+026-01-02T03:04:05Z", "2026-01-02T03:04:05ZZ",
        "9999-12-31T23:59:59-00:01", "0000-01-01T00:00:00+00:01"})
    EXPECT_EQ(internetDate::parse(text), std::nullopt) << text;
  EXPECT_EQ(internetDate::text(Date::min()), "0000-01-01T00:00:00Z");
  EXPECT_EQ(internetDate::text(Date::max()), "9999-12-31T23:59:59Z");
  EXPECT_EQ(internetDate::text(Date(-1us)), "1969-12-31T23:59:59Z");
}

}  // namespace
}  // namespace orvel
