#pragma once

#include <memory>

#include "Desktop/Gtk/GtkDesktop.h"
#include "Models/Store/ApplicationLifecycle.h"
#include "Support/Stores/UserDefaults.h"

namespace orvel {

// The main window's place in the program, and that of its utility windows: they are the desktop's,
// and the main window's size is remembered. The windows are made when they are to be shown and end
// when the user closes the main one.
class WindowController final : public MainWindowController {
 public:
  WindowController(GtkApplication* application, BrowserStore& store, GtkDesktop& desktop,
                   UserDefaults& defaults);
  ~WindowController() override;

  void show() override;
  // Of a window that is on show.
  DesktopWindow& window() override;

 private:
  struct Windows;

  GtkApplication* application_;
  BrowserStore& store_;
  GtkDesktop& desktop_;
  UserDefaults& defaults_;
  std::unique_ptr<Windows> windows_;
};

}  // namespace orvel
