#include "Views/Support/Menu.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>
#include <giomm/themedicon.h>
#include <glibmm/main.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/popovermenu.h>

#include <map>

#include "Base/GRef.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Commands/ActionCatalog.h"
#include "Views/Window/Keyboard.h"

namespace orvel {

namespace {

std::string acceleratorLabel(const std::string& accelerator) {
  guint key = 0;
  GdkModifierType modifiers{};
  gtk_accelerator_parse(accelerator.c_str(), &key, &modifiers);
  const GText label(gtk_accelerator_get_label(key, modifiers));
  return label.get();
}

// Titles have no mnemonics: an underscore is one.
std::string plain(std::string title) {
  for (size_t at = 0; (at = title.find('_', at)) != std::string::npos; at += 2)
    title.insert(at, 1, '_');
  return title;
}

class MenuBuilder {
 public:
  Glib::RefPtr<Gio::SimpleActionGroup> actions = Gio::SimpleActionGroup::create();
  // How the keys read, by how the toolkit writes them.
  std::map<std::string, std::string> shownKeysByLabel;

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
    if (!entry.submenu.empty())
      return Gio::MenuItem::create(plain(entry.title), build(entry.submenu));
    const auto name = "entry" + std::to_string(count_++);
    auto action = entry.isOn ? Gio::SimpleAction::create_bool(name, *entry.isOn)
                             : Gio::SimpleAction::create(name);
    action->set_enabled(static_cast<bool>(entry.perform));
    action->signal_activate().connect([perform = entry.perform](const Glib::VariantBase&) {
      if (perform) perform();
    });
    actions->add_action(action);
    auto item = Gio::MenuItem::create(plain(entry.title), "menu." + name);
    if (!entry.accelerator.empty()) {
      item->set_attribute_value("accel", Glib::Variant<Glib::ustring>::create(entry.accelerator));
      shownKeysByLabel[acceleratorLabel(entry.accelerator)] = shownKeys(entry.accelerator);
    }
    if (!entry.symbol.empty()) item->set_icon(Gio::ThemedIcon::create(iconName(entry.symbol)));
    return item;
  }

  int count_ = 0;
};

// The rows of a menu, without those of the menus that they open.
void forEachRow(GtkWidget* widget, const std::function<void(GtkWidget*)>& visit) {
  for (auto* child = gtk_widget_get_first_child(widget); child;
       child = gtk_widget_get_next_sibling(child)) {
    if (g_strcmp0(gtk_widget_get_css_name(child), "modelbutton") == 0)
      visit(child);
    else
      forEachRow(child, visit);
  }
}

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

// The toolkit writes "Shift+Ctrl+C": this writes what is read everywhere else.
void rewriteKeys(GtkWidget* widget, const std::map<std::string, std::string>& texts) {
  if (GTK_IS_LABEL(widget) && g_strcmp0(gtk_widget_get_css_name(widget), "accelerator") == 0)
    if (const auto found = texts.find(gtk_label_get_text(GTK_LABEL(widget))); found != texts.end())
      gtk_label_set_text(GTK_LABEL(widget), found->second.c_str());
  for (auto* child = gtk_widget_get_first_child(widget); child;
       child = gtk_widget_get_next_sibling(child))
    rewriteKeys(child, texts);
}

// Takes the tooltips from where the pointer is, so that none comes up over the menu.
class QuietTooltips {
 public:
  explicit QuietTooltips(GtkWidget* widget) {
    for (auto* at = pointed(widget); at; at = gtk_widget_get_parent(at)) {
      if (!gtk_widget_get_has_tooltip(at)) continue;
      gtk_widget_set_has_tooltip(at, FALSE);
      quiet_.push_back(GRef<GtkWidget>::retain(at));
    }
  }
  void end() const {
    for (const auto& one : quiet_) gtk_widget_set_has_tooltip(one.get(), TRUE);
  }

