#include "BrowserCore/Text/LetterCase.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>

#include <algorithm>

namespace orvel::text {

namespace {

using Map = void (*)(const char* locale, uint32_t options, icu::StringPiece text,
                     icu::ByteSink& sink, icu::Edits* edits, UErrorCode& status);

// The letters from `first` to `last` have the other case than wanted. ASCII, nearly every text,
// never reaches the library.
std::string mapped(std::string_view text, char first, char last, Map map) {
  std::string result(text);
  bool isASCII = true;
  for (char& c : result) {
    isASCII = isASCII && (c & 0x80) == 0;
    if (c >= first && c <= last) c = static_cast<char>(c ^ 0x20);
  }
  if (isASCII) return result;
  result.clear();
  icu::StringByteSink<std::string> sink(&result);
  UErrorCode status = U_ZERO_ERROR;
  map("", 0, icu::StringPiece(text.data(), static_cast<int32_t>(text.size())), sink, nullptr,
      status);
  return result;
}

}  // namespace

std::string lowerCased(std::string_view text) {
  return mapped(text, 'A', 'Z', icu::CaseMap::utf8ToLower);
}

std::string upperCased(std::string_view text) {
  return mapped(text, 'a', 'z', icu::CaseMap::utf8ToUpper);
}

}  // namespace orvel::text
