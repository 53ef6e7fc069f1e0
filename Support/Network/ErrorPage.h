#pragma once

#include <optional>
#include <string>

#include "BrowserCore/Addresses/URL.h"
#include "Engine/Navigation.h"

// The page that stands in for one that couldn't be shown.
namespace orvel::ErrorPage {

// A whole document: which site can't be opened, the error's own sentence and, with a URL, a link to
// try again. Nothing of the error or the address can break out of the markup.
[[nodiscard]] std::string html(const LoadError& error, const std::optional<URL>& url);

// The network or the server is out of reach, so that trying later makes sense.
[[nodiscard]] bool isConnectionProblem(const LoadError& error);

}  // namespace orvel::ErrorPage
