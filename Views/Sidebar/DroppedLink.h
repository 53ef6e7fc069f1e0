#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// The type under which pages and other programs hand out links.
inline constexpr const char* kLinkDragType = "text/uri-list";

// Reads the first link of a drop, on a later turn; absent when there is none of the web or it could
// not be read. The drop is the caller's to finish, who may be gone by then.
void readLink(GdkDrop* drop, std::function<void(std::optional<URL>)> answer);

}  // namespace orvel
