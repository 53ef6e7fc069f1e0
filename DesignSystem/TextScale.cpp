#include "DesignSystem/TextScale.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr const char* kSize = "orvel-icon-size";

void showSize(GtkImage* image) {
  const int size = GPOINTER_TO_INT(g_object_get_data(G_OBJECT(image), kSize));
  gtk_image_set_pixel_size(image, scaledWithText(size));
}

}  // namespace

double textScale() {
  constexpr double kOrdinary = 96 * 1024;
  int resolution = 0;
  g_object_get(gtk_settings_get_default(), "gtk-xft-dpi", &resolution, nullptr);
  return resolution > 0 ? std::max(resolution / kOrdinary, 1.0) : 1.0;
}

int scaledWithText(int pixels) { return static_cast<int>(std::lround(pixels * textScale())); }

void setIconSize(Gtk::Image& image, int size) {
  auto* object = G_OBJECT(image.gobj());
  const bool isNew = !g_object_get_data(object, kSize);
  g_object_set_data(object, kSize, GINT_TO_POINTER(size));
  showSize(image.gobj());
  if (isNew)
    g_signal_connect_object(gtk_settings_get_default(), "notify::gtk-xft-dpi", G_CALLBACK(showSize),
                            object, G_CONNECT_SWAPPED);
}

}  // namespace orvel
