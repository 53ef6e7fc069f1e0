#include "DesignSystem/StyleSheet.h"

#include <gtkmm/init.h>

#include <set>
#include <utility>

#include "Base/GRef.h"
#include "DesignSystem/Symbols.h"

namespace orvel {

namespace {

using Provider = GRef<GtkCssProvider>;

Provider parse(const std::filesystem::path& sheet) {
  auto provider = Provider::adopt(gtk_css_provider_new());
  g_signal_connect(
      provider.get(), "parsing-error",
      G_CALLBACK(+[](GtkCssProvider*, GtkCssSection* section, GError* error, gpointer) {
        const GText place(gtk_css_section_to_string(section));
        g_warning("style sheet: %s: %s", place.get(), error->message);
      }),
      nullptr);
  if (std::filesystem::exists(sheet))
    gtk_css_provider_load_from_path(provider.get(), sheet.c_str());
  else
    g_warning("style sheet: %s is missing", sheet.c_str());
  return provider;
}

constexpr unsigned int kCommon = GTK_STYLE_PROVIDER_PRIORITY_APPLICATION;
// Between providers it is their rank that counts, and no longer what their rules name.
constexpr unsigned int kThemes = kCommon + 1;

void put(const Provider& provider, unsigned int priority) {
  gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                             GTK_STYLE_PROVIDER(provider.get()), priority);
}

// The sheets of themes. Each is put on the display, which has every widget styled anew, when its
// first root comes: for the themes of the spaces that is before the window shows.
class Themes {
 public:
  void setFolder(std::filesystem::path folder) { folder_ = std::move(folder); }

  void require(std::string_view id) {
    if (!folder_.empty() && loaded_.emplace(id).second)
      put(parse(folder_ / ("theme-" + std::string(id) + ".css")), kThemes);
  }

 private:
  std::filesystem::path folder_;
  std::set<std::string_view> loaded_;
};

// The display's, as its providers are.
Themes& themes() {
  static Themes one;
  return one;
}

}  // namespace

namespace StyleSheet {

void load(const std::filesystem::path& shareFolder) {
  Gtk::init_gtkmm_internals();
  put(parse(shareFolder / "style.css"), kCommon);
  themes().setFolder(shareFolder);
  Symbols::load(shareFolder / "icons.paths");
  gtk_icon_theme_add_search_path(gtk_icon_theme_get_for_display(gdk_display_get_default()),
                                 (shareFolder / "icons").c_str());
}

ColorScheme scheme() {
  return adw_style_manager_get_dark(adw_style_manager_get_default()) ? ColorScheme::dark
                                                                     : ColorScheme::light;
}

}  // namespace StyleSheet

void ThemeRoot::set(const Theme& theme, ColorScheme scheme) {
  themes().require(theme.id);
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
