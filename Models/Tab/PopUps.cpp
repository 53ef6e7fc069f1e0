#include "Models/Tab/PopUps.h"

#include <utility>

#include "Base/Texts.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

// More of one page are not opened later either.
static constexpr size_t kMaxRefused = 5;

bool PopUps::allows(const NavigationAction& action) {
  const auto& address = tab_.url.peek();
  const std::string site(address ? address->host().value_or("") : "");
  if (!site.empty() && tab_.host()->mayOpenWindows(tab_, site)) return true;
  if (action.hasUserGesture && lastInput_ != action.input) {
    lastInput_ = action.input;
    return true;
  }
  refuse(site, action);
  return false;
}

void PopUps::refuse(const std::string& site, const NavigationAction& action) {
  if (action.request && refused_.size() < kMaxRefused) refused_.push_back(action.request->url);
  const auto view = tab_.liveWebView();
  if (!view || !view->isInWindow() || site.empty()) return;
  const auto open = [this, weak = tab_.weak_from_this(), site] {
    if (const auto tab = weak.lock()) openRefused(site);
  };
  tab_.host()->showToast(filled(_("{site} may not open more windows"), {{"site", site}}),
                         {.symbol = "macwindow", .undo = open, .actionTitle = _("Allow")});
}

void PopUps::openRefused(const std::string& site) {
  tab_.host()->allowWindows(tab_, site);
  for (const URL& address : std::exchange(refused_, {}))
    if (OtherApplications::isHandledInside(address))
      tab_.host()->openLink(address, tab_, TabHost::Selection::Selects);
}

}  // namespace orvel
