#pragma once

#include <optional>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// Whether a pinned tab shows another page than its pin. A fragment and slashes at the address's
// ends make no other page; a query does. False without either address.
[[nodiscard]] bool hasWanderedFromPin(const std::optional<URL>& pinned,
                                      const std::optional<URL>& shown);

}  // namespace orvel
