#include "BrowserCore/Answers/UnitConversion.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "BrowserCore/Answers/ConversionPhrase.h"
#include "BrowserCore/Answers/DecimalNumber.h"
#include "BrowserCore/Text/LetterCase.h"

namespace orvel::UnitConversion {

namespace {

enum class Dimension { Length, Mass, Temperature, Volume, Speed, Data, Time };
using enum Dimension;

// A value in a unit is (value - zero) * numerator / denominator in its dimension's base unit:
// metre, kilogram, degree Celsius, litre, metre a second, byte, second. Fractions of integers keep
// common results exact.
struct Unit {
  std::string_view key;
  Dimension dimension;
  double numerator;
  double denominator = 1;
  double zero = 0;
};

constexpr double kMile = 1609.344;
constexpr double kPound = 0.45359237;    // international avoirdupois
constexpr double kGallon = 3.785411784;  // 231 cubic inches

constexpr auto units = std::to_array<Unit>({
    {"mm", Length, 1, 1000},
    {"cm", Length, 1, 100},
    {"m", Length, 1},
    {"km", Length, 1000},
    {"in", Length, 254, 10000},
    {"inch", Length, 254, 10000},
    {"inches", Length, 254, 10000},
    {"ft", Length, 3048, 10000},
    {"foot", Length, 3048, 10000},
    {"feet", Length, 3048, 10000},
    {"yd", Length, 9144, 10000},
    {"mi", Length, kMile},
    {"mile", Length, kMile},
    {"miles", Length, kMile},
    {"g", Mass, 1, 1000},
    {"kg", Mass, 1},
    {"oz", Mass, kPound, 16},
    {"lb", Mass, kPound},
    {"lbs", Mass, kPound},
    {"st", Mass, 14 * kPound},
    {"c", Temperature, 1},
    {"°c", Temperature, 1},
    {"celsius", Temperature, 1},
    {"f", Temperature, 5, 9, 32},
    {"°f", Temperature, 5, 9, 32},
    {"fahrenheit", Temperature, 5, 9, 32},
    {"k", Temperature, 1, 1, 273.15},
    {"kelvin", Temperature, 1, 1, 273.15},
    {"ml", Volume, 1, 1000},
    {"l", Volume, 1},
    {"gal", Volume, kGallon},
    {"floz", Volume, kGallon, 128},
    {"cup", Volume, kGallon, 16},
    {"cups", Volume, kGallon, 16},
    {"kmh", Speed, 1000, 3600},
    {"km/h", Speed, 1000, 3600},
    {"mph", Speed, kMile, 3600},
    {"m/s", Speed, 1},
    {"knots", Speed, 1852, 3600},
    {"b", Data, 1},
    {"kb", Data, 1e3},
    {"mb", Data, 1e6},
    {"gb", Data, 1e9},
    {"tb", Data, 1e12},
    {"s", Time, 1},
    {"sec", Time, 1},
    {"min", Time, 60},
    {"h", Time, 3600},
    {"hr", Time, 3600},
    {"hours", Time, 3600},
});

double converted(double amount, const Unit& source, const Unit& target) {
  const double base = (amount - source.zero) * source.numerator / source.denominator;
  return base * target.denominator / target.numerator + target.zero;
}

const Unit* unit(std::string_view key) {
  const auto found = std::find_if(units.begin(), units.end(),
                                  [key](const Unit& candidate) { return candidate.key == key; });
  return found == units.end() ? nullptr : found;
}

}  // namespace

std::optional<QuickAnswer> convert(std::string_view text) {
  const std::string lower = text::lowerCased(text);
  const auto phrase = conversionPhrase::readUnits(lower);
  if (!phrase) return std::nullopt;
  const Unit* source = unit(phrase->source);
  const Unit* target = unit(phrase->target);
  if (!source || !target || source->dimension != target->dimension) return std::nullopt;

  std::string digits(phrase->amount);
  std::erase(digits, ',');
  const auto amount = decimalNumber::parse(digits);
  if (!amount) return std::nullopt;
  const double value = converted(*amount, *source, *target);
  if (!std::isfinite(value * 100)) return std::nullopt;
  return QuickAnswer{
      fmt::format("{} {} in {}", QuickAnswer::format(*amount), source->key, target->key),
      fmt::format("{} {}", QuickAnswer::formatHundredths(value), target->key)};
}

}  // namespace orvel::UnitConversion
