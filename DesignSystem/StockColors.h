#pragma once

#include <gtk/gtk.h>
#include <sigc++/connection.h>

#include <functional>
#include <string>

#include "Base/GRef.h"
#include "BrowserCore/Look/Theme.h"

namespace orvel {

// The toolkit's named colors, for what it draws by itself: tooltips, dialogs, file panels. They
// hold for the whole display.
class StockColors {
 public:
  // `isBusy` tells of a motion that goes on for as long as the user likes.
  explicit StockColors(std::function<bool()> isBusy);
  ~StockColors();
  StockColors(const StockColors&) = delete;

  // Takes a theme's colors: the first at once, later ones when none came for 1.5 seconds. New
  // names restyle all there is, which is longer than a frame and must not fall into a motion.
  void set(const Theme& theme, ColorScheme scheme);

 private:
  void load();

  std::function<bool()> isBusy_;
  GRef<GtkCssProvider> provider_;
  std::string wanted_;
  std::string loaded_;
  sigc::connection waiting_;
};

}  // namespace orvel
