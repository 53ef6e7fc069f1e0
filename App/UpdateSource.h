#pragma once

#include <string>

#include "BrowserCore/Addresses/URL.h"

// Where releases come from, and who signs them: fixed when the program is built.
namespace orvel::UpdateSource {

URL feed();
std::string publicKey();  // in base64

}  // namespace orvel::UpdateSource
