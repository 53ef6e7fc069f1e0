#include "Views/Sidebar/TabDragSource.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/SiteIcon.h"
#include "DesignSystem/StyleSheet.h"

namespace orvel {

namespace {

constexpr int kChipWidth = 216;
constexpr int kChipHotX = 72;
constexpr int kChipHotY = 15;

struct Source {
  GtkWidget* widget;
  SidebarDrag& drag;
  std::function<TabRef()> tab;
  std::function<void(bool)> changed;
};

Source& sourceOf(gpointer data) { return *static_cast<Source*>(data); }

GdkContentProvider* prepare(GtkDragSource*, double, double, gpointer data) {
  const auto tab = sourceOf(data).tab();
  if (!tab) return nullptr;
  sourceOf(data).drag.tab = tab;
  const auto text = tab->id.text();
  auto* bytes = g_bytes_new(text.data(), text.size());
  auto* provider = gdk_content_provider_new_for_bytes(kTabDragType, bytes);
  g_bytes_unref(bytes);
  return provider;
}

void begin(GtkDragSource*, GdkDrag* drag, gpointer data) {
  const auto& tab = sourceOf(data).drag.tab;
  auto* chip = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 9);
  auto* icon = Gtk::make_managed<SiteIcon>();
  icon->set(tab->favicon(), tab->url.get() ? displayHost(*tab->url.get()) : std::string());
  auto* title = Gtk::make_managed<Gtk::Label>(shownText(tab->displayTitle()));
  title->set_ellipsize(Pango::EllipsizeMode::END);
  chip->append(*icon);
  chip->append(*title);
  chip->set_size_request(kChipWidth, -1);
  chip->add_css_class("drag-chip");
  auto* holder = GTK_DRAG_ICON(gtk_drag_icon_get_for_drag(drag));
  // The chip is in a window of its own and takes the look of where it comes from.
  for (auto* at = sourceOf(data).widget; at; at = gtk_widget_get_parent(at)) {
    if (!gtk_widget_has_css_class(at, "theme-root")) continue;
    char** classes = gtk_widget_get_css_classes(at);
    gtk_widget_set_css_classes(GTK_WIDGET(holder), const_cast<const char**>(classes));
    g_strfreev(classes);
    break;
  }
  gtk_widget_remove_css_class(GTK_WIDGET(holder), "floating");
  gtk_widget_add_css_class(GTK_WIDGET(holder), "orvel");
  gtk_drag_icon_set_child(holder, chip->Gtk::Widget::gobj());
  gdk_drag_set_hotspot(drag, kChipHotX, kChipHotY);
  sourceOf(data).changed(true);
}

void end(GtkDragSource*, GdkDrag*, gboolean, gpointer data) {
  sourceOf(data).drag.tab = nullptr;
  sourceOf(data).changed(false);
}

}  // namespace

void makeTabDragSource(Gtk::Widget& widget, SidebarDrag& drag, std::function<TabRef()> tab,
                       std::function<void(bool)> changed) {
  auto* controller = gtk_drag_source_new();
  gtk_drag_source_set_actions(controller, GDK_ACTION_MOVE);
  auto* source = new Source{widget.gobj(), drag, std::move(tab), std::move(changed)};
  g_object_set_data_full(G_OBJECT(controller), "orvel-source", source,
                         [](gpointer data) { delete static_cast<Source*>(data); });
  g_signal_connect(controller, "prepare", G_CALLBACK(prepare), source);
  g_signal_connect(controller, "drag-begin", G_CALLBACK(begin), source);
  g_signal_connect(controller, "drag-end", G_CALLBACK(end), source);
  gtk_widget_add_controller(widget.gobj(), GTK_EVENT_CONTROLLER(controller));
}

}  // namespace orvel
