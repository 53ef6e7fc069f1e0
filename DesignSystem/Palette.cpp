#include "DesignSystem/Palette.h"

#include <cmath>

namespace orvel {

namespace {

constexpr SchemeColor kInk = {Color::hex(0x2B2620), Color::hex(0xE8E1D3)};
constexpr SchemeColor kSlip = {Color::hex(0x2B2620), Color::hex(0x3B372F)};
constexpr SchemeColor kSlipInk = {Color::hex(0xF4EFE3), Color::hex(0xF1EBDE)};
constexpr SchemeColor kDanger = {Color::hex(0xA3352B), Color::hex(0xE08A78)};
constexpr SchemeColor kOnDanger = {Color::hex(0xFBF1EC), Color::hex(0x2B0F0A)};
constexpr Color kWhite = Color::hex(0xFFFFFF);

}  // namespace

Color mix(Color a, Color b, double amount) {
  const auto channel = [amount](uint8_t from, uint8_t to) {
    return static_cast<uint8_t>(std::lround(from + (to - from) * std::clamp(amount, 0.0, 1.0)));
  };
  return {channel(a.red, b.red), channel(a.green, b.green), channel(a.blue, b.blue)};
}

Palette paletteOf(const Theme& theme, ColorScheme scheme) {
  const bool isDark = scheme == ColorScheme::dark;
  const auto& variant = theme.in(scheme);
  const auto& [top, bottom] = variant.backdrop;
  const Color raised = mix(top, kWhite, isDark ? 0.06 : 0.64);
  const Color ink = kInk.in(scheme);
  return {.top = top,
          .bottom = bottom,
          .accent = variant.accent,
          .onAccent = variant.onAccent,
          .ink = ink,
          .paper = Surface::paper.in(scheme),
          .raised = raised,
          .slip = kSlip.in(scheme),
          .slipInk = kSlipInk.in(scheme),
          .slipAccent = mix(theme.dark.accent, kSlipInk.light, 0.35),
          .pick = isDark ? mix(raised, variant.accent, 0.26) : variant.accent,
          .onPick = isDark ? ink : variant.onAccent,
          .danger = kDanger.in(scheme),
          .onDanger = kOnDanger.in(scheme)};
}

}  // namespace orvel
