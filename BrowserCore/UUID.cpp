#include "BrowserCore/UUID.h"

#include <sodium/randombytes.h>

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr bool isHyphenAt(size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

}  // namespace

UUID UUID::random() {
  UUID id;
  randombytes_buf(id.bytes_.data(), id.bytes_.size());
  id.bytes_[6] = static_cast<uint8_t>((id.bytes_[6] & 0x0f) | 0x40);
  id.bytes_[8] = static_cast<uint8_t>((id.bytes_[8] & 0x3f) | 0x80);
  return id;
}

std::optional<UUID> UUID::parse(std::string_view text) {
  if (text.size() != 36) return std::nullopt;
  UUID id;
  size_t digit = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (isHyphenAt(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    const int value = text::hexValue(text[i]);
    if (value < 0) return std::nullopt;
    id.bytes_[digit / 2] = static_cast<uint8_t>((id.bytes_[digit / 2] << 4) | value);
    ++digit;
  }
  return id;
}

std::string UUID::text() const {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string result;
  result.reserve(36);
  for (const uint8_t byte : bytes_) {
    if (isHyphenAt(result.size())) result += '-';
    result += kDigits[byte >> 4];
    result += kDigits[byte & 0x0f];
  }
  return result;
}

}  // namespace orvel
