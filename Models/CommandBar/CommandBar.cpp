#include "Models/CommandBar/CommandBar.h"

#include <algorithm>

#include "Base/Texts.h"
#include "BrowserCore/Addresses/InlineCompletion.h"
#include "BrowserCore/Answers/CurrencyConversion.h"
#include "BrowserCore/Text/Characters.h"
#include "BrowserCore/Text/Text.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/CommandBar/Suggestions.h"
#include "Models/Commands/CommandList.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

constexpr size_t kMaxFrequentURLs = 400;
constexpr size_t kMaxHistoryMatches = 5;
constexpr size_t kMinQuestion = 2;
constexpr Duration kDebounce = 150ms;

std::string addressOf(const TabRef& tab) {
  return tab && tab->url.peek() ? tab->url.peek()->text() : std::string();
}

std::vector<std::string> idsOf(const std::vector<Suggestion>& rows) {
  std::vector<std::string> ids;
  std::ranges::transform(rows, std::back_inserter(ids), suggestionID);
  return ids;
}

}  // namespace

std::shared_ptr<CommandBar> CommandBar::make(BrowserStore& store, CommandBarMode mode) {
  return std::shared_ptr<CommandBar>(new CommandBar(store, mode));
}

CommandBar::CommandBar(BrowserStore& store, CommandBarMode barMode)
    : mode(barMode),
      subject(untracked([&] { return subjectOf(store, barMode); })),
      store_(store),
      services_(store.services()),
      text_(addressOf(subject)) {}

const UUID& CommandBar::profile() const { return store_.activeSpace()->profile->id; }

void CommandBar::cancel() { store_.dismissCommandBar(); }

TabRef CommandBar::subjectOf(const BrowserStore& store, CommandBarMode mode) {
  return mode == CommandBarMode::CurrentTab ? store.activeSpace()->selectedTab() : nullptr;
}

std::string_view CommandBar::symbol() const {
  return mode == CommandBarMode::NewTab ? "plus.magnifyingglass" : "magnifyingglass";
}

std::string_view CommandBar::placeholder() const {
  return mode == CommandBarMode::CurrentTab ? _("Enter address…")
                                            : _("Search, enter address, or type 20+20…");
}

std::string CommandBar::query() const { return std::string(text::trimmed(text_.peek())); }

std::vector<Suggestion> CommandBar::suggestions() const {
  const auto space = store_.activeSpace();
  const TabList tabs = space->allTabs();
  const auto& rates = services_.currencies.rates.get();
  auto list = orvel::suggestions(
      {.mode = mode,
       .text = text_.get(),
       .historyMatches = historyMatches_.get(),
       .engineSuggestions = engineSuggestions_.get(),
       .rates = rates ? &*rates : nullptr,
       .shortcuts = store_.settings.searchShortcuts.get(),
       .tabs = tabs,
       .selectedTab = space->selectedTab(),
       .archive = store_.archive.records.get(),
       .commandsMatching =
           [this](const auto& text) { return store_.commands.commandsMatching(text); },
       .topChoice = [this](const auto& text,
                           auto rows) { return store_.choices.topChoice(text, rows); }});
  knownRows_ = idsOf(list);
  return list;
}

std::optional<std::string> CommandBar::complete(const std::string& typed) const {
  std::vector<URL> urls = frequentURLs_.peek();
  const auto tabs = untracked([this] { return store_.activeSpace()->allTabs(); });
  for (const TabRef& tab : tabs)
    if (const auto& url = tab->url.peek()) urls.push_back(*url);
  for (const auto& entry : historyMatches_.peek()) urls.push_back(entry.url);
  return InlineCompletion::complete(typed, urls);
}

void CommandBar::appear() {
  if (!hasAppeared.set(true)) return;
  if (store_.history) store_.history->prepareSearch(profile());
  frequentTask_ = services_.scheduler.start(readFrequentURLs(weak_from_this()));
  search();
}

void CommandBar::setText(std::string text) {
  if (!text_.set(std::move(text))) return;
  knownRows_.reset();
  selection = 0u;
  if (CurrencyConversion::parse(text_.peek())) services_.currencies.requestIfNeeded();
  search();
}

void CommandBar::search() {
  historyTask_ = services_.scheduler.start(searchHistory(weak_from_this()));
  engineTask_ = services_.scheduler.start(searchEngine(weak_from_this()));
}

