// Three lines: a keyword, a template and a typed text.

#include <cstdlib>

#include "BrowserCore/SearchShortcut.h"
#include "BrowserCore/Text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto [keyword, rest] = orvel::text::splitOnce(input, '\n');
  const auto [urlTemplate, typed] = orvel::text::splitOnce(rest, '\n');
  const orvel::SearchShortcut shortcuts[] = {
      {.keyword = std::string(keyword), .urlTemplate = std::string(urlTemplate)}};
  const auto match = orvel::SearchShortcut::match(typed, shortcuts);
  if (match && match->query.empty()) std::abort();
  (void)shortcuts[0].url(match ? match->query : typed);
  return 0;
}
