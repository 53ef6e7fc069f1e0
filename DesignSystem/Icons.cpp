#include "DesignSystem/Icons.h"

#include <gtk/gtk.h>

#include "DesignSystem/StyleSheet.h"
#include "DesignSystem/Symbols.h"

namespace orvel {

namespace {

// Where our drawings are not installed: the toolkit's nearest.
struct Fallback {
  std::string_view symbol;
  std::string_view name;
};
constexpr Fallback kFallbacks[] = {
    {"arrow.clockwise", "view-refresh-symbolic"},
    {"arrow.left", "go-previous-symbolic"},
    {"arrow.right", "go-next-symbolic"},
    {"arrow.uturn.backward", "edit-undo-symbolic"},
    {"checkmark", "object-select-symbolic"},
    {"chevron.right", "pan-end-symbolic"},
    {"folder", "folder-symbolic"},
    {"folder.badge.plus", "folder-new-symbolic"},
    {"folder.fill", "folder-open-symbolic"},
    {"link", "insert-link-symbolic"},
    {"lock.fill", "channel-secure-symbolic"},
    {"lock.open", "channel-insecure-symbolic"},
    {"magnifyingglass", "system-search-symbolic"},
    {"menu", "open-menu-symbolic"},
    {"minus", "window-minimize-symbolic"},
    {"plus", "list-add-symbolic"},
    {"rectangle.split.2x1", "view-dual-symbolic"},
    {"sidebar.left", "sidebar-show-symbolic"},
    {"speaker.slash.fill", "audio-volume-muted-symbolic"},
    {"speaker.wave.2.fill", "audio-volume-high-symbolic"},
    {"xmark", "window-close-symbolic"},
};
constexpr std::string_view kUnknown = "view-more-symbolic";

// What points along the reading direction.
constexpr std::string_view kMirrored[] = {"arrow.left", "arrow.right", "arrow.uturn.backward",
                                          "chevron.right", "sidebar.left"};

}  // namespace

std::string iconName(std::string_view symbol) {
  std::string own = "orvel-" + std::string(symbol) + "-symbolic";
  std::replace(own.begin(), own.end(), '.', '-');
  auto* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
  if (gtk_icon_theme_has_icon(theme, own.c_str())) return own;
  const auto* fallback =
      std::find_if(std::begin(kFallbacks), std::end(kFallbacks),
                   [symbol](const Fallback& one) { return one.symbol == symbol; });
  return std::string(fallback == std::end(kFallbacks) ? kUnknown : fallback->name);
}

Gtk::Image* makeIcon(std::string_view symbol, int size, IconPlace place) {
  auto* image = Gtk::make_managed<Gtk::Image>();
  setIconSize(*image, size, place);
  // Filling more room than it has pixels it may come to lie between two of them.
  image->set_halign(Gtk::Align::CENTER);
  image->set_valign(Gtk::Align::CENTER);
  // What an icon stands for is said by what it stands in.
  setAccessibleRole(*image, GTK_ACCESSIBLE_ROLE_PRESENTATION);
  setIcon(*image, symbol);
  return image;
}

void setIcon(Gtk::Image& image, std::string_view symbol) {
  const bool followsReading = std::ranges::find(kMirrored, symbol) != std::end(kMirrored);
  const bool isRightToLeft = gtk_widget_get_default_direction() == GTK_TEXT_DIR_RTL;
  auto* paintable = Symbols::paintable(
      symbol, followsReading && isRightToLeft ? Symbols::Side::Mirrored : Symbols::Side::Drawn);
  if (paintable)
    gtk_image_set_from_paintable(image.gobj(), paintable);
  else
    image.set_from_icon_name(iconName(symbol));
  setClass(GTK_WIDGET(image.gobj()), "mirrored", followsReading && !paintable);
}

IconButton::IconButton(std::string_view symbol, const std::string& help, int size)
    : image_(makeIcon(symbol, size, IconPlace::InButton)) {
  add_css_class("icon");
  set_child(*image_);
  set_valign(Gtk::Align::CENTER);
  setHelp(help);
}

void IconButton::setSymbol(std::string_view symbol) { setIcon(*image_, symbol); }

void IconButton::setHelp(const std::string& help) {
  // Set on a visible button, the toolkit would ask the display server where the pointer is.
  const bool isHiddenMeanwhile = get_visible() && !get_mapped();
  if (isHiddenMeanwhile) set_visible(false);
  set_tooltip_text(help);
  if (isHiddenMeanwhile) set_visible(true);
  setAccessibleLabel(*this, help.substr(0, help.find(" (")));
}

void setTooltip(Gtk::Widget& widget, const std::string& text, const Gtk::Label* label) {
  constexpr const char* kText = "orvel-tooltip";
  auto* object = G_OBJECT(widget.gobj());
  if (!g_object_get_data(object, kText))
    g_signal_connect(object, "query-tooltip",
                     G_CALLBACK(+[](GtkWidget* self, int, int, gboolean, GtkTooltip* tooltip,
                                    GtkLabel* shown) -> gboolean {
                       if (shown && !pango_layout_is_ellipsized(gtk_label_get_layout(shown)))
                         return FALSE;
                       gtk_tooltip_set_text(
                           tooltip, static_cast<char*>(g_object_get_data(G_OBJECT(self), kText)));
                       return TRUE;
                     }),
                     label ? const_cast<GtkLabel*>(label->gobj()) : nullptr);
  g_object_set_data_full(object, kText, g_strdup(text.c_str()), g_free);
  widget.set_has_tooltip(true);
}

void setAccessibleLabel(Gtk::Widget& widget, const std::string& label) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 label.c_str(), -1);
}

void setAccessibleDescription(Gtk::Widget& widget, const std::string& description) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                 description.c_str(), -1);
}

void setAccessibleHidden(Gtk::Widget& widget, bool isHidden) {
  gtk_accessible_update_state(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_STATE_HIDDEN,
                              static_cast<gboolean>(isHidden), -1);
}

void setAccessibleRole(Gtk::Widget& widget, int role) {
  g_object_set(widget.gobj(), "accessible-role", role, nullptr);
}

}  // namespace orvel
