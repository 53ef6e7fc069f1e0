#pragma once

#include <adwaita.h>

#include <functional>
#include <memory>

#include "Base/Observable.h"
#include "Desktop/Gtk/GtkDesktopWindow.h"
#include "Desktop/Gtk/GtkEventSource.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Windows/Interface.h"

namespace orvel {

class BrowserStore;

class BrowserView;
class SettingsContent;
class UtilityWindows;

// The one window of the sidebar and the pages.
class MainWindow final : public Interface {
 public:
  // `application` may be null, in tests; the store outlives the window. The style sheet is loaded.
  // The window becomes the store's interface and shows nothing yet.
  MainWindow(GtkApplication* application, BrowserStore& store);
  ~MainWindow() override;
  MainWindow(const MainWindow&) = delete;

  DesktopWindow* window() override { return &desktopWindow_; }
  void showPageMenu(const TabRef& tab, const PageHit& hit) override;
  bool openUtilityWindow(UtilityWindow which) override;

  void present();
  // Told a turn after the user has closed the window: time to end this object. A window is never
  // hidden: the toolkit ends the program when a screen reader asks it for one that is.
  std::function<void()> didClose;
  UtilityWindows& utilityWindows() { return *utilityWindows_; }
  SettingsContent& settings();
  GtkDesktopWindow& desktopWindow() { return desktopWindow_; }
  GtkWindow* native() const { return window_; }
  BrowserView& view() { return *view_; }

 private:
  void close();
  std::optional<bool> perform(ActionID action);
  void toggleMainMenu();
  // Whether the undo key means the toast's.
  bool offersUndo() const;

  BrowserStore& store_;
  GtkWindow* window_;
  GtkDesktopWindow desktopWindow_;
  std::unique_ptr<BrowserView> view_;
  std::unique_ptr<UtilityWindows> utilityWindows_;
  std::unique_ptr<GtkEventSource> events_;
  Effect title_;
  // Ends what waits for the next turn.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace orvel
