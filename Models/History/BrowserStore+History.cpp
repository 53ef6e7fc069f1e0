#include "Models/Store/BrowserStore.h"

// Forgetting where the user has been.
namespace orvel {

void BrowserStore::clearHistory() {
  auto* asking = services_.desktop.application.activeWindow();
  if (!asking && window && window->isVisible()) asking = window;
  services_.desktop.dialogs.showAlert(
      asking,
      {.messageText = "Clear all browsing history?",
       .informativeText = "Visited pages, and what the command bar learned you pick, are forgotten "
                          "in every profile. Open tabs, favorites and the archive stay.",
       .buttons = {"Clear History", "Cancel"},
       .isDestructive = true},
      [weak = weak_from_this()](const AlertAnswer& given) {
        const auto store = weak.lock();
        if (!store || !given.isFirstButton()) return;
        store->later([](BrowserStore& live) {
          if (live.history) live.history->removeAll(std::nullopt);
          live.historyRevision = live.historyRevision.peek() + 1;
        });
        store->forgetChoices();
        store->showToast("History cleared");
      });
}

}  // namespace orvel
