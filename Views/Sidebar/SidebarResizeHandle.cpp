#include "Views/Sidebar/SidebarResizeHandle.h"

#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gesturedrag.h>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Windows/WindowChrome.h"
#include "Views/Sidebar/SidebarLayout.h"

namespace orvel {

namespace {

constexpr double kKeyStep = 10;

}  // namespace

SidebarResizeHandle::SidebarResizeHandle(WindowChrome& chrome) : chrome_(chrome) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_SEPARATOR);
  setAccessibleLabel(*this, _("Sidebar Width"));
  add_css_class("sidebar-edge");
  set_focusable(true);
  set_cursor("col-resize");
  auto* grip = Gtk::make_managed<Gtk::Box>();
  grip->set_halign(Gtk::Align::CENTER);
  grip->set_valign(Gtk::Align::CENTER);
  grip->set_hexpand(true);
  append(*grip);

  auto* spoken = GTK_ACCESSIBLE(Gtk::Widget::gobj());
  gtk_accessible_update_property(spoken, GTK_ACCESSIBLE_PROPERTY_VALUE_MIN, kMinimumSidebarWidth,
                                 GTK_ACCESSIBLE_PROPERTY_VALUE_MAX, kMaximumSidebarWidth, -1);
  width_ = effect([this, spoken] {
    gtk_accessible_update_property(spoken, GTK_ACCESSIBLE_PROPERTY_VALUE_NOW,
                                   shownSidebarWidth(chrome_), -1);
  });

  auto gesture = Gtk::GestureDrag::create();
  auto* raw = gesture.get();
  gesture->signal_drag_begin().connect([this](double x, double) {
    startX_ = windowX(x);
    setClass(Gtk::Widget::gobj(), "dragging", true);
  });
  gesture->signal_drag_update().connect([this, raw](double x, double) {
    double beginX = 0;
    double beginY = 0;
    raw->get_start_point(beginX, beginY);
    drag(windowX(beginX + x) - startX_);
  });
  gesture->signal_drag_end().connect([this](double, double) {
    setClass(Gtk::Widget::gobj(), "dragging", false);
    startWidth_.reset();
  });
  add_controller(gesture);

  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) { return keyPressed(key); }, false);
  add_controller(keys);
}

double SidebarResizeHandle::windowX(double x) const {
  auto* self = const_cast<GtkWidget*>(Gtk::Widget::gobj());
  double result = x;
  double ignored = 0;
  if (auto* root = gtk_widget_get_root(self))
    gtk_widget_translate_coordinates(self, GTK_WIDGET(root), x, 0, &result, &ignored);
  return result;
}

void SidebarResizeHandle::drag(double translation) {
  if (!startWidth_) startWidth_ = shownSidebarWidth(chrome_);
  const double sign = get_direction() == Gtk::TextDirection::RTL ? -1 : 1;
  chrome_.setSidebarWidth(
      std::clamp(*startWidth_ + sign * translation, kMinimumSidebarWidth, kMaximumSidebarWidth));
}

bool SidebarResizeHandle::keyPressed(guint key) {
  if (key != GDK_KEY_Left && key != GDK_KEY_Right) return false;
  drag(key == GDK_KEY_Right ? kKeyStep : -kKeyStep);
  startWidth_.reset();
  return true;
}

}  // namespace orvel
