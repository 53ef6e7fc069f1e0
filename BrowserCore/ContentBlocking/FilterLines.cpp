#include "BrowserCore/ContentBlocking/FilterLines.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

namespace orvel::filters {

namespace {

constexpr bool isASCII(char c) { return (c & 0x80) == 0; }

// How many bytes of a line end stand at the beginning of `text`; 0 if there is none.
size_t lineEndLength(std::string_view text) {
  if (text[0] >= 0x0A && text[0] <= 0x0D) return 1;
  if (isASCII(text[0])) return 0;
  if (text.starts_with("\xC2\x85")) return 2;
  return text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9") ? 3 : 0;
}

// Where the first byte of `text` from `begin` on stands with which a line end can begin: one below
// 0x0E or outside ASCII.
size_t findCandidate(std::string_view text, size_t begin) {
  static_assert(std::endian::native == std::endian::little);
  constexpr uint64_t ones = 0x0101010101010101;
  size_t i = begin;
  for (; text.size() - i >= sizeof(uint64_t); i += sizeof(uint64_t)) {
    uint64_t word = 0;
    std::memcpy(&word, text.data() + i, sizeof(word));
    // The highest bit of each such byte. A byte that is found can make those above it seem so too.
    const uint64_t found = (word | (word - ones * 0x0E)) & (ones * 0x80);
    if (found != 0) return i + static_cast<size_t>(std::countr_zero(found)) / 8;
  }
  while (i < text.size() && isASCII(text[i]) && text[i] >= 0x0E) ++i;
  return i;
}

// Where the first line end stands, and how long it is; the size and 0 if there is none.
std::pair<size_t, size_t> findLineEnd(std::string_view text) {
  for (size_t i = 0;; ++i) {
    i = findCandidate(text, i);
    if (i == text.size()) return {i, 0};
    if (const size_t length = lineEndLength(text.substr(i))) return {i, length};
  }
}

bool isWideBlank(std::string_view bytes) {
  return bytes == "\xE1\x9A\x80" || bytes == "\xE2\x80\xAF" || bytes == "\xE2\x81\x9F" ||
         bytes == "\xE3\x80\x80" ||
         (bytes.starts_with("\xE2\x80") && bytes[2] >= '\x80' && bytes[2] <= '\x8A');
}

size_t leadingBlankLength(std::string_view text) {
  if (text.empty()) return 0;
  if (isASCII(text[0])) return text[0] == ' ' || text[0] == '\t' ? 1 : 0;
  if (text.starts_with("\xC2\xA0")) return 2;
  return text.size() >= 3 && isWideBlank(text.substr(0, 3)) ? 3 : 0;
}

size_t trailingBlankLength(std::string_view text) {
  if (text.empty()) return 0;
  if (isASCII(text.back())) return text.back() == ' ' || text.back() == '\t' ? 1 : 0;
  if (text.ends_with("\xC2\xA0")) return 2;
  return text.size() >= 3 && isWideBlank(text.substr(text.size() - 3)) ? 3 : 0;
}

}  // namespace

bool FilterLines::next(std::string_view& line) {
  if (rest_.empty()) return false;
  const auto [end, endLength] = findLineEnd(rest_);
  line = rest_.substr(0, end);
  rest_.remove_prefix(end + endLength);
  while (const size_t length = leadingBlankLength(line)) line.remove_prefix(length);
  while (const size_t length = trailingBlankLength(line)) line.remove_suffix(length);
  return true;
}

}  // namespace orvel::filters
