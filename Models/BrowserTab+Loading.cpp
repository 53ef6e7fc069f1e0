#include "Base/Assert.h"
#include "Models/BrowserStore.h"
#include "Models/BrowserTab.h"

// What the tab asks of its view and what it mirrors of it.
namespace orvel {

void BrowserTab::load(const URL& address) {
  requireMainThread();
  setAddress(address);
  if (const auto store = store_.lock()) store->scheduleSave();
  if (const auto& view = webView_.peek()) {
    view->load({.url = address});
    return;
  }
  setSavedState(std::nullopt);
  webView();
}

void BrowserTab::reload(ReloadSource source) {
  if (isDiscarded.peek()) return;
  if (const auto& view = webView_.peek())
    view->reload(source);
  else
    webView();
}

void BrowserTab::goBack() {
  if (const auto& view = webView_.peek()) view->goBack();
}

void BrowserTab::goForward() {
  if (const auto& view = webView_.peek()) view->goForward();
}

void BrowserTab::stopLoading() {
  if (const auto& view = webView_.peek()) view->stopLoading();
}

// Mirroring

void BrowserTab::sync(const WebView& view) {
  requireMainThread();
  const auto store = store_.lock();
  if (const auto shown = view.title(); shown && !shown->empty() && title.set(*shown)) {
    if (store) store->scheduleSave();
    propertiesDidChange(TabProperties::Title);
  }
  if (const auto shown = view.url(); shown && shown != url.peek()) {
    setAddress(shown);
    if (store) store->scheduleSave();
    propertiesDidChange(TabProperties::URL);
  }
  isLoading = view.isLoading();
  progress = view.estimatedProgress();
  canGoBack = view.canGoBack();
  canGoForward = view.canGoForward();
}

void BrowserTab::setAddress(const std::optional<URL>& address) {
  const auto host = [](const std::optional<URL>& of) {
    return of ? of->host() : std::optional<std::string_view>();
  };
  if (host(address) != host(url.peek())) setFavicon(cachedFavicon(address));
  url = address;
}

void BrowserTab::propertiesDidChange(TabProperties properties) {
  const auto store = store_.lock();
  if (store && !profile->isPrivate)
    store->extensions.controller->didChangeTabProperties(properties, *this);
}

// Pictures, finding, printing

void BrowserTab::captureThumbnail() {
  constexpr int kWidth = 360;
  const auto& view = webView_.peek();
  if (!view || !view->isInWindow()) return;
  view->takeSnapshot({.width = kWidth}, [weak = weak_from_this()](ImageRef image) {
    if (const auto tab = weak.lock(); tab && image) tab->thumbnail = std::move(image);
  });
}

static Task<ImageRef> takeScreenshot(std::shared_ptr<WebView> view, std::optional<PageRect> rect) {
  if (!view || !view->isInWindow()) co_return nullptr;
  auto [future, resolve] = makeFuture<ImageRef>();
  view->takeSnapshot({.rect = rect}, resolve);
  ImageRef image = co_await std::move(future);
  co_return image;
}

Task<ImageRef> BrowserTab::screenshot(std::optional<PageRect> rect) {
  return takeScreenshot(webView_.peek(), rect);
}

static Task<bool> findIn(std::shared_ptr<WebView> view, std::string text, bool isBackwards) {
  if (!view) co_return false;
  auto [future, resolve] = makeFuture<bool>();
  view->find(text, {.backwards = isBackwards, .isCaseSensitive = false, .wraps = true}, resolve);
  const bool isFound = co_await std::move(future);
  co_return isFound;
}

Task<bool> BrowserTab::find(std::string text, FindDirection direction) {
  return findIn(webView_.peek(), std::move(text), direction == FindDirection::Backwards);
}

void BrowserTab::printPage() {
  const auto& view = webView_.peek();
  if (view && view->isInWindow()) view->print();
}

// Media and hidden items: later features plug in here.

void BrowserTab::toggleMute() {}
static Task<> nothing() { co_return; }
Task<> BrowserTab::refreshMediaState() { return nothing(); }
void BrowserTab::mediaDidChange(const FrameInfo&) {}
void BrowserTab::enterPictureInPicture() {}
void BrowserTab::leavePictureInPicture() {}
void BrowserTab::applyMute() {}
void BrowserTab::applyHiddenItems(WebView&) {}
void BrowserTab::itemWasHidden(const ScriptMessage&) {}
void BrowserTab::loadFavicon(WebView&) {}

}  // namespace orvel
