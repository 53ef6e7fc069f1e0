#include "App/WindowController.h"

#include "Views/Window/MainWindow.h"
#include "Views/Window/UtilityWindows.h"
#include "Views/Window/WindowFrame.h"

namespace orvel {

struct WindowController::Windows {
  explicit Windows(WindowController& controller)
      : desktop(controller.desktop_),
        main(controller.application_, controller.store_),
        frame(main.native(), controller.defaults_, "OrvelBrowserWindow") {  // no text
    desktop.addWindow(&main.desktopWindow());
    main.utilityWindows().didMake = [this](GtkDesktopWindow& made) { desktop.addWindow(&made); };
    main.utilityWindows().willGo = [this](GtkDesktopWindow& gone) { desktop.removeWindow(&gone); };
    main.didClose = [&controller] { controller.windows_.reset(); };
  }
  ~Windows() { desktop.removeWindow(&main.desktopWindow()); }

  GtkDesktop& desktop;
  MainWindow main;
  WindowFrame frame;
};

WindowController::WindowController(GtkApplication* application, BrowserStore& store,
                                   GtkDesktop& desktop, UserDefaults& defaults)
    : application_(application), store_(store), desktop_(desktop), defaults_(defaults) {}

WindowController::~WindowController() = default;

void WindowController::show() {
  if (!windows_) windows_ = std::make_unique<Windows>(*this);
  windows_->main.present();
}

DesktopWindow& WindowController::window() { return windows_->main.desktopWindow(); }

}  // namespace orvel
