#include "BrowserCore/Answers/DecimalNumber.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace orvel::decimalNumber {

namespace {

// The value 0.d1d2d3... times ten to the `exponent`, without zeros at either end of the digits.
class Decimal {
 public:
  explicit Decimal(double value) {
    char text[32];
    const char* const end =
        std::to_chars(std::begin(text), std::end(text), value, std::chars_format::scientific).ptr;
    const char* next = text;
    isNegative_ = *next == '-';
    if (isNegative_) ++next;
    for (; *next != 'e'; ++next)
      if (*next != '.') digits_[count_++] = *next;
    ++next;
    std::from_chars(*next == '+' ? next + 1 : next, end, exponent_);
    ++exponent_;
    dropTrailingZeros();
  }

  std::string_view digits() const { return {digits_.data(), count_}; }
  int exponent() const { return exponent_; }
  bool isNegative() const { return isNegative_; }

  // Rounds to so many digits, half to even.
  void keep(int count) {
    if (count >= static_cast<int>(count_)) return;
    const bool isUp = count >= 0 && roundsUp(static_cast<size_t>(count));
    count_ = static_cast<size_t>(std::max(count, 0));
    if (isUp) increment();
    dropTrailingZeros();
  }

 private:
  bool roundsUp(size_t position) const {
    if (digits_[position] != '5' || position + 1 < count_) return digits_[position] >= '5';
    return position > 0 && (digits_[position - 1] - '0') % 2 == 1;
  }

  void increment() {
    while (count_ > 0 && digits_[count_ - 1] == '9') --count_;
    if (count_ > 0) {
      ++digits_[count_ - 1];
      return;
    }
    digits_[count_++] = '1';
    ++exponent_;
  }

  void dropTrailingZeros() {
    while (count_ > 0 && digits_[count_ - 1] == '0') --count_;
    if (count_ > 0) return;
    exponent_ = 0;
    isNegative_ = false;
  }

  std::array<char, std::numeric_limits<double>::max_digits10> digits_;
  size_t count_ = 0;
  int exponent_ = 0;
  bool isNegative_ = false;
};

}  // namespace

std::optional<double> parse(std::string_view text) {
  // The library's own syntax also knows exponents and names of numbers.
  const bool isNegative = text.starts_with('-');
  const std::string_view digits = text.substr(isNegative ? 1 : 0);
  uint64_t integer = 0;
  bool isInteger = !digits.empty();
  for (const char c : digits) {
    if (c == '.')
      isInteger = false;
    else if (c < '0' || c > '9')
      return std::nullopt;
    else
      integer = integer * 10 + static_cast<uint64_t>(c - '0');
  }
  constexpr size_t kMaxExactDigits = std::numeric_limits<double>::digits10;
  if (isInteger && digits.size() <= kMaxExactDigits)
    return isNegative ? -static_cast<double>(integer) : static_cast<double>(integer);
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::string plain(double value, int mostFractionDigits) {
  constexpr double kExactIntegers = 9007199254740992;  // 2^53
  if (value == std::trunc(value) && std::abs(value) < kExactIntegers)
    return fmt::to_string(static_cast<int64_t>(value));
  Decimal decimal(value);
  decimal.keep(decimal.exponent() + mostFractionDigits);
  const std::string_view digits = decimal.digits();
  std::string result = decimal.isNegative() ? "-" : "";
  const auto whole = static_cast<size_t>(std::max(decimal.exponent(), 0));
  result += whole > 0 ? digits.substr(0, whole) : "0";
  if (whole > digits.size()) result.append(whole - digits.size(), '0');
  if (whole < digits.size()) {
    result += '.';
    result.append(static_cast<size_t>(std::max(-decimal.exponent(), 0)), '0');
    result += digits.substr(whole);
  }
  return result;
}

std::string scientific(double value, int mostSignificantDigits) {
  Decimal decimal(value);
  decimal.keep(mostSignificantDigits);
  const std::string_view digits = decimal.digits();
  if (digits.empty()) return "0E0";
  std::string result = decimal.isNegative() ? "-" : "";
  result += digits.front();
  if (digits.size() > 1) result.append(".").append(digits.substr(1));
  return result + 'E' + fmt::to_string(decimal.exponent() - 1);
}

}  // namespace orvel::decimalNumber
