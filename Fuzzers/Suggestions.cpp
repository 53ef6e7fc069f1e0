// A search engine's reply.

#include "BrowserCore/Addresses/SearchEngine.h"
#include "BrowserCore/Text/Text.h"
#include "Fuzzers/Fuzz.h"

void fuzz(std::string_view input) {
  for (const std::string& text : orvel::SearchEngine::suggestions(input))
    require(orvel::text::isValidUTF8(text));
}
