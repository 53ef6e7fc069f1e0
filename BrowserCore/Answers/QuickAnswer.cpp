#include "BrowserCore/Answers/QuickAnswer.h"

#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cmath>

#include "BrowserCore/Answers/Calculator.h"
#include "BrowserCore/Answers/CurrencyConversion.h"
#include "BrowserCore/Answers/DecimalNumber.h"
#include "BrowserCore/Answers/UnitConversion.h"
#include "BrowserCore/Text/LetterCase.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

// The words of a text, which are its runs of letters, with single spaces between them. A mark
// belongs to the letter before it.
std::string joinedWords(std::string_view text) {
  std::string result;
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto size = static_cast<int64_t>(text.size());
  bool isInWord = false;
  for (int64_t position = 0; position < size;) {
    const int64_t begin = position;
    UChar32 c = 0;
    U8_NEXT(bytes, position, size, c);
    const bool isLetter = c >= 0 && (u_isUAlphabetic(c) ||
                                     (isInWord && u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND)));
    if (isLetter) {
      if (!isInWord && !result.empty()) result += ' ';
      result += text.substr(static_cast<size_t>(begin), static_cast<size_t>(position - begin));
    }
    isInWord = isLetter;
  }
  return result;
}

std::optional<QuickAnswer> deepThought(std::string_view text) {
  constexpr std::string_view kQuestion = "life the universe and everything";
  if (text.size() < kQuestion.size()) return std::nullopt;
  if (!joinedWords(text::lowerCased(text)).ends_with(kQuestion)) return std::nullopt;
  return QuickAnswer{"Life, the Universe and Everything", "42"};
}

}  // namespace

std::optional<QuickAnswer> QuickAnswer::evaluate(std::string_view text,
                                                 const CurrencyRates* rates) {
  const std::string_view trimmed = text::trimmed(text);
  if (trimmed.empty()) return std::nullopt;
  if (auto answer = deepThought(trimmed)) return answer;
  if (const auto value = Calculator::evaluate(trimmed))
    return QuickAnswer{std::string(trimmed), format(*value)};
  if (auto answer = UnitConversion::convert(trimmed)) return answer;
  return rates ? CurrencyConversion::convert(trimmed, *rates) : std::nullopt;
}

std::string QuickAnswer::format(double value) {
  if (!std::isfinite(value)) return fmt::format("{}", value);
  const double magnitude = std::abs(value);
  if (value == 0 || (magnitude >= 1e-6 && magnitude < 1e15)) return decimalNumber::plain(value, 10);
  return decimalNumber::scientific(value, 8);
}

std::string QuickAnswer::formatHundredths(double value) {
  return format(std::round(value * 100) / 100);
}

}  // namespace orvel
