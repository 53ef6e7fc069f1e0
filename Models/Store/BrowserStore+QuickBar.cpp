#include "Models/Store/BrowserStore.h"

// The command bar from any application, by a key of the whole desktop.
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

void BrowserStore::applyQuickBarKey() {
  quickBarHotKey_.reset();
  isQuickBarKeyTaken = false;
  const uint64_t request = ++quickBarKeyRequest_;
  const auto key = settings.quickBarKey.peek();
  if (!key) return orderQuickBarOut();
  services_.desktop.hotKeys.registerSpace(
      modifiersOf(*key),
      [weak = weak_from_this()] {
        if (const auto store = weak.lock()) store->toggleQuickBar();
      },
      [weak = weak_from_this(), request](std::unique_ptr<HotKey> hotKey) {
        const auto store = weak.lock();
        // The answer to a key that is no longer wanted gives that key back.
        if (!store || store->quickBarKeyRequest_ != request) return;
        store->isQuickBarKeyTaken = !hotKey;
        store->quickBarHotKey_ = std::move(hotKey);
      });
}

void BrowserStore::toggleQuickBar() {
  const bool isInFront = services_.desktop.application.isActive() && window && window->isActive();
  if (isInFront && commandBar.peek())
    dismissCommandBar();
  else
    showCommandBar(CommandBarMode::NewTab);
}

}  // namespace orvel
