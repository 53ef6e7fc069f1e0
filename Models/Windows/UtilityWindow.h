#pragma once

namespace orvel {

// The program's small windows, one of each at most.
enum class UtilityWindow { About, Settings, History, BugReport };

}  // namespace orvel
