#pragma once

#include <adwaita.h>

#include <filesystem>
#include <optional>
#include <string>

#include "BrowserCore/Look/Theme.h"

// The look that style sheets give. What changes at run time are the classes of the roots below
// which a theme holds. A theme's own sheet is loaded with its first root.
namespace orvel {

namespace StyleSheet {

// Loads style.css of the program's share folder for the default display, and names its icons. Call
// it once, after the toolkit is ready and before the first window. A missing sheet is logged, and
// the toolkit's own look remains.
void load(const std::filesystem::path& shareFolder);

// The scheme in force on this desktop and by the application's choice.
[[nodiscard]] ColorScheme scheme();

}  // namespace StyleSheet

// The classes that make a widget the root of a theme, or of a scheme alone. Roots of themes do not
// nest; below the root of a scheme may stand those of themes.
class ThemeRoot {
 public:
  explicit ThemeRoot(GtkWidget* widget) : widget_(widget) {}
  ThemeRoot(const ThemeRoot&) = delete;

  // Does nothing when both are in force already.
  void set(const Theme& theme, ColorScheme scheme);
  void set(ColorScheme scheme);

 private:
  void replace(std::string& present, std::string next);

  GtkWidget* widget_;
  std::string theme_;
  std::string scheme_;
};

void setClass(GtkWidget* widget, const char* name, bool isSet);

// Has the widget carry the class "high-contrast" as long as the desktop asks for it.
void followContrast(GtkWidget* widget);

}  // namespace orvel
