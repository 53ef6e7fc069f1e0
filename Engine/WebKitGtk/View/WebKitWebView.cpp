#include "Engine/WebKitGtk/View/WebKitWebView.h"

#include <fmt/format.h>

#include <utility>

#include "BrowserCore/Addresses/RestrictedPorts.h"
#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Data/WebKitDataStore.h"
#include "Engine/WebKitGtk/Policy/HTTPSFirst.h"
#include "Engine/WebKitGtk/Policy/LoadErrors.h"
#include "Engine/WebKitGtk/Policy/ReportedURL.h"
#include "Engine/WebKitGtk/Scripts/EngineScripts.h"
#include "Engine/WebKitGtk/Scripts/WebKitContentController.h"
#include "Engine/WebKitGtk/View/EmojiChooser.h"
#include "Engine/WebKitGtk/View/WebKitWindowOpener.h"
#include "Engine/WebKitGtk/WebKitEngine.h"

namespace orvel {

namespace {

GRef<::WebKitWebView> makeNative(WebKitWebContext* context,
                                 const WebViewConfiguration& configuration,
                                 WebKitUserContentManager* manager) {
  const auto settings = GRef<WebKitSettings>::adopt(webkit_settings_new());
  GObject* object = nullptr;
  if (const auto* opener = static_cast<WebKitWindowOpener*>(configuration.opener.get())) {
    // A related view has its opener's context and session, but neither its scripts nor its
    // settings.
    object = G_OBJECT(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener->view(),
                                   "user-content-manager", manager, "settings", settings.get(),
                                   nullptr));
  } else {
    auto* session = static_cast<WebKitDataStore&>(*configuration.websiteDataStore).session();
    object = G_OBJECT(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session",
                                   session, "user-content-manager", manager, "settings",
                                   settings.get(), nullptr));
  }
  return GRef<::WebKitWebView>::retain(WEBKIT_WEB_VIEW(object));
}

// The http address that `text`, one of https on its usual port, is the upgrade of; absent for any
// other.
std::optional<URL> plainForm(const char* text) {
  const auto url = reportedURL(text);
  if (!url || !url->hasScheme("https") || url->portText()) return std::nullopt;
  return URL::parse("http" + url->text().substr(url->scheme().size()));
}

// For tests on machines without camera and microphone.
gboolean usesMockCapture() {
#ifdef NDEBUG
  return FALSE;
#else
  return g_strcmp0(g_getenv("ORVEL_MOCK_CAPTURE"), "1") == 0;
#endif
}

void switchOff(WebKitSettings* settings, std::string_view feature) {
  auto* all = webkit_settings_get_all_features();
  for (gsize i = 0; i < webkit_feature_list_get_length(all); ++i)
    if (auto* one = webkit_feature_list_get(all, i); feature == webkit_feature_get_identifier(one))
      webkit_settings_set_feature_enabled(settings, one, FALSE);
  webkit_feature_list_unref(all);
}

}  // namespace

WebKitWebView::WebKitWebView(WebKitEngine& engine, WebKitWebContext* context,
                             const WebViewConfiguration& configuration)
    : engine_(engine),
      configuration_(configuration),
      answers_(engine.scheduler(), [this] { return !dialog_.expired(); }) {
  shareProcess();
  if (!configuration_.websiteDataStore)
    configuration_.websiteDataStore = engine.nonPersistentDataStore();
  if (!configuration_.userContentController)
    configuration_.userContentController = engine.makeUserContentController();
  if (configuration_.isGlobalPrivacyControlEnabled) controller().enablePrivacySignal();
  view_ = makeNative(context, configuration_, controller().manager());
  if (const auto* opener = static_cast<WebKitWindowOpener*>(configuration_.opener.get()))
    processUsers_ = opener->processUsers;
  const bool hasOwnProcess = !configuration_.opener;
  // Its opener may draw into a window without a load.
  isBlank_ = hasOwnProcess;
  // The other view was wanted for that alone.
  configuration_.opener = nullptr;
  configuration_.processSharedWith = nullptr;
  applySettings();
  installEmojiChooser(view_.get());
  // An empty script starts the page's process, which is up by the time that something is to load.
  if (hasOwnProcess)
    webkit_web_view_evaluate_javascript(view_.get(), "", 0, nullptr, nullptr, nullptr, nullptr,
                                        nullptr);
}

