#include "Models/Commands/MainMenu.h"

#include <utility>

#include "Base/Texts.h"
#include "Models/Commands/CommandTarget.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Tab/PageSource.h"
#include "Models/Windows/LittleWindows.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

namespace {

using enum ActionID;

// Makes the items of one store's menu.
class Builder {
 public:
  explicit Builder(BrowserStore& store) : store_(store) {}

  Menu application() const;
  Menu file() const;
  Menu edit() const;
  Menu view() const;
  Menu history() const;
  Menu tabs() const;
  Menu spaces() const;
  Menu window() const;
  Menu help() const;

 private:
  static MenuItem item(ActionID id, std::function<void()> perform) {
    return {.title = _(actionInfo(id).title), .action = id, .perform = std::move(perform)};
  }
  template <class Topic>
  static MenuItem item(ActionID id, Topic& topic, void (Topic::*perform)()) {
    return item(id, [&topic, perform] { (topic.*perform)(); });
  }
  MenuItem marked(MenuItem item, std::function<bool()> isOn) const {
    item.isOn = std::move(isOn);
    return item;
  }
  static MenuItem separator() { return {}; }

  // Does nothing without a target tab.
  template <class Perform>
  MenuItem onTarget(ActionID id, Perform perform) const {
    return item(id, [&store = store_, perform] {
      if (const TabRef tab = store.target.targetTab()) perform(store, tab);
    });
  }
  // Does nothing while another window is key.
  template <class Perform>
  MenuItem inMainWindow(ActionID id, Perform perform) const {
    return item(id, [&store = store_, perform] {
      if (store.target.isMainWindowKey()) perform(store);
    });
  }
  // Acts on the key window; disabled while none of ours is.
  MenuItem onActiveWindow(ActionID id, void (DesktopWindow::*perform)()) const {
    const auto key = [&store = store_] {
      return store.services().desktop.application.activeWindow();
    };
    MenuItem made = item(id, [key, perform] {
      if (auto* window = key()) (window->*perform)();
    });
    made.isAvailable = [key] { return key() != nullptr; };
    return made;
  }
  MenuItem editing(ActionID id, EditingCommand command) const {
    return item(id, [&store = store_, command] { store.target.edit(command); });
  }
  MenuItem utility(ActionID id, UtilityWindow which) const {
    return item(id, [&store = store_, which] { store.showUtilityWindow(which); });
  }
  MenuItem newSpace() const {
    return item(NewSpace, store_.spaceEditing, &SpaceEditing::beginNewSpace);
  }

