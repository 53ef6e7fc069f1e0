#pragma once

#include <webkit/webkit.h>

namespace orvel {

// Makes the key for emoji bring up a chooser where one can be entered, and nothing elsewhere. The
// engine's own comes up over every page and enters what is picked nowhere.
void installEmojiChooser(::WebKitWebView* view);

}  // namespace orvel
