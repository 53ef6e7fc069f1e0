#pragma once

#include <optional>
#include <string_view>

#include "BrowserCore/ContentBlocking/TextArena.h"

// The pattern of a network filter, which is what stands before its options.
namespace orvel::filters {

// The pattern as a regular expression of the engine's dialect, kept in `arena`. Nothing if it can't
// be said there: a regular expression of the list's own, characters outside ASCII, brackets, braces
// and bars, and unanchored patterns so short that they would match by accident. A pattern that
// matches every address gives ".*".
std::optional<std::string_view> urlFilter(std::string_view pattern, TextArena& arena);

// What a pattern names that is "||" and then a host, with the end that may follow a host taken off.
// Nothing without "||". Whether that is a host is for the caller to see.
std::optional<std::string_view> plainDomain(std::string_view pattern);

}  // namespace orvel::filters
