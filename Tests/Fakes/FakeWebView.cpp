#include "Tests/Fakes/FakeWebView.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Tests/Fakes/FakeEngine.h"

namespace orvel::test {

namespace {

constexpr Duration kHungFor = 5s;
const ScriptResult kNoAnswer = Failure("the page does not answer");

}  // namespace

bool FakeContentController::post(const std::string& name, const ContentWorld& world,
                                 const std::string& body, const FrameInfo& frame) {
  const auto handler = handlers.find({name, world});
  if (handler == handlers.end()) return false;
  handler->second({name, body, frame});
  return true;
}

FakeWebView::FakeWebView(FakeEngine& engine, const WebViewConfiguration& configuration)
    : engine_(engine), configuration_(configuration) {
  if (!configuration_.userContentController)
    configuration_.userContentController = engine.makeUserContentController();
  if (const auto other = std::exchange(configuration_.processSharedWith, nullptr))
    configuration_.websiteDataStore = other->configuration().websiteDataStore;
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
  timeout_ = request.timeout;
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
  const auto download = engine_.makeDownload(url, *configuration_.websiteDataStore);
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
  if (page.load == FakePage::Load::Wait) {
    const auto giveUp = [](std::weak_ptr<FakeWebView> weak, uint64_t generation, Duration after,
                           URL asked) -> Task<> {
      co_await sleep(after);
      const auto self = weak.lock();
      if (self && self->generation_ == generation)
        self->fail({.kind = LoadError::Kind::TimedOut, .failingURL = asked});
    };
    return engine_.scheduler().start(giveUp(weak_from_this(), generation_, timeout_, url)).detach();
  }
  if (page.load == FakePage::Load::Fail) {
    LoadError error = page.error;
    if (!error.failingURL) error.failingURL = url;
    return fail(error);
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
        self->fail({.kind = LoadError::Kind::PolicyInterrupted, .failingURL = url});
        if (policy == NavigationPolicy::Download) self->becomeDownload(url);
      });
}

// What was asked for has failed: the page that is shown stays, under its own address.
void FakeWebView::fail(LoadError error) {
  ++generation_;
  setLoading(false, 0);
  if (navigation_) navigation_->didFailProvisionalNavigation(*this, error);
}

