#pragma once

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// Whether the address is of http or https at a port of another service, which pages must not reach:
// the "bad ports" of the Fetch standard (https://fetch.spec.whatwg.org/#port-blocking).
[[nodiscard]] bool hasRestrictedPort(const URL& url);

}  // namespace orvel
