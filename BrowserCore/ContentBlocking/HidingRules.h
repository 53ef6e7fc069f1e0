#pragma once

#include <cstdint>
#include <vector>

#include "BrowserCore/ContentBlocking/ContentRule.h"
#include "BrowserCore/ContentBlocking/CosmeticFilters.h"
#include "BrowserCore/ContentBlocking/DomainScope.h"
#include "BrowserCore/ContentBlocking/TextArena.h"

namespace orvel::filters {

// Appends the rules of the gathered hiding lines to `rules`, at most `room` of them: those for all
// sites first, then those for some. Selectors of the same sites share rules. A selector for all
// sites but its exceptions gets a rule of its own; one for some sites is dropped where one of them
// is related to an exception, since a rule can't have sites and exceptions both. Texts are kept in
// `arena`. Returns how many selectors and rules were given up.
int64_t appendHidingRules(const CosmeticFilters& filters, const DomainScopes& scopes,
                          TextArena& arena, size_t room, std::vector<ContentRule>& rules);

}  // namespace orvel::filters
