#include "DesignSystem/CompassNeedle.h"

#include <glibmm/main.h>
#include <gtkmm/snapshot.h>

#include <numbers>

#include "DesignSystem/Paint.h"
#include "DesignSystem/TextScale.h"

namespace orvel {

namespace {

constexpr int kSize = 16;
constexpr double kRestingBearing = 38;
constexpr unsigned kSwingMilliseconds = 900;

}  // namespace

CompassNeedle::CompassNeedle()
    : Glib::ObjectBase("OrvelCompassNeedle"),
      angle_(gobj(), kRestingBearing, [this](double) { queue_draw(); }),
      random_(std::random_device{}()) {
  set_can_target(false);
  set_halign(Gtk::Align::CENTER);
  set_valign(Gtk::Align::CENTER);
}

CompassNeedle::~CompassNeedle() { timer_.disconnect(); }

void CompassNeedle::setPalette(const Palette& palette) {
  accent_ = palette.accent;
  ink_ = palette.ink;
  queue_draw();
}

void CompassNeedle::setSwinging(bool isSwinging) {
  if (isSwinging == timer_.connected()) return;
  timer_.disconnect();
  if (!isSwinging) return angle_.animateTo(0, Spring::quick);
  if (!adw_get_enable_animations(gobj())) return angle_.set(kRestingBearing);
  swing();
  timer_ = Glib::signal_timeout().connect(sigc::mem_fun(*this, &CompassNeedle::swing),
                                          kSwingMilliseconds);
}

bool CompassNeedle::swing() {
  angle_.animateTo(std::uniform_real_distribution<double>(-180, 180)(random_), Spring::quick);
  return true;
}

void CompassNeedle::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural,
                                  int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = scaledWithText(kSize);
  minimumBaseline = naturalBaseline = -1;
}

void CompassNeedle::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  const int size = scaledWithText(kSize);
  const auto area = bounds(0, 0, size, size);
  auto* cairo = gtk_snapshot_append_cairo(snapshot->gobj(), &area);
  cairo_scale(cairo, textScale(), textScale());
  cairo_set_line_width(cairo, 1);
  setSource(cairo, ink_, 0.3);
  cairo_arc(cairo, 8, 8, 6.9, 0, 2 * std::numbers::pi);
  cairo_stroke(cairo);
  cairo_translate(cairo, 8, 8);
  cairo_rotate(cairo, angle_.value() * std::numbers::pi / 180);
  const auto half = [cairo](double tip) {
    cairo_move_to(cairo, 0, tip);
    cairo_line_to(cairo, 1.9, 0);
    cairo_line_to(cairo, -1.9, 0);
    cairo_close_path(cairo);
    cairo_fill(cairo);
  };
  setSource(cairo, accent_, 1);
  half(-6.1);
  setSource(cairo, ink_, 0.34);
  half(6.1);
  cairo_destroy(cairo);
}

}  // namespace orvel
