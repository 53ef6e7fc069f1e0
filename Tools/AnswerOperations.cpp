#include "BrowserCore/Answers/CurrencyConversion.h"
#include "BrowserCore/Answers/CurrencyRates.h"
#include "BrowserCore/Answers/QuickAnswer.h"
#include "Tools/Operations.h"

namespace orvel::tools {

namespace {

using nlohmann::json;

json answer(const json& request) {
  std::optional<CurrencyRates> rates;
  if (request.contains("ecbXML"))
    rates = CurrencyRates::parse(request["ecbXML"].get_ref<const std::string&>());
  const auto found = QuickAnswer::evaluate(request.at("text").get_ref<const std::string&>(),
                                           rates ? &*rates : nullptr);
  if (!found) return nullptr;
  return {{"question", found->question}, {"answer", found->answer}};
}

json currencyRequest(const json& request) {
  const auto found = CurrencyConversion::parse(request.at("text").get_ref<const std::string&>());
  if (!found) return nullptr;
  return {{"amount", found->amount}, {"from", found->from}, {"to", found->to}};
}

}  // namespace

void addAnswerOperations(Operations& operations) {
  operations["answer"] = answer;
  operations["currencyRequest"] = currencyRequest;
}

}  // namespace orvel::tools
