#include "DesignSystem/ChartDrawing.h"

#include <pango/pangocairo.h>

#include <cmath>
#include <numbers>

#include "DesignSystem/Paint.h"

namespace orvel {

namespace {

constexpr double kLineTime = 1.4;
constexpr double kLineDelay = 0.012;
constexpr double kFadeDelay = 0.3;
constexpr double kFadeTime = 0.6;

struct Point {
  double x;
  double y;
};

// The point at a bearing in degrees, clockwise from north.
Point from(Point center, double bearing, double distance) {
  const double angle = bearing * std::numbers::pi / 180;
  return {center.x + distance * std::sin(angle), center.y - distance * std::cos(angle)};
}

double easeOut(double time) {
  const double rest = 1 - std::clamp(time, 0.0, 1.0);
  return 1 - rest * rest * rest;
}

void line(cairo_t* cairo, Point a, Point b) {
  cairo_move_to(cairo, a.x, a.y);
  cairo_line_to(cairo, b.x, b.y);
  cairo_stroke(cairo);
}

void ring(cairo_t* cairo, Point center, double radius) {
  cairo_new_sub_path(cairo);
  cairo_arc(cairo, center.x, center.y, radius, 0, 2 * std::numbers::pi);
  cairo_stroke(cairo);
}

void triangle(cairo_t* cairo, Point a, Point b, Point c) {
  cairo_move_to(cairo, a.x, a.y);
  cairo_line_to(cairo, b.x, b.y);
  cairo_line_to(cairo, c.x, c.y);
  cairo_close_path(cairo);
}

void text(cairo_t* cairo, PangoFontDescription* font, double size, Point place,
          const std::string& content, double* width = nullptr) {
  pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
  auto* layout = pango_cairo_create_layout(cairo);
  pango_layout_set_font_description(layout, font);
  pango_layout_set_text(layout, content.c_str(), -1);
  const double baseline = pango_layout_get_baseline(layout) / static_cast<double>(PANGO_SCALE);
  cairo_move_to(cairo, place.x, place.y - baseline);
  pango_cairo_show_layout(cairo, layout);
  if (width) {
    int pixels = 0;
    pango_layout_get_pixel_size(layout, &pixels, nullptr);
    *width = pixels;
  }
  g_object_unref(layout);
}

}  // namespace

void Chart::draw(cairo_t* cairo, double elapsed) const {
  if (width < 1 || height < 1) return;
  const Point a = {width * 0.24, height * 0.30};
  const Point b = {width * 0.80, height * 0.74};
  cairo_set_line_width(cairo, 1);
  drawRhumbLines(cairo, a.x, a.y, 15, elapsed);
  drawRhumbLines(cairo, b.x, b.y, 30, elapsed);
  setSource(cairo, ink, 0.08);
  ring(cairo, b, 52);
  drawFrame(cairo);

  const double shown = std::clamp((elapsed - kFadeDelay) / kFadeTime, 0.0, 1.0);
  if (shown <= 0) return;
  cairo_push_group(cairo);
  drawRose(cairo, a.x, a.y);
  drawCoasts(cairo);
  drawSoundings(cairo);
  cairo_pop_group_to_source(cairo);
  cairo_paint_with_alpha(cairo, shown);
}

void Chart::drawRhumbLines(cairo_t* cairo, double x, double y, int step, double elapsed) const {
  const double reach = std::hypot(width, height);
  for (int bearing = 0, index = 0; bearing < 360; bearing += step, ++index) {
    const double drawn = easeOut((elapsed - index * kLineDelay) / kLineTime);
    const bool isMain = step == 15 && bearing % 45 == 0;
    setSource(cairo, ink, isMain ? 0.10 : 0.08);
    line(cairo, {x, y}, from({x, y}, bearing, reach * drawn));
  }
}

void Chart::drawRose(cairo_t* cairo, double x, double y) const {
  const Point center = {x, y};
  setSource(cairo, ink, 0.10);
  for (const double radius : {34.0, 92.0, 97.0}) ring(cairo, center, radius);
  setSource(cairo, ink, 0.14);
  for (int bearing = 0; bearing < 360; bearing += 5) {
    const double end = bearing % 30 == 0 ? 106 : bearing % 10 == 0 ? 102 : 100;
    line(cairo, from(center, bearing, 97), from(center, bearing, end));
  }
  cairo_set_line_width(cairo, 0.75);
  for (const int point : {1, 3, 5, 7, 0, 2, 4, 6}) {
    const double bearing = point * 45;
    const bool isMain = point % 2 == 0;
    const Point tip = from(center, bearing, isMain ? 88 : 58);
    const double waist = isMain ? 17 : 15;
    const Point right = from(center, bearing + 45, waist);
    const Point left = from(center, bearing - 45, waist);
    for (const Point side : {right, left}) {
      triangle(cairo, tip, side, center);
      setSource(cairo, paper, 1);
      cairo_fill(cairo);
    }
    setSource(cairo, ink, 0.16);
    triangle(cairo, tip, right, center);
    cairo_fill_preserve(cairo);
    cairo_stroke(cairo);
    triangle(cairo, tip, left, center);
    cairo_stroke(cairo);
  }
  cairo_set_line_width(cairo, 1);
}

void Chart::drawCoasts(cairo_t* cairo) const {
  const auto trace = [&](int coast) {
    const auto to = [&](Point a, Point b, Point c) {
      cairo_curve_to(cairo, a.x * width, a.y * height, b.x * width, b.y * height, c.x * width,
                     c.y * height);
    };
    const double over = 20;
    if (coast == 0) {
      cairo_move_to(cairo, -over, height * 0.80);
      to({0.10, 0.74}, {0.13, 0.88}, {0.22, 0.87});
      to({0.31, 0.86}, {0.30, 0.98}, {0.36, 1 + over / height});
    } else {
      cairo_move_to(cairo, width * 0.70, -over);
      to({0.72, 0.10}, {0.80, 0.09}, {0.84, 0.17});
      to({0.88, 0.25}, {0.93, 0.22}, {1 + over / width, 0.33});
    }
  };
  for (int coast = 0; coast < 2; ++coast) {
    cairo_set_line_width(cairo, 1.1);
    setSource(cairo, ink, 0.20);
    trace(coast);
    cairo_stroke(cairo);
    for (int depth = 1; depth <= 3; ++depth) {
      constexpr double kDashes[3][2] = {{5, 4}, {2, 4}, {1, 5}};
      cairo_save(cairo);
      cairo_translate(cairo, (coast == 0 ? 1 : -1) * depth * 17.0,
                      (coast == 0 ? -1 : 1) * depth * 15.0);
      trace(coast);
      cairo_restore(cairo);
      cairo_set_dash(cairo, kDashes[depth - 1], 2, 0);
      setSource(cairo, ink, 0.11 - depth * 0.02);
      cairo_stroke(cairo);
      cairo_set_dash(cairo, nullptr, 0, 0);
    }
  }
  cairo_set_line_width(cairo, 1);
}

void Chart::drawSoundings(cairo_t* cairo) const {
  struct Sounding {
    Point place;
    int fathoms;
  };
  constexpr Sounding kSoundings[] = {
      {{.44, .14}, 12}, {{.55, .22}, 17}, {{.62, .40}, 31}, {{.41, .55}, 24},
      {{.50, .85}, 28}, {{.60, .90}, 19}, {{.66, .62}, 36}, {{.10, .56}, 9},
      {{.15, .66}, 6},  {{.34, .80}, 8},  {{.90, .45}, 14}, {{.93, .60}, 22},
      {{.73, .30}, 11}, {{.30, .08}, 15}, {{.86, .88}, 27}, {{.07, .12}, 7},
  };
  auto* font = pango_font_description_from_string(
      "EB Garamond, Libertinus Serif, Noto Serif, "
      "serif Italic");
  setSource(cairo, ink, 0.22);
  for (int i = 0; const auto& [place, fathoms] : kSoundings) {
    const Point point = {place.x * width, place.y * height};
    double advance = 0;
    text(cairo, font, 12, point, std::to_string(fathoms), &advance);
    if (const int tenths = i * 3 % 7)
      text(cairo, font, 8, {point.x + advance, point.y + 3}, std::to_string(tenths));
    ++i;
  }
  pango_font_description_free(font);
}

void Chart::drawFrame(cairo_t* cairo) const {
  constexpr double kInset = 14;
  constexpr double kBand = 5;
  constexpr double kCell = 48;
  const double across = width - 2 * kInset;
  const double down = height - 2 * kInset;
  if (across < 2 * kCell || down < 2 * kCell) return;
  setSource(cairo, ink, 0.14);
  cairo_rectangle(cairo, kInset, kInset, across, down);
  cairo_rectangle(cairo, kInset + kBand, kInset + kBand, across - 2 * kBand, down - 2 * kBand);
  cairo_stroke(cairo);

  const int columns = static_cast<int>(std::lround(across / kCell));
  const int rows = static_cast<int>(std::lround(down / kCell));
  setSource(cairo, ink, 0.13);
  for (int i = 0; i < columns; i += 2) {
    const double cell = across / columns;
    cairo_rectangle(cairo, kInset + i * cell, kInset, cell, kBand);
    cairo_rectangle(cairo, kInset + (i + (columns % 2 == 0 ? 1 : 0)) * cell,
                    height - kInset - kBand, cell, kBand);
  }
  for (int i = 1; i < rows; i += 2) {
    const double cell = down / rows;
    cairo_rectangle(cairo, kInset, kInset + i * cell, kBand, cell);
    cairo_rectangle(cairo, width - kInset - kBand, kInset + i * cell, kBand, cell);
  }
  cairo_fill(cairo);
}

}  // namespace orvel
