#include "BrowserCore/DecimalNumber.h"

#include <algorithm>
#include <charconv>

namespace orvel::decimalNumber {

namespace {

// The value 0.d1d2d3... times ten to the `exponent`, without zeros at either end of the digits.
struct Decimal {
  std::string digits;
  int exponent = 0;
  bool isNegative = false;

  explicit Decimal(double value) {
    char buffer[32];
    const auto [end, error] =
        std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::scientific);
    std::string_view text(buffer, static_cast<size_t>(end - buffer));
    isNegative = text.front() == '-';
    if (isNegative) text.remove_prefix(1);
    const size_t e = text.find('e');
    const char* power = text.data() + e + (text[e + 1] == '+' ? 2 : 1);
    std::from_chars(power, end, exponent);
    ++exponent;
    digits = text.front();
    if (e > 1) digits += text.substr(2, e - 2);
    dropTrailingZeros();
  }

  void keep(int count) {
    if (count >= std::ssize(digits)) return;
    const bool isUp = count >= 0 && roundsUp(static_cast<size_t>(count));
    digits.resize(static_cast<size_t>(std::max(count, 0)));
    if (isUp) increment();
    dropTrailingZeros();
  }

 private:
  bool roundsUp(size_t position) const {
    if (digits[position] != '5' || position + 1 < digits.size()) return digits[position] >= '5';
    return position > 0 && (digits[position - 1] - '0') % 2 == 1;
  }

  void increment() {
    while (!digits.empty() && digits.back() == '9') digits.pop_back();
    if (digits.empty()) {
      digits = "1";
      ++exponent;
    } else {
      ++digits.back();
    }
  }

  void dropTrailingZeros() {
    while (!digits.empty() && digits.back() == '0') digits.pop_back();
    if (digits.empty()) {
      exponent = 0;
      isNegative = false;
    }
  }
};

}  // namespace

std::optional<double> parse(std::string_view text) {
  // The library's own syntax also knows exponents and names of numbers.
  const std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
  if (!std::all_of(digits.begin(), digits.end(),
                   [](char c) { return (c >= '0' && c <= '9') || c == '.'; }))
    return std::nullopt;
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::string plain(double value, int mostFractionDigits) {
  Decimal decimal(value);
  decimal.keep(decimal.exponent + mostFractionDigits);
  std::string result = decimal.isNegative ? "-" : "";
  const auto whole = static_cast<size_t>(std::max(decimal.exponent, 0));
  result.append(decimal.digits, 0, whole);
  if (whole > decimal.digits.size()) result.append(whole - decimal.digits.size(), '0');
  if (whole == 0) result += '0';
  if (whole < decimal.digits.size()) {
    result += '.';
    if (decimal.exponent < 0) result.append(static_cast<size_t>(-decimal.exponent), '0');
    result.append(decimal.digits, whole);
  }
  return result;
}

std::string scientific(double value, int mostSignificantDigits) {
  Decimal decimal(value);
  decimal.keep(mostSignificantDigits);
  if (decimal.digits.empty()) return "0E0";
  std::string result = decimal.isNegative ? "-" : "";
  result += decimal.digits.front();
  if (decimal.digits.size() > 1) result.append(".").append(decimal.digits, 1);
  return result + 'E' + std::to_string(decimal.exponent - 1);
}

}  // namespace orvel::decimalNumber