 private:
  static GtkWidget* pointed(GtkWidget* widget) {
    for (auto* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
      if ((gtk_widget_get_state_flags(child) & GTK_STATE_FLAG_PRELIGHT) != 0) return pointed(child);
    return widget;
  }

  std::vector<GRef<GtkWidget>> quiet_;
};

// Of a row and the menu that it has opened one alone is filled: the row is, until something of the
// menu is chosen.
void followSubmenu(GtkWidget* submenu, GtkWidget* opener) {
  const auto chosen = +[](GtkWidget* row, GtkStateFlags, GtkWidget* passed) {
    bool isPassed = false;
    for (auto* one = gtk_widget_get_first_child(gtk_widget_get_parent(row)); one && !isPassed;
         one = gtk_widget_get_next_sibling(one))
      isPassed = (gtk_widget_get_state_flags(one) & GTK_STATE_FLAG_SELECTED) != 0;
    setClass(passed, "passed", isPassed);
  };
  forEachRow(submenu, [&](GtkWidget* row) {
    g_signal_connect_object(row, "state-flags-changed", G_CALLBACK(chosen), opener,
                            static_cast<GConnectFlags>(0));
  });
}

constexpr int kRowEnd = 6;   // of a menu, from its rows
constexpr int kOverlap = 2;  // of a submenu over its menu

void followSubmenus(GtkWidget* widget) {
  for (auto* child = gtk_widget_get_first_child(widget); child;
       child = gtk_widget_get_next_sibling(child)) {
    if (GTK_IS_POPOVER_MENU(child)) {
      followSubmenu(child, widget);
      // The toolkit has it begin at the end of the row that opens it.
      gtk_popover_set_offset(GTK_POPOVER(child), kRowEnd - kOverlap, 0);
    }
    followSubmenus(child);
  }
}

// What a menu does when it closes.
struct Closing {
  GtkWidget* popover;
  QuietTooltips tooltips;
  GRef<GtkWidget> focus;  // what had the keyboard
  std::function<void()> closed;

  // What was chosen may have given it to something else already.
  bool hasKeyboard() const {
    auto* now = focusBeside(popover);
    return !now || now == popover || gtk_widget_is_ancestor(now, popover);
  }
  void run() const {
    tooltips.end();
    // Not grabbed: a field would select all its text.
    if (focus && gtk_widget_get_mapped(focus.get()) && hasKeyboard())
      gtk_root_set_focus(gtk_widget_get_root(focus.get()), focus.get());
    if (closed) closed();
    // The entry that was chosen runs after this: the menu goes a turn later.
    g_idle_add_once(
        [](gpointer closing) {
          if (gtk_widget_get_parent(GTK_WIDGET(closing))) gtk_widget_unparent(GTK_WIDGET(closing));
          g_object_unref(closing);
        },
        g_object_ref(popover));
  }
};

// A menu below the widget that has not opened yet.
GtkPopover* makePopover(Gtk::Widget& widget, const std::vector<MenuEntry>& entries,
                        std::function<void()> closed) {
  MenuBuilder builder;
  const auto model = builder.build(entries);
  auto* native =
      gtk_popover_menu_new_from_model_full(G_MENU_MODEL(model->gobj()), GTK_POPOVER_MENU_NESTED);
  gtk_widget_insert_action_group(native, "menu", G_ACTION_GROUP(builder.actions->gobj()));
  gtk_widget_set_parent(native, widget.gobj());
  g_signal_connect_object(widget.gobj(), "destroy", G_CALLBACK(gtk_widget_unparent), native,
                          G_CONNECT_SWAPPED);
  setClass(native, "drawn", iconName("checkmark").starts_with("orvel-"));
  rewriteKeys(native, builder.shownKeysByLabel);
  showIcons(native);
  followSubmenus(native);
  gtk_popover_set_has_arrow(GTK_POPOVER(native), FALSE);
  auto* focus = focusBeside(widget.gobj());
  g_signal_connect_data(
      native, "closed",
      G_CALLBACK(+[](GtkPopover*, gpointer data) { static_cast<Closing*>(data)->run(); }),
      new Closing{native, QuietTooltips(widget.gobj()), GRef<GtkWidget>::retain(focus),
                  std::move(closed)},
      [](gpointer data, GClosure*) { delete static_cast<Closing*>(data); },
      static_cast<GConnectFlags>(0));
  return GTK_POPOVER(native);
}

}  // namespace

void presentMenu(Gtk::Widget& widget, double x, double y, std::vector<MenuEntry> entries,
                 std::function<void()> closed) {
  auto* popover = makePopover(widget, entries, std::move(closed));
  gtk_widget_set_halign(GTK_WIDGET(popover), GTK_ALIGN_START);
  const GdkRectangle at = {static_cast<int>(x), static_cast<int>(y), 1, 1};
  gtk_popover_set_pointing_to(popover, &at);
  gtk_popover_popup(popover);
}

void presentMenuAbove(Gtk::Widget& widget, std::vector<MenuEntry> entries) {
  constexpr int kGap = 8;
  auto* popover = makePopover(widget, entries, {});
  gtk_widget_add_css_class(GTK_WIDGET(popover), "above");
  gtk_popover_set_position(popover, GTK_POS_TOP);
  gtk_widget_set_halign(GTK_WIDGET(popover), GTK_ALIGN_END);
  gtk_popover_set_offset(popover, 0, -kGap);
  gtk_popover_popup(popover);
}

bool dismissMenu(Gtk::Widget& widget) {
  for (auto* child = gtk_widget_get_first_child(widget.gobj()); child;
       child = gtk_widget_get_next_sibling(child)) {
    if (!GTK_IS_POPOVER_MENU(child) || !gtk_widget_get_mapped(child)) continue;
    gtk_popover_popdown(GTK_POPOVER(child));
    return true;
  }
  return false;
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
