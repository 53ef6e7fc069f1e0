#include "Views/Downloads/FileSign.h"

#include <gio/gio.h>
#include <gtkmm/snapshot.h>

#include <algorithm>
#include <numbers>

#include "Base/GRef.h"
#include "BrowserCore/Text/Text.h"
#include "DesignSystem/Paint.h"

namespace orvel {

namespace {

constexpr int kWidth = 26;
constexpr int kHeight = 32;
constexpr size_t kMaxEnding = 4;
constexpr double kShareOfColor = 0.62;

// The tint of a kind of files.
struct Kind {
  std::string_view contentType;  // its beginning
  Color color;
};
constexpr Kind kKinds[] = {
    {"application/pdf", {0xA3, 0x35, 0x2B}}, {"audio/", {0x5A, 0x48, 0x70}},
    {"video/", {0x5A, 0x48, 0x70}},          {"image/", {0x2F, 0x5D, 0x7C}},
    {"text/", {0x3F, 0x6B, 0x58}},           {"application/", {0x8B, 0x4A, 0x2B}},
};

Color colorOf(const std::string& name) {
  const GText type(g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
  const GText mime(g_content_type_get_mime_type(type.get()));
  const std::string_view text = mime ? mime.get() : "";
  const auto* kind = std::ranges::find_if(
      kKinds, [&](const Kind& one) { return text.starts_with(one.contentType); });
  return kind == std::end(kKinds) ? std::rbegin(kKinds)->color : kind->color;
}

std::string endingOf(const std::string& name) {
  const size_t point = name.rfind('.');
  if (point == std::string::npos || point == 0) return {};
  std::string ending = text::lowerASCII(name.substr(point + 1));
  const bool isPlain = std::ranges::all_of(
      ending, [](unsigned char c) { return g_ascii_isalnum(static_cast<gchar>(c)); });
  if (ending.empty() || ending.size() > kMaxEnding || !isPlain) return {};
  std::ranges::transform(ending, ending.begin(), [](char c) { return g_ascii_toupper(c); });
  return ending;
}

void paperPath(cairo_t* cairo) {
  constexpr double kQuarter = std::numbers::pi / 2;
  constexpr double kCorner = 2.5;
  cairo_new_path(cairo);
  cairo_arc(cairo, 4.5, 3.5, kCorner, 2 * kQuarter, 3 * kQuarter);
  cairo_line_to(cairo, 17, 1);
  cairo_line_to(cairo, 24, 8);
  cairo_arc(cairo, 21.5, 28.5, kCorner, 0, kQuarter);
  cairo_arc(cairo, 4.5, 28.5, kCorner, kQuarter, 2 * kQuarter);
  cairo_close_path(cairo);
}

}  // namespace

FileSign::FileSign() : Glib::ObjectBase("OrvelFileSign") {
  set_can_target(false);
  set_valign(Gtk::Align::CENTER);
}

void FileSign::setPalette(const Palette& palette) {
  palette_ = palette;
  queue_draw();
}

void FileSign::setFile(const std::string& name) {
  ending_ = endingOf(name);
  color_ = colorOf(name);
  queue_draw();
}

void FileSign::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                             int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = orientation == Gtk::Orientation::HORIZONTAL ? kWidth : kHeight;
  minimumBaseline = naturalBaseline = -1;
}

void FileSign::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  constexpr double kEdge = 0.28;
  const auto area = bounds(0, 0, kWidth, kHeight);
  auto* cairo = gtk_snapshot_append_cairo(snapshot->gobj(), &area);
  paperPath(cairo);
  setSource(cairo, palette_.top, 1);
  cairo_fill_preserve(cairo);
  cairo_set_line_width(cairo, 1);
  setSource(cairo, palette_.ink, kEdge);
  cairo_stroke(cairo);
  cairo_move_to(cairo, 17, 1);
  cairo_line_to(cairo, 17, 8);
  cairo_line_to(cairo, 24, 8);
  cairo_stroke(cairo);
  if (!ending_.empty()) {
    constexpr double kBaseline = 25;
    const auto layout = GRef<PangoLayout>::adopt(
        gtk_widget_create_pango_layout(Gtk::Widget::gobj(), ending_.c_str()));
    auto* font = pango_font_description_copy(
        pango_context_get_font_description(pango_layout_get_context(layout.get())));
    pango_font_description_set_weight(font, PANGO_WEIGHT_BOLD);
    pango_font_description_set_absolute_size(font, 7.0 * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font);
    pango_font_description_free(font);
    int width = 0;
    pango_layout_get_pixel_size(layout.get(), &width, nullptr);
    setSource(cairo, mix(palette_.ink, color_, kShareOfColor), 1);
    cairo_move_to(cairo, (kWidth - width) / 2.0,
                  kBaseline - pango_layout_get_baseline(layout.get()) / double{PANGO_SCALE});
    pango_cairo_show_layout(cairo, layout.get());
  }
  cairo_destroy(cairo);
}

}  // namespace orvel
