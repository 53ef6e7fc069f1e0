#pragma once

#include <gtkmm/widget.h>

#include <random>

#include "DesignSystem/Palette.h"
#include "DesignSystem/SpringAnimation.h"

namespace orvel {

// A small compass whose needle swings to a random bearing every 0.9 seconds while a page loads.
// With animations off it stands still.
class CompassNeedle : public Gtk::Widget {
 public:
  CompassNeedle();
  ~CompassNeedle() override;

  void setPalette(const Palette& palette);
  void setSwinging(bool isSwinging);

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  bool swing();

  Color accent_;
  Color ink_;
  SpringAnimation angle_;
  sigc::connection timer_;
  std::minstd_rand random_;
};

}  // namespace orvel
