#include "Models/KeyNotation.h"

namespace orvel {

std::string linuxShortcut(std::string_view glyphs) {
  struct Modifier {
    std::string_view name;
    std::string_view glyphs[2];
    bool isHeld = false;
  };
  Modifier modifiers[] = {{"Ctrl+", {"⌃", "⌘"}}, {"Alt+", {"⌥", "⌥"}}, {"Shift+", {"⇧", "⇧"}}};
  const auto takeModifier = [&] {
    for (Modifier& modifier : modifiers)
      for (const std::string_view glyph : modifier.glyphs)
        if (glyphs.starts_with(glyph)) {
          glyphs.remove_prefix(glyph.size());
          return modifier.isHeld = true;
        }
    return false;
  };
  while (takeModifier()) {
  }
  std::string result;
  for (const Modifier& modifier : modifiers)
    if (modifier.isHeld) result += modifier.name;
  return result.append(glyphs);
}

}  // namespace orvel
