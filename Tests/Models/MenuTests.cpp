#include "Models/Commands/MainMenu.h"

#include <map>

#include "Models/Commands/CommandList.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/Toasts.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Models/ModelTest.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel::test {
namespace {

TEST(ActionCatalog, NoTwoActionsShareAKey) {
  std::map<std::string, std::string_view> owners;
  for (const ActionInfo& action : actionCatalog()) {
    std::string_view rest = action.keys;
    while (!rest.empty()) {
      const size_t end = rest.find('|');
      const auto [place, isNew] = owners.emplace(rest.substr(0, end), action.title);
      EXPECT_TRUE(isNew) << place->first << ": " << place->second << " and " << action.title;
      rest = end == std::string_view::npos ? "" : rest.substr(end + 1);
    }
  }
  // What belongs to the page and the fields is never taken ahead of them.
  for (const char* key : {"c", "v", "x", "z", "a"}) {
    const auto owner = owners.find("<Control>" + std::string(key));
    ASSERT_NE(owner, owners.end());
    const auto* action =
        std::ranges::find(actionCatalog(), owner->second, &ActionInfo::title).base();
    EXPECT_NE(action->reach, KeyReach::Everywhere) << key;
  }
}

TEST(ActionCatalog, KeysAreReadInTheNotationOfTheDesktop) {
  using enum KeyEquivalent::Modifier;
  EXPECT_EQ(glyphs({}), std::nullopt);
  EXPECT_EQ(glyphs({Command | Shift | Option | Control, "n"}), "⌃⌥⇧⌘N");
  for (const auto& [key, shown] :
       {std::pair("\t", "⇥"), {"\r", "↩"}, {"\x1b", "esc"}, {" ", "Space"}})
    EXPECT_EQ(glyphs({0, key}), shown);
  EXPECT_EQ(shownKeys("<Shift><Control>n"), "Ctrl+Shift+N");
  EXPECT_EQ(shownKeys("<Control>Page_Down|F1"), "Ctrl+Page Down");
  EXPECT_EQ(shownKeys(""), "");
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"⇧⌘N", "Ctrl+Shift+N"}, {"⌥⇧⌘C", "Ctrl+Alt+Shift+C"},
      {"⌘,", "Ctrl+,"},        {"⌃⇧=", "Alt+Shift+="},
      {"⌃3", "Alt+3"},         {"⌘Y", "Ctrl+H"},
      {"⌃⌘F", "F11"},          {"⌘J", std::nullopt}};
  for (const auto& [glyphs, shown] : cases) EXPECT_EQ(shownShortcut(glyphs), shown) << glyphs;
}

struct MenuTest : ModelTest {
  MenuTest() {
    world.interface.shown = &world.window;
    world.desktop.active = &world.window;
  }

  std::vector<std::string> titles(const std::string& query) {
    std::vector<std::string> found;
    for (const auto& command : store().commands.commandsMatching(query))
      found.push_back(command.title);
    return found;
  }
  std::optional<PaletteCommand> command(const std::string& query, const std::string& id) {
    for (auto& found : store().commands.commandsMatching(query))
      if (found.id == id) return found;
    return std::nullopt;
  }
  void perform(const std::string& menu, const std::string& title) {
    store().commands.performMenuItem(std::vector{menu, title});
  }
  const MenuItem& item(ActionID id) {
    for (const auto& menu : store().commands.mainMenu().items) {
      menu.submenu->update();
      for (const auto& one : menu.submenu->items)
        if (one.action == id) return one;
    }
    throw std::logic_error("no such item");
  }
  // The titles of a menu's rows that are to be seen, "-" for a separator.
  std::vector<std::string> rows(const std::string& menu) {
    std::vector<std::string> found;
    for (const auto& top : store().commands.mainMenu().items) {
      if (top.title != menu) continue;
      top.submenu->update();
      for (const auto& one : top.submenu->items)
        if (!one.isHidden) found.push_back(one.isSeparator() ? "-" : one.title);
    }
    return found;
  }
  void addSpaces(int count) {
    auto spaces = store().spaces.peek();
    while (static_cast<int>(spaces.size()) < count)
      spaces.push_back(std::make_shared<Space>(UUID::random(), space().profile,
                                               "Bay" + std::to_string(spaces.size() + 1),
                                               "leaf.fill", 0.3));
    store().setSpaces(spaces);
  }
  // What the toast says once the row was chosen.
  std::string told(const std::string& menu, const std::string& title) {
    publish(store().toasts.toast, std::nullopt);
    perform(menu, title);
    settle();
    return toast();
  }
};

