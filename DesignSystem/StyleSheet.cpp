#include "DesignSystem/StyleSheet.h"

#include <gtkmm/init.h>

#include <map>
#include <set>
#include <utility>

#include "Base/GRef.h"

namespace orvel {

namespace {

using Provider = GRef<GtkCssProvider>;

// Parsing a theme takes a millisecond, putting it on the display has every widget styled anew.
constexpr guint kOthersWait = 1000;  // milliseconds

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

// The sheets of themes say more than the common one, whose rules they outdo whatever these name.
void put(const Provider& provider, unsigned int priority) {
  gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                             GTK_STYLE_PROVIDER(provider.get()), priority);
}

class Themes {
 public:
  void load(std::filesystem::path folder) {
    folder_ = std::move(folder);
    g_timeout_add(
        kOthersWait,
        [](gpointer self) -> gboolean {
          g_idle_add_full(G_PRIORITY_LOW, parseNext, self, nullptr);
          return G_SOURCE_REMOVE;
        },
        this);
  }

  void require(std::string_view id) {
    if (!folder_.empty() && loaded_.emplace(id).second) putTheme(parse(sheetOf(id)));
  }

 private:
  std::filesystem::path sheetOf(std::string_view id) const {
    return folder_ / ("theme-" + std::string(id) + ".css");
  }

  static void putTheme(const Provider& provider) {
    put(provider, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
  }

  // One theme a turn, and at the end all at once: the widgets are styled anew but once.
  static gboolean parseNext(gpointer data) {
    auto& self = *static_cast<Themes*>(data);
    for (const Theme& theme : Theme::all) {
      if (self.loaded_.contains(theme.id) || self.waiting_.contains(theme.id)) continue;
      self.waiting_.emplace(theme.id, parse(self.sheetOf(theme.id)));
      return G_SOURCE_CONTINUE;
    }
    for (const auto& [id, provider] : std::exchange(self.waiting_, {}))
      if (self.loaded_.insert(id).second) putTheme(provider);
    return G_SOURCE_REMOVE;
  }

  std::filesystem::path folder_;
  std::set<std::string_view> loaded_;
  std::map<std::string_view, Provider> waiting_;
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
  put(parse(shareFolder / "style.css"), GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  themes().load(shareFolder);
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

}  // namespace orvel
