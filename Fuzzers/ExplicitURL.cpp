// Typed text: an address keeps what was typed, has a known scheme, and is an address when it is
// typed again.

#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Text.h"
#include "Fuzzers/Fuzz.h"

using namespace orvel;

void fuzz(std::string_view input) {
  const auto url = URLInput::explicitURL(input);
  if (!url) return;
  require(url->text().ends_with(text::trimmed(input)));
  if (url->hasScheme("http") || url->hasScheme("https")) require(url->host().has_value());
  require(URLInput::explicitURL(url->text()) == url);
}
