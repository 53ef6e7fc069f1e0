#include "DesignSystem/Symbols.h"

#include <array>
#include <charconv>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "DesignSystem/Paint.h"

namespace {

constexpr double kSquare = 256;

using Outline = std::vector<cairo_path_data_t>;

struct OrvelSymbol {
  GObject object;
  const Outline* outline;
  bool isMirrored;
};
struct OrvelSymbolClass {
  GObjectClass object;
};

void paint(OrvelSymbol* self, GdkSnapshot* snapshot, double width, double height,
           const GdkRGBA& ink) {
  const auto area = orvel::bounds(0, 0, width, height);
  auto* cairo = gtk_snapshot_append_cairo(GTK_SNAPSHOT(snapshot), &area);
  if (self->isMirrored) {
    cairo_translate(cairo, width, 0);
    cairo_scale(cairo, -1, 1);
  }
  cairo_scale(cairo, width / kSquare, height / kSquare);
  cairo_path_t path{CAIRO_STATUS_SUCCESS, const_cast<cairo_path_data_t*>(self->outline->data()),
                    static_cast<int>(self->outline->size())};
  cairo_append_path(cairo, &path);
  gdk_cairo_set_source_rgba(cairo, &ink);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

void implementPaintable(GdkPaintableInterface* type) {
  type->snapshot = [](GdkPaintable* self, GdkSnapshot* snapshot, double width, double height) {
    paint(reinterpret_cast<OrvelSymbol*>(self), snapshot, width, height, {0, 0, 0, 1});
  };
  type->get_flags = [](GdkPaintable*) {
    return GdkPaintableFlags(GDK_PAINTABLE_STATIC_SIZE | GDK_PAINTABLE_STATIC_CONTENTS);
  };
  type->get_intrinsic_aspect_ratio = [](GdkPaintable*) { return 1.0; };
}

void implementSymbolicPaintable(GtkSymbolicPaintableInterface* type) {
  type->snapshot_symbolic = [](GtkSymbolicPaintable* self, GdkSnapshot* snapshot, double width,
                               double height, const GdkRGBA* colors, gsize count) {
    paint(reinterpret_cast<OrvelSymbol*>(self), snapshot, width, height,
          count > 0 ? colors[0] : GdkRGBA{0, 0, 0, 1});
  };
}

void orvel_symbol_init(OrvelSymbol*) {}
void orvel_symbol_class_init(OrvelSymbolClass*) {}
G_DEFINE_TYPE_WITH_CODE(OrvelSymbol, orvel_symbol, G_TYPE_OBJECT,
                        G_IMPLEMENT_INTERFACE(GDK_TYPE_PAINTABLE, implementPaintable)
                            G_IMPLEMENT_INTERFACE(GTK_TYPE_SYMBOLIC_PAINTABLE,
                                                  implementSymbolicPaintable))

std::optional<cairo_path_data_type_t> commandOf(char letter) {
  switch (letter) {
    case 'M':
      return CAIRO_PATH_MOVE_TO;
    case 'L':
      return CAIRO_PATH_LINE_TO;
    case 'C':
      return CAIRO_PATH_CURVE_TO;
    case 'Z':
      return CAIRO_PATH_CLOSE_PATH;
    default:
      return std::nullopt;
  }
}

class Parser {
 public:
  explicit Parser(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  std::optional<Outline> outline() {
    Outline outline;
    while (skipBlanks()) {
      const auto command = commandOf(*at_++);
      if (!command) return std::nullopt;
      const int points = *command == CAIRO_PATH_CURVE_TO     ? 3
                         : *command == CAIRO_PATH_CLOSE_PATH ? 0
                                                             : 1;
      outline.push_back({.header = {*command, 1 + points}});
      for (int i = 0; i < points; ++i) {
        const auto x = number();
        const auto y = number();
        if (!x || !y) return std::nullopt;
        outline.push_back({.point = {*x, *y}});
      }
    }
    return outline;
  }

 private:
  bool skipBlanks() {
    while (at_ < end_ && *at_ == ' ') ++at_;
    return at_ < end_;
  }
  std::optional<double> number() {
    double value = 0;
    if (!skipBlanks()) return std::nullopt;
    const auto [next, error] = std::from_chars(at_, end_, value);
    if (error != std::errc()) return std::nullopt;
    at_ = next;
    return value;
  }

  const char* at_;
  const char* end_;
};

struct Symbol {
  std::string text;
  std::optional<Outline> outline;
  std::array<GdkPaintable*, 2> paintables{};  // by side
};

std::map<std::string, Symbol, std::less<>>& symbols() {
  static std::map<std::string, Symbol, std::less<>> all;
  return all;
}

}  // namespace

namespace orvel::Symbols {

void load(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string name;
  std::string text;
  while (std::getline(stream, name, '\t') && std::getline(stream, text))
    symbols()[name].text = std::move(text);
}

GdkPaintable* paintable(std::string_view symbol, Side side) {
  const auto found = symbols().find(symbol);
  if (found == symbols().end()) return nullptr;
  Symbol& known = found->second;
  auto& paintable = known.paintables[static_cast<size_t>(side)];
  if (!paintable) {
    if (!known.outline) known.outline = Parser(known.text).outline();
    if (!known.outline) return nullptr;
    auto* made = static_cast<OrvelSymbol*>(g_object_new(orvel_symbol_get_type(), nullptr));
    made->outline = &*known.outline;
    made->isMirrored = side == Side::Mirrored;
    paintable = GDK_PAINTABLE(made);
  }
  return paintable;
}

}  // namespace orvel::Symbols
