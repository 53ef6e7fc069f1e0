#include "Base/Texts.h"
#include "Models/Commands/CommandList.h"
#include "Models/Downloads/Downloads.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/LittleWindows.h"
#include "Models/Windows/WindowChrome.h"

// The commands of the command bar that are written by hand.
namespace orvel {

namespace {

std::optional<std::string> shortcutOf(ActionID action) {
  return glyphs(actionInfo(action).equivalent);
}

}  // namespace

std::vector<PaletteCommand> CommandList::paletteCommands() {
  const bool isBlocking = store_.contentBlocker.isEnabled.peek();
  const auto calling = []<class Topic>(Topic& topic, void (Topic::*operation)()) {
    return [&topic, operation] { (topic.*operation)(); };
  };
  std::vector<PaletteCommand> commands = {
      {"settings",
       _("Open Settings"),
       "gearshape",
       {"preferences"},
       shortcutOf(ActionID::Settings),
       [this] { store_.showUtilityWindow(UtilityWindow::Settings); }},
      {"space.new",
       _("New Space"),
       "plus.square.on.square",
       {"profile"},
       shortcutOf(ActionID::NewSpace),
       calling(store_.spaceEditing, &SpaceEditing::beginNewSpace)},
      {"sidebar",
       _("Toggle Sidebar"),
       "sidebar.left",
       {"hide", "show"},
       shortcutOf(ActionID::ToggleSidebar),
       calling(store_.chrome, &WindowChrome::toggleSidebar)},
      {"little",
       _("New Little Window"),
       "macwindow",
       {},
       shortcutOf(ActionID::NewLittleWindow),
       calling(store_.littleWindows, &LittleWindows::newLittleWindow)},
      {"private",
       _("New Private Window"),
       "eyeglasses",
       {"incognito"},
       shortcutOf(ActionID::NewPrivateWindow),
       calling(store_.coming, &ComingFeatures::openPrivateWindow)},
      {"history.show",
       _("Show History"),
       "clock",
       {},
       shortcutOf(ActionID::ShowHistory),
       [this] { store_.showUtilityWindow(UtilityWindow::History); }},
      {"folder.new",
       _("New Folder"),
       "folder.badge.plus",
       {"group"},
       std::nullopt,
       [this] { store_.folders.newFolder(); }},
      {"tab.reopen",
       _("Reopen Closed Tab"),
       "arrow.uturn.backward",
       {"undo"},
       shortcutOf(ActionID::ReopenClosedTab),
       calling(store_.archive, &Archive::reopenClosedTab)},
      {"history.clear",
       _("Clear History"),
       "clock.arrow.circlepath",
       {"delete", "privacy"},
       std::nullopt,
       calling(store_, &BrowserStore::clearHistory)},
      {"blocking",
       isBlocking ? _("Turn Off Ad Blocking") : _("Turn On Ad Blocking"),
       "shield",
       {"adblock", "tracker", "privacy"},
       std::nullopt,
       calling(store_.blocking, &BlockingSwitches::toggleContentBlocking)},
      {"downloads",
       _("Open Downloads Folder"),
       "arrow.down.circle",
       {},
       std::nullopt,
       calling(store_.downloads, &Downloads::openFolder)},
  };
  if (const TabRef tab = store_.activeSpace()->selectedTab()) addTabCommands(commands, tab);
  addSpaceCommands(commands);
  return commands;
}

void CommandList::addTabCommands(std::vector<PaletteCommand>& commands, const TabRef& tab) {
  const bool isOfToday = contains(store_.activeSpace()->today.peek(), *tab);
  const bool isMuted = tab->isMuted.peek();
  const bool isPaused = store_.contentBlocker.isPaused(tab->url.peek());
  const auto add = [&](PaletteCommand command) { commands.push_back(std::move(command)); };

  add({"tab.copy",
       _("Copy Link"),
       "link",
       {"url", "share"},
       shortcutOf(ActionID::CopyLink),
       [this, tab] { store_.copiedLink.copyLink(tab); }});
  add({"tab.copy.markdown",
       _("Copy as Markdown Link"),
       "text.badge.plus",
       {"url", "md"},
       shortcutOf(ActionID::CopyMarkdownLink),
       [this, tab] { store_.copiedLink.copyLink(tab, LinkForm::Markdown); }});
  add({"tab.pin",
       isOfToday ? _("Pin Tab") : _("Unpin Tab"),
       isOfToday ? "pin" : "pin.slash",
       {},
       shortcutOf(ActionID::TogglePin),
       [this, tab] { store_.togglePin(tab); }});
  add({"tab.split",
       _("Split with Recent Tab"),
       "rectangle.split.2x1",
       {"side by side"},
       shortcutOf(ActionID::SplitWithRecentTab),
       [this] { store_.coming.splitWithRecentTab(); }});
  add({"tab.mute",
       isMuted ? _("Unmute Tab") : _("Mute Tab"),
       isMuted ? "speaker.wave.2" : "speaker.slash",
       {"sound", "audio", "silence"},
       std::nullopt,
       [tab] { tab->toggleMute(); }});
  add({"reader",
       store_.coming.reader.peek() ? _("Hide Reader") : _("Show Reader"),
       "doc.plaintext",
       {"article", "read"},
       shortcutOf(ActionID::ToggleReader),
       [this] { store_.coming.toggleReader(); }});
  add({"capture",
       _("Capture"),
       "camera.viewfinder",
       {"screenshot", "area", "image"},
       shortcutOf(ActionID::Capture),
       [this, tab] { store_.coming.beginCapture(tab); }});
  add({"print", _("Print Page"), "printer", {}, shortcutOf(ActionID::Print), [tab] {
         tab->printPage();
       }});
  add({"pdf", _("Export as PDF"), "doc.richtext", {"save", "pdf"}, std::nullopt, [tab] {
         tab->exportPDF();
       }});
  add({"find",
       _("Find on Page"),
       "text.magnifyingglass",
       {"search"},
       shortcutOf(ActionID::Find),
       [this] { store_.pageSearch.showFindBar(); }});
  add({"hide.items",
       _("Hide Distracting Items"),
       "eye.slash",
       {"zap", "remove", "annoying", "clutter", "banner"},
       std::nullopt,
       [this, tab] { store_.coming.beginHidingItems(tab); }});
  add({"site.blocking",
       isPaused ? _("Resume Blocking on This Site") : _("Pause Blocking on This Site"),
       "shield.slash",
       {"adblock", "broken"},
       std::nullopt,
       [this, tab] { store_.blocking.toggleBlockingOnCurrentSite(tab); }});
}

void CommandList::addSpaceCommands(std::vector<PaletteCommand>& commands) {
  const auto active = store_.activeSpace();
  const auto& all = store_.spaces.peek();
  for (size_t i = 0; i < all.size(); ++i) {
    const auto& space = all[i];
    if (space == active) continue;
    const auto index = static_cast<int>(i);
    commands.push_back({"space." + space->id.text(),
                        filled(_("Switch to {space}"), {{"space", space->name.peek()}}),
                        space->symbol.peek(),
                        {"space"},
                        index < kNumberedActions ? shortcutOf(spaceAction(index)) : std::nullopt,
                        [this, space] { store_.switching.switchTo(space); }});
  }
}

}  // namespace orvel
