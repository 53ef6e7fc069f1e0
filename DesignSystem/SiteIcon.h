#pragma once

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

#include <string>

#include "Base/Image.h"
#include "DesignSystem/TextScale.h"

namespace orvel {

// A site's icon; without one, a small tile with the first letter of its name.
class SiteIcon : public Gtk::Box {
 public:
  explicit SiteIcon(int size = 16, IconPlace place = IconPlace::BesideText);

  // `name` is the site's, for the letter; empty shows a globe's tile without one.
  void set(const ImageRef& icon, const std::string& name);

 private:
  Gtk::Image image_;
  Gtk::Label letter_;
};

// The first letter or digit of a name, in upper case; empty without one.
[[nodiscard]] std::string initialOf(const std::string& name);

}  // namespace orvel
