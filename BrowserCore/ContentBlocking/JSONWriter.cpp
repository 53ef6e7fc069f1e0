#include "BrowserCore/ContentBlocking/JSONWriter.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "BrowserCore/Text/Text.h"

namespace orvel::filters {

namespace {

constexpr size_t maxEscapeSize = 6;

struct Escape {
  char text[maxEscapeSize];
  uint8_t size;
};

constexpr bool isEscaped(uint8_t byte) { return byte < 0x20 || byte == '"' || byte == '\\'; }

constexpr Escape escape(uint8_t byte) {
  switch (byte) {
    case '"':
      return {{'\\', '"'}, 2};
    case '\\':
      return {{'\\', '\\'}, 2};
    case '\b':
      return {{'\\', 'b'}, 2};
    case '\f':
      return {{'\\', 'f'}, 2};
    case '\n':
      return {{'\\', 'n'}, 2};
    case '\r':
      return {{'\\', 'r'}, 2};
    case '\t':
      return {{'\\', 't'}, 2};
    default:
      return {{'\\', 'u', '0', '0', byte < 0x10 ? '0' : '1', "0123456789abcdef"[byte & 15]}, 6};
  }
}

// Texts are looked at eight bytes at a time, the first one being the lowest of a word.
static_assert(std::endian::native == std::endian::little);
constexpr uint64_t highBits = 0x8080808080808080;

// The highest bit of each byte that must be escaped. Only the lowest bit that is set is certain.
constexpr uint64_t escapedBytes(uint64_t word) {
  constexpr uint64_t ones = 0x0101010101010101;
  const uint64_t quotes = word ^ (ones * '"');
  const uint64_t backslashes = word ^ (ones * '\\');
  return (((word - ones * 0x20) & ~word) | ((quotes - ones) & ~quotes) |
          ((backslashes - ones) & ~backslashes)) &
         highBits;
}

}  // namespace

JSONWriter::JSONWriter(size_t expectedSize) {
  buffer_.reserve(expectedSize + literalRoom);
  next_ = buffer_.data();
  grow(literalRoom);
}

void JSONWriter::escaped(std::string_view text) {
  makeRoomFor(text);
  char* const begin = next_;
  if (copyEscaped(text) || text::isValidUTF8(text)) return;
  const std::string repaired = text::repairedUTF8(text);
  next_ = begin;
  makeRoomFor(repaired);
  copyEscaped(repaired);
}

// Counts only where room for the worst case would make the buffer grow.
void JSONWriter::makeRoomFor(std::string_view text) {
  if (hasRoom(maxEscapeSize * text.size())) return;
  size_t size = text.size();
  for (const char c : text)
    if (isEscaped(static_cast<uint8_t>(c))) size += maxEscapeSize - 1;
  makeRoom(size);
}

// Makes at least `size` bytes ready behind what is written.
void JSONWriter::grow(size_t size) {
  constexpr size_t step = 64 * 1024;
  const size_t used = this->size();
  buffer_.resize(std::max(used + size, std::min(used + size + step, buffer_.capacity())));
  next_ = buffer_.data() + used;
  last_ = buffer_.data() + buffer_.size();
}

// Needs the room that `makeRoomFor` makes. False if there are bytes outside ASCII, which are copied
// as they stand.
bool JSONWriter::copyEscaped(std::string_view text) {
  const char* from = text.data();
  const char* const end = from + text.size();
  char* to = next_;
  uint64_t seen = 0;
  const auto copyOne = [&] {
    const auto byte = static_cast<uint8_t>(*from++);
    seen |= byte;
    if (isEscaped(byte)) {
      const Escape sequence = escape(byte);
      std::memcpy(to, sequence.text, maxEscapeSize);
      to += sequence.size;
    } else {
      *to++ = static_cast<char>(byte);
    }
  };
  while (end - from >= 8) {
    uint64_t word = 0;
    std::memcpy(&word, from, 8);
    std::memcpy(to, from, 8);
    seen |= word;
    const uint64_t found = escapedBytes(word);
    const int clean = found == 0 ? 8 : std::countr_zero(found) / 8;
    from += clean;
    to += clean;
    if (found != 0) copyOne();
  }
  while (from != end) copyOne();
  next_ = to;
  return (seen & highBits) == 0;
}

}  // namespace orvel::filters