// As a window that the other view opened, but that its page knows nothing of it.
void WebKitWebView::shareProcess() {
  const auto* other = static_cast<WebKitWebView*>(configuration_.processSharedWith.get());
  if (!other || configuration_.opener) return;
  configuration_.opener =
      std::make_shared<WebKitWindowOpener>(other->native(), other->processUsers_);
  configuration_.websiteDataStore = other->configuration_.websiteDataStore;
}

WebKitWebView::~WebKitWebView() {
  engine_.httpsFirst().removeListener(this);
  controller().setNavigationReporter(nullptr);
  controller().setMediaReporter(nullptr);
  engine_.removeView(*this);
  g_signal_handlers_disconnect_by_data(webkit_web_view_get_back_forward_list(view_.get()), this);
  g_signal_handlers_disconnect_by_data(webkit_web_view_get_find_controller(view_.get()), this);
  g_signal_handlers_disconnect_by_data(view_.get(), this);
  answerClosing(true);
  removeFromParent();
  // The engine would keep the process of a closed page.
  if (processUsers_.use_count() == 1) webkit_web_view_terminate_web_process(view_.get());
}

WebKitContentController& WebKitWebView::controller() const {
  return static_cast<WebKitContentController&>(*configuration_.userContentController);
}

void WebKitWebView::applySettings() {
  auto* settings = webkit_web_view_get_settings(view_.get());
  webkit_settings_set_enable_fullscreen(settings, configuration_.isElementFullscreenEnabled);
  webkit_settings_set_enable_developer_extras(settings, TRUE);
  webkit_settings_set_enable_media_stream(settings, TRUE);
  // The delegate decides.
  webkit_settings_set_javascript_can_open_windows_automatically(settings, TRUE);
  webkit_settings_set_enable_mock_capture_devices(settings, usesMockCapture());
  webkit_settings_set_enable_javascript_markup(settings, configuration_.isPageJavaScriptEnabled);
  if (!configuration_.areHiddenTimersSlowed) switchOff(settings, "HiddenPageDOMTimerThrottling");
  if (configuration_.applicationNameForUserAgent.empty()) return;
  // The engine's own text up to where it names its version.
  std::string agent = webkit_settings_get_user_agent(settings);
  const std::string_view layoutEngine = "(KHTML, like Gecko)";
  if (const size_t at = agent.find(layoutEngine); at != std::string::npos)
    agent.resize(at + layoutEngine.size());
  agent += " " + configuration_.applicationNameForUserAgent;
  webkit_settings_set_user_agent(settings, agent.c_str());
}

void WebKitWebView::start() {
  engine_.addView(*this);
  connectGestures();
  connectLoading();
  connectPolicy();
  connectPanels();
  connectProcess();
  connectFind();
  connectMenu();
  countInputs();
  connectMedia();
  controller().setNavigationReporter([this](NavigationReport report) {
    classifier_.noteReport(std::move(report), engine_.scheduler().instant());
  });
  controller().setMediaReporter([this] { mediaChanged(); });
  if (configuration_.preferredHTTPSNavigationPolicy !=
      HTTPSNavigationPolicy::AutomaticFallbackToHTTP)
    return;
  controller().setEngineRules(engine_.httpsFirst().rules());
  engine_.httpsFirst().addListener(
      this, [this] { controller().setEngineRules(engine_.httpsFirst().rules()); });
}

// With these gestures on, each navigation takes a picture of the page, and the engine crashes when
// the view has never been on screen. A page that changes its address in a loop would have the
// interface draw without end: it has no gestures until it rests.
void WebKitWebView::connectGestures() {
  using Self = WebKitWebView;
  connect(
      "map", +[](GtkWidget*, gpointer self) { static_cast<Self*>(self)->updateGestures(); });
  connect(
      "unmap", +[](GtkWidget*, gpointer self) { static_cast<Self*>(self)->updateGestures(); });
  connect(
      "notify::uri", +[](::WebKitWebView*, GParamSpec*, gpointer data) {
        auto* self = static_cast<Self*>(data);
        ++self->addressChanges_;
        self->updateGestures();
        self->restTimer_ = self->engine_.scheduler().start(endOfChanges(self->weak_from_this()));
      });
}

