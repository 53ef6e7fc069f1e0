#pragma once

#include <gtkmm/widget.h>

#include <functional>
#include <map>
#include <memory>

#include "Base/Observable.h"
#include "BrowserCore/Look/Theme.h"
#include "Desktop/Gtk/GtkDesktopWindow.h"
#include "Models/Windows/UtilityWindow.h"

namespace orvel {

class BrowserStore;

// What fills a utility window.
class UtilityContent {
 public:
  virtual ~UtilityContent() = default;
  virtual Gtk::Widget& body() = 0;
  // Stands in the window's header in place of its title; null: the title.
  virtual Gtk::Widget* header() { return nullptr; }
  // The window is about to be shown, for the first time or again.
  virtual void willShow() {}
  // Gives the keyboard to the field that searches the content; returns whether there is one.
  virtual bool beginSearch() { return false; }
};

// The program's small windows, one for each title. What fills a window is
// made when it is first shown; closing keeps it, and the window comes back as it was.
class UtilityWindows {
 public:
  using Factory = std::function<std::unique_ptr<UtilityContent>()>;

  // `main` is the main window. The arguments outlive this object; the windows go with it.
  UtilityWindows(GtkWindow* main, BrowserStore& store, const Observable<ColorScheme>& scheme);
  ~UtilityWindows();
  UtilityWindows(const UtilityWindows&) = delete;

  // Says what fills a window; to be called before it is first shown.
  void fill(UtilityWindow which, Factory factory) { factories_[which] = std::move(factory); }
  // Told of each window that is made, and of each before it goes. Empty: nobody is.
  std::function<void(GtkDesktopWindow& window)> didMake;
  std::function<void(GtkDesktopWindow& window)> willGo;

  // Shows the window, with the keyboard; returns false when nothing fills it.
  bool show(UtilityWindow which);
  void closeBugReport();

  // Null when nothing fills the window. Neither shows it.
  UtilityContent* content(UtilityWindow which);
  GtkWindow* native(UtilityWindow which);

 private:
  class Window;

  Window* window(UtilityWindow which);
  void close(UtilityWindow which);

  GtkWindow* main_;
  BrowserStore& store_;
  const Observable<ColorScheme>& scheme_;
  std::map<UtilityWindow, Factory> factories_;
  std::map<UtilityWindow, std::unique_ptr<UtilityContent>> contents_;
  std::map<UtilityWindow, std::unique_ptr<Window>> windows_;
  // Ends what waits for the next turn.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace orvel
