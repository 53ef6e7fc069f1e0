#include "DesignSystem/Towel.h"

#include <gtkmm/snapshot.h>

#include <memory>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/Paint.h"

namespace orvel {

namespace TowelDay {

namespace {

constexpr int kMonth = 5;
constexpr int kDay = 25;

using LocalTime = std::unique_ptr<GDateTime, decltype(&g_date_time_unref)>;

LocalTime localTime(Date date) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(date.time_since_epoch()).count();
  return {g_date_time_new_from_unix_local(seconds), &g_date_time_unref};
}

}  // namespace

bool isToday(Date now) {
  const auto local = localTime(now);
  return local && g_date_time_get_month(local.get()) == kMonth &&
         g_date_time_get_day_of_month(local.get()) == kDay;
}

Duration untilTomorrow(Date now) {
  const auto local = localTime(now);
  if (!local) return std::chrono::hours(24);
  const LocalTime later(g_date_time_add_days(local.get(), 1), &g_date_time_unref);
  const LocalTime midnight(
      g_date_time_new_local(g_date_time_get_year(later.get()), g_date_time_get_month(later.get()),
                            g_date_time_get_day_of_month(later.get()), 0, 0, 0),
      &g_date_time_unref);
  return std::chrono::microseconds(g_date_time_difference(midnight.get(), local.get()));
}

}  // namespace TowelDay

namespace {

constexpr int kSize = 16;
constexpr double kStroke = 1.25;

// Both ends hang from the rail, the one behind a little longer.
void drawTowel(cairo_t* cairo, const GdkRGBA& ink) {
  const auto source = [&](double strength) {
    cairo_set_source_rgba(cairo, ink.red, ink.green, ink.blue, ink.alpha * strength);
  };
  cairo_set_line_width(cairo, kStroke);
  cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);

  cairo_move_to(cairo, 10.5, 3);
  cairo_curve_to(cairo, 12, 3, 12.5, 3.6, 12.5, 5);
  cairo_line_to(cairo, 12.5, 14);
  cairo_line_to(cairo, 9.5, 14);
  source(1);
  cairo_stroke(cairo);

  cairo_move_to(cairo, 3.5, 12.5);
  cairo_line_to(cairo, 3.5, 5);
  cairo_curve_to(cairo, 3.5, 3.6, 4.2, 3, 5.5, 3);
  cairo_line_to(cairo, 10.5, 3);
  cairo_curve_to(cairo, 9.7, 3.4, 9.5, 4, 9.5, 5);
  cairo_line_to(cairo, 9.5, 12.5);
  cairo_close_path(cairo);
  source(0.12);
  cairo_fill_preserve(cairo);
  source(1);
  cairo_stroke(cairo);

  // The woven bands.
  source(0.75);
  for (const double y : {9.0, 10.75}) {
    cairo_move_to(cairo, 4.5, y);
    cairo_line_to(cairo, 8.5, y);
  }
  cairo_stroke(cairo);

  // The rail.
  for (const auto& [from, to] : {std::pair(1.0, 2.5), std::pair(13.5, 15.0)}) {
    cairo_move_to(cairo, from, 5.5);
    cairo_line_to(cairo, to, 5.5);
  }
  source(1);
  cairo_stroke(cairo);
}

}  // namespace

Towel::Towel() : Glib::ObjectBase("OrvelTowel") {
  set_can_target(false);
  set_halign(Gtk::Align::CENTER);
  set_valign(Gtk::Align::CENTER);
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_PRESENTATION);
}

void Towel::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural, int& minimumBaseline,
                          int& naturalBaseline) const {
  minimumBaseline = naturalBaseline = -1;
  minimum = natural = kSize;
}

void Towel::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  GdkRGBA ink;
  gtk_style_context_get_color(gtk_widget_get_style_context(gobj()), &ink);
  const auto area = bounds(0, 0, kSize, kSize);
  auto* cairo = gtk_snapshot_append_cairo(snapshot->gobj(), &area);
  drawTowel(cairo, ink);
  cairo_destroy(cairo);
}

TowelButton::TowelButton() {
  add_css_class("icon");
  add_css_class("towel");
  set_child(towel_);
  set_valign(Gtk::Align::CENTER);
  set_tooltip_text(_("In memory of Douglas Adams"));
  setAccessibleLabel(*this, _("Towel Day"));
}

}  // namespace orvel
