#pragma once

#include <vector>

#include "Desktop/Gtk/GtkDesktop.h"
#include "Models/Store/ApplicationLifecycle.h"
#include "Support/Stores/UserDefaults.h"
#include "Views/Window/MainWindow.h"
#include "Views/Window/WindowFrame.h"

namespace orvel {

// The main window's place in the program, and that of its utility windows: they are the desktop's,
// and the main window's size is remembered.
class WindowController final : public MainWindowController {
 public:
  WindowController(GtkApplication* application, BrowserStore& store, GtkDesktop& desktop,
                   UserDefaults& defaults);
  ~WindowController() override;

  void show() override { window_.present(); }
  DesktopWindow& window() override { return window_.desktopWindow(); }

 private:
  void add(GtkDesktopWindow& window);

  GtkDesktop& desktop_;
  MainWindow window_;
  WindowFrame frame_;
  std::vector<GtkDesktopWindow*> added_;
};

}  // namespace orvel
