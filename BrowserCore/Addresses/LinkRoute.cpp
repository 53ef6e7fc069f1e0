#include "BrowserCore/Addresses/LinkRoute.h"

#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

std::string_view withoutWWW(std::string_view host) {
  if (host.starts_with("www.")) host.remove_prefix(4);
  return host;
}

bool isPathWithin(std::string_view path, std::string_view folder) {
  if (!path.starts_with(folder)) return false;
  return path.size() == folder.size() || path[folder.size()] == '/';
}

}  // namespace

bool LinkRoute::matches(const URL& url) const {
  const std::string lowered = text::lower(text::trimmedBlanks(pattern));
  std::string_view place = lowered;
  constexpr std::string_view kSchemeEnd = "://";
  if (const size_t end = place.find(kSchemeEnd); end != std::string_view::npos)
    place.remove_prefix(end + kSchemeEnd.size());
  const auto [host, folder] = text::splitOnce(place, '/');
  const std::string_view site = withoutWWW(host);
  if (site.empty()) return false;

  const auto decodedHost = url.decodedHost();
  if (!decodedHost || !isHostWithin(withoutWWW(text::lower(*decodedHost)), site)) return false;
  if (folder.empty()) return true;
  return isPathWithin(text::lower(url.decodedPath()),
                      std::string("/").append(text::trimmed(folder, '/')));
}

const LinkRoute* firstMatching(std::span<const LinkRoute> routes, const URL& url) {
  const auto route =
      std::ranges::find_if(routes, [&url](const LinkRoute& each) { return each.matches(url); });
  return route == routes.end() ? nullptr : &*route;
}

}  // namespace orvel
