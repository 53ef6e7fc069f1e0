#include "DesignSystem/TextScale.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {

namespace {

constexpr const char* kSize = "orvel-icon-size";
constexpr const char* kMost = "orvel-icon-most";
constexpr double kMaxInButton = 1.5;

void showSize(GtkImage* image) {
  const auto kept = [image](const char* name) {
    return GPOINTER_TO_INT(g_object_get_data(G_OBJECT(image), name));
  };
  gtk_image_set_pixel_size(image, std::min(scaledWithText(kept(kSize)), kept(kMost)));
}

}  // namespace

double textScale() {
  constexpr double kOrdinary = 96 * 1024;
  int resolution = 0;
  g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &resolution, nullptr);
  return resolution > 0 ? std::max(resolution / kOrdinary, 1.0) : 1.0;
}

int scaledWithText(int pixels) { return static_cast<int>(std::lround(pixels * textScale())); }

void setIconSize(Gtk::Image& image, int size, IconPlace place) {
  auto* object = G_OBJECT(image.gobj());
  const bool isNew = !g_object_get_data(object, kSize);
  const int most = place == IconPlace::InButton ? static_cast<int>(std::lround(size * kMaxInButton))
                                                : std::numeric_limits<int>::max();
  g_object_set_data(object, kSize, GINT_TO_POINTER(size));
  g_object_set_data(object, kMost, GINT_TO_POINTER(most));
  showSize(image.gobj());
  if (isNew)
    g_signal_connect_object(gtk_settings_get_default(), "notify::gtk-xft-dpi", G_CALLBACK(showSize),
                            object, G_CONNECT_SWAPPED);
}

}  // namespace orvel
