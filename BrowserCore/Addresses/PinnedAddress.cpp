#include "BrowserCore/Addresses/PinnedAddress.h"

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

std::string_view page(const URL& url) {
  return text::trimmed(text::splitOnce(url.text(), '#').first, '/');
}

}  // namespace

bool hasWanderedFromPin(const std::optional<URL>& pinned, const std::optional<URL>& shown) {
  return pinned && shown && page(*pinned) != page(*shown);
}

}  // namespace orvel
