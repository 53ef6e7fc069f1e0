// Any text: what parses splits into parts that make up the text again, and resolves references.

#include "BrowserCore/Addresses/URL.h"

#include "BrowserCore/Addresses/URLInput.h"
#include "Fuzzers/Fuzz.h"

using orvel::URL;

void fuzz(std::string_view input) {
  const size_t line = input.find('\n');
  const auto url = URL::parse(input.substr(0, line));
  if (!url) return;

  std::string rebuilt = std::string(url->scheme()) + ':';
  if (const auto authority = url->authority()) rebuilt.append("//").append(*authority);
  rebuilt += url->path();
  if (const auto query = url->query()) rebuilt.append("?").append(*query);
  const auto fragment = url->fragment();
  if (fragment) rebuilt.append("#").append(*fragment);
  require(rebuilt == url->text());

  if (url->host()) require(orvel::siteKey(*url).has_value());
  (void)url->userInfo();
  (void)url->port();
  (void)url->decodedPath();
  (void)orvel::displayHost(*url);
  if (line == std::string_view::npos) return;
  const auto resolved = url->resolve(input.substr(line + 1));
  if (resolved) require(URL::parse(resolved->text()).has_value());
}
