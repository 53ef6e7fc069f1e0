#pragma once

namespace orvel {

// Marks an English text in a table; the floors above look it up in the person's language where they
// show it.
constexpr const char* translatable(const char* text) { return text; }

}  // namespace orvel
