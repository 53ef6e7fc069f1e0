#include <algorithm>
#include <cmath>

#include "Base/Assert.h"
#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Tab/BrowserTab.h"

// What the tab asks of its view and what it mirrors of it.
namespace orvel {

void BrowserTab::load(const URL& address, SchemeSource scheme) {
  requireMainThread();
  suppliedAddress_ = scheme == SchemeSource::Supplied ? std::optional(address) : std::nullopt;
  setAddress(address);
  host()->scheduleSave();
  if (const auto& view = webView_.peek()) {
    panels.leave();
    view->load(requestFor(address));
    return;
  }
  pageState.set(std::nullopt);
  webView();
}

URLRequest BrowserTab::requestFor(const URL& address) const {
  return {
      .url = address,
      .schemeSource = address == suppliedAddress_ ? SchemeSource::Supplied : SchemeSource::Given};
}

void BrowserTab::reload(ReloadSource source) {
  if (isDiscarded.peek()) return;
  const auto view = webView_.peek();
  if (!view) {
    webView();
    return;
  }
  panels.leave();
  view->reload(source);
}

void BrowserTab::goBack() {
  const auto view = webView_.peek();
  if (!view || !view->canGoBack()) return;
  panels.leave();
  view->goBack();
}

void BrowserTab::goForward() {
  const auto view = webView_.peek();
  if (!view || !view->canGoForward()) return;
  panels.leave();
  view->goForward();
}

void BrowserTab::stopLoading() {
  if (const auto& view = webView_.peek()) view->stopLoading();
}

// Mirroring

void BrowserTab::sync(const WebView& view) {
  requireMainThread();
  // Pages decide how long their titles get.
  constexpr size_t kMaxTitle = 4096;
  const auto shownTitle = text::prefix(view.title().value_or(""), kMaxTitle);
  if (!shownTitle.empty() && title.set(shownTitle)) {
    host()->scheduleSave();
    host()->propertiesDidChange(*this, TabProperties::Title);
  }
  visit_.name(view);
  if (const auto address = view.url()) {
    if (const URL shown = boundedAddress(*address); shown != url.peek()) {
      setAddress(shown);
      // A step within the page.
      if (!view.isLoading()) panels.stay();
      pageDidChange();
      host()->propertiesDidChange(*this, TabProperties::URL);
    }
  }
  isLoading = view.isLoading();
  progress = view.estimatedProgress();
  canGoBack = view.canGoBack();
  canGoForward = view.canGoForward();
}

void BrowserTab::setAddress(const std::optional<URL>& address) {
  const auto hostOf = [](const std::optional<URL>& of) {
    return of ? of->host() : std::optional<std::string_view>();
  };
  if (hostOf(address) != hostOf(url.peek())) icon_.follow(address);
  url = address;
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

void BrowserTab::endFind() {
  if (const auto& view = webView_.peek()) view->endFind();
}

void BrowserTab::printPage() {
  const auto& view = webView_.peek();
  if (view && view->isInWindow()) view->print();
}

void BrowserTab::toggleInspector() {
  const auto& view = webView_.peek();
  if (!view) return;
  if (view->isInspectorOpen())
    view->closeInspector();
  else
    view->openInspector();
}

// Files

namespace {

void tellOfFailure(Dialogs& dialogs, DesktopWindow* parent, const char* message,
                   const std::string& error) {
  dialogs.showAlert(parent,
                    {.messageText = message, .informativeText = error, .buttons = {_("OK")}},
                    [](const AlertAnswer&) {});
}

}  // namespace

void BrowserTab::exportPDF() {
  saveTo({&WebView::createPDF, ".pdf", _("Couldn't export the page as PDF")});
}

void BrowserTab::savePage() {
  saveTo({&WebView::createArchive, ".mhtml", _("The page couldn’t be saved")});
}

void BrowserTab::saveTo(const FileForm& form) {
  const auto& view = webView_.peek();
  if (!view || !view->isInWindow()) return;
  std::string name = displayTitle();
  std::ranges::replace(name, '/', '-');
  services_.desktop.dialogs.showSavePanel(
      host()->window(), {.proposedName = name + form.suffix},
      [weak = weak_from_this(), form](const std::optional<std::filesystem::path>& file) {
        if (const auto tab = weak.lock(); tab && file) tab->write(form, *file);
      });
}

void BrowserTab::write(const FileForm& form, const std::filesystem::path& file) {
  const auto& view = webView_.peek();
  if (!view) return;
  ((*view).*form.create)([weak = weak_from_this(), form, file](PageFile result) {
    const auto tab = weak.lock();
    if (!tab) return;
    auto& dialogs = tab->services_.desktop.dialogs;
    if (!result) return tellOfFailure(dialogs, tab->host()->window(), form.failure, result.error());
    const auto written = std::make_shared<Result<void, std::string>>();
    tab->services_.scheduler.runInBackground(
        [written, file, data = *std::move(result), &files = tab->services_.files.files()] {
          *written = files.writeForUser(file, data);
        },
        [written, weak, form, &dialogs] {
          const auto live = weak.lock();
          if (!*written)
            tellOfFailure(dialogs, live ? live->host()->window() : nullptr, form.failure,
                          written->error());
        },
        WorkPriority::UserInitiated);
  });
}

// Zoom

void BrowserTab::setZoom(double zoom) {
  if (const auto& view = webView_.peek()) view->setPageZoom(zoom);
  pageZoom = zoom;
  host()->didZoom(*this, zoom);
}

void BrowserTab::zoom(ZoomStep step) {
  constexpr double kStep = 0.1;
  constexpr double kLeast = 0.5;
  constexpr double kGreatest = 3.0;
  const auto& view = webView_.peek();
  if (!view) return;
  const double wanted = view->pageZoom() + (step == ZoomStep::In ? kStep : -kStep);
  setZoom(std::clamp(wanted, kLeast, kGreatest));
}

// Media

void BrowserTab::toggleMute() {
  isMuted = !isMuted.peek();
  applyMute();
}

void BrowserTab::applyMute() {
  if (const auto& view = webView_.peek()) view->setMuted(isMuted.peek());
}

// The rest of media and hidden items: empty until these are built

static Task<> nothing() { co_return; }
Task<> BrowserTab::refreshMediaState() { return nothing(); }
void BrowserTab::mediaDidChange(const FrameInfo&) {}
void BrowserTab::enterPictureInPicture() {}
void BrowserTab::leavePictureInPicture() {}
void BrowserTab::applyHiddenItems(WebView&) {}
void BrowserTab::itemWasHidden(const ScriptMessage&) {}

}  // namespace orvel
