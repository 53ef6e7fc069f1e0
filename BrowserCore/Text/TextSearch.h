#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvel::text {

// A text to be looked for in many others, as a person means it: in any letter case, by the rules of
// the language that ICU's default locale names (a Turkish "I" is no "i"), and however letters with
// marks are composed. Marks count: "e" is not in "é".
class Needle {
 public:
  // Of a longer text only so many bytes are searched, so that no page's title holds up typing.
  static constexpr size_t kMaxSearched = size_t{16} << 10;

  explicit Needle(std::string_view text);

  // Whether `text` contains the needle. An empty needle is nowhere; ill-formed UTF-8 reads as
  // U+FFFD.
  bool isIn(std::string_view text) const;

 private:
  // In Turkish and Azerbaijani the dotless "I" is a letter of its own.
  enum class LetterI { Common, Turkic };

  std::string folded(std::string_view text) const;

  LetterI letterI_;
  std::string folded_;
  bool isASCII_;
};

}  // namespace orvel::text
