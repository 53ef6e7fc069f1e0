#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "BrowserCore/ContentBlocking/ContentRule.h"

// Turns public filter lists (EasyList's syntax) into rules of the engine's content blocker.
//
// The conversion is conservative: a line that isn't understood in full is given up and counted. It
// is deterministic: the same text and options give the same rules in the same order, so compiled
// rules can be cached by content.
namespace orvel::FilterListConverter {

// The version of the output, part of every cache key. To be raised with every change of this code
// that changes any output.
inline constexpr int version = 2;

// The most rules that the engine takes in one list.
inline constexpr int64_t defaultMaxRules = 150000;

struct Options {
  // Whether rules that hide elements are wanted.
  bool includeCosmetic = true;
  // How many rules to make at most. Blocking goes before hiding and earlier lines before later
  // ones; exceptions are never dropped, even where they alone are more.
  int64_t maxRules = defaultMaxRules;
};

struct Output {
  // Blocking rules, then hiding rules, then exceptions, which act on what stands before them.
  std::vector<ContentRule> rules;
  // How many lines, selectors and rules were given up; for the log.
  int64_t skipped = 0;
  // Keeps the texts of the rules alive.
  std::shared_ptr<const void> texts;
};

// Never fails. The text needs not live longer than the call.
[[nodiscard]] Output convert(std::string_view text, Options options = {});

}  // namespace orvel::FilterListConverter
