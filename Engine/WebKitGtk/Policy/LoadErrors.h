#pragma once

#include <glib.h>

#include <string>

#include "Engine/Navigation.h"

namespace orvel {

// The engine's error in the contract's words. `failingURL` is the address as the engine reports it.
LoadError loadError(const GError& error, const char* failingURL);
// That of a load which was given up for want of an answer.
LoadError timeoutError(const char* failingURL);
// The address is at a port of another service.
LoadError restrictedPortError(const URL& address);
// A server, or a proxy, answered with this status and nothing to show.
LoadError refusalError(int status, const URL& address);

}  // namespace orvel
