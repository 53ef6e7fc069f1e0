#include "Desktop/Gtk/GtkDesktop.h"

#include <algorithm>

namespace orvel {

namespace {

bool isMotionWanted() {
  auto* settings = gtk_settings_get_default();
  gboolean isOn = FALSE;
  if (settings) g_object_get(settings, "gtk-enable-animations", &isOn, nullptr);
  return isOn;
}

}  // namespace

GtkDesktop::GtkDesktop(Scheduler& scheduler, GApplication* application)
    : application_(application),
      animator_(scheduler, &isMotionWanted),
      workspace_(scheduler),
      hotKeys_(scheduler),
      systemSearch_(scheduler) {}

Desktop GtkDesktop::desktop() {
  return {animator_, *this,           clipboard_,    dialogs_,  events_,
          hotKeys_,  memoryPressure_, systemSearch_, workspace_};
}

void GtkDesktop::activate() {
  for (GtkDesktopWindow* window : windows_)
    if (window->isVisible()) return window->present();
}

DesktopWindow* GtkDesktop::activeWindow() const {
  const auto key = std::find_if(windows_.begin(), windows_.end(),
                                [](const auto* window) { return window->isActive(); });
  return key == windows_.end() ? nullptr : *key;
}

void GtkDesktop::terminate() {
  if (application_) g_application_quit(application_);
}

}  // namespace orvel
