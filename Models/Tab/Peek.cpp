#include "Models/Tab/Peek.h"

#include "Models/Store/BrowserStore.h"

namespace orvel {

void Peek::openPeek(const URL& url, TabRef from) { store_.openTab(url, {.after = from}); }

bool Peek::peeksLinks(const BrowserTab&) const { return false; }

void Peek::closePeek() {
  const TabRef closed = tab.peek();
  if (!closed || isPeekExpanding.peek()) return;
  store_.animate(
      Spring::quick, [this] { tab = nullptr; },
      [closed] {
        closed->isDiscarded = true;
        closed->teardown();
      });
  store_.later([this] { store_.focusWebView(); });
}

}  // namespace orvel
