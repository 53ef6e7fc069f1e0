#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "BrowserCore/Date.h"

namespace orvel {

// What a person picks after typing: a small table from typed prefixes to the keys of the rows
// picked after them. A pick teaches every prefix of what was typed.
//
// Queries are compared trimmed and in lower case, and counted in characters as a person sees them.
struct ChoiceMemory {
  struct Choice {
    std::string key;
    int64_t count = 0;
    Date lastUsed;

    friend bool operator==(const Choice&, const Choice&) = default;
  };

  // A text is learned and looked up by at most this many characters.
  static constexpr size_t kMaxPrefix = 16;
  static constexpr size_t kChoicesPerPrefix = 4;
  static constexpr size_t kMaxPrefixes = 2000;
  // Fewer picks than this may be chance and are not offered.
  static constexpr int64_t kPicksToCount = 2;

  // By prefix; each list by falling count, then the latest use first.
  std::unordered_map<std::string, std::vector<Choice>> choices;

  // Notes that `choice` was picked after `query`. An empty query teaches nothing. When there are
  // too many prefixes afterwards, those unused for the longest time go.
  void record(std::string_view query, std::string_view choice, Date at);

  // The choice to put first for `query`: the most picked one among `keys`, the keys of what is on
  // offer. Absent without one, and for a query longer than 16 characters.
  [[nodiscard]] std::optional<std::string> topChoice(std::string_view query,
                                                     std::span<const std::string> keys) const;

  // Removes this choice from every prefix, and the prefixes that held nothing else.
  void forget(std::string_view key);
};

}  // namespace orvel
