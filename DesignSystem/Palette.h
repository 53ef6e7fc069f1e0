#pragma once

#include "BrowserCore/Look/Theme.h"

namespace orvel {

// The color between two, channel by channel: `amount` 0 gives `a`, 1 gives `b`.
[[nodiscard]] Color mix(Color a, Color b, double amount);

// Every color of the interface for one theme in one scheme.
struct Palette {
  Color top;
  Color bottom;
  Color accent;
  Color onAccent;
  Color ink;
  Color paper;
  Color raised;  // slips, cards, menus
  Color slip;    // toasts and tooltips
  Color slipInk;
  Color slipAccent;  // the action on a toast
  Color pick;        // the chosen row of a menu
  Color onPick;
  Color danger;
  Color onDanger;
};

[[nodiscard]] Palette paletteOf(const Theme& theme, ColorScheme scheme);

}  // namespace orvel
