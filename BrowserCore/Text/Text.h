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

// The value of a hexadecimal digit; -1 for any other character.
[[nodiscard]] constexpr int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Unicode's lower case, one code point at a time: independent of the locale and of what stands
// beside a letter, so that the lower case of a prefix is a prefix of the lower case. Ill-formed
// bytes stay.
[[nodiscard]] std::string lower(std::string_view text);
// Equal for texts that differ in the case of their letters alone, by Unicode's simple case folding.
// Ill-formed bytes stay.
[[nodiscard]] std::string caseFolded(std::string_view text);

// White space and line ends (Unicode's White_Space) removed from both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);
// Tabs and Unicode's space separators removed from both ends; line ends stay.
[[nodiscard]] std::string_view trimmedBlanks(std::string_view text);
// Every `character` removed from both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text, char character);

// At most `limit` bytes of the beginning, ending with a whole character.
[[nodiscard]] std::string prefix(std::string_view text, size_t limit);

[[nodiscard]] bool containsWhiteSpace(std::string_view text);

// The pieces between `separator`s, without the empty ones.
[[nodiscard]] std::vector<std::string_view> splitNonEmpty(std::string_view text, char separator);

// The text cut in two: `first` is its first non-empty piece, `rest` everything behind the separator
// that ends it. Either is empty when there is nothing of it.
struct Halves {
  std::string_view first;
  std::string_view rest;
};
[[nodiscard]] Halves splitOnce(std::string_view text, char separator);

}  // namespace orvel::text
