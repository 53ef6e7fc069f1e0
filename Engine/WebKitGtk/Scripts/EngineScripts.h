#pragma once

#include "EmbeddedEngineScripts.h"

// The scripts that the engine's implementation runs in every frame for its own purposes: those of
// Resources/Scripts/Engine, each under its file's name, `kMediaObserver` for media-observer.js.
namespace orvel::engine_scripts {

// The isolated world of all of them but the privacy signal, which runs in the page's own.
inline constexpr const char kWorld[] = "orvel-engine";
inline constexpr const char kNavigationHandler[] = "orvelNavigation";
inline constexpr const char kMediaHandler[] = "orvelMedia";

}  // namespace orvel::engine_scripts
