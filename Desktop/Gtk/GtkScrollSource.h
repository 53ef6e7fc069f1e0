#pragma once

#include <gtk/gtk.h>

#include "Desktop/EventMonitors.h"

namespace orvel {

class GtkDesktopWindow;

// Offers the two-finger scrolls over a window to the monitors, before anything below the pointer
// sees them. The wheel of a mouse is not reported. A gesture that the pointer leaves, or during
// which the window goes, is reported as cancelled.
class GtkScrollSource {
 public:
  // Both outlive the source.
  GtkScrollSource(GtkDesktopWindow& window, EventMonitors& monitors);
  GtkScrollSource(const GtkScrollSource&) = delete;
  ~GtkScrollSource();

 private:
  void begin();
  bool scroll(double dx, double dy);
  void end(ScrollEvent::Phase phase);
  // The pointer has gone: without its coming back the gesture is cut.
  void cutSoon();
  void keepGesture();
  bool report(ScrollEvent event);
  bool isInPixels() const;
  bool isTouchpad() const;
  double timestamp() const;

  GtkDesktopWindow& desktopWindow_;
  EventMonitors& monitors_;
  GtkWidget* window_;
  GtkEventController* scroll_;
  GtkEventController* pointer_;
  double pointerX_ = 0;    // from the window's left edge
  guint cut_ = 0;          // the source that cuts the gesture; 0 without one
  bool hasBegun_ = false;  // by a device that is not known yet
  bool isActive_ = false;  // a gesture of two fingers
};

}  // namespace orvel
