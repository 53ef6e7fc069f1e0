#include "Models/Windows/WindowChrome.h"

#include "Base/Assert.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

constexpr WindowButton kWindowButtons[] = {WindowButton::Close, WindowButton::Minimize,
                                           WindowButton::Zoom};
constexpr Duration kFade = 180ms;

}  // namespace

void WindowChrome::restoreSidebar(bool isVisible, double width) {
  isSidebarVisible = isVisible;
  sidebarWidth = width;
}

void WindowChrome::toggleSidebar() {
  requireMainThread();
  const bool isPeeking = !isSidebarVisible.peek() && isSidebarPeeking.peek();
  if (sidebarDocksFromPeek.set(isPeeking)) {
    // The interface learns where the sidebar starts from before it moves.
    store_.later([this] { toggleSidebar(); });
    return;
  }
  store_.animate(
      Spring::quick,
      [this] {
        isSidebarVisible = !isSidebarVisible.peek();
        isSidebarPeeking = false;
      },
      [this] { sidebarDocksFromPeek = false; });
  updateWindowChrome(Motion::Animated);
  store_.scheduleSave();
}

void WindowChrome::setSidebarPeeking(bool wanted) {
  constexpr Duration kBeforeShowing = 120ms;
  constexpr Duration kBeforeHiding = 280ms;
  // A report that no peek is wanted leaves a coming one alone.
  if (!wanted && !isSidebarPeeking.peek()) return;
  peeking_.cancel();
  if (isSidebarVisible.peek() || wanted == isSidebarPeeking.peek()) return;
  peeking_ = store_.after(wanted ? kBeforeShowing : kBeforeHiding, [this, wanted] {
    if (isSidebarVisible.peek()) return;
    store_.animate(Spring::quick, [&] { isSidebarPeeking = wanted; });
    updateWindowChrome(Motion::Animated);
  });
}

void WindowChrome::setSidebarWidth(double width) {
  if (sidebarWidth.set(width)) store_.scheduleSave();
}

bool WindowChrome::areWindowButtonsHidden() const {
  return !isSidebarVisible.peek() && !isSidebarPeeking.peek();
}

void WindowChrome::updateWindowChrome(Motion motion) {
  DesktopWindow* window = store_.window();
  if (!window) return;
  const bool isHidden = areWindowButtonsHidden();
  for (const WindowButton button : kWindowButtons) {
    if (!isHidden) window->setButtonHidden(button, false);
    window->setButtonAlpha(button, isHidden ? 0 : 1,
                           motion == Motion::Animated ? inSeconds(kFade) : 0);
    if (isHidden && motion == Motion::AtOnce) window->setButtonHidden(button, true);
  }
  if (!isHidden || motion == Motion::AtOnce) return;
  store_
      .after(kFade,
             [this] {
               DesktopWindow* faded = store_.window();
               if (!faded || !areWindowButtonsHidden()) return;
               for (const WindowButton button : kWindowButtons)
                 faded->setButtonHidden(button, true);
             })
      .detach();
}

void WindowChrome::updateWindowAppearance() {
  DesktopWindow* window = store_.window();
  if (!window) return;
  const auto wanted = [this] {
    if (const auto& preview = store_.spaceEditing.previewAppearance.peek()) return *preview;
    const auto space = untracked([this] { return store_.spaceWithID(store_.activeSpaceID.get()); });
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

}  // namespace orvel
