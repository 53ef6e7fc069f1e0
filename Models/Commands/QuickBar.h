#pragma once

#include <memory>

#include "Base/Published.h"
#include "Desktop/HotKeys.h"

namespace orvel {

class BrowserStore;

// The command bar from any application, by a key of the whole desktop.
class QuickBar {
 public:
  explicit QuickBar(BrowserStore& store) : store_(store) {}

  Published<bool, QuickBar> isQuickBarKeyTaken = false;

  // Brings the desktop in line with the setting: gives the former key back and asks for the chosen
  // one. `isQuickBarKeyTaken` tells, on a later turn, that it could not be had; nothing is retried.
  void applyQuickBarKey();
  // What the key does: it opens and closes the command bar, and brings the window where it is not
  // in front.
  void toggleQuickBar();
  void orderQuickBarOut();

 private:
  BrowserStore& store_;
  std::unique_ptr<HotKey> hotKey_;
  uint64_t request_ = 0;  // grows with each change of the key
};

}  // namespace orvel
