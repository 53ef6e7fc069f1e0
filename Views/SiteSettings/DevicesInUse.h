#pragma once

#include <set>
#include <string>

#include "Models/Tab/PagePermissions.h"

// How the devices that a page uses are shown.
namespace orvel {

// The symbol of the first of them; empty without any.
[[nodiscard]] std::string filledSymbol(const std::set<PageDevice>& devices);
// "Camera in use", for example. There is at least one.
[[nodiscard]] std::string textOfUse(const std::set<PageDevice>& devices);

}  // namespace orvel
