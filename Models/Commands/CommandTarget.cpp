#include "Models/Commands/CommandTarget.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Tab/Peek.h"
#include "Models/Windows/LittleWindows.h"

namespace orvel {

bool CommandTarget::isMainWindowKey() const {
  const DesktopWindow* window = store_.window();
  return window && store_.services().desktop.application.keyWindow() == window;
}

TabRef CommandTarget::targetTab() const {
  if (const auto little = store_.littleWindows.keyLittleWindow()) return little->tab();
  return isMainWindowKey() ? store_.activeSpace()->selectedTab() : nullptr;
}

TabRef CommandTarget::commandTab() const {
  const auto little = store_.littleWindows.keyLittleWindow();
  return little ? little->tab() : store_.activeSpace()->selectedTab();
}

void CommandTarget::edit(EditingCommand command) {
  auto* key = store_.services().desktop.application.keyWindow();
  if (key && key->isTextEditorFocused()) return key->edit(command);
  const TabRef tab = targetTab();
  if (const auto view = tab ? tab->liveWebView() : nullptr) view->edit(command);
}

void CommandTarget::closeSelectedTab() {
  if (const auto little = store_.littleWindows.keyLittleWindow()) return little->close();
  DesktopWindow* window = store_.window();
  DesktopWindow* key = store_.services().desktop.application.keyWindow();
  if (key && key != window) return key->performClose();
  if (store_.peek.tab.peek()) return store_.peek.closePeek();
  if (const TabRef selected = store_.activeSpace()->selectedTab())
    return store_.pageClosing.close(selected);
  if (window) window->performClose();
}

}  // namespace orvel
