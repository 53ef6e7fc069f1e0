#include "WebEngine/Blocking/ContentBlocker.h"

#include <algorithm>
#include <utility>

#include "BrowserCore/Text/Text.h"
#include "WebEngine/Blocking/RuleListLoader.h"

namespace orvel {

namespace {

constexpr const char* kEnabledKey = "contentBlockingEnabled";
constexpr const char* kCookieRejectionKey = "cookiePopupRejectionEnabled";
constexpr const char* kPausedSitesKey = "blockingPausedSites";

// The rules that hide cookie pop-ups; they and the script that answers them exclude each other.
constexpr std::string_view kCookieList = "cookies";
constexpr std::string_view kCommonPrefix = "www.";
constexpr uint64_t kMaxScript = 8u << 20;

std::set<std::string> setOf(const std::optional<UserDefaults::List>& list) {
  return list ? std::set<std::string>(list->begin(), list->end()) : std::set<std::string>();
}

bool isNamedList(const std::string& identifier) {
  return std::any_of(std::begin(ContentBlocker::listNames), std::end(ContentBlocker::listNames),
                     [&](std::string_view name) {
                       return identifier.starts_with(name) &&
                              identifier.substr(name.size()).starts_with('-');
                     });
}

Future<std::vector<std::string>> askForIdentifiers(ContentRuleListStore& store) {
  auto [answering, answer] = makeFuture<std::vector<std::string>>();
  store.getAvailableIdentifiers(std::move(answer));
  return std::move(answering);
}

bool covers(const std::string& entry, const std::string& site) {
  return site == entry || site.ends_with("." + entry);
}

}  // namespace

const std::optional<UserScript>& ContentBlocker::PageScript::get(FileSystem& files) {
  if (std::exchange(isRead_, true)) return script_;
  auto source = files.read(file_, kMaxScript);
  if (source && text::isValidUTF8(*source)) script_ = UserScript{.source = std::move(*source)};
  return script_;
}

ContentBlocker::ContentBlocker(Scheduler& scheduler, Engine& engine, UserDefaults& defaults,
                               FilterListUpdater& updater, std::filesystem::path scripts)
    : isEnabled(defaults.boolean(kEnabledKey).value_or(true)),
      isCookieRejectionEnabled(defaults.boolean(kCookieRejectionKey).value_or(true)),
      pausedSites(setOf(defaults.list(kPausedSitesKey))),
      scheduler_(scheduler),
      engine_(engine),
      defaults_(defaults),
      updater_(updater),
      youTubeScript_(scripts / "youtube-ads.js"),
      autoconsentScript_(scripts / "autoconsent.js") {}

// Loading

void ContentBlocker::start() {
  if (state.peek() != State::Idle) return;
  state = State::Preparing;
  // At once, beside the rest of a start: first pages wait for it.
  if (const auto store = engine_.contentRuleListStore())
    start_ = {askForIdentifiers(*store), readSources()};
  loading_ = scheduler_.start(load());
  hold_ = scheduler_.start(endHold());
}

Task<> ContentBlocker::load() {
  bool hasEnded = co_await isCancelled();
  if (hasEnded) co_return;
  auto loading = loadLists();
  co_await std::move(loading);
  hasEnded = co_await isCancelled();
  if (hasEnded) co_return;
  auto updating = updater_.updateIfDue();
  const bool hasChanged = co_await std::move(updating);
  hasEnded = co_await isCancelled();
  if (hasEnded || !hasChanged) co_return;
  auto loadingAgain = loadLists();
  co_await std::move(loadingAgain);
}

Future<std::vector<FilterListSource>> ContentBlocker::readSources() {
  return readFilterLists(scheduler_, updater_.folders(),
                         {std::begin(listNames), std::end(listNames)});
}

Task<> ContentBlocker::loadLists() {
  const auto store = engine_.contentRuleListStore();
  if (!store) co_return becomeReady();
  auto begun = std::exchange(start_, std::nullopt);
  auto asking = begun ? std::move(begun->identifiers) : askForIdentifiers(*store);
  auto reading = begun ? std::move(begun->sources) : readSources();
  const auto identifiers = co_await std::move(asking);
  bool hasEnded = co_await isCancelled();
  if (hasEnded) co_return;
  for (const std::string& identifier : identifiers)
    if (!isNamedList(identifier)) store->remove(identifier, [](const auto&) {});

  const std::set<std::string> available(identifiers.begin(), identifiers.end());
  auto sources = co_await std::move(reading);
  hasEnded = co_await isCancelled();
  if (hasEnded) co_return;

  // What is there already is looked up side by side: a start waits for it.
  std::vector<std::optional<Future<CompiledRules>>> lookups(sources.size());
  for (size_t i = 0; i < sources.size(); ++i)
    if (available.contains(sources[i].identifier))
      lookups[i] = lookUpRuleList(*store, sources[i].identifier);

  std::vector<NamedRuleList> loaded;
  for (size_t i = 0; i < sources.size(); ++i) {
    const std::string name = sources[i].name;
    CompiledRules known = nullptr;
    if (lookups[i]) known = co_await std::move(*lookups[i]);
    hasEnded = co_await isCancelled();
    if (hasEnded) co_return;
    auto loading =
        loadRuleList(scheduler_, store, available, std::move(sources[i]), known.value_or(nullptr));
    auto list = co_await std::move(loading);
    hasEnded = co_await isCancelled();
    if (hasEnded) co_return;
    if (list) loaded.push_back({name, std::move(list)});
  }
  ruleLists = std::move(loaded);
  listGeneration = listGeneration.peek() + 1;
  state = State::Ready;
  installEverywhere();
  runReadyHandlers();
}

void ContentBlocker::becomeReady() {
  state = State::Ready;
  runReadyHandlers();
}

Task<> ContentBlocker::endHold() {
  const SleepResult result = co_await sleep(kMaxHold);
  if (result == SleepResult::Cancelled) co_return;
  hasTimedOut = true;
  runReadyHandlers();
}

void ContentBlocker::runReadyHandlers() {
  for (const auto& action : std::exchange(readyHandlers, {})) action();
}

// Switches

void ContentBlocker::setEnabled(bool isOn) {
  isEnabled = isOn;
  defaults_.setBoolean(kEnabledKey, isOn);
  installEverywhere();
}

void ContentBlocker::setCookieRejectionEnabled(bool isOn) {
  isCookieRejectionEnabled = isOn;
  defaults_.setBoolean(kCookieRejectionKey, isOn);
  installEverywhere();
}

std::optional<std::string> ContentBlocker::site(const URL& url) {
  const auto host = url.host();
  if (!host) return std::nullopt;
  std::string site = text::lowerASCII(*host);
  if (site.starts_with(kCommonPrefix)) site.erase(0, kCommonPrefix.size());
  return site;
}

std::optional<std::string> ContentBlocker::pausedEntry(
    const std::optional<std::string>& site) const {
  if (!site) return std::nullopt;
  for (const std::string& entry : pausedSites.get())
    if (covers(entry, *site)) return entry;
  return std::nullopt;
}

bool ContentBlocker::isPaused(const std::optional<URL>& url) const {
  return url && pausedEntry(site(*url));
}

bool ContentBlocker::togglePause(const URL& url) {
  const auto paused = site(url);
  if (!paused) return false;
  if (const auto entry = pausedEntry(paused)) {
    resume(*entry);
  } else {
    auto sites = pausedSites.peek();
    sites.insert(*paused);
    storePausedSites(std::move(sites));
  }
  return isPaused(url);
}

void ContentBlocker::resume(const std::string& entry) {
  auto sites = pausedSites.peek();
  sites.erase(entry);
  storePausedSites(std::move(sites));
}

void ContentBlocker::storePausedSites(std::set<std::string> sites) {
  defaults_.setList(kPausedSitesKey, {sites.begin(), sites.end()});
  pausedSites = std::move(sites);
  installEverywhere();
}

// Pages

std::shared_ptr<UserContentController> ContentBlocker::makeUserContentController() {
  forgetGone();
  auto controller = engine_.makeUserContentController();
  installed_.erase(controller.get());
  currentSite_.erase(controller.get());
  controllers_.insert_or_assign(controller.get(), controller);
  install(*controller);
  return controller;
}

void ContentBlocker::setCurrentSite(const UserContentController& controller,
                                    std::optional<std::string> site) {
  if (site)
    currentSite_.insert_or_assign(&controller, std::move(*site));
  else
    currentSite_.erase(&controller);
}

void ContentBlocker::install(UserContentController& controller) {
  const auto found = currentSite_.find(&controller);
  const auto site = found == currentSite_.end() ? std::nullopt : std::optional(found->second);
  const Setup wanted{.blocking = isEnabled.peek() && !pausedEntry(site),
                     .cookieRejection = isCookieRejectionEnabled.peek(),
                     .listGeneration = listGeneration.peek()};
  const auto [present, isNew] = installed_.try_emplace(&controller, wanted);
  if (!isNew && present->second == wanted) return;
  present->second = wanted;

  controller.removeAllContentRuleLists();
  controller.removeAllUserScripts();
  for (const UserScript& script : standardScripts) controller.addUserScript(script);
  FileSystem& files = *updater_.folders().files;
  if (wanted.blocking) {
    for (const auto& [name, list] : ruleLists.peek())
      if (name != kCookieList || !wanted.cookieRejection) controller.addContentRuleList(list);
    if (const auto& script = youTubeScript_.get(files)) controller.addUserScript(*script);
  }
  if (!wanted.cookieRejection) return;
  if (const auto& script = autoconsentScript_.get(files)) controller.addUserScript(*script);
}

void ContentBlocker::installEverywhere() {
  forgetGone();
  std::vector<std::shared_ptr<UserContentController>> live;
  live.reserve(controllers_.size());
  for (const auto& [identity, controller] : controllers_) live.push_back(controller.lock());
  for (const auto& controller : live) install(*controller);
}

void ContentBlocker::forgetGone() {
  std::erase_if(controllers_, [](const auto& entry) { return entry.second.expired(); });
  const auto isGone = [this](const auto& entry) { return !controllers_.contains(entry.first); };
  std::erase_if(installed_, isGone);
  std::erase_if(currentSite_, isGone);
}

}  // namespace orvel
