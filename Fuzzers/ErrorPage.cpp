// An address and what failed there, one a line: neither adds markup to the page that tells of it.

#include <algorithm>

#include "Fuzzers/Fuzz.h"
#include "Support/Network/ErrorPage.h"

using namespace orvel;

namespace {

size_t marks(const LoadError& error, const std::optional<URL>& url) {
  const std::string page = ErrorPage::html(error, url);
  return static_cast<size_t>(
      std::ranges::count_if(page, [](char c) { return c == '<' || c == '>' || c == '"'; }));
}

}  // namespace

void fuzz(std::string_view input) {
  const size_t end = std::min(input.find('\n'), input.size());
  const auto url = URL::parse(std::string(input.substr(0, end)));
  const auto plain = url ? URL::parse("https://a.org/") : std::nullopt;
  const std::string told(input.substr(std::min(end + 1, input.size())));
  require(marks({.localizedDescription = told}, url) == marks({}, plain));
}
