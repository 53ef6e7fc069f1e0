#include "Views/Menu.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>
#include <giomm/themedicon.h>
#include <glibmm/main.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/popovermenu.h>

#include "DesignSystem/Icons.h"

namespace orvel {

namespace {

class MenuBuilder {
 public:
  Glib::RefPtr<Gio::SimpleActionGroup> actions = Gio::SimpleActionGroup::create();

  Glib::RefPtr<Gio::Menu> build(const std::vector<MenuEntry>& entries) {
    auto menu = Gio::Menu::create();
    auto section = Gio::Menu::create();
    for (const auto& entry : entries) {
      if (entry.beginsSection && section->get_n_items() > 0) {
        menu->append_section(section);
        section = Gio::Menu::create();
      }
      section->append_item(item(entry));
    }
    if (section->get_n_items() > 0) menu->append_section(section);
    return menu;
  }

 private:
  Glib::RefPtr<Gio::MenuItem> item(const MenuEntry& entry) {
    if (!entry.submenu.empty()) return Gio::MenuItem::create(entry.title, build(entry.submenu));
    const auto name = "entry" + std::to_string(count_++);
    auto action = Gio::SimpleAction::create(name);
    action->set_enabled(static_cast<bool>(entry.perform));
    action->signal_activate().connect([perform = entry.perform](const Glib::VariantBase&) {
      if (perform) perform();
    });
    actions->add_action(action);
    auto item = Gio::MenuItem::create(entry.title, "menu." + name);
    if (!entry.accelerator.empty())
      item->set_attribute_value("accel", Glib::Variant<Glib::ustring>::create(entry.accelerator));
    if (!entry.symbol.empty()) item->set_icon(Gio::ThemedIcon::create(iconName(entry.symbol)));
    return item;
  }

  int count_ = 0;
};

// The toolkit shows an entry's icon or its title; a list of things has both.
void showIcons(GtkWidget* widget) {
  const bool isEntry = g_strcmp0(gtk_widget_get_css_name(widget), "modelbutton") == 0;
  for (auto* child = gtk_widget_get_first_child(widget); child;
       child = gtk_widget_get_next_sibling(child)) {
    if (isEntry && GTK_IS_IMAGE(child) &&
        gtk_image_get_storage_type(GTK_IMAGE(child)) != GTK_IMAGE_EMPTY)
      gtk_widget_set_visible(child, TRUE);
    showIcons(child);
  }
}

}  // namespace

void presentMenu(Gtk::Widget& widget, double x, double y, std::vector<MenuEntry> entries,
                 std::function<void()> closed) {
  MenuBuilder builder;
  const auto model = builder.build(entries);
  auto* popover = GTK_POPOVER(
      gtk_popover_menu_new_from_model_full(G_MENU_MODEL(model->gobj()), GTK_POPOVER_MENU_NESTED));
  auto* native = GTK_WIDGET(popover);
  gtk_widget_insert_action_group(native, "menu", G_ACTION_GROUP(builder.actions->gobj()));
  gtk_widget_set_parent(native, widget.gobj());
  gtk_popover_set_has_arrow(popover, FALSE);
  gtk_widget_set_halign(native, GTK_ALIGN_START);
  const GdkRectangle at = {static_cast<int>(x), static_cast<int>(y), 1, 1};
  gtk_popover_set_pointing_to(popover, &at);

  // The entry that was chosen runs after the menu has closed: the menu goes a turn later.
  struct Closing {
    GtkWidget* popover;
    std::function<void()> closed;
  };
  g_signal_connect_data(
      popover, "closed", G_CALLBACK(+[](GtkPopover*, gpointer data) {
        auto* closing = static_cast<Closing*>(data);
        if (closing->closed) closing->closed();
        g_idle_add_once(
            [](gpointer popover) {
              if (gtk_widget_get_parent(GTK_WIDGET(popover)))
                gtk_widget_unparent(GTK_WIDGET(popover));
              g_object_unref(popover);
            },
            g_object_ref(closing->popover));
      }),
      new Closing{native, std::move(closed)},
      [](gpointer data, GClosure*) { delete static_cast<Closing*>(data); },
      static_cast<GConnectFlags>(0));
  showIcons(native);
  gtk_popover_popup(popover);
}

void installContextMenu(Gtk::Widget& widget, std::function<std::vector<MenuEntry>()> entries) {
  const auto open = [&widget, entries = std::move(entries)](double x, double y) {
    if (auto menu = entries(); !menu.empty()) presentMenu(widget, x, y, std::move(menu));
  };
  auto click = Gtk::GestureClick::create();
  click->set_button(GDK_BUTTON_SECONDARY);
  click->signal_pressed().connect([open](int, double x, double y) { open(x, y); });
  widget.add_controller(click);
  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [&widget, open](guint key, guint, Gdk::ModifierType state) {
        const bool isShifted = (state & Gdk::ModifierType::SHIFT_MASK) != Gdk::ModifierType{};
        if (key != GDK_KEY_Menu && !(key == GDK_KEY_F10 && isShifted)) return false;
        open(0, widget.get_height());
        return true;
      },
      false);
  widget.add_controller(keys);
}

}  // namespace orvel
