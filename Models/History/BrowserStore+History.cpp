#include "Base/Texts.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/BrowserStore.h"

// Forgetting where the user has been.
namespace orvel {

void BrowserStore::clearHistory() {
  auto* asking = services_.desktop.application.activeWindow();
  if (!asking && window() && window()->isVisible()) asking = window();
  services_.desktop.dialogs.showAlert(
      asking,
      {.messageText = _("Clear all browsing history?"),
       .informativeText =
           _("Visited pages, and what the command bar learned you pick, are forgotten "
             "in every profile. Open tabs, favorites and the archive stay."),
       .buttons = {_("Clear History"), _("Cancel")},
       .isDestructive = true},
      whileAlive([this](const AlertAnswer& given) {
        if (!given.isFirstButton()) return;
        later([this] {
          if (history) history->removeAll(std::nullopt);
          historyRevision = historyRevision.peek() + 1;
        });
        choices.forgetChoices();
        showToast(_("History cleared"));
      }));
}

}  // namespace orvel
