#pragma once

#include <gtkmm/widget.h>

#include "Base/Spring.h"
#include "BrowserCore/Look/Theme.h"
#include "DesignSystem/SpringAnimation.h"

namespace orvel {

// The gradient that lies between two, color by color: `amount` 0 gives `a`, 1 gives `b`.
[[nodiscard]] Theme::Backdrop blend(const Theme::Backdrop& a, const Theme::Backdrop& b,
                                    double amount);

// Fills itself with a gradient from top to bottom, whose two colors can move.
class BlendedGradient : public Gtk::Widget {
 public:
  BlendedGradient();

  // Takes the colors at once.
  void set(const Theme::Backdrop& backdrop);
  // Moves to them from those on show. The first colors of all are taken at once.
  void animateTo(const Theme::Backdrop& backdrop, const Spring& spring);
  // Clips the gradient to rounded corners; 0 for none.
  void setCornerRadius(double radius);
  const Theme::Backdrop& shown() const { return shown_; }

 protected:
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

 private:
  void show(const Theme::Backdrop& backdrop);

  Theme::Backdrop start_;
  Theme::Backdrop end_;
  Theme::Backdrop shown_;
  double radius_ = 0;
  bool isSet_ = false;
  SpringAnimation progress_;
};

}  // namespace orvel