void FakeWebView::commit(const URL& url, const FakePage& page) {
  const URL committed = page.redirect ? *URL::parse(*page.redirect) : url;
  if (!isMovingInHistory_) {
    history_.resize(static_cast<size_t>(position_) + 1, committed);
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
  show(committed);
  if (page.storesData && configuration_.websiteDataStore)
    static_cast<FakeDataStore&>(*configuration_.websiteDataStore)
        .domains.emplace(committed.host().value_or(""));
  if (navigation_) navigation_->didCommit(*this);
  setTitle(page.title);
  setLoading(false, 1);
  if (!navigation_) return;
  if (page.load == FakePage::Load::BreakOff)
    navigation_->didFail(*this, page.error);
  else
    navigation_->didFinish(*this);
}

void FakeWebView::show(const URL& url) {
  endCalls();
  committed_ = url;
  play({});
}

void FakeWebView::loadHTMLString(const std::string& text, const std::optional<URL>& baseURL) {
  html = text;
  url_ = baseURL ? *baseURL : *URL::parse("about:blank");
  notify(WebViewProperty::URL);
  setLoading(true, 0.1);
  engine_.scheduler().post([weak = weak_from_this(), generation = ++generation_] {
    const auto self = weak.lock();
    if (!self || generation != self->generation_) return;
    self->show(*self->url_);
    self->committed_.reset();
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
  std::vector<URL> history;
  for (const auto& entry : state["history"])
    if (const auto url = URL::parse(entry.get<std::string>())) history.push_back(*url);
  const int position = state["position"];
  if (position < 0 || position >= static_cast<int>(history.size())) return false;
  history_ = std::move(history);
  position_ = position;
  isMovingInHistory_ = true;
  begin(history_[static_cast<size_t>(position_)]);
  return true;
}

template <class T>
void FakeWebView::answerLater(std::function<void(T)> answer, T value, T failure) {
  if (!answer) return;
  const auto answerAfter = [](Duration pause, std::function<void()> tell) -> Task<> {
    co_await sleep(pause);
    tell();
  };
  if (isHung)
    engine_.scheduler()
        .start(answerAfter(kHungFor, [answer, failure] { answer(failure); }))
        .detach();
  else
    engine_.scheduler().post([answer, value] { answer(value); });
}

void FakeWebView::evaluateJavaScript(const std::string&, const ContentWorld&,
                                     const std::optional<FrameInfo>& frame, ScriptAnswer answer) {
  const bool isThere = !frame || frame->isMainFrame;
  answerLater<ScriptResult>(std::move(answer), isThere ? ScriptResult("null") : kNoAnswer,
                            kNoAnswer);
}

void FakeWebView::callAsyncJavaScript(const std::string& body, const std::string&,
                                      const ContentWorld& world, ScriptAnswer answer) {
  if (body == "await new Promise(() => {})" && !isHung)
    calls_.push_back(std::move(answer));
  else
    evaluateJavaScript(body, world, std::nullopt, std::move(answer));
}

void FakeWebView::endCalls() {
  for (auto& answer : std::exchange(calls_, {}))
    engine_.scheduler().post([answer = std::move(answer)] { answer(kNoAnswer); });
}

void FakeWebView::takeSnapshot(const SnapshotRequest&, std::function<void(ImageRef)> answer) {
  answerLater<ImageRef>(std::move(answer), snapshot, nullptr);
}

void FakeWebView::createPDF(std::function<void(PageFile)> answer) {
  answerLater<PageFile>(std::move(answer), "%PDF-1.4 fake", Failure("no answer"));
}

void FakeWebView::createArchive(std::function<void(PageFile)> answer) {
  answerLater<PageFile>(std::move(answer), "MIME-Version: 1.0 fake", Failure("no answer"));
}

void FakeWebView::readSource(std::function<void(std::optional<std::string>)> answer) {
  answerLater<std::optional<std::string>>(std::move(answer), source, std::nullopt);
}

void FakeWebView::find(const std::string& text, const FindConfiguration& configuration,
                       std::function<void(bool)> answer) {
  searches.push_back(text + (configuration.backwards ? " backwards" : ""));
  const bool isFound = pageText.find(text) != std::string::npos;
  hasMarks = isFound;
  answerLater<bool>(std::move(answer), isFound, false);
}

void FakeWebView::pauseAllMediaPlayback() {
  if (media == MediaPlaybackState::Playing) media = MediaPlaybackState::Paused;
  play({});
}

void FakeWebView::requestMediaPlaybackState(std::function<void(MediaPlaybackState)> answer) {
  answerLater<MediaPlaybackState>(
      [weak = weak_from_this(), answer = std::move(answer)](MediaPlaybackState state) {
        answer(weak.expired() ? MediaPlaybackState::None : state);
      },
      media, MediaPlaybackState::None);
}

void FakeWebView::play(PlayingMedia playing) {
  if (playing != PlayingMedia()) media = MediaPlaybackState::Playing;
  if (playing_ == playing) return;
  playing_ = playing;
  notify(WebViewProperty::PlayingMedia);
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
  action.input = inputs;
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
  committed_.reset();
  isHung = false;
  endCalls();
  if (navigation_) navigation_->webContentProcessDidTerminate(*this);
}

std::optional<std::string> FakeWebView::committedOrigin() const {
  const auto host = committed_ ? committed_->host() : std::nullopt;
  if (!host || host->empty()) return std::nullopt;
  const auto port = committed_->portText();
  return std::string(committed_->scheme()) + "://" + std::string(*host) +
         (port ? ":" + std::string(*port) : "");
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

}  // namespace orvel::test
