// Conversion of filter lists: never a fault, always a valid, capped and repeatable result.

#include <nlohmann/json.hpp>

#include "BrowserCore/ContentBlocking/FilterListConverter.h"
#include "Fuzzers/Fuzz.h"

using namespace orvel;

void fuzz(std::string_view input) {
  // The first byte chooses the options.
  const auto choice = static_cast<uint8_t>(input.empty() ? 0 : input.front());
  const FilterListConverter::Options options{
      .includeCosmetic = (choice & 1U) == 0,
      .maxRules = (choice & 2U) == 0 ? FilterListConverter::defaultMaxRules : choice / 4};
  const std::string_view list = input.substr(input.empty() ? 0 : 1);
  const auto output = FilterListConverter::convert(list, options);

  int64_t exceptions = 0;
  for (const auto& [trigger, action] : output.rules) {
    require(!trigger.urlFilter.empty());
    require(trigger.ifDomain.isEmpty() || trigger.unlessDomain.isEmpty());
    require(trigger.urlFilterIsCaseSensitive.value_or(true));
    require((action.type == ContentRule::ActionType::cssDisplayNone) == !action.selector.empty());
    if (action.type == ContentRule::ActionType::ignorePreviousRules) ++exceptions;
  }
  const auto count = static_cast<int64_t>(output.rules.size());
  require(output.skipped >= 0 && (count <= options.maxRules || count == exceptions));

  const std::string json = encodedJSON(output.rules);
  const auto parsed = nlohmann::json::parse(json, nullptr, false);
  require(parsed.is_array() && parsed.size() == output.rules.size());
  require(parsed.dump().size() == json.size());

  const auto again = FilterListConverter::convert(list, options);
  require(again.rules == output.rules && again.skipped == output.skipped);
}
