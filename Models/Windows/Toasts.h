#pragma once

#include "Base/Published.h"
#include "Base/Task.h"
#include "Models/Windows/Toast.h"

namespace orvel {

class BrowserStore;

// The one toast on screen.
class Toasts {
 public:
  explicit Toasts(BrowserStore& store) : store_(store) {}

  Published<std::optional<Toast>, Toasts> toast;

  // Takes the place of the former toast; one that looks alike changes its words only.
  void showToast(std::string message, ToastOptions options);
  // Undoes what the toast tells of, and takes it away.
  void undoToast();

 private:
  BrowserStore& store_;
  TaskHandle removal_;
};

}  // namespace orvel
