#include "BrowserCore/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace orvel::text {

namespace {

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool isASCII(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
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
                    [](char x, char y) { return lower(x) == lower(y); });
}

std::string lowerASCII(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

std::string_view trimmed(std::string_view text) {
  const auto* data = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  int64_t begin = 0;
  while (begin < size) {
    int64_t next = begin;
    UChar32 c = 0;
    U8_NEXT(data, next, size, c);
    if (c < 0 || !u_isUWhiteSpace(c)) break;
    begin = next;
  }
  int64_t end = size;
  while (end > begin) {
    int64_t last = end - 1;
    while (last > begin && end - last < 4 && U8_IS_TRAIL(data[last])) --last;
    int64_t next = last;
    UChar32 c = 0;
    U8_NEXT(data, next, size, c);
    if (c < 0 || !u_isUWhiteSpace(c)) break;
    end = last;
  }
  return text.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin));
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

}  // namespace orvel::text
