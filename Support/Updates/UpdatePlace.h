#pragma once

#include <filesystem>

namespace orvel::UpdatePlace {

// Whether the bundle at the path can be replaced by another: it is named as one, stands on no
// volume that comes and goes or cannot be written to, and its folder may be written to. The bundle
// itself need not exist.
[[nodiscard]] bool canReplace(const std::filesystem::path& app);

}  // namespace orvel::UpdatePlace
