#include "BrowserCore/ContentBlocking/FilterListParser.h"

#include <algorithm>

#include "BrowserCore/ContentBlocking/HidingRules.h"
#include "BrowserCore/ContentBlocking/NetworkFilter.h"

namespace orvel::filters {

namespace {

// For how many bytes of a public list there is a rule, a scope or a selector at the most.
constexpr size_t bytesOfRule = 13;
constexpr size_t bytesOfScope = 128;
constexpr size_t bytesOfSelector = 64;
// Of longer texts nothing is expected: they aren't lists.
constexpr size_t largestText = 16U << 20U;

}  // namespace

FilterListParser::FilterListParser(FilterListConverter::Options options, size_t textSize)
    : options_(options),
      scopes_(*arena_, std::min(textSize, largestText) / bytesOfScope),
      cosmetic_(scopes_, std::min(textSize, largestText) / bytesOfSelector) {
  options_.maxRules = std::max<int64_t>(options_.maxRules, 0);
  blocking_.reserve(std::min(textSize / bytesOfRule, static_cast<size_t>(options_.maxRules)));
}

void FilterListParser::consume(std::string_view line) {
  if (line.empty() || line.front() == '!' || line.front() == '[') return;
  if (const auto marker = CosmeticMarker::find(line))
    consumeCosmetic(*marker);
  else
    consumeNetwork(line);
}

void FilterListParser::consumeCosmetic(const CosmeticMarker& marker) {
  if (marker.kind == CosmeticMarker::Kind::unsupported)
    ++skipped_;
  else if (options_.includeCosmetic && !cosmetic_.consume(marker))
    ++skipped_;
}

void FilterListParser::consumeNetwork(std::string_view line) {
  const auto filter = NetworkFilter::parse(line, scopes_, *arena_);
  if (!filter) {
    ++skipped_;
    return;
  }
  for (const ContentRule& rule : filter->rules()) {
    if (filter->isException)
      exceptions_.push_back(rule);
    else if (blockingCount_++ < options_.maxRules)
      blocking_.push_back(rule);
  }
}

FilterListConverter::Output FilterListParser::finish() && {
  const auto exceptionCount = static_cast<int64_t>(exceptions_.size());
  const int64_t budget = std::max<int64_t>(options_.maxRules - exceptionCount, 0);
  const int64_t keptBlocking = std::min(blockingCount_, budget);

  FilterListConverter::Output output{.rules = std::move(blocking_), .texts = arena_};
  output.rules.resize(static_cast<size_t>(keptBlocking));
  output.skipped = skipped_ + blockingCount_ - keptBlocking;
  output.skipped += appendHidingRules(cosmetic_, scopes_, *arena_,
                                      static_cast<size_t>(budget - keptBlocking), output.rules);
  output.rules.insert(output.rules.end(), exceptions_.begin(), exceptions_.end());
  return output;
}

}  // namespace orvel::filters
