#include "DesignSystem/ChartPaper.h"

#include <adwaita.h>
#include <gdkmm/frameclock.h>
#include <gtkmm/snapshot.h>

#include "DesignSystem/Paint.h"

namespace orvel {

ChartPaper::ChartPaper() : Glib::ObjectBase("OrvelChartPaper") {
  set_can_target(false);
  g_object_set(gobj(), "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr);
  g_signal_connect_object(adw_style_manager_get_default(), "notify::high-contrast",
                          G_CALLBACK(gtk_widget_queue_draw), gobj(), G_CONNECT_SWAPPED);
}

void ChartPaper::setPalette(const Palette& palette) {
  ink_ = palette.ink;
  paper_ = palette.paper;
  queue_draw();
}

void ChartPaper::on_map() {
  Gtk::Widget::on_map();
  if (isDrawn_ || appeared_) return;
  if (!adw_get_enable_animations(gobj())) {
    isDrawn_ = true;
    return;
  }
  appeared_ = get_frame_clock()->get_frame_time();
  add_tick_callback(sigc::mem_fun(*this, &ChartPaper::advance));
}

bool ChartPaper::advance(const Glib::RefPtr<Gdk::FrameClock>& clock) {
  elapsed_ = static_cast<double>(clock->get_frame_time() - *appeared_) / 1e6;
  isDrawn_ = elapsed_ >= Chart::kDrawingTime;
  queue_draw();
  return !isDrawn_;
}

void ChartPaper::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  auto* native = snapshot->gobj();
  const auto area = bounds(0, 0, get_width(), get_height());
  const auto paper = rgba(paper_);
  gtk_snapshot_append_color(native, &paper, &area);
  if (adw_style_manager_get_high_contrast(adw_style_manager_get_default())) return;
  auto* cairo = gtk_snapshot_append_cairo(native, &area);
  const Chart chart = {static_cast<double>(get_width()), static_cast<double>(get_height()), ink_,
                       paper_};
  chart.draw(cairo, isDrawn_ ? Chart::kDrawingTime : elapsed_);
  cairo_destroy(cairo);
}

}  // namespace orvel
