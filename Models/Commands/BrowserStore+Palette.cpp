#include "Models/Store/BrowserStore.h"

// The commands of the command bar that are written by hand.
namespace orvel {

namespace {

std::optional<std::string> shortcutOf(ActionID action) {
  return glyphs(actionInfo(action).equivalent);
}

}  // namespace

std::vector<PaletteCommand> BrowserStore::paletteCommands() {
  const bool isBlocking = contentBlocker.isEnabled.peek();
  const auto calling = [this](void (BrowserStore::*operation)()) {
    return [this, operation] { (this->*operation)(); };
  };
  std::vector<PaletteCommand> commands = {
      {"settings",
       "Open Settings",
       "gearshape",
       {"preferences"},
       shortcutOf(ActionID::Settings),
       [this] { showUtilityWindow(UtilityWindow::Settings); }},
      {"space.new",
       "New Space",
       "plus.square.on.square",
       {"profile"},
       shortcutOf(ActionID::NewSpace),
       calling(&BrowserStore::beginNewSpace)},
      {"sidebar",
       "Toggle Sidebar",
       "sidebar.left",
       {"hide", "show"},
       shortcutOf(ActionID::ToggleSidebar),
       calling(&BrowserStore::toggleSidebar)},
      {"little",
       "New Little Window",
       "macwindow",
       {},
       shortcutOf(ActionID::NewLittleWindow),
       calling(&BrowserStore::newLittleWindow)},
      {"private",
       "New Private Window",
       "eyeglasses",
       {"incognito"},
       shortcutOf(ActionID::NewPrivateWindow),
       calling(&BrowserStore::openPrivateWindow)},
      {"history.show",
       "Show History",
       "clock",
       {},
       shortcutOf(ActionID::ShowHistory),
       [this] { showUtilityWindow(UtilityWindow::History); }},
      {"folder.new",
       "New Folder",
       "folder.badge.plus",
       {"group"},
       std::nullopt,
       [this] { newFolder(); }},
      {"tab.reopen",
       "Reopen Closed Tab",
       "arrow.uturn.backward",
       {"undo"},
       shortcutOf(ActionID::ReopenClosedTab),
       calling(&BrowserStore::reopenClosedTab)},
      {"history.clear",
       "Clear History",
       "clock.arrow.circlepath",
       {"delete", "privacy"},
       std::nullopt,
       calling(&BrowserStore::clearHistory)},
      {"blocking",
       isBlocking ? "Turn Off Ad Blocking" : "Turn On Ad Blocking",
       "shield",
       {"adblock", "tracker", "privacy"},
       std::nullopt,
       calling(&BrowserStore::toggleContentBlocking)},
      {"downloads",
       "Open Downloads Folder",
       "arrow.down.circle",
       {},
       std::nullopt,
       calling(&BrowserStore::openDownloadsFolder)},
  };
  if (const TabRef tab = activeSpace()->selectedTab()) addTabCommands(commands, tab);
  addSpaceCommands(commands);
  return commands;
}

void BrowserStore::addTabCommands(std::vector<PaletteCommand>& commands, const TabRef& tab) {
  const bool isOfToday = contains(activeSpace()->today.peek(), *tab);
  const bool isMuted = tab->isMuted.peek();
  const bool isPaused = contentBlocker.isPaused(tab->url.peek());
  const auto add = [&](PaletteCommand command) { commands.push_back(std::move(command)); };

  add({"tab.copy",
       "Copy Link",
       "link",
       {"url", "share"},
       shortcutOf(ActionID::CopyLink),
       [this, tab] { copyLink(tab); }});
  add({"tab.copy.markdown",
       "Copy as Markdown Link",
       "text.badge.plus",
       {"url", "md"},
       shortcutOf(ActionID::CopyMarkdownLink),
       [this, tab] { copyLink(tab, LinkForm::Markdown); }});
  add({"tab.pin",
       isOfToday ? "Pin Tab" : "Unpin Tab",
       isOfToday ? "pin" : "pin.slash",
       {},
       shortcutOf(ActionID::TogglePin),
       [this, tab] { togglePin(tab); }});
  add({"tab.split",
       "Split with Recent Tab",
       "rectangle.split.2x1",
       {"side by side"},
       shortcutOf(ActionID::SplitWithRecentTab),
       [this] { splitWithRecentTab(); }});
  add({"tab.mute",
       isMuted ? "Unmute Tab" : "Mute Tab",
       isMuted ? "speaker.wave.2" : "speaker.slash",
       {"sound", "audio", "silence"},
       std::nullopt,
       [tab] { tab->toggleMute(); }});
  add({"reader",
       reader.peek() ? "Hide Reader" : "Show Reader",
       "doc.plaintext",
       {"article", "read"},
       shortcutOf(ActionID::ToggleReader),
       [this] { toggleReader(); }});
  add({"capture",
       "Capture",
       "camera.viewfinder",
       {"screenshot", "area", "image"},
       shortcutOf(ActionID::Capture),
       [this, tab] { beginCapture(tab); }});
  add({"print", "Print Page", "printer", {}, shortcutOf(ActionID::Print), [tab] {
         tab->printPage();
       }});
  add({"pdf", "Export as PDF", "doc.richtext", {"save", "pdf"}, std::nullopt, [tab] {
         tab->exportPDF();
       }});
  add({"find",
       "Find on Page",
       "text.magnifyingglass",
       {"search"},
       shortcutOf(ActionID::Find),
       [this] { showFindBar(); }});
  add({"hide.items",
       "Hide Distracting Items",
       "eye.slash",
       {"zap", "remove", "annoying", "clutter", "banner"},
       std::nullopt,
       [this, tab] { beginHidingItems(tab); }});
  add({"site.blocking",
       isPaused ? "Resume Blocking on This Site" : "Pause Blocking on This Site",
       "shield.slash",
       {"adblock", "broken"},
       std::nullopt,
       [this, tab] { toggleBlockingOnCurrentSite(tab); }});
}

void BrowserStore::addSpaceCommands(std::vector<PaletteCommand>& commands) {
  const auto active = activeSpace();
  const auto& all = spaces.peek();
  for (size_t i = 0; i < all.size(); ++i) {
    const auto& space = all[i];
    if (space == active) continue;
    const auto index = static_cast<int>(i);
    commands.push_back({"space." + space->id.text(),
                        "Switch to " + space->name.peek(),
                        space->symbol.peek(),
                        {"space"},
                        index < kNumberedActions ? shortcutOf(spaceAction(index)) : std::nullopt,
                        [this, space] { switchTo(space); }});
  }
}

}  // namespace orvel
