#pragma once

#include <string>
#include <string_view>
#include <vector>

// Small operations on UTF-8 texts that more than one unit needs. Nothing here depends on a locale.
namespace orvel::text {

// Well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
[[nodiscard]] bool isValidUTF8(std::string_view bytes);

// The bytes with every ill-formed sequence replaced by U+FFFD, so that a text can always be
// encoded.
[[nodiscard]] std::string repairedUTF8(std::string_view bytes);

[[nodiscard]] bool equalsIgnoringASCIICase(std::string_view a, std::string_view b);
[[nodiscard]] std::string lowerASCII(std::string_view text);

// White space and line ends (Unicode's White_Space) removed from both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

// The pieces between `separator`s, without the empty ones.
[[nodiscard]] std::vector<std::string_view> splitNonEmpty(std::string_view text, char separator);

}  // namespace orvel::text
