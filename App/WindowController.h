#pragma once

#include "Desktop/Gtk/GtkDesktop.h"
#include "Models/ApplicationLifecycle.h"
#include "Support/UserDefaults.h"
#include "Views/MainWindow.h"

namespace orvel {

// The main window's place in the program: one of the desktop's windows, whose size is remembered. A
// window cannot be placed on this desktop, so its position is not.
class WindowController final : public MainWindowController {
 public:
  WindowController(GtkApplication* application, BrowserStore& store, GtkDesktop& desktop,
                   UserDefaults& defaults);
  ~WindowController() override;

  void show() override { window_.present(); }
  DesktopWindow& window() override { return window_.desktopWindow(); }

 private:
  void restoreSize();
  void saveSize();

  GtkDesktop& desktop_;
  UserDefaults& defaults_;
  MainWindow window_;
};

}  // namespace orvel
