#pragma once

#include <cairo.h>

#include "BrowserCore/Look/Theme.h"

namespace orvel {

// The nautical chart under an empty page.
struct Chart {
  double width = 0;
  double height = 0;
  Color ink;
  Color paper;

  // Seconds from the first line to the whole picture.
  static constexpr double kDrawingTime = 1.4 + 23 * 0.012;

  // The picture `elapsed` seconds after the drawing began.
  void draw(cairo_t* cairo, double elapsed) const;

 private:
  void drawRhumbLines(cairo_t* cairo, double x, double y, int step, double elapsed) const;
  void drawRose(cairo_t* cairo, double x, double y) const;
  void drawCoasts(cairo_t* cairo) const;
  void drawSoundings(cairo_t* cairo) const;
  void drawFrame(cairo_t* cairo) const;
};

}  // namespace orvel
