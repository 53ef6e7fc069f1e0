#include "Models/Tab/BrowserTab.h"

#include "Base/Assert.h"
#include "Base/Texts.h"
#include "BrowserCore/Addresses/PinnedAddress.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "Support/Network/UserAgent.h"

namespace orvel {

TabRef BrowserTab::make(const Services& services, Values values) {
  requireMainThread();
  return TabRef(new BrowserTab(services, std::move(values)));
}

BrowserTab::BrowserTab(const Services& services, Values values)
    : id(values.id),
      profile(std::move(values.profile)),
      title(std::move(values.title)),
      url(std::move(values.url)),
      pinnedURL(std::move(values.pinnedURL)),
      panels(*this, services, applications_),
      permissions(*this),
      lastActiveAt(values.lastActiveAt),
      pageState(services.files.files(), services.paths.tabState(id), values.stateFile),
      services_(services),
      host_(std::move(values.host)),
      pendingConfiguration_(std::move(values.configuration)),
      icon_(services.favicons),
      applications_(*this, services) {
  if (values.schemeSource == SchemeSource::Supplied) suppliedAddress_ = url.peek();
}

BrowserTab::~BrowserTab() {
  // Nobody may ask a delegate that is gone.
  if (const auto& view = webView_.peek()) {
    view->setNavigationDelegate(nullptr);
    view->setUIDelegate(nullptr);
  }
}

std::shared_ptr<TabHost> BrowserTab::host() const {
  auto present = host_.lock();
  return present ? present : TabHost::nowhere();
}

// What the tab shows of itself

std::string BrowserTab::displayTitle() const {
  if (!title.get().empty()) return title;
  const std::optional<URL>& address = url;
  return address ? displayHost(*address) : _("New Tab");
}

bool BrowserTab::hasWanderedFromPin() const { return orvel::hasWanderedFromPin(pinnedURL, url); }

TabRecord BrowserTab::record() const {
  const auto bounded = [](const std::optional<URL>& address) {
    return address ? std::optional(boundedAddress(*address)) : std::nullopt;
  };
  return {.id = id,
          .title = title,
          .url = bounded(url),
          .pinnedURL = bounded(pinnedURL),
          .lastActiveAt = lastActiveAt};
}

// Page state

std::optional<InteractionState> BrowserTab::currentState() const {
  if (const auto& view = webView_.peek())
    if (auto state = view->interactionState(); state && PageState::isKept(*state)) return state;
  return pageState.saved();
}

void BrowserTab::hibernate() {
  pageState.set(currentState());
  teardown();
}

void BrowserTab::pageDidChange() {
  pageState.markStale();
  host()->scheduleSave();
}

// The web view

WebViewConfiguration BrowserTab::makeConfiguration(Profile& profile) {
  return {.websiteDataStore = profile.dataStore(),
          .applicationNameForUserAgent = UserAgent::safariSuffix(),
          .isElementFullscreenEnabled = true,
          .upgradesKnownHostsToHTTPS = true,
          .preferredHTTPSNavigationPolicy = HTTPSNavigationPolicy::AutomaticFallbackToHTTP,
          .isGlobalPrivacyControlEnabled = true};
}

std::shared_ptr<WebView> BrowserTab::webView() {
  requireMainThread();
  return untracked([this] {
    if (!webView_.peek() && !isDiscarded.peek()) makeWebView();
    return webView_.peek();
  });
}

WebViewConfiguration BrowserTab::prepareConfiguration() {
  std::optional<WebExtensionContext> context;
  if (!pendingConfiguration_ && !profile->isPrivate && url.peek())
    context = host()->extensionContext(*url.peek());
  extensionBaseURL_ = context ? std::optional(context->baseURL) : std::nullopt;
  contentController_ = nullptr;
  if (context && context->webViewConfiguration) return *context->webViewConfiguration;

  WebViewConfiguration configuration =
      pendingConfiguration_ ? *pendingConfiguration_ : makeConfiguration(*profile);
  contentController_ = host()->makeUserContentController();
  if (!contentController_) return configuration;
  configuration.userContentController = contentController_;
  // The controller outlives the tab: its handlers hold it weakly.
  contentController_->addScriptMessageHandler(
      "orvelMedia", ContentWorld::defaultClient(),
      [weak = weak_from_this()](const ScriptMessage& message) {
        if (const auto tab = weak.lock()) tab->mediaDidChange(message.frame);
      });
  contentController_->addScriptMessageHandler(
      "orvelHide", ContentWorld::hiddenItems(),
      [weak = weak_from_this()](const ScriptMessage& message) {
        if (const auto tab = weak.lock()) tab->itemWasHidden(message);
      });
  return configuration;
}

void BrowserTab::makeWebView() {
  const bool isNavigatedByEngine = pendingConfiguration_.has_value();
  const WebViewConfiguration configuration = prepareConfiguration();
  pendingConfiguration_.reset();
  const auto view = services_.engine.makeWebView(configuration);
  view->setNavigationDelegate(this);
  view->setUIDelegate(&panels);
  observe(*view);
  webView_ = view;
  if (!isNavigatedByEngine) restorePage(view);
}

void BrowserTab::observe(WebView& view) {
  using enum WebViewProperty;
  for (const auto property :
       {Title, WebViewProperty::URL, IsLoading, EstimatedProgress, CanGoBack, CanGoForward})
    observations_.push_back(view.observe(property, [weak = weak_from_this(), &view] {
      if (const auto tab = weak.lock()) tab->sync(view);
    }));
  observations_.push_back(view.observe(IsBlank, [weak = weak_from_this(), &view] {
    if (const auto tab = weak.lock()) tab->isBlank = view.isBlank();
  }));
  isBlank = view.isBlank();
  observations_.push_back(view.observe(Capture, [weak = weak_from_this(), &view] {
    if (const auto tab = weak.lock()) tab->permissions.follow(view);
  }));
  observations_.push_back(view.observe(IsResponsive, [weak = weak_from_this(), &view] {
    if (const auto tab = weak.lock()) tab->panels.followResponsiveness(view);
  }));
}

void BrowserTab::restorePage(const std::shared_ptr<WebView>& view) {
  host()->whenReadyToLoad(
      [weakTab = weak_from_this(), weak = std::weak_ptr(view), address = url.peek()] {
        const auto tab = weakTab.lock();
        const auto live = weak.lock();
        if (!tab || !live || tab->webView_.peek() != live) return;
        const auto state = tab->pageState.take(address);
        // Something newer has navigated the view while the action waited.
        if (live->url() || live->isLoading()) return;
        const bool isRestored = state && live->setInteractionState(*state);
        if (!isRestored && address) live->load(tab->requestFor(*address));
      });
}

void BrowserTab::teardown() {
  requireMainThread();
  const auto view = webView_.peek();
  if (!view) return;
  observations_.clear();
  host()->willTearDown(*this);
  panels.teardown();
  permissions.pageDidChange();
  view->stopLoading();
  view->pauseAllMediaPlayback();
  view->setNavigationDelegate(nullptr);
  view->setUIDelegate(nullptr);
  view->removeFromParent();
  webView_ = nullptr;
  contentController_ = nullptr;
  hasPage_ = false;
  mediaFrames_.clear();
  thumbnail = nullptr;
  isPlayingMedia = false;
  isLoading = false;
  progress = 0;
  canGoBack = false;
  canGoForward = false;
  // The view may be the one that is calling right now.
  services_.scheduler.post([view] {});
}

void BrowserTab::unload() {
  teardown();
  pageState.set(std::nullopt);
  if (pinnedURL.peek()) setAddress(pinnedURL.peek());
}

void BrowserTab::reopen(const URL& address) {
  teardown();
  pageState.set(std::nullopt);
  setAddress(address);
  webView();
  webViewRevision = webViewRevision.peek() + 1;
}

void BrowserTab::reopenExtensionPage() {
  if (!webView_.peek() || extensionBaseURL_) return;
  const auto address = url.peek();
  if (address && address->scheme() == "webkit-extension") reopen(*address);
}

}  // namespace orvel
