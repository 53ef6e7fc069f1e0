#include "Models/Commands/Actions.h"
#include "Models/Downloads/Downloads.h"

#include "Models/Commands/CommandTarget.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Tab/PageSource.h"
#include "Models/Updates/SelfUpdate.h"
#include "Models/Windows/LittleWindows.h"
#include "Models/Windows/WindowChrome.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

static void inActiveWindow(BrowserStore& store, void (DesktopWindow::*perform)()) {
  if (auto* window = store.services().desktop.application.activeWindow()) (window->*perform)();
}

void Actions::perform(BrowserStore& store, ActionID action, const TabRef& tab) {
  using enum ActionID;
  if (!tab && actionInfo(action).actsOn == ActsOn::Tab) return;
  switch (action) {
    case About:
      return store.showUtilityWindow(UtilityWindow::About);
    case CheckForUpdates:
      return store.selfUpdate.checkNow();
    case Settings:
      return store.showUtilityWindow(UtilityWindow::Settings);
    case Quit:
      return store.pageClosing.quit();

    case NewTab:
      return store.showCommandBar(CommandBarMode::NewTab);
    case OpenLocation:
      return store.showCommandBar(CommandBarMode::CurrentTab);
    case ReopenClosedTab:
      return store.archive.reopenClosedTab();
    case NewLittleWindow:
      return store.littleWindows.newLittleWindow();
    case NewPrivateWindow:
      return store.coming.openPrivateWindow();
    case PromoteLittleWindow:
      if (const auto little = store.littleWindows.keyLittleWindow()) little->promote();
      return;
    case NewSpace:
      return store.spaceEditing.beginNewSpace();
    case Capture:
      return store.coming.beginCapture(tab);
    case SavePage:
      return tab->savePage();
    case ExportPDF:
      return tab->exportPDF();
    case Print:
      return tab->printPage();
    case CloseTab:
      return store.target.closeSelectedTab();
    case CloseWindow:
      return inActiveWindow(store, &DesktopWindow::close);

    case Undo:
      return store.target.edit(EditingCommand::Undo);
    case Redo:
      return store.target.edit(EditingCommand::Redo);
    case Cut:
      return store.target.edit(EditingCommand::Cut);
    case Copy:
      return store.target.edit(EditingCommand::Copy);
    case Paste:
      return store.target.edit(EditingCommand::Paste);
    case PasteAsPlainText:
      return store.target.edit(EditingCommand::PasteAsPlainText);
    case Delete:
      return store.target.edit(EditingCommand::Delete);
    case SelectAll:
      return store.target.edit(EditingCommand::SelectAll);
    case Find:
      return store.pageSearch.showFindBar();
    case FindNext:
      return store.pageSearch.findNext(BrowserTab::FindDirection::Forwards);
    case FindPrevious:
      return store.pageSearch.findNext(BrowserTab::FindDirection::Backwards);

    case ToggleSidebar:
      return store.chrome.toggleSidebar();
    case ToggleReader:
      return store.coming.toggleReader();
    case SplitWithRecentTab:
      return store.coming.splitWithRecentTab();
    case CloseSplitView:
      return store.coming.closeSplitView();
    case ToggleContentBlocking:
      return store.blocking.toggleContentBlocking();
    case PauseBlocking:
      return store.blocking.toggleBlockingOnCurrentSite(tab);
    case ToggleCookieRejection:
      return store.blocking.toggleCookieRejection();
    case HideItems:
      return store.coming.beginHidingItems(tab);
    case Reload:
      return tab->reload(ReloadSource::Cache);
    case ReloadFromOrigin:
      return tab->reload(ReloadSource::Origin);
    case Stop:
      return tab->stopLoading();
    case ZoomIn:
      return tab->zoom(BrowserTab::ZoomStep::In);
    case ZoomOut:
      return tab->zoom(BrowserTab::ZoomStep::Out);
    case ActualSize:
      return tab->setZoom(1);
    case ToggleFullScreen:
      return inActiveWindow(store, &DesktopWindow::toggleFullscreen);

    case ViewSource:
      return openSource(store, tab);
    case DeveloperTools:
      return tab->toggleInspector();

    case Back:
      return tab->goBack();
    case Forward:
      return tab->goForward();
    case ShowHistory:
      return store.showUtilityWindow(UtilityWindow::History);
    case ClearHistory:
      return store.clearHistory();

    case RecentTabs:
      return store.coming.advanceTabSwitcher();
    case NextTab:
      return store.selectAdjacentTab(1);
    case PreviousTab:
      return store.selectAdjacentTab(-1);
    case TogglePin:
      return store.togglePin(tab);
    case CopyLink:
      return store.copiedLink.copyLink(tab, LinkForm::Plain);
    case CopyMarkdownLink:
      return store.copiedLink.copyLink(tab, LinkForm::Markdown);
    case SelectTab1:
    case SelectTab2:
    case SelectTab3:
    case SelectTab4:
    case SelectTab5:
    case SelectTab6:
    case SelectTab7:
    case SelectTab8:
    case SelectLastTab:
      return store.selectTabNumber(static_cast<int>(action) - static_cast<int>(SelectTab1) + 1);

    case EditCurrentSpace:
      return store.spaceEditing.beginEditing(*store.activeSpace());
    case Minimize:
      return inActiveWindow(store, &DesktopWindow::minimize);
    case Zoom:
      return inActiveWindow(store, &DesktopWindow::toggleMaximized);
    case ReportBug:
      return store.showUtilityWindow(UtilityWindow::BugReport);
    case NewFolder:
      return store.folders.newFolder();
    case OpenDownloads:
      return store.downloads.openFolder();
    case ToggleMute:
      return tab->toggleMute();

    case Space1:
    case Space2:
    case Space3:
    case Space4:
    case Space5:
    case Space6:
    case Space7:
    case Space8:
    case Space9:
    case MainMenu:
    case SwitchRegion:
      return;
  }
}

bool Actions::isOn(BrowserStore& store, ActionID action, const TabRef& tab) {
  using enum ActionID;
  switch (action) {
    case ToggleReader:
      return store.coming.reader.peek().has_value();
    case ToggleContentBlocking:
      return store.contentBlocker.isEnabled.peek();
    case PauseBlocking:
      return store.contentBlocker.isPaused(tab ? tab->url.peek() : std::nullopt);
    case ToggleCookieRejection:
      return store.contentBlocker.isCookieRejectionEnabled.peek();
    case TogglePin:
      return tab && !contains(store.activeSpace()->today.peek(), *tab);
    case ToggleMute:
      return tab && tab->isMuted.peek();
    default:
      return false;
  }
}

}  // namespace orvel