void WebKitWebView::updateGestures() {
  constexpr int kMaxChanges = 5;
  const bool isOn =
      gtk_widget_get_mapped(GTK_WIDGET(view_.get())) && addressChanges_ <= kMaxChanges;
  webkit_settings_set_enable_back_forward_navigation_gestures(
      webkit_web_view_get_settings(view_.get()), isOn);
}

Task<> WebKitWebView::endOfChanges(std::weak_ptr<WebKitWebView> weak) {
  const SleepResult slept = co_await sleep(1s);
  const auto self = weak.lock();
  if (slept == SleepResult::Cancelled || !self) co_return;
  self->addressChanges_ = 0;
  self->updateGestures();
}

void WebKitWebView::connectLoading() {
  using Self = WebKitWebView;
  static constexpr std::pair<const char*, WebViewProperty> kMirrored[] = {
      {"notify::title", WebViewProperty::Title},
      {"notify::uri", WebViewProperty::URL},
      {"notify::is-loading", WebViewProperty::IsLoading},
      {"notify::estimated-load-progress", WebViewProperty::EstimatedProgress},
      {"notify::camera-capture-state", WebViewProperty::Capture},
      {"notify::microphone-capture-state", WebViewProperty::Capture}};
  for (const auto& [signal, property] : kMirrored) {
    connect(
        signal, +[](::WebKitWebView*, GParamSpec* spec, gpointer self) {
          for (const auto& [name, changed] : kMirrored)
            if (std::string_view(name).ends_with(spec->name))
              static_cast<Self*>(self)->notify(changed);
        });
  }
  g_signal_connect(webkit_web_view_get_back_forward_list(view_.get()), "changed",
                   G_CALLBACK(+[](WebKitBackForwardList*, gpointer, gpointer, gpointer self) {
                     static_cast<Self*>(self)->notify(WebViewProperty::CanGoBack);
                     static_cast<Self*>(self)->notify(WebViewProperty::CanGoForward);
                   }),
                   this);
  connect(
      "load-changed", +[](::WebKitWebView*, WebKitLoadEvent event, gpointer data) {
        static_cast<Self*>(data)->shared_from_this()->loadChanged(event);
      });
}

void WebKitWebView::loadChanged(WebKitLoadEvent event) {
  stoppedAddress_.reset();
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      phase_ = Phase::Started;
      isSubstitute_ = std::exchange(isSubstituteComing_, false);
      requestedURL_.reset();
      lateQuestion_.reset();
      isStopped_ = false;
      if (awaited_) awaited_->hasStarted = true;
      return awaitAnswer();
    case WEBKIT_LOAD_REDIRECTED:
      return awaitAnswer();
    case WEBKIT_LOAD_COMMITTED:
      phase_ = Phase::Committed;
      // A page that was kept in memory is not requested.
      if (!requestedURL_)
        if (const auto shown = nativeURL()) mainFrameRequests(*shown);
      committedURL_ = requestedURL_;
      isCommittedSubstitute_ = isSubstitute_;
      answers_.fail(PendingAnswers::EndsWith::Page);
      endFinding();
      setPlayingMedia({});
      endWaiting();
      hasShownPage_ = true;
      if (isBlank_) awaitDrawing();
      plainRequest_.reset();
      restoredAddress_.reset();
      undecided_.clear();
      allowedURL_.reset();
      lateQuestion_.reset();
      if (navigation_) navigation_->didCommit(*this);
      return;
    case WEBKIT_LOAD_FINISHED:
      endWaiting();
      // A failed load finishes too; it has been reported as failed.
      if (std::exchange(phase_, Phase::Ended) != Phase::Committed || isSubstitute_) return;
      if (navigation_) navigation_->didFinish(*this);
      return;
  }
}

void WebKitWebView::awaitAnswer() {
  if (awaited_)
    answerTimer_ = engine_.scheduler().start(endUnanswered(weak_from_this(), awaited_->timeout));
}

void WebKitWebView::endWaiting() {
  if (!awaited_ || awaited_->hasStarted) stopWaiting();
}

void WebKitWebView::stopWaiting() {
  awaited_.reset();
  answerTimer_.cancel();
  suppliedPlain_.reset();
}

