#pragma once

#include <optional>
#include <string_view>

// A small expression evaluator for what people type where they also type addresses and searches.
namespace orvel::Calculator {

// The value of a calculation: numbers, + - * / ^ %, parentheses, the constants pi, π and e, and the
// functions sqrt, abs, round, floor, ceil, ln, log (to base 10), sin, cos and tan (of radians).
// × ÷ − and " of " stand for * / - and *; commas are skipped; letter case doesn't matter.
//
// "-" and "+" before a value bind looser than "^", which groups to the right; "%" divides by 100;
// a function takes the next value alone, so that "sin pi/2" is half of sin pi.
//
// Absent for anything that isn't clearly a calculation: a lone number or name, a text without a
// number, dates, telephone and reference numbers like "2024-01-15" or "555-0142", unknown words,
// and whatever has no finite value.
[[nodiscard]] std::optional<double> evaluate(std::string_view text);

}  // namespace orvel::Calculator
