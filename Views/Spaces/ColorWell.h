#pragma once

#include <gtkmm/drawingarea.h>
#include <gtkmm/togglebutton.h>

#include "BrowserCore/Look/Theme.h"

namespace orvel {

// The choice of a theme: its accent on a disc of its backdrop, with a check mark while chosen.
class ColorWell final : public Gtk::ToggleButton {
 public:
  // The theme outlives the well.
  explicit ColorWell(const Theme& theme);

  const Theme& theme() const { return theme_; }
  void redraw() { disc_.queue_draw(); }

 private:
  void draw(const Cairo::RefPtr<Cairo::Context>& context, int width, int height) const;

  const Theme& theme_;
  Gtk::DrawingArea disc_;
};

}  // namespace orvel
