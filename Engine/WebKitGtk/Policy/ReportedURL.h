#pragma once

#include <optional>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// An address as the engine tells it, which lets blanks and control characters stand in addresses
// without an authority ("tel:+1 (555) 010-9999"): they are percent-encoded. Absent for null and for
// a text without a scheme.
[[nodiscard]] std::optional<URL> reportedURL(const char* text);

// They differ in their fragments at most: a request has none.
[[nodiscard]] bool isSameDocument(const URL& a, const URL& b);

// `secure` is what `plain`, an address of http, is upgraded to, whatever their fragments.
[[nodiscard]] bool isUpgrade(const URL& secure, const URL& plain);

}  // namespace orvel
