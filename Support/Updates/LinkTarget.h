#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// Whether a link in a closed folder leads out of it, if only on the way. `link` is its path in the
// folder, `target` what it holds. Links on the way are followed: `targetOf` tells what the one at a
// path in the folder holds, absent when there is no link. A link that leads round in a circle leads
// nowhere.
[[nodiscard]] bool leadsOut(
    std::string_view link, std::string_view target,
    const std::function<std::optional<std::string>(const std::string& path)>& targetOf);

}  // namespace orvel
