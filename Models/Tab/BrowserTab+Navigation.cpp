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

bool isLinkClick(const NavigationAction& action) {
  return action.navigationType == NavigationType::LinkActivated;
}

bool isNewTabClick(const NavigationAction& action) {
  return action.modifierFlags.control || action.buttonNumber == MouseButton::Middle;
}

bool isMainFrame(const std::optional<FrameInfo>& frame) { return frame && frame->isMainFrame; }

URL cleaned(const URL& address) { return TrackingParameters::stripped(address).value_or(address); }

}  // namespace

void BrowserTab::decidePolicyForAction(WebView& view, const NavigationAction& action,
                                       PolicyHandler answer) {
  if (action.shouldPerformDownload) return answer(NavigationPolicy::Download);
  if (!action.request) return answer(NavigationPolicy::Allow);
  const URL& address = action.request->url;
  if (!OtherApplications::isHandledInside(address)) {
    answer(NavigationPolicy::Cancel);
    return applications_.open(view, action);
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

void BrowserTab::decidePolicyForResponse(WebView&, const NavigationResponse& response,
                                         PolicyHandler answer) {
  const bool isAttachment =
      text::lowerASCII(response.contentDisposition.value_or("")).starts_with("attachment");
  const bool isDownload = response.isForMainFrame && (!response.canShowMIMEType || isAttachment);
  answer(isDownload ? NavigationPolicy::Download : NavigationPolicy::Allow);
}

void BrowserTab::didBecomeDownload(WebView&, std::shared_ptr<Download> download) {
  download->setDelegate(services_.downloads);
  if (!hasPage_) host()->didDownloadFirstPage(*this);
}

void BrowserTab::didCommit(WebView& view) {
  hasPage_ = true;
  const double zoom = host()->zoom(view.url());
  if (view.pageZoom() != zoom) view.setPageZoom(zoom);
  pageZoom = zoom;
  pageDidChange();
  visit_.reset();
  suppliedAddress_.reset();
  panels.pageDidChange();
  permissions.pageDidChange();
  mediaFrames_.clear();
  if (isMuted.peek()) applyMute();
  host()->didCommit(*this);
  applyHiddenItems(view);
}

void BrowserTab::didFinish(WebView& view) {
  lastStrippedURL_.reset();
  sync(view);
  applyHiddenItems(view);
  visit_.record(view);
  // A page that stands in for another has no icon.
  if (view.committedOrigin())
    services_.scheduler.start(TabIcon::load(weak_from_this(), webView_.peek(), services_.favicons))
        .detach();
}

void BrowserTab::didReceiveAuthenticationChallenge(
    WebView& view, const AuthenticationChallenge& challenge,
    std::function<void(std::optional<Credential>)> answer) {
  panels.signIn(view, challenge, std::move(answer));
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
  panels.stay();
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
  const std::string label = logLabel(url.peek());
  if (!view.isInWindow()) {
    Log::navigation.info("Page process ended off screen ({}): unloading the tab", Masked{label});
    if (!webView_.peek()) return;
    hibernate();
    return;
  }
  if (crashes_.isRepeated(services_.scheduler.now())) {
    Log::navigation.error("Page keeps crashing ({}): showing the error page", Masked{label});
    showErrorPage(
        view,
        {.domain = "Orvel", .code = 1, .localizedDescription = _("This page keeps crashing.")},
        url.peek());
  } else {
    Log::navigation.error("Page crashed ({}): reloading", Masked{label});
    view.reload(ReloadSource::Cache);
  }
}

}  // namespace orvel
