#pragma once

#include <string>
#include <string_view>

#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// A page of its own that shows `source` as text, its lines numbered.
[[nodiscard]] std::string sourcePage(std::string_view title, std::string_view source);

// Shows the source of the tab's page in a new tab beside it; says by a toast that there is none.
void openSource(BrowserStore& store, const TabRef& tab);

}  // namespace orvel
