#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "BrowserCore/ContentBlocking/CosmeticFilters.h"
#include "BrowserCore/ContentBlocking/DomainScope.h"
#include "BrowserCore/ContentBlocking/FilterListConverter.h"
#include "BrowserCore/ContentBlocking/TextArena.h"

namespace orvel::filters {

// The state of one conversion.
class FilterListParser {
 public:
  // `textSize`: how long the list is, from which is guessed how much it holds.
  FilterListParser(FilterListConverter::Options options, size_t textSize);

  // Takes a trimmed line. The list's text must live until `finish`.
  void consume(std::string_view line);

  // Orders and caps what was gathered; to be called once, last.
  [[nodiscard]] FilterListConverter::Output finish() &&;

 private:
  void consumeCosmetic(const CosmeticMarker& marker);
  void consumeNetwork(std::string_view line);

  FilterListConverter::Options options_;
  std::shared_ptr<TextArena> arena_ = std::make_shared<TextArena>();
  DomainScopes scopes_;
  CosmeticFilters cosmetic_;
  // No more rules are kept than can be in the result; the others are only counted.
  std::vector<ContentRule> blocking_;
  int64_t blockingCount_ = 0;
  std::vector<ContentRule> exceptions_;
  int64_t skipped_ = 0;
};

}  // namespace orvel::filters
