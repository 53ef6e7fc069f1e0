#include "Engine/WebKitGtk/Policy/ReportedURL.h"

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <string_view>

namespace orvel {

std::optional<URL> reportedURL(const char* text) {
  if (!text) return std::nullopt;
  std::string encoded;
  for (const char* at = text; *at; ++at) {
    const auto byte = static_cast<unsigned char>(*at);
    if (byte <= 0x20 || byte == 0x7f)
      fmt::format_to(std::back_inserter(encoded), "%{:02X}", byte);
    else
      encoded += *at;
  }
  return URL::parse(encoded);
}

namespace {

std::string_view withoutFragment(const URL& url) {
  return std::string_view(url.text()).substr(0, url.text().find('#'));
}

}  // namespace

bool isSameDocument(const URL& a, const URL& b) { return withoutFragment(a) == withoutFragment(b); }

bool isUpgrade(const URL& secure, const URL& plain) {
  if (!secure.hasScheme("https") || !plain.hasScheme("http")) return false;
  return withoutFragment(secure).substr(secure.scheme().size()) ==
         withoutFragment(plain).substr(plain.scheme().size());
}

}  // namespace orvel
