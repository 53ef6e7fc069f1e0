#pragma once

#include <gtk/gtk.h>

#include <optional>
#include <vector>

#include "Desktop/EventMonitors.h"
#include "Desktop/Gtk/GtkScrollSource.h"

namespace orvel {

class GtkDesktopWindow;

// Offers a window's keys, mouse buttons and two-finger scrolls to the monitors, before anything in
// the window sees them, accelerators that were installed before this source included. Menus and
// other surfaces of their own keep their events.
class GtkEventSource {
 public:
  // Both outlive the source.
  GtkEventSource(GtkDesktopWindow& window, EventMonitors& monitors);
  GtkEventSource(const GtkEventSource&) = delete;
  ~GtkEventSource();

 private:
  enum class Modifier { Control, Alt, Shift };
  // A modifier's key that is down. Code 0: it went down before the window had the keyboard.
  struct HeldKey {
    guint code;
    Modifier modifier;
  };

  static std::optional<Modifier> modifierOf(GdkEvent* event);
  bool handle(GdkEvent* event);
  bool keyPressed(GdkEvent* event);
  bool keyReleased(GdkEvent* event);
  bool buttonPressed(GdkEvent* event);
  void activeChanged();
  ModifierKeys modifiers() const;
  // Offers what has become of the modifiers, if that is not what they were.
  void modifiersChanged();

  GtkDesktopWindow& desktopWindow_;
  EventMonitors& monitors_;
  GtkScrollSource scroll_;
  GtkEventController* controller_;
  gulong activeChange_;
  std::vector<HeldKey> heldKeys_;
  ModifierKeys offered_;
  // The engine puts a key that its page leaves into the queue once more.
  GdkEvent* latestKey_ = nullptr;
  // The releases of these belong to presses that were swallowed.
  std::vector<guint> swallowedKeys_;
  std::vector<guint> swallowedButtons_;
};

}  // namespace orvel
