#pragma once

#include <gtkmm/widget.h>

#include "DesignSystem/EasedValue.h"
#include "DesignSystem/Palette.h"
#include "Models/Tab/BrowserTab.h"
#include "Views/Page/LoadingBarState.h"

namespace orvel {

// A thin bar at the top of a page that fills while the page loads.
class LoadingBar final : public Gtk::Widget {
 public:
  LoadingBar();

  // Null: there is no page.
  void setTab(const TabRef& tab);
  void setPalette(const Palette& palette);
  // Zero: it is not to be seen.
  double opacity() const { return opacity_.value(); }

 private:
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                     int& minimumBaseline, int& naturalBaseline) const override;
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;
  void run(const std::optional<LoadingBarState::Step>& step);

  Color color_;
  LoadingBarState state_;
  EasedValue shown_;
  EasedValue opacity_;
  Effect follow_;
};

}  // namespace orvel
