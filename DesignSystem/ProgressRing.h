#pragma once

#include <gtkmm/widget.h>

#include <optional>

#include "DesignSystem/Palette.h"

namespace orvel {

// A ring that fills from its top clockwise, or, for what nobody knows the length of, a piece of one
// that turns. With animations off it stands.
class ProgressRing : public Gtk::Widget {
 public:
  // `size` in pixels; grows with the desktop's text.
  explicit ProgressRing(int size);

  void setPalette(const Palette& palette);
  // 0 to 1; absent: unknown.
  void setFraction(std::optional<double> fraction);

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  void turn();

  const int size_;
  Color track_;
  Color color_;
  std::optional<double> fraction_ = 0;
  // In turns.
  double angle_ = 0;
  guint ticking_ = 0;
};

}  // namespace orvel
