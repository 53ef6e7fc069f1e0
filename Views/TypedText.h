#pragma once

#include <optional>
#include <string>

#include "Models/Suggestion.h"

namespace orvel {

// What a typed text is meant as: an address, or else a search. Absent for nothing but blanks.
[[nodiscard]] std::optional<Suggestion> suggestionFor(std::string text);

}  // namespace orvel
