#include "Models/History/HistoryList.h"

#include <algorithm>
#include <utility>

#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/BrowserStore.h"
#include "Support/LocalDates.h"

namespace orvel {

namespace {

constexpr size_t kRecent = 500;
constexpr size_t kFound = 200;

}  // namespace

std::vector<HistorySection> historySections(std::vector<HistoryStore::Entry> entries, Date now) {
  std::ranges::stable_sort(entries, std::greater(), &HistoryStore::Entry::lastVisit);
  const Date today = local_dates::startOfDay(now);
  const Date yesterday = local_dates::previousDay(today);
  const auto titleOf = [&](Date day) -> std::string {
    if (day == today) return _("Today");
    return day == yesterday ? _("Yesterday") : local_dates::completeDate(day);
  };
  std::vector<HistorySection> sections;
  std::optional<Date> day;  // the latest section's start
  for (auto& entry : entries) {
    const bool isSameDay = day && *day <= entry.lastVisit;
    if (!isSameDay) {
      day = local_dates::startOfDay(entry.lastVisit);
      sections.push_back({titleOf(*day), {}});
    }
    sections.back().entries.push_back(std::move(entry));
  }
  return sections;
}

void HistoryList::reload() {
  const UUID profile = store_.activeSpace()->profile->id;
  removed_.clear();
  reading_ = store_.services().scheduler.start(
      read(profile, std::string(text::trimmedBlanks(query.peek()))));
}

Task<> HistoryList::read(UUID profile, std::string text) {
  const bool wasOvertaken = co_await isCancelled();
  if (wasOvertaken) co_return;
  const Date now = store_.services().scheduler.now();
  HistoryStore::Entries entries;
  if (store_.history) {
    auto asking = text.empty()
                      ? store_.history->recent(profile, kRecent)
                      : store_.history->search(field_, std::move(text), profile, kFound, now);
    entries = co_await std::move(asking);
  }
  const bool hasEnded = co_await isCancelled();
  if (hasEnded) co_return;
  std::erase_if(entries, [this](const auto& entry) {
    return std::ranges::find(removed_, entry.url) != removed_.end();
  });
  shownProfile_ = profile;
  sections = historySections(std::move(entries), now);
  hasAnswer = true;
}

void HistoryList::open(const HistoryStore::Entry& entry) {
  store_.openTab(entry.url);
  if (store_.window()) store_.window()->present();
}

void HistoryList::copyLink(const HistoryStore::Entry& entry) {
  store_.services().desktop.clipboard.setText(entry.url.text());
}

void HistoryList::remove(const HistoryStore::Entry& entry) {
  const URL url = entry.url;  // the entry may be one of ours
  sections.update([&](auto& all) {
    for (auto& section : all)
      std::erase_if(section.entries, [&](const auto& one) { return one.url == url; });
    std::erase_if(all, [](const auto& section) { return section.entries.empty(); });
  });
  removed_.push_back(url);
  if (store_.history) store_.history->remove(url, shownProfile_);
  store_.choices.forgetChoices(shownProfile_, url);
}

}  // namespace orvel