  BrowserStore& store_;
};

Menu Builder::application() const {
  return {.title = "Orvel",
          .items = {utility(About, UtilityWindow::About),
                    item(CheckForUpdates, store_.coming, &ComingFeatures::checkForUpdates),
                    separator(), utility(Settings, UtilityWindow::Settings), separator(),
                    item(Quit, [&store = store_] { store.pageClosing.quit(); })}};
}

Menu Builder::file() const {
  const auto bar = [this](ActionID id, CommandBarMode mode) {
    return item(id, [&store = store_, mode] { store.showCommandBar(mode); });
  };
  return {
      .title = _("File"),
      .items = {
          bar(NewTab, CommandBarMode::NewTab), bar(OpenLocation, CommandBarMode::CurrentTab),
          item(ReopenClosedTab, store_.archive, &Archive::reopenClosedTab),
          item(NewLittleWindow, store_.littleWindows, &LittleWindows::newLittleWindow),
          item(NewPrivateWindow, store_.coming, &ComingFeatures::openPrivateWindow),
          item(PromoteLittleWindow,
               [&store = store_] {
                 if (const auto little = store.littleWindows.keyLittleWindow()) little->promote();
               }),
          separator(), newSpace(), separator(),
          onTarget(Capture, [](auto& store, const auto& tab) { store.coming.beginCapture(tab); }),
          onTarget(SavePage, [](auto&, const auto& tab) { tab->savePage(); }),
          onTarget(ExportPDF, [](auto&, const auto& tab) { tab->exportPDF(); }),
          onTarget(Print, [](auto&, const auto& tab) { tab->printPage(); }), separator(),
          item(CloseTab, store_.target, &CommandTarget::closeSelectedTab),
          onActiveWindow(CloseWindow, &DesktopWindow::close)}};
}

Menu Builder::edit() const {
  using enum BrowserTab::FindDirection;
  return {
      .title = _("Edit"),
      .items = {
          editing(Undo, EditingCommand::Undo), editing(Redo, EditingCommand::Redo), separator(),
          editing(Cut, EditingCommand::Cut), editing(Copy, EditingCommand::Copy),
          editing(Paste, EditingCommand::Paste),
          editing(PasteAsPlainText, EditingCommand::PasteAsPlainText),
          editing(Delete, EditingCommand::Delete), editing(SelectAll, EditingCommand::SelectAll),
          separator(), inMainWindow(Find, [](auto& store) { store.pageSearch.showFindBar(); }),
          inMainWindow(FindNext, [](auto& store) { store.pageSearch.findNext(Forwards); }),
          inMainWindow(FindPrevious, [](auto& store) { store.pageSearch.findNext(Backwards); })}};
}

Menu Builder::view() const {
  const auto& store = store_;
  const auto zooming = [this](ActionID id, BrowserTab::ZoomStep step) {
    return onTarget(id, [step](auto&, const auto& tab) { tab->zoom(step); });
  };
  return {
      .title = _("View"),
      .items = {item(ToggleSidebar, store_.chrome, &WindowChrome::toggleSidebar),
                marked(inMainWindow(ToggleReader, [](auto& store) { store.coming.toggleReader(); }),
                       [&store] { return store.coming.reader.peek().has_value(); }),
                item(SplitWithRecentTab, store_.coming, &ComingFeatures::splitWithRecentTab),
                item(CloseSplitView, store_.coming, &ComingFeatures::closeSplitView),
                separator(),
                marked(item(ToggleContentBlocking, store_.blocking,
                            &BlockingSwitches::toggleContentBlocking),
                       [&store] { return store.contentBlocker.isEnabled.peek(); }),
                marked(item(PauseBlocking,
                            [&store = store_] {
                              store.blocking.toggleBlockingOnCurrentSite(store.target.commandTab());
                            }),
                       [&store] {
                         const TabRef tab = store.target.commandTab();
                         return store.contentBlocker.isPaused(tab ? tab->url.peek() : std::nullopt);
                       }),
                marked(item(ToggleCookieRejection, store_.blocking,
                            &BlockingSwitches::toggleCookieRejection),
                       [&store] { return store.contentBlocker.isCookieRejectionEnabled.peek(); }),
                onTarget(HideItems,
                         [](auto& store, const auto& tab) { store.coming.beginHidingItems(tab); }),
                separator(),
                onTarget(Reload, [](auto&, const auto& tab) { tab->reload(ReloadSource::Cache); }),
                onTarget(ReloadFromOrigin,
                         [](auto&, const auto& tab) { tab->reload(ReloadSource::Origin); }),
                onTarget(Stop, [](auto&, const auto& tab) { tab->stopLoading(); }),
                separator(),
                zooming(ZoomIn, BrowserTab::ZoomStep::In),
                zooming(ZoomOut, BrowserTab::ZoomStep::Out),
                onTarget(ActualSize, [](auto&, const auto& tab) { tab->setZoom(1); }),
                separator(),
                onActiveWindow(ToggleFullScreen, &DesktopWindow::toggleFullscreen),
                separator(),
                onTarget(ViewSource, [](auto& store, const auto& tab) { openSource(store, tab); }),
                onTarget(DeveloperTools, [](auto&, const auto& tab) { tab->toggleInspector(); })}};
}

Menu Builder::history() const {
  return {.title = _("History"),
          .items = {onTarget(Back, [](auto&, const auto& tab) { tab->goBack(); }),
                    onTarget(Forward, [](auto&, const auto& tab) { tab->goForward(); }),
                    separator(), utility(ShowHistory, UtilityWindow::History),
                    item(ClearHistory, store_, &BrowserStore::clearHistory)}};
}

Menu Builder::tabs() const {
  const auto adjacent = [this](ActionID id, int step) {
    return item(id, [&store = store_, step] { store.selectAdjacentTab(step); });
  };
  const auto copying = [this](ActionID id, LinkForm form) {
    return onTarget(id,
                    [form](auto& store, const auto& tab) { store.copiedLink.copyLink(tab, form); });
  };
  Menu menu{
      .title = _("Tabs"),
      .items = {inMainWindow(RecentTabs, [](auto& store) { store.coming.advanceTabSwitcher(); }),
                adjacent(NextTab, 1), adjacent(PreviousTab, -1), separator(),
                onTarget(TogglePin, [](auto& store, const auto& tab) { store.togglePin(tab); }),
                copying(CopyLink, LinkForm::Plain), copying(CopyMarkdownLink, LinkForm::Markdown)}};
  for (int i = 0; i < kNumberedActions; ++i) {
    MenuItem selecting =
        item(selectTabAction(i), [&store = store_, i] { store.selectTabNumber(i + 1); });
    selecting.isHidden = true;
    menu.items.push_back(std::move(selecting));
  }
  return menu;
}

Menu Builder::spaces() const {
  return {
      .title = _("Spaces"), .makeItems = [builder = *this] {
        auto& store = builder.store_;
        std::vector<MenuItem> items;
        for (const auto& space : store.spaces.peek()) {
          const auto index = static_cast<int>(items.size());
          items.push_back({.title = space->name.peek(),
                           .action = index < kNumberedActions ? std::optional(spaceAction(index))
                                                              : std::nullopt,
                           .perform = [&store, space] { store.switching.switchTo(space); },
                           .isOn = [&store, space] { return store.activeSpace() == space; }});
        }
        items.push_back(separator());
        items.push_back(builder.newSpace());
        items.push_back(item(EditCurrentSpace,
                             [&store] { store.spaceEditing.beginEditing(*store.activeSpace()); }));
        return items;
      }};
}

Menu Builder::window() const {
  return {.title = _("Window"),
          .items = {onActiveWindow(Minimize, &DesktopWindow::minimize),
                    onActiveWindow(Zoom, &DesktopWindow::toggleMaximized)}};
}

Menu Builder::help() const {
  return {.title = _("Help"), .items = {utility(ReportBug, UtilityWindow::BugReport)}};
}

}  // namespace

Menu MainMenu::make(BrowserStore& store) {
  const Builder builder(store);
  Menu main;
  for (Menu menu :
       {builder.application(), builder.file(), builder.edit(), builder.view(), builder.history(),
        builder.tabs(), builder.spaces(), builder.window(), builder.help()}) {
    std::string title = menu.title;
    main.items.push_back(
        {.title = std::move(title), .submenu = std::make_shared<Menu>(std::move(menu))});
  }
  return main;
}

}  // namespace orvel
