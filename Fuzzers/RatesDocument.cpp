// The daily document of exchange rates: what is read from it can be relied on.

#include <cmath>

#include "BrowserCore/Answers/CurrencyRates.h"
#include "Fuzzers/Fuzz.h"

void fuzz(std::string_view input) {
  const auto rates = orvel::CurrencyRates::parse(input);
  if (!rates) return;
  require(rates->perEuro().contains("EUR") && rates->perEuro().contains("USD"));
  for (const auto& [code, rate] : rates->perEuro()) {
    require(code.size() == 3 && std::isfinite(rate) && rate > 0);
    require(rates->convert(1, code, "EUR") == 1 / rate * rates->perEuro().at("EUR"));
  }
  if (rates->date()) require(rates->date()->size() >= 10);
}