Task<> CommandBar::readFrequentURLs(std::weak_ptr<CommandBar> weak) {
  std::optional<Future<HistoryStore::Entries>> coming;
  if (const auto bar = weak.lock(); bar && bar->store_.history)
    coming = bar->store_.history->search(HistorySearchField(), "", bar->profile(), kMaxFrequentURLs,
                                         bar->services_.scheduler.now());
  if (!coming) co_return;
  auto pages = co_await std::move(*coming);
  const auto bar = weak.lock();
  if (!bar) co_return;
  std::vector<URL> urls;
  urls.reserve(pages.size());
  for (auto& page : pages) urls.push_back(std::move(page.url));
  bar->frequentURLs_ = std::move(urls);
}

Task<> CommandBar::searchHistory(std::weak_ptr<CommandBar> weak) {
  std::optional<Future<HistoryStore::Entries>> coming;
  const bool wasOvertaken = co_await isCancelled();
  if (const auto bar = weak.lock(); bar && !wasOvertaken) {
    if (const auto query = bar->query(); !query.empty() && bar->store_.history)
      coming = bar->store_.history->search(bar->typedSearches_, query, bar->profile(),
                                           kMaxHistoryMatches, bar->services_.scheduler.now());
    else
      bar->historyMatches_ = HistoryStore::Entries();
  }
  if (!coming) co_return;
  auto found = co_await std::move(*coming);
  const bool isOvertaken = co_await isCancelled();
  if (const auto bar = weak.lock(); bar && !isOvertaken)
    bar->replace(bar->historyMatches_, std::move(found));
}

Task<> CommandBar::searchEngine(std::weak_ptr<CommandBar> weak) {
  std::optional<URL> question;
  if (const auto bar = weak.lock()) question = bar->engineQuestion();
  std::vector<std::string> found;
  if (question) {
    const SleepResult waited = co_await sleep(kDebounce);
    const bool wasCancelled = co_await isCancelled();
    if (waited == SleepResult::Cancelled || wasCancelled) co_return;
    EngineSuggestions* engine = nullptr;
    if (const auto bar = weak.lock()) engine = &bar->services_.engineSuggestions;
    if (!engine) co_return;
    auto coming = engine->fetch(*question);
    found = co_await std::move(coming);
  }
  const bool isOvertaken = co_await isCancelled();
  if (const auto bar = weak.lock(); bar && !isOvertaken)
    bar->replace(bar->engineSuggestions_, std::move(found));
}

std::optional<URL> CommandBar::engineQuestion() const {
  const std::string typed = query();
  const Settings& settings = store_.settings;
  if (!settings.searchSuggestions.peek() ||
      text::characterCount(typed, kMinQuestion) < kMinQuestion || looksLikeAddress(typed) ||
      SearchShortcut::match(typed, settings.searchShortcuts.peek()))
    return std::nullopt;
  return settings.searchEngine.peek().suggestionsURL(typed);
}

void CommandBar::animate(const std::function<void()>& change) {
  services_.desktop.animator.animate(Spring::quick, change);
}

template <class Found>
void CommandBar::replace(Observable<Found>& former, Found found) {
  // Nearly always nothing came and nothing had come before.
  if (former.peek() != found) keepingSelection([&] { former = std::move(found); });
}

void CommandBar::keepingSelection(const std::function<void()>& update) {
  // What is on screen has been asked for.
  const auto before = knownRows_ ? *knownRows_ : idsOf(suggestions());
  const bool isInside = selection.peek() < before.size();
  animate([&] {
    update();
    const auto after = idsOf(suggestions());
    const auto found = isInside ? std::ranges::find(after, before[selection.peek()]) : after.end();
    selection = found == after.end() ? 0u : static_cast<size_t>(found - after.begin());
  });
}

void CommandBar::move(int delta) {
  const auto count = static_cast<int>(suggestions().size());
  if (count == 0) return;
  const int next = (static_cast<int>(selection.peek()) + delta % count + count) % count;
  animate([&] { selection = static_cast<size_t>(next); });
}

void CommandBar::submit() {
  const auto rows = suggestions();
  if (selection.peek() >= rows.size()) return;
  const Suggestion& row = rows[selection.peek()];
  isSpent_ = true;
  store_.choices.learn(row, text_.peek());
  store_.perform(row, mode);
}

}  // namespace orvel
