#include "Engine/WebKitGtk/Rules/HidingRules.h"

namespace orvel {

namespace {

// Neither stands inside a text of JSON, where quotation marks are escaped.
constexpr std::string_view kTrigger = R"({"trigger":{)";
constexpr std::string_view kHides = R"(},"action":{"type":"css-display-none")";
constexpr std::string_view kResourceType = R"("resource-type":)";
constexpr std::string_view kDocuments = R"(,"resource-type":["document"])";

}  // namespace

std::string hidingRulesForDocuments(std::string_view json) {
  std::string rules;
  rules.reserve(json.size() + json.size() / 4);
  size_t copied = 0;
  for (size_t at = json.find(kHides); at != json.npos; at = json.find(kHides, at + 1)) {
    const auto trigger = json.rfind(kTrigger, at);
    if (trigger == json.npos || trigger < copied) continue;
    if (json.substr(trigger, at - trigger).find(kResourceType) != json.npos) continue;
    rules.append(json, copied, at - copied).append(kDocuments);
    copied = at;
  }
  return rules.append(json, copied);
}

}  // namespace orvel
