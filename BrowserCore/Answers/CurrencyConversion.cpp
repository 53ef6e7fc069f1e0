#include "BrowserCore/Answers/CurrencyConversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "BrowserCore/Answers/ConversionPhrase.h"
#include "BrowserCore/Answers/DecimalNumber.h"
#include "BrowserCore/Text/LetterCase.h"

namespace orvel::CurrencyConversion {

namespace {

constexpr std::string_view codes[] = {
    "EUR", "USD", "JPY", "BGN", "CZK", "DKK", "GBP", "HUF", "PLN", "RON", "SEK",
    "CHF", "ISK", "NOK", "TRY", "AUD", "BRL", "CAD", "CNY", "HKD", "IDR", "ILS",
    "INR", "KRW", "MXN", "MYR", "NZD", "PHP", "SGD", "THB", "ZAR",
};

constexpr std::pair<std::string_view, std::string_view> aliases[] = {
    {"$", "USD"},     {"dollar", "USD"}, {"dollars", "USD"}, {"€", "EUR"},      {"euro", "EUR"},
    {"euros", "EUR"}, {"£", "GBP"},      {"pound", "GBP"},   {"pounds", "GBP"}, {"¥", "JPY"},
    {"yen", "JPY"},   {"₹", "INR"},      {"₩", "KRW"},       {"fr", "CHF"},     {"francs", "CHF"},
    {"yuan", "CNY"},  {"rmb", "CNY"},
};

std::optional<double> amount(std::string_view text) {
  const size_t comma = text.rfind(',');
  const size_t dot = text.rfind('.');
  if (comma == std::string_view::npos) return decimalNumber::parse(text);
  const bool isDecimalComma = dot == std::string_view::npos ? text.size() - comma < 4 : dot < comma;
  std::string digits(text);
  if (isDecimalComma) {
    std::erase(digits, '.');
    std::replace(digits.begin(), digits.end(), ',', '.');
  } else {
    std::erase(digits, ',');
  }
  return decimalNumber::parse(digits);
}

std::optional<std::string> currency(std::string_view text) {
  for (const auto& [alias, code] : aliases)
    if (alias == text) return std::string(code);
  std::string code = text::upperCased(text);
  if (std::find(std::begin(codes), std::end(codes), code) == std::end(codes)) return std::nullopt;
  return code;
}

}  // namespace

std::optional<Request> parse(std::string_view text) {
  const std::string lower = text::lowerCased(text);
  const auto phrase = conversionPhrase::readCurrencies(lower);
  if (!phrase || phrase->prefix.empty() == phrase->suffix.empty()) return std::nullopt;
  const auto value = amount(phrase->amount);
  if (!value) return std::nullopt;
  auto from = currency(phrase->prefix.empty() ? phrase->suffix : phrase->prefix);
  if (!from) return std::nullopt;
  auto to = currency(phrase->target);
  if (!to || *from == *to) return std::nullopt;
  return Request{*value, std::move(*from), std::move(*to)};
}

std::optional<QuickAnswer> convert(std::string_view text, const CurrencyRates& rates) {
  const auto request = parse(text);
  if (!request) return std::nullopt;
  const auto value = rates.convert(request->amount, request->from, request->to);
  if (!value || !std::isfinite(*value * 100)) return std::nullopt;
  std::string question =
      fmt::format("{} {} in {}", QuickAnswer::format(request->amount), request->from, request->to);
  if (rates.date()) question.append(" · ECB ").append(*rates.date());
  return QuickAnswer{std::move(question),
                     fmt::format("{} {}", QuickAnswer::formatHundredths(*value), request->to)};
}

}  // namespace orvel::CurrencyConversion
