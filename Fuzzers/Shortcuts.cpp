// Three lines: a keyword, a template and a typed text.

#include "BrowserCore/Addresses/SearchShortcut.h"
#include "BrowserCore/Text/Text.h"
#include "Fuzzers/Fuzz.h"

using namespace orvel;

void fuzz(std::string_view input) {
  const auto [keyword, rest] = text::splitOnce(input, '\n');
  const auto [urlTemplate, typed] = text::splitOnce(rest, '\n');
  const SearchShortcut shortcuts[] = {
      {.keyword = std::string(keyword), .urlTemplate = std::string(urlTemplate)}};
  const auto match = SearchShortcut::match(typed, shortcuts);
  if (match) require(!match->query.empty());
  (void)shortcuts[0].url(match ? match->query : typed);
}
