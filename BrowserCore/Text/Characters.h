#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// Characters as a person counts them: the extended grapheme clusters of Unicode's annex 29.
// Ill-formed UTF-8 counts as one character for each ill-formed sequence.
namespace orvel::text {

// Where the first characters of the text end, in bytes and ascending; at most `limit` of them.
[[nodiscard]] std::vector<size_t> characterEnds(std::string_view text, size_t limit);

// The number of characters, or `limit` when there are at least that many: what lies behind is not
// read.
[[nodiscard]] size_t characterCount(std::string_view text, size_t limit);

}  // namespace orvel::text