Task<> WebKitWebView::endUnanswered(std::weak_ptr<WebKitWebView> weak, Duration after) {
  const SleepResult result = co_await sleep(after);
  const auto self = weak.lock();
  if (!self || result == SleepResult::Cancelled || !self->awaited_) co_return;
  const auto address = self->nativeURL();
  self->stopWaiting();
  self->stopNative();
  self->failed(timeoutError(address ? address->text().c_str() : nullptr));
}

void WebKitWebView::stopNative() {
  isStopped_ = phase_ == Phase::Started;
  webkit_web_view_stop_loading(view_.get());
  // A load whose decision is still to be asked for is forgotten by its page's process, and the
  // engine would show it as loading for ever.
  if (webkit_web_view_is_loading(view_.get()))
    if (const char* address = webkit_web_view_get_uri(view_.get())) stoppedAddress_ = address;
  notify(WebViewProperty::URL);
  notify(WebViewProperty::IsLoading);
}

void WebKitWebView::notify(WebViewProperty property) {
  const auto self = shared_from_this();
  std::vector<uint64_t> due;
  for (const auto& [id, observer] : observers_)
    if (observer.property == property) due.push_back(id);
  for (const uint64_t id : due)
    if (const auto observer = observers_.find(id); observer != observers_.end()) {
      const auto changed = observer->second.changed;
      changed();
    }
}

Observation WebKitWebView::observe(WebViewProperty property, std::function<void()> changed) {
  const uint64_t id = ++lastObserver_;
  observers_[id] = {property, std::move(changed)};
  return Observation([weak = weak_from_this(), id] {
    if (const auto self = weak.lock()) self->observers_.erase(id);
  });
}

FrameInfo WebKitWebView::mainFrame() const {
  const auto host = committedURL_ ? committedURL_->host() : std::nullopt;
  return {0, true, std::string(host.value_or(std::string_view()))};
}

// Loading

void WebKitWebView::noteProgramLoad(const char* address) {
  if (const auto url = reportedURL(address))
    classifier_.noteProgramLoad(url->text(), engine_.scheduler().instant());
}

void WebKitWebView::load(const URLRequest& request) {
  stoppedAddress_.reset();
  if (hasRestrictedPort(request.url)) {
    stopLoading();
    return refuseRestrictedPort(request.url);
  }
  waitingLoad_ = request.url;
  engine_.httpsFirst().whenReady([weak = weak_from_this(), request] {
    const auto self = weak.lock();
    if (!self || self->waitingLoad_ != request.url) return;
    self->waitingLoad_.reset();
    const auto native =
        GRef<WebKitURIRequest>::adopt(webkit_uri_request_new(request.url.text().c_str()));
    if (auto* headers = webkit_uri_request_get_http_headers(native.get()))
      for (const auto& [name, value] : request.headers)
        soup_message_headers_append(headers, name.c_str(), value.c_str());
    self->stopWaiting();
    self->awaited_ = Awaited{request.timeout};
    self->suppliedPlain_ = request.schemeSource == SchemeSource::Supplied
                               ? plainForm(webkit_uri_request_get_uri(native.get()))
                               : std::nullopt;
    self->navigate([view = self.get(), native] {
      // In the engine's own words: a bare host has got its slash.
      view->noteProgramLoad(webkit_uri_request_get_uri(native.get()));
      webkit_web_view_load_request(view->native(), native.get());
    });
  });
}

void WebKitWebView::loadHTMLString(const std::string& html, const std::optional<URL>& baseURL) {
  waitingLoad_.reset();
  const char* base = baseURL ? baseURL->text().c_str() : "about:blank";
  isSubstituteComing_ = true;
  webkit_web_view_load_alternate_html(view_.get(), html.c_str(), base, base);
}

void WebKitWebView::reload(ReloadSource source) {
  stoppedAddress_.reset();
  navigate([this, source] {
    noteProgramLoad(webkit_web_view_get_uri(view_.get()));
    if (source == ReloadSource::Origin)
      webkit_web_view_reload_bypass_cache(view_.get());
    else
      webkit_web_view_reload(view_.get());
  });
}

void WebKitWebView::stopLoading() {
  // The failure of an upgrade may be on its way already: it starts nothing any more.
  plainRequest_.reset();
  waitingLoad_.reset();
  restoredAddress_.reset();
  forgetNavigation();
  stopWaiting();
  stopNative();
}