TEST_F(MenuTest, WordsMatchInAnyOrderAndEachMustMatch) {
  world.open("https://a.example/");
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"", {}},
      {"  ", {}},
      {"r", {}},
      {"tab pin", {"Pin Tab"}},  // the menu's row has the same key
      {"PIN nothing", {}},
      {"incog", {"New Private Window"}},
      {"view zoom", {"Zoom In", "Zoom Out"}},
      {"ink link", {}},
      // In the order of the lists, the palette's first.
      {"re",
       {"Reopen Closed Tab", "Split with Recent Tab", "Show Reader", "Hide Distracting Items",
        "Reload Page", "Reload Ignoring Cache", "Recent Tabs", "Report a Bug"}},
  };
  for (const auto& [query, found] : cases) EXPECT_EQ(titles(query), found) << query;
  EXPECT_THAT(titles("re i"), Contains("Reload Ignoring Cache")) << "only the first word is long";
}

TEST_F(MenuTest, ThePaletteWinsOverItsTwinInTheMenu) {
  EXPECT_TRUE(command("copy link", "menu.Tabs.Copy Link"));
  EXPECT_TRUE(command("find", "menu.Edit.Find")) << "without its ellipsis";
  const TabRef tab = world.open("https://a.example/");
  EXPECT_TRUE(command("copy link", "tab.copy"));
  EXPECT_FALSE(command("copy link", "menu.Tabs.Copy Link")) << "the same title";
  EXPECT_FALSE(command("find", "menu.Edit.Find")) << "the same key";

  const auto zoom = command("zoom", "menu.View.Zoom In");
  ASSERT_TRUE(zoom);
  EXPECT_EQ(zoom->shortcut, "⌘=");
  zoom->perform();
  EXPECT_DOUBLE_EQ(world.view(tab)->pageZoom(), 1.1);
  for (const auto& found : store().commands.commandsMatching("undo"))
    EXPECT_NE(found.keywords, std::vector<std::string>{"Edit"}) << "editing needs no bar";
}

TEST_F(MenuTest, TheHarvestIsHeldForASecond) {
  addSpaces(2);
  const auto harvested = [this](const char* id) {
    return std::ranges::count(store().commands.menuCommands(), id, &PaletteCommand::id) > 0;
  };
  EXPECT_TRUE(harvested("menu.Spaces.Bay2") && harvested("menu.File.Close Window"));
  EXPECT_FALSE(harvested("menu.Tabs.Select Tab 1"));
  const auto spaces = store().spaces.peek();
  spaces[1]->name = std::string("Cove");
  world.saveNow();
  const auto stale = store().commands.menuCommands();
  advance(1s);
  EXPECT_TRUE(!harvested("menu.Spaces.Bay2") && harvested("menu.Spaces.Cove"));

  // A row whose item is gone does nothing.
  std::ranges::find(stale, "menu.Spaces.Bay2", &PaletteCommand::id)->perform();
  EXPECT_EQ(store().activeSpace(), spaces[0]);
  perform("Spaces", "Cove");
  EXPECT_EQ(store().activeSpace(), spaces[1]);

  // Disabled items are left out, and not chosen.
  world.desktop.active = nullptr;
  advance(1s);
  EXPECT_FALSE(harvested("menu.File.Close Window"));
  perform("File", "Close Window");
  EXPECT_EQ(world.window.closeCount, 0);
}

TEST_F(MenuTest, RowsStandInSectionsAndTheSpacesAheadOfTheirs) {
  addSpaces(2);
  world.saveNow();
  EXPECT_THAT(rows("Spaces"),
              ElementsAre(space().name.peek(), "Bay2", "-", "New Space…", "Edit Current Space…"));
  EXPECT_THAT(rows("Tabs"), ElementsAre("Recent Tabs", "Next Tab", "Previous Tab", "-",
                                        "Pin / Unpin Tab", "Copy Link", "Copy as Markdown Link"));
}

TEST_F(MenuTest, RowsActOnTheTargetTab) {
  const TabRef tab = load("https://a.example/");
  const auto zoomedIn = [&] {
    world.view(tab)->setPageZoom(1);
    perform("View", "Zoom In");
    return world.view(tab)->pageZoom() > 1;
  };
  EXPECT_TRUE(zoomedIn());
  FakeWindow other;
  world.desktop.active = &other;
  EXPECT_FALSE(zoomedIn()) << "another window is key";
  perform("Edit", "Find…");
  EXPECT_FALSE(store().pageSearch.find.peek());
  perform("Window", "Minimize");
  EXPECT_EQ(other.minimizeCount, 1);
  world.desktop.active = nullptr;
  EXPECT_FALSE(zoomedIn());

  std::shared_ptr<FakeLittleWindow> little;
  world.interface.makeLittle = [&](const TabRef& tab) {
    return little = std::make_shared<FakeLittleWindow>(store(), tab);
  };
  const TabRef inside = store().littleWindows.openLittleWindow(address("https://b.example/"));
  EXPECT_FALSE(zoomedIn());
  EXPECT_GT(world.view(inside)->pageZoom(), 1);
  perform("File", "Open Little Window in Orvel");
  EXPECT_TRUE(little->isPromoted);
}

