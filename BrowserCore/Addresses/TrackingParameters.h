#pragma once

#include <optional>

#include "BrowserCore/Addresses/URL.h"

// The query parameters by which sites follow a click from one page to the next.
namespace orvel::TrackingParameters {

// The address without them, every other byte as it was; a query of nothing else goes with its "?".
// Absent when there is nothing to remove, and for addresses that aren't http or https.
[[nodiscard]] std::optional<URL> stripped(const URL& url);

}  // namespace orvel::TrackingParameters
