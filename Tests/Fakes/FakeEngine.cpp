#include "Tests/Fakes/FakeEngine.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace orvel::test {

// Content rules

void FakeRuleStore::getAvailableIdentifiers(std::function<void(std::vector<std::string>)> answer) {
  std::vector<std::string> identifiers;
  for (const auto& [identifier, list] : lists) identifiers.push_back(identifier);
  scheduler_.post([identifiers, answer = std::move(answer)] { answer(identifiers); });
}

void FakeRuleStore::lookUp(const std::string& identifier,
                           std::function<void(CompiledRules)> answer) {
  if (willLookUp) willLookUp();
  CompiledRules result;
  if (const auto found = lists.find(identifier);
      found != lists.end() && !damaged.contains(identifier))
    result.list = found->second;
  else
    result.error = ContentRuleError{"unknown identifier"};
  scheduler_.post([result, answer = std::move(answer)] { answer(result); });
}

void FakeRuleStore::compile(const std::string& identifier, std::string json,
                            std::function<void(CompiledRules)> answer) {
  auto finish = [this, identifier, json = std::move(json), answer = std::move(answer)] {
    if (auto complaint = refuse ? refuse(identifier, json) : std::nullopt)
      return answer({nullptr, ContentRuleError{*complaint}});
    compiled.push_back(identifier);
    damaged.erase(identifier);
    answer({lists[identifier] = std::make_shared<FakeRuleList>(identifier, json), std::nullopt});
  };
  const auto compiling = [](Duration duration, std::function<void()> action) -> Task<> {
    co_await sleep(duration);
    action();
  };
  scheduler_.start(compiling(compileTime, std::move(finish))).detach();
}

void FakeRuleStore::remove(const std::string& identifier,
                           std::function<void(std::optional<std::string>)> answer) {
  const bool isKnown = lists.erase(identifier) > 0;
  scheduler_.post([isKnown, answer = std::move(answer)] {
    answer(isKnown ? std::nullopt : std::optional<std::string>("unknown identifier"));
  });
}

bool FakeContentController::post(const std::string& name, const ContentWorld& world,
                                 const std::string& body, const FrameInfo& frame) {
  const auto handler = handlers.find({name, world});
  if (handler == handlers.end()) return false;
  handler->second({name, body, frame});
  return true;
}

// Web views

FakeWebView::FakeWebView(FakeEngine& engine, const WebViewConfiguration& configuration)
    : engine_(engine), configuration_(configuration) {
  if (!configuration_.userContentController)
    configuration_.userContentController = engine.makeUserContentController();
}

Observation FakeWebView::observe(WebViewProperty property, std::function<void()> changed) {
  const uint64_t id = ++lastObserver_;
  observers_[id] = {property, std::move(changed)};
  return Observation([weak = weak_from_this(), id] {
    if (const auto self = weak.lock()) self->observers_.erase(id);
  });
}

void FakeWebView::notify(WebViewProperty property) {
  const auto self = shared_from_this();
  std::vector<std::function<void()>> due;
  for (const auto& [id, observer] : observers_)
    if (observer.property == property) due.push_back(observer.changed);
  for (const auto& changed : due) changed();
}

void FakeWebView::setTitle(const std::string& title) {
  title_ = title;
  notify(WebViewProperty::Title);
}

void FakeWebView::setURL(const std::string& url) {
  url_ = URL::parse(url);
  notify(WebViewProperty::URL);
}

void FakeWebView::setProgress(double progress) {
  progress_ = progress;
  notify(WebViewProperty::EstimatedProgress);
}

void FakeWebView::setLoading(bool isLoading, double progress) {
  isLoading_ = isLoading;
  notify(WebViewProperty::IsLoading);
  setProgress(progress);
}

void FakeWebView::load(const URLRequest& request) {
  requests.push_back(request);
  isMovingInHistory_ = false;
  navigateTo(request.url, NavigationType::Other);
}

void FakeWebView::navigateTo(const URL& url, NavigationType type) {
  NavigationAction action;
  action.request = URLRequest{.url = url};
  action.targetFrame = FrameInfo{};
  action.navigationType = type;
  decideAndBegin(std::move(action), [](NavigationPolicy) {});
}

void FakeWebView::decideAndBegin(NavigationAction action,
                                 std::function<void(NavigationPolicy)> decided) {
  const uint64_t generation = ++generation_;
  if (!navigation_) {
    decided(NavigationPolicy::Allow);
    return begin(action.request->url);
  }
  navigation_->decidePolicyForAction(
      *this, action,
      [weak = weak_from_this(), action, generation, decided](NavigationPolicy policy) {
        decided(policy);
        const auto self = weak.lock();
        if (!self || generation != self->generation_) return;
        if (policy == NavigationPolicy::Download) self->becomeDownload(action.request->url);
        const bool isMainFrame = action.targetFrame && action.targetFrame->isMainFrame;
        if (policy == NavigationPolicy::Allow && isMainFrame) self->begin(action.request->url);
      });
}

