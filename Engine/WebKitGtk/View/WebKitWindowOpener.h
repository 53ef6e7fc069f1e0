#pragma once

#include <webkit/webkit.h>

#include <memory>
#include <utility>

#include "Base/GRef.h"
#include "Engine/WebViewConfiguration.h"

namespace orvel {

// The page that a new window's view shares its process and session with.
class WebKitWindowOpener final : public WindowOpener {
 public:
  WebKitWindowOpener(::WebKitWebView* view, std::shared_ptr<int> users)
      : processUsers(std::move(users)), view_(GRef<::WebKitWebView>::retain(view)) {}
  ::WebKitWebView* view() const { return view_.get(); }

  // See WebKitWebView.
  const std::shared_ptr<int> processUsers;

 private:
  GRef<::WebKitWebView> view_;
};

}  // namespace orvel
