#include "Models/Tab/OtherApplications.h"

#include <algorithm>

#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

bool OtherApplications::isHandledInside(const URL& address) {
  constexpr std::string_view kSchemes[] = {"http", "https", "about",      "blob",
                                           "data", "file",  "javascript", "webkit-extension"};
  return std::ranges::any_of(kSchemes,
                             [&](std::string_view scheme) { return address.hasScheme(scheme); });
}

void OtherApplications::open(const WebView& view, const NavigationAction& action) {
  const URL& address = action.request->url;
  if (action.navigationType == NavigationType::LinkActivated) {
    if (action.sourceFrame && action.sourceFrame->isMainFrame)
      services_.desktop.workspace.open(address);
  } else if (!action.targetFrame || action.targetFrame->isMainFrame) {
    confirm(view, address);
  }
}

bool OtherApplications::handOver(const WebView& view, const NavigationAction& action) {
  if (!action.request || isHandledInside(action.request->url)) return false;
  confirm(view, action.request->url);
  return true;
}

void OtherApplications::confirm(const WebView& view, const URL& address) {
  const auto application = services_.desktop.workspace.applicationToOpen(address);
  // A script may ask again and again: one question at a time.
  if (!application || !view.isInWindow() || isConfirming_) return;
  isConfirming_ = true;
  const auto& shown = tab_.url.peek();
  services_.desktop.dialogs.showAlert(
      tab_.host()->window(),
      {.messageText =
           filled(_("Open “{application}”?"), {{"application", application->displayName}}),
       .informativeText = filled(_("{site} wants to open this application."),
                                 {{"site", shown ? displayHost(*shown) : _("This page")}}),
       .buttons = {_("Open"), _("Cancel")}},
      [this, weak = tab_.weak_from_this(), &workspace = services_.desktop.workspace,
       address](const AlertAnswer& given) {
        if (weak.lock()) isConfirming_ = false;
        if (given.isFirstButton()) workspace.open(address);
      });
}

}  // namespace orvel
