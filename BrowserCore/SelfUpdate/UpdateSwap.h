#pragma once

#include <string_view>

// The exchange of one application bundle for another.
namespace orvel::UpdateSwap {

// A script for sh whose parameters are a process, the bundle to be replaced, the one to take its
// place, and "1" when the application is to be started then. It waits for the process to end, for
// about a minute, and exchanges the bundles by renaming. Killed at any moment it leaves a whole
// bundle in the place, or the old one whole beside it with ".outgoing." and a number behind its
// name, which the next run puts back.
[[nodiscard]] std::string_view script();

}  // namespace orvel::UpdateSwap
