#include "Models/Sidebar/SidebarRows.h"

#include <set>

#include "Models/Store/SessionFile.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

FolderRef folder(const std::string& name) {
  return std::make_shared<Folder>(UUID::random(), name, Folder::Expansion::Expanded);
}

struct SidebarItems : ModelTest {
  SidebarItems() {
    for (const char* name : {"a", "b", "c", "d"})
      tabs.push_back(BrowserTab::make(world.services, {.profile = world.space().profile,
                                                       .url = address(std::string("x:") + name)}));
    inner->children = SidebarItemList{tabs[1]};
    outer->children = SidebarItemList{inner, tabs[2]};
    items = SidebarItemList{tabs[0], outer, tabs[3]};
  }

  // The lists are made by hand.
  void TearDown() override { world.saveNow(); }

  TabList tabs;
  FolderRef inner = folder("inner"), outer = folder("outer");
  Observable<SidebarItemList> items;
};

TEST_F(SidebarItems, ListsAreWalkedDepthFirstAndKeepTheirFolders) {
  EXPECT_THAT(urls(tabsOf(items)), ElementsAre("x:a", "x:b", "x:c", "x:d"));
  EXPECT_THAT(foldersOf(items), ElementsAre(outer, inner));
  inner->isExpanded = false;
  EXPECT_THAT(urls(visibleTabsOf(items)), ElementsAre("x:a", "x:c", "x:d"));
  EXPECT_EQ(parentOf(items, tabs[1]->id), inner);
  EXPECT_EQ(parentOf(items, inner->id), outer);
  EXPECT_EQ(parentOf(items, tabs[0]->id), nullptr);
  EXPECT_FALSE(removeItem(items, UUID::random()));
  EXPECT_EQ(idOf(*removeItem(items, tabs[1]->id)), tabs[1]->id);
  EXPECT_THAT(foldersOf(items), ElementsAre(outer, inner));
  EXPECT_THAT(urls(tabsOf(items)), ElementsAre("x:a", "x:c", "x:d"));
}

TEST_F(SidebarItems, RowsFollowTheSidebarsOrder) {
  space().profile->favorites = TabList{tabs[0], tabs[1], tabs[2]};
  space().pinned = SidebarItemList{outer, tabs[3]};
  space().today = TabList{tabs[0]};
  inner->isExpanded = false;
  std::vector<std::string> seen;
  for (const SidebarRow& row : sidebarRows(space(), 2)) {
    const char* kinds[] = {"heading", "favorites", "folder", "tab", "new tab"};
    seen.push_back(std::string(row.depth * 2, ' ') + kinds[static_cast<size_t>(row.key.kind)] +
                   (row.folder ? " " + row.folder->name.peek() : "") +
                   (row.tabs.empty() ? "" : " " + std::to_string(row.tabs.size())));
  }
  EXPECT_THAT(seen,
              ElementsAre("favorites 2", "favorites 1", "heading", "folder outer", "  folder inner",
                          "  tab 1", "tab 1", "heading", "tab 1", "new tab"));
  const std::pair<double, size_t> widths[] = {{0, 2}, {159, 2}, {160, 3}, {216, 4}, {9999, 4}};
  for (const auto& [width, columns] : widths) EXPECT_EQ(favoriteColumns(width), columns);
}

TEST_F(SidebarItems, RowKeysAreUniqueAlsoWhenIdsAreNot) {
  space().today = TabList{tabs[0], tabs[0], tabs[1]};
  std::set<SidebarRow::Key> keys;
  for (const SidebarRow& row : sidebarRows(space(), 2)) EXPECT_TRUE(keys.insert(row.key).second);
}

TEST_F(SidebarItems, NoDepthOfFoldersCostsStack) {
  constexpr size_t kLevels = 100'000;
  {
    SidebarItemList chain{tabs[0]};
    for (size_t level = 0; level < kLevels; ++level) {
      const FolderRef parent = folder("f");
      parent->children = std::move(chain);
      chain = SidebarItemList{parent};
    }
    space().pinned = std::move(chain);
  }
  EXPECT_EQ(space().allTabs().size(), 1u);
  EXPECT_EQ(space().tab(tabs[0]->id), tabs[0]);
  EXPECT_EQ(sidebarRows(space(), 2).size(), kLevels + 4);
  EXPECT_NE(parentOf(space().pinned, tabs[0]->id), nullptr);
  EXPECT_EQ(session().makeItems(space().record().pinned, space().profile).size(), 1u);
  EXPECT_TRUE(removeItem(space().pinned, tabs[0]->id));
  space().pinned = SidebarItemList{};
}

}  // namespace
}  // namespace orvel::test
