#pragma once

#include <webkit/webkit.h>

namespace orvel {

// Keeps the engine's chooser of emoji, which has a key everywhere, to where one can be entered: it
// comes up over a page without a field, too, and takes the keyboard from the page.
void keepEmojiToFields(::WebKitWebView* view);

}  // namespace orvel
