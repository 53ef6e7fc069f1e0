#include "BrowserCore/Addresses/PercentCoding.h"

#include "BrowserCore/Text/Text.h"

namespace orvel {

std::optional<std::string> percentEncoded(std::string_view text, const CharacterSet& allowed) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  if (!text::isValidUTF8(text)) return std::nullopt;
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (allowed.holds(c)) {
      result += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    result += {'%', kDigits[byte >> 4], kDigits[byte & 0x0f]};
  }
  return result;
}

std::string percentDecoded(std::string_view text) {
  size_t percent = text.find('%');
  if (percent == std::string_view::npos) return std::string(text);
  std::string result;
  result.reserve(text.size());
  size_t copied = 0;
  while (percent != std::string_view::npos) {
    const int high = percent + 2 < text.size() ? text::hexValue(text[percent + 1]) : -1;
    const int low = high < 0 ? -1 : text::hexValue(text[percent + 2]);
    if (low >= 0) {
      result += text.substr(copied, percent - copied);
      result += static_cast<char>(high << 4 | low);
      copied = percent + 3;
    }
    percent = text.find('%', low >= 0 ? copied : percent + 1);
  }
  result += text.substr(copied);
  return text::isValidUTF8(result) ? result : std::string(text);
}

}  // namespace orvel
