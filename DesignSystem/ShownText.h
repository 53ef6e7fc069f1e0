#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvel {

// How many bytes of a text a label is given at most: laying out a line costs time for all of it,
// also for what is cut off at its end.
inline constexpr size_t kMaxShownText = 400;

// A text from elsewhere (a page's title, an address) made ready for a label of one line: valid
// UTF-8, control characters and line ends as blanks, no longer than `limit` bytes, the rest told by
// an ellipsis.
[[nodiscard]] std::string shownText(std::string_view text, size_t limit = kMaxShownText);

}  // namespace orvel
