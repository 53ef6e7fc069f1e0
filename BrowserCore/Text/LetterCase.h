#pragma once

#include <string>
#include <string_view>

// Letter case by Unicode's full mappings, the same in every locale. Ill-formed UTF-8 becomes
// U+FFFD; texts have to be shorter than 2 GiB.
namespace orvel::text {

[[nodiscard]] std::string lowerCased(std::string_view text);
[[nodiscard]] std::string upperCased(std::string_view text);

}  // namespace orvel::text
