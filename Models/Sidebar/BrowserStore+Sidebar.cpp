#include "Base/Assert.h"
#include "Models/Store/BrowserStore.h"

// The sidebar, the window's frame and the keyboard focus.
namespace orvel {

namespace {

constexpr WindowButton kWindowButtons[] = {WindowButton::Close, WindowButton::Minimize,
                                           WindowButton::Maximize};
constexpr Duration kFade = 180ms;

}  // namespace

void BrowserStore::toggleSidebar() {
  requireMainThread();
  const bool isPeeking = !isSidebarVisible.peek() && isSidebarPeeking.peek();
  if (sidebarDocksFromPeek.set(isPeeking)) {
    // The interface learns where the sidebar starts from before it moves.
    later([](BrowserStore& store) { store.toggleSidebar(); });
    return;
  }
  animate(
      Spring::quick,
      [this] {
        isSidebarVisible = !isSidebarVisible.peek();
        isSidebarPeeking = false;
      },
      [weak = weak_from_this()] {
        if (const auto store = weak.lock()) store->sidebarDocksFromPeek = false;
      });
  updateWindowChrome(ChromeMotion::Animated);
  scheduleSave();
}

void BrowserStore::setSidebarPeeking(bool wanted) {
  // A report that no peek is wanted leaves a coming one alone.
  if (!wanted && !isSidebarPeeking.peek()) return;
  peekTask_.cancel();
  if (isSidebarVisible.peek() || wanted == isSidebarPeeking.peek()) return;
  peekTask_ = services_.scheduler.start(peekSidebar(weak_from_this(), wanted));
}

Task<> BrowserStore::peekSidebar(std::weak_ptr<BrowserStore> weak, bool wanted) {
  constexpr Duration kBeforeShowing = 120ms;
  constexpr Duration kBeforeHiding = 280ms;
  const SleepResult result = co_await sleep(wanted ? kBeforeShowing : kBeforeHiding);
  const auto store = weak.lock();
  if (!store || result == SleepResult::Cancelled || store->isSidebarVisible.peek()) co_return;
  const bool wasCancelled = co_await isCancelled();
  if (wasCancelled) co_return;
  store->animate(Spring::quick, [&] { store->isSidebarPeeking = wanted; });
  store->updateWindowChrome(ChromeMotion::Animated);
}

void BrowserStore::setSidebarWidth(double width) {
  if (sidebarWidth.set(width)) scheduleSave();
}

bool BrowserStore::areWindowButtonsHidden() const {
  return !isSidebarVisible.peek() && !isSidebarPeeking.peek();
}

void BrowserStore::updateWindowChrome(ChromeMotion motion) {
  if (!window) return;
  const bool isHidden = areWindowButtonsHidden();
  for (const WindowButton button : kWindowButtons) {
    if (!isHidden) window->setButtonHidden(button, false);
    window->setButtonAlpha(button, isHidden ? 0 : 1,
                           motion == ChromeMotion::Animated ? inSeconds(kFade) : 0);
    if (isHidden && motion == ChromeMotion::AtOnce) window->setButtonHidden(button, true);
  }
  if (isHidden && motion == ChromeMotion::Animated)
    services_.scheduler.start(hideWindowButtons(weak_from_this())).detach();
}

Task<> BrowserStore::hideWindowButtons(std::weak_ptr<BrowserStore> weak) {
  co_await sleep(kFade);
  const auto store = weak.lock();
  if (!store || !store->window || !store->areWindowButtonsHidden()) co_return;
  for (const WindowButton button : kWindowButtons) store->window->setButtonHidden(button, true);
}

void BrowserStore::updateWindowAppearance() {
  if (!window) return;
  const auto wanted = [this] {
    if (previewAppearance.peek()) return *previewAppearance.peek();
    const auto space = untracked([this] { return spaceWithID(activeSpaceID()); });
    return space ? space->appearance.peek() : Space::Appearance::Auto;
  };
  const WindowAppearance appearance = [&] {
    switch (wanted()) {
      case Space::Appearance::Auto:
        return WindowAppearance::Auto;
      case Space::Appearance::Light:
        return WindowAppearance::Light;
      case Space::Appearance::Dark:
        return WindowAppearance::Dark;
    }
    return WindowAppearance::Auto;
  }();
  if (window->appearance() != appearance) window->setAppearance(appearance);
}

void BrowserStore::showCommandBar(CommandBarMode mode) {
  if (window) window->present();
  animate(Spring::entry, [&] { commandBar = mode; });
}

void BrowserStore::dismissCommandBar() {
  animate(Spring::quick, [this] { commandBar = std::nullopt; });
  later([](BrowserStore& store) { store.focusWebView(); });
}

void BrowserStore::focusWebView() {
  services_.scheduler.post([weak = weak_from_this()] {
    if (const auto store = weak.lock()) store->focusWebViewNow();
  });
}

void BrowserStore::focusWebViewNow() {
  if (window && window->isTextEditorFocused()) return;
  const TabRef selected = activeSpace()->selectedTab();
  if (!selected) return;
  if (selected->questions.current.peek())
    selected->questions.calls = selected->questions.calls.peek() + 1;
  else if (const auto view = selected->liveWebView())
    view->focus();
}

}  // namespace orvel
