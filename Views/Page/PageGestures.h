#pragma once

#include <gtkmm/widget.h>

#include <functional>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

// What the pointer does to any page, ahead of the page itself: the mouse's back and forward
// buttons, and zooming by the wheel with Control held.
class PageGestures {
 public:
  // `tab` answers the tab that `page` shows; null: none. Both outlive this.
  PageGestures(Gtk::Widget& page, std::function<TabRef()> tab);

 private:
  void addButton(Gtk::Widget& page, int button, void (BrowserTab::*move)());
  void addZooming(Gtk::Widget& page);
  bool scrolled(double notches);

  std::function<TabRef()> tab_;
  double notches_ = 0;  // of the wheel that have not made a whole step of zoom, down is positive
};

}  // namespace orvel
