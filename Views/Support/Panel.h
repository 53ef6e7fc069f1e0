#pragma once

#include <gtkmm/button.h>
#include <gtkmm/popover.h>
#include <gtkmm/scrolledwindow.h>

#include <functional>

namespace orvel {

// A card that a button opens beside itself and that closes by Escape or a click elsewhere. What has
// more in it than the window is high scrolls. The keyboard goes back to the button.
class Panel {
 public:
  enum class Side { Above, Below };

  // `name` is told to assistive technology. Both widgets outlive the panel.
  Panel(Gtk::Button& button, Gtk::Widget& content, Side side, const std::string& name);
  Panel(const Panel&) = delete;
  ~Panel();

  void toggle();
  void close() { popover_.popdown(); }
  bool isOpen() const { return popover_.get_mapped(); }
  // Runs each time before it opens.
  std::function<void()> willOpen;
  // Runs each time after it has closed.
  std::function<void()> didClose;

 private:
  Gtk::Button& button_;
  Gtk::Popover popover_;
  Gtk::ScrolledWindow scroller_;
};

}  // namespace orvel
