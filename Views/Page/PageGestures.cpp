#include "Views/Page/PageGestures.h"

#include <gtkmm/eventcontrollerscroll.h>
#include <gtkmm/gestureclick.h>

#include <cmath>

namespace orvel {

namespace {

// As X11 and Wayland number the mouse's side buttons in this toolkit.
constexpr int kBackButton = 8;
constexpr int kForwardButton = 9;
// Where a touchpad tells of pixels, so many count as a notch of the wheel.
constexpr double kPixelsANotch = 50;

}  // namespace

PageGestures::PageGestures(Gtk::Widget& page, std::function<TabRef()> tab) : tab_(std::move(tab)) {
  addButton(page, kBackButton, &BrowserTab::goBack);
  addButton(page, kForwardButton, &BrowserTab::goForward);
  addZooming(page);
}

void PageGestures::addButton(Gtk::Widget& page, int button, void (BrowserTab::*move)()) {
  auto click = Gtk::GestureClick::create();
  click->set_button(static_cast<guint>(button));
  click->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  click->signal_pressed().connect([this, gesture = click.get(), move](int, double, double) {
    gesture->set_state(Gtk::EventSequenceState::CLAIMED);
    if (const auto tab = tab_()) ((*tab).*move)();
  });
  page.add_controller(click);
}

void PageGestures::addZooming(Gtk::Widget& page) {
  auto scroll = Gtk::EventControllerScroll::create();
  scroll->set_flags(Gtk::EventControllerScroll::Flags::VERTICAL);
  scroll->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
  scroll->signal_scroll().connect(
      [this, controller = scroll.get()](double, double notches) {
        const bool isZooming = (controller->get_current_event_state() &
                                Gdk::ModifierType::CONTROL_MASK) != Gdk::ModifierType{};
        const bool isPixels =
            gtk_event_controller_scroll_get_unit(controller->gobj()) == GDK_SCROLL_UNIT_SURFACE;
        return isZooming && scrolled(isPixels ? notches / kPixelsANotch : notches);
      },
      false);
  page.add_controller(scroll);
}

bool PageGestures::scrolled(double notches) {
  const auto tab = tab_();
  if (!tab || !tab->liveWebView()) return false;
  // Another direction begins anew.
  if (notches * notches_ < 0) notches_ = 0;
  notches_ += notches;
  if (const double steps = std::trunc(notches_); steps != 0) {
    notches_ -= steps;
    tab->zoom(steps > 0 ? BrowserTab::ZoomStep::Out : BrowserTab::ZoomStep::In);
  }
  return true;
}

}  // namespace orvel
