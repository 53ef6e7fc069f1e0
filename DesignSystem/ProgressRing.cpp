#include "DesignSystem/ProgressRing.h"

#include <adwaita.h>
#include <gdkmm/frameclock.h>
#include <gtkmm/snapshot.h>

#include <cmath>
#include <numbers>

#include "DesignSystem/Paint.h"
#include "DesignSystem/TextScale.h"

namespace orvel {

namespace {

constexpr double kWidth = 1.8;
constexpr double kTrack = 0.26;
constexpr double kUnknownArc = 100.0 / 360;
constexpr double kTurnMicroseconds = 900'000;

}  // namespace

ProgressRing::ProgressRing(int size) : Glib::ObjectBase("OrvelProgressRing"), size_(size) {
  set_can_target(false);
  set_halign(Gtk::Align::CENTER);
  set_valign(Gtk::Align::CENTER);
  // The frames end by themselves while it is out of sight.
  signal_map().connect([this] { turn(); });
  signal_unmap().connect([this] { turn(); });
}

void ProgressRing::setPalette(const Palette& palette) {
  track_ = palette.ink;
  color_ = palette.accent;
  queue_draw();
}

void ProgressRing::setFraction(std::optional<double> fraction) {
  if (fraction_ == fraction) return;
  fraction_ = fraction;
  turn();
  queue_draw();
}

void ProgressRing::turn() {
  const bool isTurning = !fraction_ && get_mapped() && adw_get_enable_animations(gobj());
  if (isTurning == (ticking_ != 0)) return;
  if (!isTurning) return remove_tick_callback(std::exchange(ticking_, 0));
  ticking_ = add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>& clock) {
    const auto now = static_cast<double>(clock->get_frame_time());
    angle_ = std::fmod(now, kTurnMicroseconds) / kTurnMicroseconds;
    queue_draw();
    return true;
  });
}

void ProgressRing::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural,
                                 int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = scaledWithText(size_);
  minimumBaseline = naturalBaseline = -1;
}

void ProgressRing::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  const int size = scaledWithText(size_);
  const auto area = bounds(0, 0, size, size);
  auto* cairo = gtk_snapshot_append_cairo(snapshot->gobj(), &area);
  const double center = size / 2.0;
  const double radius = center - kWidth / 2;
  const auto draw = [&](double from, double length) {
    const double begin = (from - 0.25) * 2 * std::numbers::pi;
    cairo_arc(cairo, center, center, radius, begin, begin + length * 2 * std::numbers::pi);
    cairo_stroke(cairo);
  };
  cairo_set_line_width(cairo, kWidth);
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
  setSource(cairo, track_, kTrack);
  draw(0, 1);
  setSource(cairo, color_, 1);
  if (!fraction_)
    draw(angle_, kUnknownArc);
  else if (*fraction_ > 0)
    draw(0, std::min(*fraction_, 1.0));
  cairo_destroy(cairo);
}

}  // namespace orvel
