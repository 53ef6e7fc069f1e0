#pragma once

#include <adwaita.h>

#include <vector>

#include "Desktop/Gtk/GtkDesktopWindow.h"
#include "Desktop/Gtk/GtkDialogs.h"
#include "Desktop/Gtk/GtkServices.h"

namespace orvel {

// The desktop as GTK, libadwaita and the session's services offer it.
class GtkDesktop final : public DesktopApplication {
 public:
  // `application` outlives this object; null where there is none, as in tests.
  GtkDesktop(Scheduler& scheduler, GApplication* application);

  Desktop desktop();

  // Windows that may become the key window; they are taken out before they go.
  void addWindow(GtkDesktopWindow* window) { windows_.push_back(window); }
  void removeWindow(GtkDesktopWindow* window) { std::erase(windows_, window); }

  bool isActive() const override { return activeWindow() != nullptr; }
  void activate() override;
  DesktopWindow* activeWindow() const override;
  void terminate() override;

 private:
  GApplication* application_;
  std::vector<GtkDesktopWindow*> windows_;
  Animator animator_;
  GtkClipboard clipboard_;
  GtkDialogs dialogs_;
  EventMonitors events_;
  GtkMemoryPressure memoryPressure_;
  GtkWorkspace workspace_;
  NoHotKeys hotKeys_;
  NoSystemSearch systemSearch_;
};

}  // namespace orvel
