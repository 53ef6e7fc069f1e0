#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// A set of ASCII characters that stand for themselves in some part of an address.
class CharacterSet {
 public:
  consteval explicit CharacterSet(std::string_view characters) {
    for (const char c : characters) members_[static_cast<unsigned char>(c)] = true;
  }
  constexpr bool holds(char c) const { return members_[static_cast<unsigned char>(c)]; }

 private:
  std::array<bool, 256> members_{};
};

// What RFC 3986 lets stand in a path, without "%".
inline constexpr CharacterSet kPathCharacters(
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$&'()*+,;=:@/");
// What can stand in the value of a query item: a query's characters without "&", "=", "+", "?".
inline constexpr CharacterSet kQueryValueCharacters(
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~!$'()*,;:@/");

// The text with every byte outside `allowed` written as "%" and two upper-case hexadecimal digits.
// Absent when the bytes are no UTF-8.
[[nodiscard]] std::optional<std::string> percentEncoded(std::string_view text,
                                                        const CharacterSet& allowed);

// The text with every "%" and two hexadecimal digits replaced by their byte; a "%" without them
// stays. The text as it was when the outcome is no UTF-8.
[[nodiscard]] std::string percentDecoded(std::string_view text);

}  // namespace orvel
