#pragma once

#include <gtkmm/widget.h>

#include "DesignSystem/ChartDrawing.h"
#include "DesignSystem/Palette.h"

namespace orvel {

// Paper with a faint nautical chart, which draws itself once, when it is first on screen. The
// finished picture stands at once with animations off; with high contrast there is no chart.
class ChartPaper : public Gtk::Widget {
 public:
  ChartPaper();

  void setPalette(const Palette& palette);

 protected:
  void on_map() override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  bool advance(const Glib::RefPtr<Gdk::FrameClock>& clock);

  Color ink_;
  Color paper_;
  std::optional<gint64> appeared_;  // microseconds of the frame clock
  double elapsed_ = 0;
  bool isDrawn_ = false;
};

}  // namespace orvel
