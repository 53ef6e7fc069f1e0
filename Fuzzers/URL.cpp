// Any text: what parses splits into parts that make up the text again, and resolves references.

#include "BrowserCore/URL.h"

#include <cstdlib>

#include "BrowserCore/URLInput.h"

using orvel::URL;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t line = input.find('\n');
  const auto url = URL::parse(input.substr(0, line));
  if (!url) return 0;

  std::string rebuilt = std::string(url->scheme()) + ':';
  if (const auto authority = url->authority()) rebuilt.append("//").append(*authority);
  rebuilt += url->path();
  if (const auto query = url->query()) rebuilt.append("?").append(*query);
  const auto fragment = url->fragment();
  if (fragment) rebuilt.append("#").append(*fragment);
  if (rebuilt != url->text()) std::abort();

  if (url->host() && !orvel::siteKey(*url)) std::abort();
  (void)url->userInfo();
  (void)url->port();
  (void)url->decodedPath();
  (void)orvel::displayHost(*url);
  if (line != std::string_view::npos) {
    const auto resolved = url->resolve(input.substr(line + 1));
    if (resolved && !URL::parse(resolved->text())) std::abort();
  }
  return 0;
}
