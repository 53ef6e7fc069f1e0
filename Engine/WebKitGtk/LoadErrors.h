#pragma once

#include <glib.h>

#include <string>

#include "Engine/Navigation.h"

namespace orvel {

// The engine's error in the contract's words. `failingURL` is the address as the engine reports it.
LoadError loadError(const GError& error, const char* failingURL);

}  // namespace orvel
