#pragma once

#include <gtk/gtk.h>

#include <string>

#include "Support/Stores/UserDefaults.h"

namespace orvel {

// Gives a window the size that it had, and remembers it from then on. A window cannot be placed on
// this desktop, so its position is not.
class WindowFrame {
 public:
  // `key` is where the defaults hold it. Both the window and the defaults outlive this object.
  WindowFrame(GtkWindow* window, UserDefaults& defaults, std::string key);
  ~WindowFrame();
  WindowFrame(const WindowFrame&) = delete;

 private:
  void restore();
  void save();

  GtkWindow* window_;
  UserDefaults& defaults_;
  const std::string key_;
};

}  // namespace orvel