TEST_F(MenuTest, ZoomStaysWithinItsBounds) {
  const TabRef tab = load("https://www.a.example/");
  const auto zoom = [&] { return world.view(tab)->pageZoom(); };
  for (int i = 0; i < 30; ++i) perform("View", "Zoom In");
  EXPECT_EQ(zoom(), 3.0);
  EXPECT_EQ(toast(), "300%");
  EXPECT_EQ(store().settings.zoom(tab->url.peek()), 3.0);
  for (int i = 0; i < 40; ++i) perform("View", "Zoom Out");
  EXPECT_EQ(zoom(), 0.5);
  tab->teardown();
  EXPECT_EQ(told("View", "Zoom In"), "") << "without a view there is nothing to zoom";
}

TEST_F(MenuTest, BlockingIsSwitchedMarkedAndTold) {
  const TabRef tab = load("https://www.news.test/page");
  const struct {
    ActionID action;
    const char* title;
    const char* on;
    const char* off;
  } cases[] = {{ActionID::PauseBlocking, "Pause Blocking on This Site",
                "Blocking paused on news.test", "Blocking back on for news.test"},
               {ActionID::ToggleContentBlocking, "Block Ads & Trackers", "Blocking ads & trackers",
                "Ad & tracker blocking off"},
               {ActionID::ToggleCookieRejection, "Auto-Reject Cookie Pop-ups",
                "Rejecting cookie pop-ups", "Cookie pop-up rejection off"}};
  for (const auto& one : cases) {
    const bool wasOn = item(one.action).isOn();
    for (const bool isOn : {!wasOn, wasOn}) {
      EXPECT_EQ(told("View", one.title), isOn ? one.on : one.off);
      EXPECT_EQ(item(one.action).isOn(), isOn) << one.title;
    }
  }
  EXPECT_EQ(world.view(tab)->requests.size(), 1u + 6u) << "each reloads";
  world.open("about:blank");
  EXPECT_EQ(told("View", "Pause Blocking on This Site"), "") << "no host, no site";
}

TEST_F(MenuTest, EditingGoesWhereTheKeyboardIs) {
  const TabRef tab = world.open("https://a.example/");
  perform("Edit", "Copy");
  perform("Edit", "Paste and Match Style");
  EXPECT_THAT(world.view(tab)->edits,
              ElementsAre(EditingCommand::Copy, EditingCommand::PasteAsPlainText));
  world.window.isEditing = true;
  perform("Edit", "Select All");
  EXPECT_THAT(world.window.edits, ElementsAre(EditingCommand::SelectAll));
  EXPECT_EQ(world.view(tab)->edits.size(), 2u);
}

TEST_F(MenuTest, APageBecomesAPictureAndAPDF) {
  const TabRef tab = world.open("https://a.example/");
  EXPECT_EQ(told("File", "Capture…") + told("File", "Export as PDF…"), "");
  EXPECT_THAT(world.desktop.savePanels, IsEmpty()) << "it is not on screen";
  const auto view = world.viewOnScreen(tab);
  view->snapshot = Image::make(1, 1, {1, 2, 3, 255});
  EXPECT_EQ(told("File", "Capture…"), "Capture copied");
  EXPECT_EQ(world.desktop.clipboardImage, view->snapshot);

  tab->title = std::string("Tides 24/25");
  told("File", "Export as PDF…");
  EXPECT_EQ(world.desktop.savePanels.at(0).proposedName, "Tides 24-25.pdf");
  world.desktop.chosenDestination = "/downloads/tides.pdf";
  world.disk->createFolders("/downloads");
  told("File", "Export as PDF…");
  EXPECT_TRUE(world.disk->read("/downloads/tides.pdf", 1000)->starts_with("%PDF"));
  EXPECT_THAT(world.desktop.alerts, IsEmpty());
  world.disk->failAlways(MemoryFileSystem::Fault::DiskFull);
  told("File", "Export as PDF…");
  const Alert& alert = world.desktop.alerts.at(0).alert;
  EXPECT_EQ(alert.messageText, "Couldn't export the page as PDF");
  EXPECT_NE(alert.informativeText, "");
}

}  // namespace
}  // namespace orvel::test
