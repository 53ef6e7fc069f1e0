#include "Models/Sidebar/CopiedLink.h"

#include "Base/Texts.h"
#include "BrowserCore/Addresses/TrackingParameters.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

std::string markdownLink(const std::string& text, const URL& address) {
  std::string title;
  for (const char c : text) title.append(c == ']' ? "\\]" : std::string(1, c));
  return "[" + title + "](" + address.text() + ")";
}

void CopiedLink::copyLink(TabRef tab, LinkForm form) {
  constexpr Duration kMarkStays = 1200ms;
  if (!tab) tab = store_.activeSpace()->selectedTab();
  if (!tab || !tab->url.peek()) return;
  const URL& shown = *tab->url.peek();
  const URL address = TrackingParameters::stripped(shown).value_or(shown);
  std::string copied = address.text();
  if (form == LinkForm::Markdown) copied = markdownLink(tab->displayTitle(), address);
  store_.services().desktop.clipboard.setText(copied);
  if (!store_.chrome.isSidebarVisible.peek())
    return store_.showToast(_("Copied link"), {.symbol = "link"});
  const auto mark = [this](bool isMarked) {
    store_.animate(Spring::quick, [&] { didCopyLink = isMarked; });
  };
  mark(true);
  store_.after(kMarkStays, [mark] { mark(false); }).detach();
}

}  // namespace orvel
