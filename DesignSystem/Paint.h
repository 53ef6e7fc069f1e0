#pragma once

#include <gtk/gtk.h>

#include "BrowserCore/Look/Theme.h"

namespace orvel {

inline GdkRGBA rgba(Color color, double alpha = 1) {
  return {static_cast<float>(color.red) / 255, static_cast<float>(color.green) / 255,
          static_cast<float>(color.blue) / 255, static_cast<float>(alpha)};
}

inline void setSource(cairo_t* cairo, Color color, double alpha) {
  cairo_set_source_rgba(cairo, color.red / 255.0, color.green / 255.0, color.blue / 255.0, alpha);
}

inline graphene_rect_t bounds(double x, double y, double width, double height) {
  return {{static_cast<float>(x), static_cast<float>(y)},
          {static_cast<float>(width), static_cast<float>(height)}};
}

}  // namespace orvel
