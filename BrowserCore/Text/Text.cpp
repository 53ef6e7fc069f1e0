#include "BrowserCore/Text/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace orvel::text {

namespace {

constexpr char lowerLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool isASCII(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

// The text without the code points at either end for which `isDropped` holds.
template <typename Predicate>
std::string_view trimmedWhere(std::string_view text, Predicate isDropped) {
  const auto* data = reinterpret_cast<const uint8_t*>(text.data());
  size_t begin = 0;
  size_t end = text.size();
  while (begin < end) {
    size_t next = begin;
    UChar32 c = 0;
    U8_NEXT(data, next, end, c);
    if (c < 0 || !isDropped(c)) break;
    begin = next;
  }
  while (end > begin) {
    size_t last = end - 1;
    while (last > begin && U8_IS_TRAIL(data[last]) && end - last < U8_MAX_LENGTH) --last;
    size_t next = last;
    UChar32 c = 0;
    U8_NEXT(data, next, end, c);
    if (c < 0 || next != end || !isDropped(c)) break;
    end = last;
  }
  return text.substr(begin, end - begin);
}

void append(std::string& text, UChar32 c) {
  char bytes[U8_MAX_LENGTH];
  size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, c);
  text.append(bytes, length);
}

// The text with what `map` makes of each code point; ill-formed bytes stay.
template <typename Map>
std::string mapped(std::string_view text, Map map) {
  std::string result;
  result.reserve(text.size());
  const auto* data = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  for (int64_t i = 0; i < size;) {
    const int64_t begin = i;
    UChar32 c = 0;
    U8_NEXT(data, i, size, c);
    const UChar32 other = c < 0 ? c : map(c);
    if (other == c)
      result.append(text, static_cast<size_t>(begin), static_cast<size_t>(i - begin));
    else
      append(result, other);
    // The one letter whose lower case is two code points: i and a dot above.
    if (c == 0x130 && other == 'i') append(result, 0x307);
  }
  return result;
}

}  // namespace

bool isValidUTF8(std::string_view bytes) {
  if (isASCII(bytes)) return true;
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  const auto size = static_cast<int64_t>(bytes.size());
  for (int64_t i = 0; i < size;) {
    UChar32 c = 0;
    U8_NEXT(data, i, size, c);
    if (c < 0) return false;
  }
  return true;
}

std::string repairedUTF8(std::string_view bytes) {
  if (isValidUTF8(bytes)) return std::string(bytes);
  std::string result;
  result.reserve(bytes.size() + 16);
  const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
  const auto size = static_cast<int64_t>(bytes.size());
  for (int64_t i = 0; i < size;) {
    const int64_t begin = i;
    UChar32 c = 0;
    U8_NEXT(data, i, size, c);
    if (c < 0)
      result += "\xEF\xBF\xBD";
    else
      result.append(bytes.substr(static_cast<size_t>(begin), static_cast<size_t>(i - begin)));
  }
  return result;
}

bool equalsIgnoringASCIICase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerLetter(x) == lowerLetter(y); });
}

std::string lowerASCII(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowerLetter);
  return result;
}

std::string lower(std::string_view text) {
  if (isASCII(text)) return lowerASCII(text);
  return mapped(text, [](UChar32 c) { return u_tolower(c); });
}

std::string caseFolded(std::string_view text) {
  if (isASCII(text)) return lowerASCII(text);
  return mapped(text, [](UChar32 c) { return u_foldCase(c, U_FOLD_CASE_DEFAULT); });
}

std::string_view trimmed(std::string_view text) { return trimmedWhere(text, u_isUWhiteSpace); }

std::string_view trimmedBlanks(std::string_view text) {
  return trimmedWhere(text,
                      [](UChar32 c) { return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR; });
}

std::string_view trimmed(std::string_view text, char character) {
  const size_t begin = text.find_first_not_of(character);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(character) - begin + 1);
}

std::string prefix(std::string_view text, size_t limit) {
  if (text.size() <= limit) return std::string(text);
  while (limit > 0 && U8_IS_TRAIL(text[limit])) --limit;
  return std::string(text.substr(0, limit));
}

bool containsWhiteSpace(std::string_view text) {
  const auto* data = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  for (int64_t i = 0; i < size;) {
    UChar32 c = 0;
    U8_NEXT(data, i, size, c);
    if (c >= 0 && u_isUWhiteSpace(c)) return true;
  }
  return false;
}

std::vector<std::string_view> splitNonEmpty(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    const size_t end = text.find(separator);
    if (end != 0) pieces.push_back(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return pieces;
}

Halves splitOnce(std::string_view text, char separator) {
  const size_t begin = text.find_first_not_of(separator);
  if (begin == std::string_view::npos) return {};
  const size_t end = text.find(separator, begin);
  if (end == std::string_view::npos) return {text.substr(begin), {}};
  return {text.substr(begin, end - begin), text.substr(end + 1)};
}

}  // namespace orvel::text
