#pragma once

#include <string>
#include <string_view>

namespace orvel {

// The keys of a shortcut as people here read them: "⇧⌘N" is "Ctrl+Shift+N". "⌃" and "⌘" are Ctrl,
// "⌥" is Alt and "⇧" is Shift; what follows them stays.
[[nodiscard]] std::string linuxShortcut(std::string_view glyphs);

}  // namespace orvel
