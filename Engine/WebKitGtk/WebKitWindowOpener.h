#pragma once

#include <webkit/webkit.h>

#include "Base/GRef.h"
#include "Engine/WebViewConfiguration.h"

namespace orvel {

// The page that a new window's view shares its process and session with.
class WebKitWindowOpener final : public WindowOpener {
 public:
  explicit WebKitWindowOpener(::WebKitWebView* view) : view_(GRef<::WebKitWebView>::retain(view)) {}
  ::WebKitWebView* view() const { return view_.get(); }

 private:
  GRef<::WebKitWebView> view_;
};

}  // namespace orvel
