#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// The short name of a page's site: what follows the last separator in a title such as
// "Article - Site", where that has 1 to 30 characters. Otherwise the address's short host, or
// "Pinned tab" without an address.
[[nodiscard]] std::string siteName(std::string_view title, const std::optional<URL>& url);

}  // namespace orvel
