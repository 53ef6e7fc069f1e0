#pragma once

#include <string>
#include <string_view>

namespace orvel::UserAgent {

// The version of the browser that sites take this one for.
inline constexpr std::string_view kVersion = "26.0";

// What the engine adds to its own user agent text: the first two numbers of `version`, with ".0"
// behind a version of one number.
[[nodiscard]] std::string safariSuffix(std::string_view version = kVersion);

}  // namespace orvel::UserAgent
