// Typed text: an address keeps what was typed, has a known scheme, and is an address when it is
// typed again.

#include <cstdlib>

#include "BrowserCore/Text.h"
#include "BrowserCore/URLInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view typed(reinterpret_cast<const char*>(data), size);
  const auto url = orvel::URLInput::explicitURL(typed);
  if (!url) return 0;
  if (!url->text().ends_with(orvel::text::trimmed(typed))) std::abort();
  if ((url->hasScheme("http") || url->hasScheme("https")) && !url->host()) std::abort();
  if (orvel::URLInput::explicitURL(url->text()) != url) std::abort();
  return 0;
}
