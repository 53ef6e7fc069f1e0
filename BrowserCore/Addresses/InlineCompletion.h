#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "BrowserCore/Addresses/URL.h"

namespace orvel::InlineCompletion {

// The text to show in the address field: what was typed, in its letter case, and behind it the rest
// of the first host in `urls` (best first) that begins with it; with a "/" in the typed text, of
// the first host and path. A leading "www." need not be typed.
//
// Absent when nothing fits, when the typed text already names one of the pages exactly, and for
// texts shorter than two characters or with white space or ":".
[[nodiscard]] std::optional<std::string> complete(std::string_view typed,
                                                  std::span<const URL> urls);

}  // namespace orvel::InlineCompletion
