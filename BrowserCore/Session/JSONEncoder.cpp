#include "BrowserCore/Session/JSONEncoder.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "BrowserCore/Session/InternetDate.h"
#include "BrowserCore/Text/Text.h"

namespace orvel::JSONCoding {

namespace {

// Deeper levels are not indented further: a tree as deep as it is long would fill the disk with
// blanks.
constexpr size_t kMaxIndentedLevels = 16;

constexpr bool needsEscape(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void appendEscaped(std::string& buffer, char c) {
  static constexpr char kHex[] = "0123456789abcdef";
  buffer += '\\';
  switch (c) {
    case '\b':
      buffer += 'b';
      break;
    case '\f':
      buffer += 'f';
      break;
    case '\n':
      buffer += 'n';
      break;
    case '\r':
      buffer += 'r';
      break;
    case '\t':
      buffer += 't';
      break;
    case '"':
    case '\\':
      buffer += c;
      break;
    default:
      buffer += "u00";
      buffer += kHex[static_cast<unsigned char>(c) >> 4];
      buffer += kHex[c & 0x0f];
  }
}

void appendQuoted(std::string& buffer, std::string_view text) {
  buffer += '"';
  while (!text.empty()) {
    const auto special = std::find_if(text.begin(), text.end(), needsEscape);
    buffer.append(text.begin(), special);
    text.remove_prefix(static_cast<size_t>(special - text.begin()));
    if (text.empty()) break;
    appendEscaped(buffer, text.front());
    text.remove_prefix(1);
  }
  buffer += '"';
}

template <typename Number>
void appendNumber(std::string& buffer, Number value) {
  char digits[32];
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), value);
  buffer.append(digits, end);
}

}  // namespace

void Encoder::breakLine() {
  buffer_ += '\n';
  buffer_.append(2 * std::min(depth_, kMaxIndentedLevels), ' ');
}

void Encoder::separate() {
  if (isAfterKey_) {
    isAfterKey_ = false;
    return;
  }
  if (!isFirst_) buffer_ += ',';
  if (depth_ > 0) breakLine();
  isFirst_ = false;
}

void Encoder::begin(char bracket) {
  separate();
  buffer_ += bracket;
  ++depth_;
  isFirst_ = true;
}

void Encoder::end(char bracket) {
  --depth_;
  if (!isFirst_) breakLine();
  buffer_ += bracket;
  isFirst_ = false;
}

void Encoder::key(std::string_view key) {
  separate();
  appendQuoted(buffer_, key);
  buffer_ += ": ";
  isAfterKey_ = true;
}

void Encoder::text(std::string_view value) {
  separate();
  if (text::isValidUTF8(value))
    appendQuoted(buffer_, value);
  else
    appendQuoted(buffer_, text::repairedUTF8(value));
}

void Encoder::number(double value) {
  separate();
  appendNumber(buffer_, std::isfinite(value) ? value : 0.0);
}

void Encoder::integer(int64_t value) {
  separate();
  appendNumber(buffer_, value);
}

void Encoder::boolean(bool value) {
  separate();
  buffer_ += value ? "true" : "false";
}

std::string Encoder::finish() && {
  buffer_ += '\n';
  return std::move(buffer_);
}

void encode(Encoder& encoder, Date value) { encoder.text(internetDate::text(value)); }

}  // namespace orvel::JSONCoding
