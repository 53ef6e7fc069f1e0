#include "DesignSystem/StyleSheet.h"

#include <gtkmm/init.h>

#include "Base/GRef.h"

namespace orvel {

namespace StyleSheet {

void load(const std::filesystem::path& shareFolder) {
  Gtk::init_gtkmm_internals();
  auto* display = gdk_display_get_default();
  const auto provider = GRef<GtkCssProvider>::adopt(gtk_css_provider_new());
  g_signal_connect(
      provider.get(), "parsing-error",
      G_CALLBACK(+[](GtkCssProvider*, GtkCssSection* section, GError* error, gpointer) {
        const GText place(gtk_css_section_to_string(section));
        g_warning("style sheet: %s: %s", place.get(), error->message);
      }),
      nullptr);
  const auto sheet = shareFolder / "style.css";
  if (std::filesystem::exists(sheet))
    gtk_css_provider_load_from_path(provider.get(), sheet.c_str());
  else
    g_warning("style sheet: %s is missing", sheet.c_str());
  gtk_style_context_add_provider_for_display(display, GTK_STYLE_PROVIDER(provider.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  gtk_icon_theme_add_search_path(gtk_icon_theme_get_for_display(display),
                                 (shareFolder / "icons").c_str());
}

ColorScheme scheme() {
  return adw_style_manager_get_dark(adw_style_manager_get_default()) ? ColorScheme::dark
                                                                     : ColorScheme::light;
}

}  // namespace StyleSheet

void ThemeRoot::set(const Theme& theme, ColorScheme scheme) {
  replace(theme_, "theme-" + std::string(theme.id));
  set(scheme);
}

void ThemeRoot::set(ColorScheme scheme) {
  replace(scheme_, scheme == ColorScheme::dark ? "scheme-dark" : "scheme-light");
}

void ThemeRoot::replace(std::string& present, std::string next) {
  if (present == next) return;
  if (!present.empty()) gtk_widget_remove_css_class(widget_, present.c_str());
  present = std::move(next);
  gtk_widget_add_css_class(widget_, present.c_str());
}

void setClass(GtkWidget* widget, const char* name, bool isSet) {
  if (isSet)
    gtk_widget_add_css_class(widget, name);
  else
    gtk_widget_remove_css_class(widget, name);
}

void followContrast(GtkWidget* widget) {
  const auto show = +[](GtkWidget* widget) {
    setClass(widget, "high-contrast",
             adw_style_manager_get_high_contrast(adw_style_manager_get_default()));
  };
  show(widget);
  g_signal_connect_object(adw_style_manager_get_default(), "notify::high-contrast",
                          G_CALLBACK(show), widget, G_CONNECT_SWAPPED);
}

}  // namespace orvel
