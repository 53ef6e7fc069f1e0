#pragma once

#include <optional>
#include <string_view>

namespace orvel::filters {

// What the first "#" of a line says that the line is. A line can be longer and have more markers:
// only the first "#" counts.
struct CosmeticMarker {
  enum class Kind {
    hide,
    exception,
    // A cosmetic line of a kind that can't be expressed: procedural selectors, styles, scripts.
    unsupported,
  };

  Kind kind;
  // What stands before and behind the marker, as it stands; both empty for an unsupported one.
  std::string_view domains;
  std::string_view selector;

  // Nothing for a line that isn't cosmetic.
  static std::optional<CosmeticMarker> find(std::string_view line);
};

// Whether the engine can take the selector: short enough, in ASCII without escapes, with balanced
// brackets and quotes, and with no pseudo-element and no pseudo-class but those of structure. The
// engine drops a whole rule for one selector that it can't read.
bool isSupportedSelector(std::string_view selector);

}  // namespace orvel::filters
