#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvel::Base64 {

// The bytes of a text in base64 with its padding. Absent for anything else: white space, letters of
// the address form, and bits behind the last byte included.
[[nodiscard]] std::optional<std::string> decoded(std::string_view encoded);
[[nodiscard]] std::string encoded(std::string_view bytes);

}  // namespace orvel::Base64