void FakeWebView::becomeDownload(const URL& url) {
  const auto download = std::make_shared<FakeDownload>(url);
  engine_.downloads.push_back(download);
  if (navigation_) navigation_->didBecomeDownload(*this, download);
}

void FakeWebView::begin(const URL& url) {
  const uint64_t generation = ++generation_;
  url_ = url;
  notify(WebViewProperty::URL);
  setLoading(true, 0.1);
  engine_.scheduler().post([weak = weak_from_this(), generation, url] {
    const auto self = weak.lock();
    if (self && generation == self->generation_) self->respond(url);
  });
}

void FakeWebView::respond(const URL& url) {
  const FakePage page = engine_.pageAt(url);
  if (page.load == FakePage::Load::Fail) {
    setLoading(false, 0);
    LoadError error = page.error;
    if (!error.failingURL) error.failingURL = url;
    if (navigation_) navigation_->didFailProvisionalNavigation(*this, error);
    return;
  }
  if (!navigation_) return commit(url, page);
  NavigationResponse response{.url = url,
                              .status = 200,
                              .mimeType = page.mimeType,
                              .canShowMIMEType = page.canShowMIMEType,
                              .contentDisposition = page.contentDisposition};
  const uint64_t generation = generation_;
  navigation_->decidePolicyForResponse(
      *this, response, [weak = weak_from_this(), generation, url, page](NavigationPolicy policy) {
        const auto self = weak.lock();
        if (!self || generation != self->generation_) return;
        if (policy == NavigationPolicy::Allow) return self->commit(url, page);
        self->setLoading(false, 0);
        if (policy == NavigationPolicy::Download) self->becomeDownload(url);
      });
}

void FakeWebView::commit(const URL& url, const FakePage& page) {
  const URL committed = page.redirect ? *URL::parse(*page.redirect) : url;
  if (!isMovingInHistory_) {
    history_.resize(static_cast<size_t>(position_ + 1), committed);
    history_.push_back(committed);
    ++position_;
  }
  isMovingInHistory_ = false;
  if (url_ != committed) {
    url_ = committed;
    notify(WebViewProperty::URL);
  }
  notify(WebViewProperty::CanGoBack);
  notify(WebViewProperty::CanGoForward);
  notify(WebViewProperty::IsBlank);
  const auto self = shared_from_this();
  if (navigation_) navigation_->didCommit(*this);
  setTitle(page.title);
  setLoading(false, 1);
  if (!navigation_) return;
  if (page.load == FakePage::Load::BreakOff)
    navigation_->didFail(*this, page.error);
  else
    navigation_->didFinish(*this);
}

void FakeWebView::loadHTMLString(const std::string& text, const std::optional<URL>& baseURL) {
  html = text;
  url_ = baseURL ? *baseURL : *URL::parse("about:blank");
  notify(WebViewProperty::URL);
  setLoading(true, 0.1);
  engine_.scheduler().post([weak = weak_from_this(), generation = ++generation_] {
    const auto self = weak.lock();
    if (!self || generation != self->generation_) return;
    if (self->navigation_) self->navigation_->didCommit(*self);
    constexpr std::string_view kTitle = "<title>";
    if (const size_t at = self->html.find(kTitle); at != std::string::npos) {
      const size_t begin = at + kTitle.size();
      self->setTitle(self->html.substr(begin, self->html.find('<', begin) - begin));
    }
    self->setLoading(false, 1);
  });
}

void FakeWebView::reload(ReloadSource) {
  if (!url_) return;
  isMovingInHistory_ = true;
  requests.push_back({.url = *url_});
  navigateTo(*url_, NavigationType::Reload);
}

void FakeWebView::stopLoading() {
  ++generation_;
  ++stopCount;
  if (isLoading_) setLoading(false, 0);
}

void FakeWebView::move(int step) {
  const int next = position_ + step;
  if (next < 0 || next >= static_cast<int>(history_.size())) return;
  position_ = next;
  isMovingInHistory_ = true;
  navigateTo(history_[static_cast<size_t>(next)], NavigationType::BackForward);
}

std::optional<InteractionState> FakeWebView::interactionState() const {
  if (history_.empty()) return std::nullopt;
  nlohmann::json state = {{"position", position_}, {"history", nlohmann::json::array()}};
  for (const URL& url : history_) state["history"].push_back(url.text());
  return InteractionState{state.dump(), history_[static_cast<size_t>(position_)]};
}

bool FakeWebView::setInteractionState(const std::string& text) {
  restoredStates.push_back(text);
  const auto state = nlohmann::json::parse(text, nullptr, false);
  if (!state.is_object() || !state.contains("history")) return false;
  history_.clear();
  for (const auto& entry : state["history"])
    history_.push_back(*URL::parse(entry.get<std::string>()));
  position_ = state["position"];
  isMovingInHistory_ = true;
  begin(history_[static_cast<size_t>(position_)]);
  return true;
}

void FakeWebView::takeSnapshot(const SnapshotRequest&, std::function<void(ImageRef)> answer) {
  engine_.scheduler().post([answer = std::move(answer), image = snapshot] { answer(image); });
}

