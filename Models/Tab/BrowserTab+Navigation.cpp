#include <algorithm>

#include "Base/Log.h"
#include "Base/Texts.h"
#include "BrowserCore/Addresses/TrackingParameters.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Tab/BrowserTab.h"
#include "Support/Network/ErrorPage.h"

// The tab as the navigation delegate of its view.
namespace orvel {

namespace {

// Any other scheme belongs to another application.
bool isHandledInside(const URL& address) {
  constexpr std::string_view kSchemes[] = {"http", "https", "about",      "blob",
                                           "data", "file",  "javascript", "webkit-extension"};
  return std::ranges::any_of(kSchemes,
                             [&](std::string_view scheme) { return address.hasScheme(scheme); });
}

bool isLinkClick(const NavigationAction& action) {
  return action.navigationType == NavigationType::LinkActivated;
}

bool isNewTabClick(const NavigationAction& action) {
  return action.modifierFlags.command || action.buttonNumber == MouseButton::Middle;
}

bool isMainFrame(const std::optional<FrameInfo>& frame) { return frame && frame->isMainFrame; }

URL cleaned(const URL& address) { return TrackingParameters::stripped(address).value_or(address); }

}  // namespace

void BrowserTab::decidePolicyForAction(WebView& view, const NavigationAction& action,
                                       PolicyHandler answer) {
  if (action.shouldPerformDownload) return answer(NavigationPolicy::Download);
  if (!action.request) return answer(NavigationPolicy::Allow);
  const URL& address = action.request->url;
  if (!isHandledInside(address)) {
    answer(NavigationPolicy::Cancel);
    return openInAnotherApplication(view, action);
  }
  if (isMainFrame(action.targetFrame)) {
    if (const auto instead = insteadOf(view, action)) {
      answer(NavigationPolicy::Cancel);
      return instead();
    }
    if (contentController_) host()->willNavigate(*contentController_, address);
  }
  if (!isLinkClick(action) || !isNewTabClick(action) || profile->isPrivate)
    return answer(NavigationPolicy::Allow);
  using enum TabHost::Selection;
  host()->openLink(cleaned(address), *this, action.modifierFlags.shift ? Selects : StaysBehind);
  answer(NavigationPolicy::Cancel);
}

std::function<void()> BrowserTab::insteadOf(WebView& view, const NavigationAction& action) {
  const URL& address = action.request->url;
  // A page of an extension lives in a view made for that extension, and nowhere else.
  const auto context = host()->extensionContext(address);
  const auto base = context ? std::optional(context->baseURL) : std::nullopt;
  if (!base && address.scheme() == "webkit-extension") return [] {};
  if (base != extensionBaseURL_) {
    if (profile->isPrivate) return [] {};
    // On a later turn: the view that asks is the one that goes.
    return [this, address] {
      services_.scheduler.post([weak = weak_from_this(), address] {
        if (const auto tab = weak.lock()) tab->reopen(address);
      });
    };
  }

  const bool isLink = isLinkClick(action);
  if (isNewTabClick(action)) return {};
  if (isLink && opensInPeek(view, action))
    return [this, address] { host()->openPeek(cleaned(address), *this); };

  const bool isStripped = isLink || action.navigationType == NavigationType::Other;
  if (!isStripped || action.request->method != "GET") return {};
  const auto clean = TrackingParameters::stripped(address);
  // A site that puts a parameter back by redirecting gets its way, or it would do so for ever.
  if (!clean || (!isLink && clean == lastStrippedURL_)) return {};
  lastStrippedURL_ = clean;
  return [&view, address = *clean] { view.load({.url = address}); };
}

bool BrowserTab::opensInPeek(const WebView& view, const NavigationAction& action) const {
  if (!host()->canPeek(*this)) return false;
  if (action.modifierFlags.shift) return true;
  if (!host()->peeksLinks(*this)) return false;
  const auto present = view.url();
  return siteKey(action.request->url) != (present ? siteKey(*present) : std::nullopt);
}

void BrowserTab::openInAnotherApplication(const WebView& view, const NavigationAction& action) {
  const URL& address = action.request->url;
  if (isLinkClick(action)) {
    if (isMainFrame(action.sourceFrame)) services_.desktop.workspace.open(address);
  } else if (!action.targetFrame || action.targetFrame->isMainFrame) {
    confirmOpeningApp(view, address);
  }
}

bool BrowserTab::handOver(const WebView& view, const NavigationAction& action) {
  if (!action.request || isHandledInside(action.request->url)) return false;
  confirmOpeningApp(view, action.request->url);
  return true;
}

void BrowserTab::confirmOpeningApp(const WebView& view, const URL& address) {
  const auto application = services_.desktop.workspace.applicationToOpen(address);
  // A script may ask again and again: one question at a time.
  if (!application || !view.isInWindow() || isConfirmingApp_) return;
  isConfirmingApp_ = true;
  const auto& shown = url.peek();
  services_.desktop.dialogs.showAlert(
      host()->window(),
      {.messageText =
           filled(_("Open “{application}”?"), {{"application", application->displayName}}),
       .informativeText = filled(_("{site} wants to open this application."),
                                 {{"site", shown ? displayHost(*shown) : _("This page")}}),
       .buttons = {_("Open"), _("Cancel")}},
      [weak = weak_from_this(), &workspace = services_.desktop.workspace,
       address](const AlertAnswer& given) {
        if (const auto tab = weak.lock()) tab->isConfirmingApp_ = false;
        if (given.isFirstButton()) workspace.open(address);
      });
}

void BrowserTab::decidePolicyForResponse(WebView&, const NavigationResponse& response,
                                         PolicyHandler answer) {
  const bool isAttachment =
      text::lowerASCII(response.contentDisposition.value_or("")).starts_with("attachment");
  const bool isDownload = response.isForMainFrame && (!response.canShowMIMEType || isAttachment);
  answer(isDownload ? NavigationPolicy::Download : NavigationPolicy::Allow);
}

void BrowserTab::didBecomeDownload(WebView&, std::shared_ptr<Download> download) {
  download->setDelegate(services_.downloads);
}

void BrowserTab::didCommit(WebView& view) {
  const double zoom = host()->zoom(view.url());
  if (view.pageZoom() != zoom) view.setPageZoom(zoom);
  pageDidChange();
  namelessVisit_.reset();
  suppliedAddress_.reset();
  scriptDialogs_.pageDidChange();
  mediaFrames_.clear();
  if (isMuted.peek()) applyMute();
  host()->didCommit(*this);
  applyHiddenItems(view);
}

void BrowserTab::didFinish(WebView& view) {
  lastStrippedURL_.reset();
  sync(view);
  applyHiddenItems(view);
  recordVisit(view);
  loadFavicon(view);
}

void BrowserTab::recordVisit(const WebView& view) {
  const auto address = view.url();
  if (!address) return;
  const auto shown = view.title().value_or("");
  if (shown.empty()) namelessVisit_ = address;
  host()->recordVisit(*this, *address, shown);
}

void BrowserTab::nameVisit(const WebView& view) {
  const auto shown = view.title().value_or("");
  if (!namelessVisit_ || shown.empty()) return;
  const URL address = *std::exchange(namelessVisit_, std::nullopt);
  if (view.url() == address) host()->nameVisit(*this, address, shown);
}

// Failures

std::string BrowserTab::logLabel(const std::optional<URL>& address) const {
  if (profile->isPrivate) return "private window";
  const auto host = address ? address->host() : std::nullopt;
  return std::string(host.value_or("no host"));
}

void BrowserTab::showErrorPage(WebView& view, const LoadError& error,
                               const std::optional<URL>& address) {
  view.loadHTMLString(ErrorPage::html(error, address), address);
}

void BrowserTab::didFailProvisionalNavigation(WebView& view, const LoadError& error) {
  sync(view);
  scriptDialogs_.stay();
  if (error.kind == LoadError::Kind::Cancelled || error.kind == LoadError::Kind::PolicyInterrupted)
    return;
  const auto address = error.failingURL ? error.failingURL : url.peek();
  const std::string label = logLabel(address);
  Log::navigation.error("Couldn't load {}: {} {}", Masked{label}, error.domain, error.code);
  showErrorPage(view, error, address);
}

// What has come of the page stays as it is.
void BrowserTab::didFail(WebView& view, const LoadError&) { sync(view); }

void BrowserTab::webContentProcessDidTerminate(WebView& view) {
  constexpr Duration kCrashMemory = 10s;
  const std::string label = logLabel(url.peek());
  if (!view.isInWindow()) {
    Log::navigation.info("Page process ended off screen ({}): unloading the tab", Masked{label});
    if (!webView_.peek()) return;
    hibernate();
    return;
  }
  const Date now = services_.scheduler.now();
  if (lastCrash_ && now - *lastCrash_ < kCrashMemory) {
    Log::navigation.error("Page keeps crashing ({}): showing the error page", Masked{label});
    showErrorPage(
        view,
        {.domain = "Orvel", .code = 1, .localizedDescription = _("This page keeps crashing.")},
        url.peek());
  } else {
    Log::navigation.error("Page crashed ({}): reloading", Masked{label});
    view.reload(ReloadSource::Cache);
  }
  lastCrash_ = now;
}

}  // namespace orvel
