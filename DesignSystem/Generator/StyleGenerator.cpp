// Writes the application's style sheets: style.css, which is common.css as it is and scheme.css
// once for each scheme, and for each theme theme-ID.css, which is theme.css once for each scheme.
// In the templates "&" stands for the class of the scheme or theme, and "$name" for a color.
//
//   style-generator FOLDER OUTPUT-FOLDER

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "DesignSystem/Palette.h"

namespace {

using namespace orvel;
using Values = std::map<std::string, std::string, std::less<>>;

std::string read(const std::filesystem::path& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

void write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::trunc);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

std::string hex(Color color) {
  return fmt::format("#{:02X}{:02X}{:02X}", color.red, color.green, color.blue);
}

std::string expand(std::string_view text, std::string_view root, const Values& values) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '&') {
      result += root;
    } else if (text[i] == '$') {
      size_t end = i + 1;
      while (end < text.size() && (isalnum(static_cast<unsigned char>(text[end])) != 0)) ++end;
      const auto value = values.find(text.substr(i + 1, end - i - 1));
      if (value == values.end())
        throw std::runtime_error("no color " + std::string(text.substr(i, end - i)));
      result += value->second;
      i = end - 1;
    } else {
      result += text[i];
    }
  }
  return result;
}

Values valuesOf(const Palette& palette, ColorScheme scheme) {
  const bool isDark = scheme == ColorScheme::dark;
  // Shadows are ink by day and black by night; hairlines around lifted things are ink or light.
  const auto edge = [&](double light, double dark) {
    return isDark ? fmt::format("rgba(255,248,235,{})", dark)
                  : fmt::format("rgba(43,38,32,{})", light);
  };
  const auto shade = [&](double light, double dark) {
    return isDark ? fmt::format("rgba(0,0,0,{})", dark) : fmt::format("rgba(43,38,32,{})", light);
  };
  return {
      {"top", hex(palette.top)},
      {"bottom", hex(palette.bottom)},
      {"upper", hex(mix(palette.top, palette.bottom, 0.2))},
      {"lower", hex(mix(palette.top, palette.bottom, 0.9))},
      {"accent", hex(palette.accent)},
      {"onAccent", hex(palette.onAccent)},
      {"ink", hex(palette.ink)},
      {"paper", hex(palette.paper)},
      {"raised", hex(palette.raised)},
      // The chosen part of a sunk well on a card.
      {"segment", hex(isDark ? mix(palette.raised, palette.ink, 0.14) : palette.raised)},
      {"knob", hex(isDark ? mix(palette.raised, palette.ink, 0.70) : palette.raised)},
      {"slip", hex(palette.slip)},
      {"slipInk", hex(palette.slipInk)},
      {"slipAccent", hex(palette.slipAccent)},
      {"pick", hex(palette.pick)},
      {"onPick", hex(palette.onPick)},
      // On a chosen row of the command bar: by night its edge and symbol are the accent's, by day
      // its site's icon stands on a plate.
      {"pickEdge", isDark ? "3px" : "0px"},
      {"pickSymbol", hex(isDark ? palette.accent : palette.onPick)},
      {"pickCap", fmt::format("alpha({}, {})", hex(palette.onPick), isDark ? 0.28 : 0.45)},
      {"pickPlate", isDark ? "transparent" : hex(palette.onPick)},
      {"danger", hex(palette.danger)},
      {"second", fmt::format("alpha({}, {})", hex(palette.ink), isDark ? 0.70 : 0.76)},
      {"third", fmt::format("alpha({}, {})", hex(palette.ink), isDark ? 0.46 : 0.54)},
      {"deboss",
       fmt::format("inset 0 1px 1px {}, inset 0 0 0 1px {}", shade(0.07, 0.26), shade(0.04, 0.10))},
      {"e1", fmt::format("0 0 0 1px {}, 0 1px 2px {}", edge(0.06, 0.06), shade(0.10, 0.34))},
      {"e2", fmt::format("0 0 0 1px {}, 0 1px 2px {}, 0 8px 20px -10px {}", edge(0.09, 0.07),
                         shade(0.06, 0.30), shade(0.18, 0.50))},
      {"e3", fmt::format("0 0 0 1px {}, 0 2px 6px {}, 0 14px 32px -8px {}", edge(0.10, 0.10),
                         shade(0.08, 0.30), shade(0.24, 0.60))},
      {"e4", fmt::format("0 0 0 1px {}, 0 6px 16px {}, 0 32px 64px -16px {}", edge(0.10, 0.11),
                         shade(0.10, 0.30), shade(0.38, 0.75))},
      // Of cards that may be so low that the toolkit would smear the longest shadow beside them.
      {"lowCard", fmt::format("0 0 0 1px {}, 0 6px 16px {}, 0 28px 40px -16px {}", edge(0.10, 0.11),
                              shade(0.10, 0.30), shade(0.38, 0.75))},
      {"dimming", shade(0.18, 0.40)},
      {"peek", fmt::format("0 0 0 1px {}, 0 12px 36px {}", edge(0.10, 0.10), shade(0.25, 0.25))},
      {"toast", isDark ? "inset 0 0 0 1px rgba(255,248,235,0.08), 0 12px 28px -8px rgba(0,0,0,0.6)"
                       : "0 1px 2px rgba(0,0,0,0.20), 0 12px 28px -8px rgba(0,0,0,0.45)"},
  };
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: style-generator FOLDER OUTPUT-FOLDER\n";
    return 2;
  }
  try {
    const std::filesystem::path folder = arguments[1];
    const std::filesystem::path output = arguments[2];
    const auto scheme = read(folder / "scheme.css");
    const auto theme = read(folder / "theme.css");
    const auto rootOf = [](ColorScheme kind) {
      return kind == ColorScheme::dark ? ".scheme-dark" : ".scheme-light";
    };
    std::string common = read(folder / "common.css");
    for (const auto kind : {ColorScheme::light, ColorScheme::dark})
      common += expand(scheme, rootOf(kind), valuesOf(paletteOf(Theme::all.front(), kind), kind));
    write(output / "style.css", common);
    for (const auto& one : Theme::all) {
      std::string sheet;
      for (const auto kind : {ColorScheme::light, ColorScheme::dark})
        sheet += expand(theme, fmt::format(".theme-{}{}", one.id, rootOf(kind)),
                        valuesOf(paletteOf(one, kind), kind));
      write(output / fmt::format("theme-{}.css", one.id), sheet);
    }
  } catch (const std::exception& error) {
    std::cerr << "style-generator: " << error.what() << '\n';
    return 1;
  }
}
