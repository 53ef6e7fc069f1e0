#include "BrowserCore/ContentBlocking/FilterLines.h"

#include <array>
#include <cstdint>

namespace orvel::filters {

namespace {

// Bytes at which a line may end: the ends of one byte, and the first bytes of the longer ones.
constexpr auto stopsLine = [] {
  std::array<bool, 256> stops{};
  for (const int c : {0x0A, 0x0B, 0x0C, 0x0D, 0xC2, 0xE2}) stops[static_cast<size_t>(c)] = true;
  return stops;
}();

// How many bytes of a line end stand at the beginning of `text`; 0 if there is none.
size_t lineEndLength(std::string_view text) {
  if (text[0] >= 0x0A && text[0] <= 0x0D) return 1;
  if (text.starts_with("\xC2\x85")) return 2;
  return text.starts_with("\xE2\x80\xA8") || text.starts_with("\xE2\x80\xA9") ? 3 : 0;
}

bool isWideBlank(std::string_view bytes) {
  return bytes == "\xE1\x9A\x80" || bytes == "\xE2\x80\xAF" || bytes == "\xE2\x81\x9F" ||
         bytes == "\xE3\x80\x80" ||
         (bytes.starts_with("\xE2\x80") && bytes[2] >= '\x80' && bytes[2] <= '\x8A');
}

size_t leadingBlankLength(std::string_view text) {
  if (text.empty()) return 0;
  if (text[0] == ' ' || text[0] == '\t') return 1;
  if (text.starts_with("\xC2\xA0")) return 2;
  return text.size() >= 3 && isWideBlank(text.substr(0, 3)) ? 3 : 0;
}

size_t trailingBlankLength(std::string_view text) {
  if (text.empty()) return 0;
  if (text.back() == ' ' || text.back() == '\t') return 1;
  if (text.ends_with("\xC2\xA0")) return 2;
  return text.size() >= 3 && isWideBlank(text.substr(text.size() - 3)) ? 3 : 0;
}

}  // namespace

bool FilterLines::next(std::string_view& line) {
  if (rest_.empty()) return false;
  size_t end = 0;
  size_t endLength = 0;
  for (; end < rest_.size(); ++end)
    if (stopsLine[static_cast<uint8_t>(rest_[end])] &&
        (endLength = lineEndLength(rest_.substr(end))) > 0)
      break;
  line = rest_.substr(0, end);
  rest_.remove_prefix(end + endLength);
  while (const size_t length = leadingBlankLength(line)) line.remove_prefix(length);
  while (const size_t length = trailingBlankLength(line)) line.remove_suffix(length);
  return true;
}

}  // namespace orvel::filters
