// The daily document of exchange rates: what is read from it can be relied on.

#include <cmath>
#include <cstdlib>

#include "BrowserCore/CurrencyRates.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using orvel::CurrencyRates;
  const auto rates = CurrencyRates::parse({reinterpret_cast<const char*>(data), size});
  if (!rates) return 0;
  require(rates->perEuro().contains("EUR") && rates->perEuro().contains("USD"));
  for (const auto& [code, rate] : rates->perEuro()) {
    require(code.size() == 3 && std::isfinite(rate) && rate > 0);
    require(rates->convert(1, code, "EUR") == 1 / rate * rates->perEuro().at("EUR"));
  }
  if (rates->date()) require(rates->date()->size() >= 10);
  return 0;
}
