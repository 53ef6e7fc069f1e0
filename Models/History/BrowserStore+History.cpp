#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/BrowserStore.h"

// Forgetting where the user has been.
namespace orvel {

void BrowserStore::clearHistory() {
  auto* asking = services_.desktop.application.keyWindow();
  if (!asking && window() && window()->isVisible()) asking = window();
  services_.desktop.dialogs.showAlert(
      asking,
      {.messageText = "Clear all browsing history?",
       .informativeText = "Visited pages, and what the command bar learned you pick, are forgotten "
                          "in every profile. Open tabs, favorites and the archive stay.",
       .buttons = {"Clear History", "Cancel"},
       .isDestructive = true},
      whileAlive([this](const AlertAnswer& given) {
        if (!given.isFirstButton()) return;
        later([this] {
          if (history) history->removeAll(std::nullopt);
          historyRevision = historyRevision.peek() + 1;
        });
        choices.forgetChoices();
        showToast("History cleared");
      }));
}

}  // namespace orvel
