#include "Base/Log.h"
#include "BrowserCore/Text.h"
#include "BrowserCore/TrackingParameters.h"
#include "Models/BrowserStore.h"
#include "Models/BrowserTab.h"
#include "Support/ErrorPage.h"

// The tab as the navigation delegate of its view.
namespace orvel {

void BrowserTab::decidePolicyForAction(WebView&, const NavigationAction& action,
                                       PolicyHandler answer) {
  if (action.shouldPerformDownload) return answer(NavigationPolicy::Download);
  const auto store = store_.lock();
  const bool isNewTabClick =
      action.navigationType == NavigationType::LinkActivated &&
      (action.modifierFlags.command || action.buttonNumber == MouseButton::Middle);
  if (!store || !action.request || !isNewTabClick || profile->isPrivate)
    return answer(NavigationPolicy::Allow);
  const URL& address = action.request->url;
  store->openTab(TrackingParameters::stripped(address).value_or(address),
                 {.after = shared_from_this(), .select = action.modifierFlags.shift});
  answer(NavigationPolicy::Cancel);
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
  const auto store = store_.lock();
  const double zoom = store ? store->settings.zoom(view.url()) : 1.0;
  if (view.pageZoom() != zoom) view.setPageZoom(zoom);
  mediaFrames_.clear();
  if (isMuted.peek()) applyMute();
  if (store && store->hidingItemsTabID.peek() == id) store->endHidingItems();
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
  const auto store = store_.lock();
  const auto address = view.url();
  if (!store || !store->history || !address || profile->isPrivate) return;
  services_.scheduler.post([weak = store_, profileID = profile->id, address = *address,
                            shown = view.title().value_or(""), now = services_.scheduler.now()] {
    if (const auto live = weak.lock(); live && live->history)
      live->history->recordVisit(profileID, address, shown, now);
  });
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
  if (error.kind == LoadError::Kind::Cancelled || error.kind == LoadError::Kind::PolicyInterrupted)
    return;
  const auto address = error.failingURL ? error.failingURL : url.peek();
  const std::string label = logLabel(address);
  Log::navigation.error("Couldn't load {}: {} {}", Masked{label}, error.domain, error.code);
  showErrorPage(view, error, address);
}

void BrowserTab::webContentProcessDidTerminate(WebView& view) {
  constexpr Duration kCrashMemory = 10s;
  const std::string label = logLabel(url.peek());
  if (!view.isInWindow()) {
    Log::navigation.info("Page process ended off screen ({}): unloading the tab", Masked{label});
    if (!webView_.peek()) return;
    setSavedState(currentState());
    teardown();
    return;
  }
  const Date now = services_.scheduler.now();
  if (lastCrash_ && now - *lastCrash_ < kCrashMemory) {
    Log::navigation.error("Page keeps crashing ({}): showing the error page", Masked{label});
    showErrorPage(
        view, {.domain = "Orvel", .code = 1, .localizedDescription = "This page keeps crashing."},
        url.peek());
  } else {
    Log::navigation.error("Page crashed ({}): reloading", Masked{label});
    view.reload(ReloadSource::Cache);
  }
  lastCrash_ = now;
}

}  // namespace orvel