void WebKitWebView::goTo(WebKitBackForwardListItem* item) {
  if (!item) return;
  navigate([this, held = GRef<WebKitBackForwardListItem>::retain(item)] {
    noteProgramLoad(webkit_back_forward_list_item_get_uri(held.get()));
    webkit_web_view_go_to_back_forward_list_item(view_.get(), held.get());
  });
}

void WebKitWebView::goBack() {
  goTo(webkit_back_forward_list_get_back_item(webkit_web_view_get_back_forward_list(view_.get())));
}

void WebKitWebView::goForward() {
  goTo(webkit_back_forward_list_get_forward_item(
      webkit_web_view_get_back_forward_list(view_.get())));
}

std::optional<InteractionState> WebKitWebView::interactionState() const {
  auto* list = webkit_web_view_get_back_forward_list(view_.get());
  auto* current = webkit_back_forward_list_get_current_item(list);
  const char* uri = current ? webkit_back_forward_list_item_get_uri(current) : nullptr;
  const auto address = uri ? URL::parse(uri) : std::nullopt;
  if (!address) return std::nullopt;
  auto* state = webkit_web_view_get_session_state(view_.get());
  GBytes* bytes = webkit_web_view_session_state_serialize(state);
  webkit_web_view_session_state_unref(state);
  gsize size = 0;
  const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
  InteractionState result{std::string(data, size), *address};
  g_bytes_unref(bytes);
  return result;
}

bool WebKitWebView::setInteractionState(const std::string& text) {
  GBytes* bytes = g_bytes_new(text.data(), text.size());
  auto* state = webkit_web_view_session_state_new(bytes);
  g_bytes_unref(bytes);
  if (!state) return false;
  webkit_web_view_restore_session_state(view_.get(), state);
  webkit_web_view_session_state_unref(state);
  auto* list = webkit_web_view_get_back_forward_list(view_.get());
  auto* current = webkit_back_forward_list_get_current_item(list);
  if (!current) return false;
  const auto item = GRef<WebKitBackForwardListItem>::retain(current);
  restoredAddress_ = webkit_back_forward_list_item_get_uri(current);
  engine_.httpsFirst().whenReady([weak = weak_from_this(), item] {
    // The list alone is back; this loads its page and scrolls it, unless that was stopped.
    const auto self = weak.lock();
    if (!self || self->restoredAddress_ != webkit_back_forward_list_item_get_uri(item.get()))
      return;
    self->goTo(item.get());
  });
  return true;
}

// Mirrors

std::optional<std::string> WebKitWebView::title() const {
  const char* title = webkit_web_view_get_title(view_.get());
  if (!title) return std::nullopt;
  return title;
}

std::optional<URL> WebKitWebView::nativeURL() const {
  return reportedURL(webkit_web_view_get_uri(view_.get()));
}

std::optional<URL> WebKitWebView::url() const {
  if (waitingLoad_) return waitingLoad_;
  // A redirect to another application's address is no address of a page.
  if (auto shown = nativeURL()) return engine_.canLoad(*shown) ? shown : committedURL_;
  // Right after a restore the view itself knows no address yet.
  auto* list = webkit_web_view_get_back_forward_list(view_.get());
  auto* current = webkit_back_forward_list_get_current_item(list);
  const char* restored = current ? webkit_back_forward_list_item_get_uri(current) : nullptr;
  return reportedURL(restored);
}

std::optional<std::string> WebKitWebView::committedOrigin() const {
  if (!committedURL_ || isCommittedSubstitute_) return std::nullopt;
  const auto host = committedURL_->host();
  if (!host || host->empty() || committedURL_->hasScheme("file")) return std::nullopt;
  const auto port = committedURL_->portText();
  return fmt::format("{}://{}{}{}", text::lowerASCII(committedURL_->scheme()), *host,
                     port ? ":" : "", port.value_or(""));
}

bool WebKitWebView::isLoading() const {
  if (stoppedAddress_) return false;
  return waitingLoad_ || webkit_web_view_is_loading(view_.get());
}

double WebKitWebView::estimatedProgress() const {
  return webkit_web_view_get_estimated_load_progress(view_.get());
}

bool WebKitWebView::canGoBack() const { return webkit_web_view_can_go_back(view_.get()); }
bool WebKitWebView::canGoForward() const { return webkit_web_view_can_go_forward(view_.get()); }

}  // namespace orvel
