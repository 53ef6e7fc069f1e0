#pragma once

#include <gtkmm/box.h>
#include "Base/Observable.h"

namespace orvel {

class WindowChrome;

// The strip on the docked sidebar's edge by which its width is dragged; the arrow keys move it too.
class SidebarResizeHandle final : public Gtk::Box {
 public:
  static constexpr int kWidth = 8;

  // `chrome` outlives the handle.
  explicit SidebarResizeHandle(WindowChrome& chrome);

 private:
  // The pointer's place in the window, where the handle itself does not move.
  double windowX(double x) const;
  void drag(double translation);
  bool keyPressed(guint key);

  WindowChrome& chrome_;
  std::optional<double> startWidth_;  // absent outside of a drag
  double startX_ = 0;
  Effect width_;
};

}  // namespace orvel
