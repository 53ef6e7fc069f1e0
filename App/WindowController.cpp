#include "App/WindowController.h"

#include "Views/Window/UtilityWindows.h"

namespace orvel {

WindowController::WindowController(GtkApplication* application, BrowserStore& store,
                                   GtkDesktop& desktop, UserDefaults& defaults)
    : desktop_(desktop),
      window_(application, store),
      frame_(window_.native(), defaults, "OrvelBrowserWindow") {
  add(window_.desktopWindow());
  window_.utilityWindows().didMake = [this](GtkDesktopWindow& made) { add(made); };
}

WindowController::~WindowController() {
  for (auto* window : added_) desktop_.removeWindow(window);
}

void WindowController::add(GtkDesktopWindow& window) {
  desktop_.addWindow(&window);
  added_.push_back(&window);
}

}  // namespace orvel
