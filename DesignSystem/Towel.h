#pragma once

#include <gtkmm/button.h>

#include "Base/Time.h"

namespace orvel {

namespace TowelDay {

// Whether the moment lies on the 25th of May, by the calendar and time zone of this machine.
[[nodiscard]] bool isToday(Date now);
// From a moment to the next midnight, when the answer may change.
[[nodiscard]] Duration untilTomorrow(Date now);

}  // namespace TowelDay

// A folded towel over a rail, drawn in the ink of its place.
class Towel : public Gtk::Widget {
 public:
  Towel();

 protected:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;
};

// The button of that day.
class TowelButton : public Gtk::Button {
 public:
  TowelButton();

 private:
  Towel towel_;
};

}  // namespace orvel
