#include "Models/Commands/QuickBar.h"

#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

ModifierKeys modifiersOf(QuickBarKey key) {
  switch (key) {
    case QuickBarKey::OptionSpace:
      // Alt and Space alone open the window's menu on most desktops.
      return {.control = true, .alt = true};
    case QuickBarKey::ShiftOptionSpace:
      return {.alt = true, .shift = true};
    case QuickBarKey::ControlShiftSpace:
      return {.control = true, .shift = true};
  }
  return {};
}

}  // namespace

void QuickBar::applyQuickBarKey() {
  hotKey_.reset();
  isQuickBarKeyTaken = false;
  const uint64_t request = ++request_;
  const auto key = store_.settings.quickBarKey.peek();
  if (!key) return orderQuickBarOut();
  store_.services().desktop.hotKeys.registerSpace(
      modifiersOf(*key), store_.whileAlive([this] { toggleQuickBar(); }),
      store_.whileAlive([this, request](std::unique_ptr<HotKey> hotKey) {
        // The answer to a key that is no longer wanted gives that key back.
        if (request_ != request) return;
        isQuickBarKeyTaken = !hotKey;
        hotKey_ = std::move(hotKey);
      }));
}

void QuickBar::toggleQuickBar() {
  const DesktopWindow* window = store_.window();
  const bool isInFront =
      store_.services().desktop.application.isActive() && window && window->isActive();
  if (isInFront && store_.commandBar.peek())
    store_.dismissCommandBar();
  else
    store_.showCommandBar(CommandBarMode::NewTab);
}

// There is no panel of its own yet.
void QuickBar::orderQuickBarOut() {}

}  // namespace orvel
