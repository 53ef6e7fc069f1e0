#include "BrowserCore/Look/Theme.h"

#include <cmath>
#include <limits>

#include "BrowserCore/Text/Translatable.h"

namespace orvel {

namespace {

constexpr Theme::Variant variant(uint32_t top, uint32_t bottom, uint32_t accent,
                                 uint32_t onAccent) {
  return {{Color::hex(top), Color::hex(bottom)}, Color::hex(accent), Color::hex(onAccent)};
}

double circularDistance(double a, double b) {
  const double distance = std::fmod(std::abs(a - b), 1.0);
  return std::min(distance, 1.0 - distance);
}

}  // namespace

constinit const std::array<Theme, 8> Theme::all = {{
    {"claret", translatable("Claret"), 0.94, variant(0xF3E9E6, 0xE9D9D4, 0x7A2335, 0xF7EEE9),
     variant(0x251C1D, 0x1A1516, 0xC56F7C, 0x2A0D13)},
    {"cognac", translatable("Cognac"), 0.05, variant(0xF3E8DE, 0xE9D8C7, 0x8B4A2B, 0xFAF1E9),
     variant(0x241D18, 0x1A1512, 0xCB8D61, 0x2B160A)},
    {"ochre", translatable("Ochre"), 0.12, variant(0xF4ECDA, 0xEADDBF, 0x8E6B1F, 0xFBF5E6),
     variant(0x24211A, 0x1A1814, 0xD4AF5C, 0x2B2008)},
    {"vellum", translatable("Vellum"), 0.17, variant(0xF5F0E4, 0xEBE3D1, 0x3B342B, 0xF5F0E4),
     variant(0x1F1D19, 0x171613, 0xDCD2BE, 0x1F1D19)},
    {"sage", translatable("Sage"), 0.30, variant(0xEBEEE2, 0xDCE2CF, 0x56704A, 0xF3F5EC),
     variant(0x1E211C, 0x161814, 0x9DB68E, 0x16200F)},
    {"verdigris", translatable("Verdigris"), 0.47, variant(0xE4EEEA, 0xD1E2DC, 0x2C6B5E, 0xEEF6F3),
     variant(0x1B2220, 0x141917, 0x6DB4A4, 0x0C211C)},
    {"navy", translatable("Navy"), 0.61, variant(0xE7EAF0, 0xD6DCE6, 0x1F3A5F, 0xEEF2F8),
     variant(0x1A1D24, 0x14161B, 0x86A2CC, 0x0E1A2D)},
    {"heather", translatable("Heather"), 0.77, variant(0xEDE8EF, 0xE0D8E4, 0x5A4870, 0xF5F1F7),
     variant(0x1F1C23, 0x17151A, 0xAB97C4, 0x1E1529)},
}};

const Theme* Theme::withID(std::string_view id) {
  const auto theme = std::ranges::find(all, id, &Theme::id);
  return theme == all.end() ? nullptr : &*theme;
}

const Theme& Theme::forHue(double hue) {
  const Theme* nearest = &all.front();
  double smallest = std::numeric_limits<double>::infinity();
  for (const Theme& theme : all) {
    const double distance = circularDistance(theme.hue, hue);
    if (distance < smallest) {
      smallest = distance;
      nearest = &theme;
    }
  }
  return *nearest;
}

}  // namespace orvel