void FakeWebView::createPDF(std::function<void(PDFResult)> answer) {
  engine_.scheduler().post([answer = std::move(answer)] { answer({"%PDF-1.4 fake", ""}); });
}

void FakeWebView::find(const std::string& text, const FindConfiguration& configuration,
                       std::function<void(bool)> answer) {
  searches.push_back(text + (configuration.backwards ? " backwards" : ""));
  const bool isFound = pageText.find(text) != std::string::npos;
  hasMarks = isFound;
  engine_.scheduler().post([answer = std::move(answer), isFound] { answer(isFound); });
}

void FakeWebView::evaluateJavaScript(const std::string&, const ContentWorld&,
                                     const std::optional<FrameInfo>&,
                                     std::function<void(ScriptResult)> answer) {
  engine_.scheduler().post([answer = std::move(answer)] {
    if (answer) answer({"null", ""});
  });
}

void FakeWebView::pauseAllMediaPlayback() {
  ++pauseCount;
  if (media == MediaPlaybackState::Playing) media = MediaPlaybackState::Paused;
}

void FakeWebView::requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) {
  engine_.scheduler().post([weak = weak_from_this(), answer = std::move(answer)] {
    const auto self = weak.lock();
    answer(self ? self->media : MediaPlaybackState::None);
  });
}

NavigationPolicy FakeWebView::navigate(NavigationAction action) {
  NavigationPolicy result = NavigationPolicy::Cancel;
  decideAndBegin(std::move(action), [&result](NavigationPolicy policy) { result = policy; });
  return result;
}

NavigationPolicy FakeWebView::clickLink(const std::string& url, ModifierFlags modifiers,
                                        MouseButton button) {
  NavigationAction action;
  action.request = URLRequest{.url = *URL::parse(url)};
  action.navigationType = NavigationType::LinkActivated;
  action.sourceFrame = action.targetFrame = FrameInfo{};
  action.modifierFlags = modifiers;
  action.buttonNumber = button;
  action.hasUserGesture = true;
  return navigate(std::move(action));
}

std::shared_ptr<WebView> FakeWebView::openWindow(const std::string& url) {
  if (!ui_) return nullptr;
  NavigationAction action;
  action.request = URLRequest{.url = *URL::parse(url)};
  action.sourceFrame = FrameInfo{};
  action.hasUserGesture = true;
  WebViewConfiguration configuration = configuration_;
  configuration.userContentController = nullptr;
  configuration.opener = std::make_shared<WindowOpener>();
  auto view = ui_->createWebView(*this, configuration, action);
  if (view) view->load(*action.request);
  return view;
}

void FakeWebView::die() {
  ++generation_;
  url_.reset();
  title_.reset();
  isLoading_ = false;
  if (navigation_) navigation_->webContentProcessDidTerminate(*this);
}

void FakeWebView::setResponsive(bool isResponsive) {
  isResponsive_ = isResponsive;
  notify(WebViewProperty::IsResponsive);
}

void FakeWebView::endProcess() {
  ++endedProcesses;
  ++generation_;
  isLoading_ = false;
  setResponsive(true);
}

void FakeWebView::requestClose(std::function<void(bool)> answer) {
  if (!guardsChanges || !ui_ || !isResponsive_) return answer(true);
  ui_->runBeforeUnloadPanel(*this, FrameInfo{}, std::move(answer));
}

void FakeWebView::enterFullscreen() {
  isFullscreen = true;
  if (ui_) ui_->fullscreenDidChange(*this, true);
}

void FakeWebView::exitFullscreen() {
  if (!std::exchange(isFullscreen, false)) return;
  engine_.scheduler().post([weak = weak_from_this()] {
    if (const auto self = weak.lock(); self && self->ui_)
      self->ui_->fullscreenDidChange(*self, false);
  });
}

// The engine

std::shared_ptr<WebsiteDataStore> FakeEngine::dataStoreForIdentifier(const UUID& identifier) {
  auto& weak = stores_[identifier];
  auto store = weak.lock();
  if (!store) weak = store = std::make_shared<FakeDataStore>(scheduler_, identifier);
  return store;
}

void FakeEngine::removeDataStoreForIdentifier(
    const UUID& identifier, std::function<void(std::optional<std::string>)> answer) {
  std::optional<std::string> error;
  if (failingRemovals > 0) {
    --failingRemovals;
    error = "in use";
  } else {
    removedStores.push_back(identifier);
  }
  scheduler_.post([error, answer = std::move(answer)] { answer(error); });
}

std::shared_ptr<WebView> FakeEngine::makeWebView(const WebViewConfiguration& configuration) {
  auto view = std::make_shared<FakeWebView>(*this, configuration);
  views.push_back(view);
  return view;
}

FakePage FakeEngine::pageAt(const URL& url) const {
  const auto found = pages.find(url.text());
  if (found != pages.end()) return found->second;
  return {.title = url.text()};
}

}  // namespace orvel::test
