// Conversion of filter lists: never a fault, always a valid, capped and repeatable result.

#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string_view>

#include "BrowserCore/ContentBlocking/FilterListConverter.h"

namespace {

using namespace orvel;

void require(bool condition) {
  if (!condition) std::abort();
}

void check(const ContentRule& rule) {
  require(!rule.trigger.urlFilter.empty());
  require(rule.trigger.ifDomain.isEmpty() || rule.trigger.unlessDomain.isEmpty());
  require(rule.trigger.urlFilterIsCaseSensitive.value_or(true));
  require((rule.action.type == ContentRule::ActionType::cssDisplayNone) ==
          !rule.action.selector.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // The first byte chooses the options.
  const uint8_t choice = size > 0 ? data[0] : 0;
  const FilterListConverter::Options options{
      .includeCosmetic = (choice & 1U) == 0,
      .maxRules = (choice & 2U) == 0 ? FilterListConverter::defaultMaxRules : choice / 4};
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto output = FilterListConverter::convert(text.substr(size > 0 ? 1 : 0), options);

  int64_t exceptions = 0;
  for (const ContentRule& rule : output.rules) {
    check(rule);
    if (rule.action.type == ContentRule::ActionType::ignorePreviousRules) ++exceptions;
  }
  const auto count = static_cast<int64_t>(output.rules.size());
  require(output.skipped >= 0 && (count <= options.maxRules || count == exceptions));

  const std::string json = encodedJSON(output.rules);
  const auto parsed = nlohmann::json::parse(json, nullptr, false);
  require(parsed.is_array() && parsed.size() == output.rules.size());
  require(parsed.dump().size() == json.size());

  const auto again = FilterListConverter::convert(text.substr(size > 0 ? 1 : 0), options);
  require(again.rules == output.rules && again.skipped == output.skipped);
  return 0;
}
