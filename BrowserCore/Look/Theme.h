#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvel {

// An opaque sRGB color.
struct Color {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;

  // From the number that its usual notation is: 0xRRGGBB.
  static constexpr Color hex(uint32_t value) {
    return {static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8),
            static_cast<uint8_t>(value)};
  }

  friend constexpr bool operator==(const Color&, const Color&) = default;
};

enum class ColorScheme : uint8_t { light, dark };

// A color that depends on the scheme.
struct SchemeColor {
  Color light;
  Color dark;

  constexpr Color in(ColorScheme scheme) const {
    return scheme == ColorScheme::dark ? dark : light;
  }
};

// The colors of a space.
struct Theme {
  // The gradient behind the sidebar and the window.
  struct Backdrop {
    Color top;
    Color bottom;

    friend constexpr bool operator==(const Backdrop&, const Backdrop&) = default;
  };
  struct Variant {
    Backdrop backdrop;
    Color accent;
    Color onAccent;  // What is written on the accent.

    friend constexpr bool operator==(const Variant&, const Variant&) = default;
  };

  std::string_view id;  // Stored in the space's record.
  const char* name;     // Shown to people; marked, not looked up.
  double hue = 0;       // On the color circle, from 0 to 1.
  Variant light;
  Variant dark;

  constexpr const Variant& in(ColorScheme scheme) const {
    return scheme == ColorScheme::dark ? dark : light;
  }

  // Every theme, in the order in which they are offered.
  static const std::array<Theme, 8> all;

  // The theme with this id; null for an unknown one.
  [[nodiscard]] static const Theme* withID(std::string_view id);

  // The theme nearest to a hue on the circle, the earlier one of two equally near. The first for a
  // hue that is no finite number.
  [[nodiscard]] static const Theme& forHue(double hue);

  friend constexpr bool operator==(const Theme&, const Theme&) = default;
};

// The paper below an empty page, an error page and the reader.
namespace Surface {
inline constexpr SchemeColor paper = {{244, 239, 227}, {28, 26, 23}};
}

// The two inks that are the same in every space.
namespace Ink {
inline constexpr SchemeColor claret = {{140, 58, 50}, {217, 160, 139}};
inline constexpr SchemeColor verdigris = {{63, 107, 88}, {143, 179, 160}};
}  // namespace Ink

}  // namespace orvel
