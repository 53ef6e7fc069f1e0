#include "Desktop/Gtk/GtkScrollSource.h"

#include "Desktop/Gtk/GtkDesktopWindow.h"

namespace orvel {

namespace {

// What one step of the devices that count in steps stands for.
constexpr double kPixelsOfStep = 15;
// Content that moves below the pointer may take it away for a moment, in milliseconds.
constexpr guint kBeforeCut = 100;

}  // namespace

GtkScrollSource::GtkScrollSource(GtkDesktopWindow& window, EventMonitors& monitors)
    : desktopWindow_(window),
      monitors_(monitors),
      window_(GTK_WIDGET(window.native())),
      scroll_(gtk_event_controller_scroll_new(GTK_EVENT_CONTROLLER_SCROLL_BOTH_AXES)),
      pointer_(gtk_event_controller_motion_new()) {
  g_signal_connect_swapped(scroll_, "scroll-begin",
                           G_CALLBACK(+[](GtkScrollSource* self) { self->begin(); }), this);
  g_signal_connect_swapped(scroll_, "scroll",
                           G_CALLBACK(+[](GtkScrollSource* self, double dx, double dy) -> gboolean {
                             return self->scroll(dx, dy);
                           }),
                           this);
  g_signal_connect_swapped(
      scroll_, "scroll-end",
      G_CALLBACK(+[](GtkScrollSource* self) { self->end(ScrollEvent::Phase::Ended); }), this);

  const auto moved = G_CALLBACK(+[](GtkScrollSource* self, double x) {
    self->pointerX_ = x;
    self->keepGesture();
  });
  g_signal_connect_swapped(pointer_, "enter", moved, this);
  g_signal_connect_swapped(pointer_, "motion", moved, this);
  g_signal_connect_swapped(pointer_, "leave",
                           G_CALLBACK(+[](GtkScrollSource* self) { self->cutSoon(); }), this);
  for (auto* controller : {pointer_, scroll_}) {
    gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
    gtk_widget_add_controller(window_, controller);
  }
}

GtkScrollSource::~GtkScrollSource() {
  end(ScrollEvent::Phase::Cancelled);
  for (auto* controller : {pointer_, scroll_}) gtk_widget_remove_controller(window_, controller);
}

void GtkScrollSource::begin() { hasBegun_ = true; }

bool GtkScrollSource::scroll(double dx, double dy) {
  // What the device is shows with its first movement only.
  if (std::exchange(hasBegun_, false) && isTouchpad()) {
    isActive_ = true;
    report({.phase = ScrollEvent::Phase::Began});
  }
  if (!isActive_) return false;
  keepGesture();
  const double scale = isInPixels() ? 1 : kPixelsOfStep;
  // The toolkit tells where the view goes; the content goes the other way.
  const double sign = gtk_widget_get_direction(window_) == GTK_TEXT_DIR_RTL ? 1 : -1;
  return report(
      {.phase = ScrollEvent::Phase::Changed, .deltaX = sign * dx * scale, .deltaY = -dy * scale});
}

void GtkScrollSource::cutSoon() {
  if (!isActive_ || cut_) return;
  cut_ = g_timeout_add(
      kBeforeCut,
      [](gpointer self) -> gboolean {
        static_cast<GtkScrollSource*>(self)->end(ScrollEvent::Phase::Cancelled);
        return G_SOURCE_REMOVE;
      },
      this);
}

void GtkScrollSource::keepGesture() {
  if (const guint cut = std::exchange(cut_, 0)) g_source_remove(cut);
}

void GtkScrollSource::end(ScrollEvent::Phase phase) {
  keepGesture();
  hasBegun_ = false;
  if (std::exchange(isActive_, false)) report({.phase = phase});
}

bool GtkScrollSource::report(ScrollEvent event) {
  event.timestamp = timestamp();
  event.pointerX = gtk_widget_get_direction(window_) == GTK_TEXT_DIR_RTL
                       ? gtk_widget_get_width(window_) - pointerX_
                       : pointerX_;
  return monitors_.offer(desktopWindow_, event) == EventUse::Swallowed;
}

bool GtkScrollSource::isInPixels() const {
  return gtk_event_controller_scroll_get_unit(GTK_EVENT_CONTROLLER_SCROLL(scroll_)) ==
         GDK_SCROLL_UNIT_SURFACE;
}

// Wheels are smooth on some desktops too, and never end. Wayland's toolkit takes touchpads for
// wheels but counts them in pixels; X11's knows the device.
bool GtkScrollSource::isTouchpad() const {
  auto* device = gtk_event_controller_get_current_event_device(scroll_);
  return !device || isInPixels() || gdk_device_get_source(device) == GDK_SOURCE_TOUCHPAD;
}

// Of the scroll events alone, so that all of a gesture are on one clock.
double GtkScrollSource::timestamp() const {
  constexpr double kMilliseconds = 1e3;
  constexpr double kMicroseconds = 1e6;
  const auto time = gtk_event_controller_get_current_event_time(scroll_);
  return time != GDK_CURRENT_TIME ? time / kMilliseconds
                                  : static_cast<double>(g_get_monotonic_time()) / kMicroseconds;
}

}  // namespace orvel
