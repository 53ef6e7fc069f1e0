#include <gtest/gtest.h>

#include "Models/Sidebar/Folders.h"
#include "Models/Store/BrowserStore.h"
#include "Tests/Models/World.h"
#include "Views/Sidebar/SidebarDrops.h"

namespace orvel {
namespace {

using namespace test;

// A space with favorites, an open folder of two between pinned tabs, and two tabs of today's.
struct SidebarDrops : testing::Test {
  World world;
  std::vector<SidebarRow> rows;
  std::map<std::string, UUID> ids;
  FolderRef folder;

  void SetUp() override {
    world.launch();
    auto& store = *world.store;
    const auto add = [&](const std::string& name, const TabDestination& destination) {
      const auto tab = world.open("https://" + name + "/", false);
      ids[name] = tab->id;
      store.move(tab, destination, store.activeSpace());
    };
    for (const char* name : {"f1", "f2", "f3", "f4", "f5"}) add(name, FavoritesDestination{});
    store.folders.newFolder();
    folder = foldersOf(world.space().pinned).front();
    ids["folder"] = folder->id;
    if (!folder->isExpanded.peek()) store.folders.toggle(folder);
    add("in1", PinnedDestination{folder, std::nullopt});
    add("in2", PinnedDestination{folder, std::nullopt});
    add("p1", PinnedDestination{});
    add("t2", TodayDestination{});
    add("t1", TodayDestination{ids["t2"]});
    rows = sidebarRows(world.space(), 4);
  }

  std::string nameOf(const std::optional<UUID>& id) const {
    if (!id) return "end";
    for (const auto& [name, known] : ids)
      if (known == *id) return name;
    return "?";
  }
  std::string describe(const std::optional<TabDestination>& destination) const {
    if (!destination) return "none";
    if (const auto* favorites = std::get_if<FavoritesDestination>(&*destination))
      return "favorites " + nameOf(favorites->before);
    if (const auto* today = std::get_if<TodayDestination>(&*destination))
      return "today " + nameOf(today->before);
    const auto& pinned = std::get<PinnedDestination>(*destination);
    return (pinned.folder ? "folder " : "pinned ") + nameOf(pinned.before);
  }
  std::string describe(const RowPoint& point) const {
    const auto drop = sidebarDrop(rows, point, 4);
    if (!drop) return "none";
    const bool isGap = drop->place.place == RowDrop::Place::Before;
    return describe(std::optional(drop->destination)) + (isGap ? " gap " : " into ") +
           std::to_string(drop->place.row);
  }
};

TEST_F(SidebarDrops, MeanThePlaceUnderThePointer) {
  // 0, 1: favorites, 2: heading, 3: folder, 4, 5: in it, 6: p1, 7: heading, 8: t1, 9: t2, 10: new
  ASSERT_EQ(rows.size(), 11u);
  const struct {
    RowPoint point;
    const char* meaning;
  } cases[] = {
      {{0, 0.0, 0.5}, "favorites f1 into 0"},
      {{0, 0.5, 0.5}, "favorites f3 into 0"},
      {{0, 1.0, 0.5}, "favorites f5 into 0"},
      {{1, 0.1, 0.5}, "favorites f5 into 1"},
      {{1, 0.9, 0.5}, "favorites end into 1"},
      {{2, 0.5, 0.9}, "pinned folder gap 3"},
      {{3, 0.5, 0.1}, "pinned folder gap 3"},
      {{3, 0.5, 0.5}, "folder end into 3"},
      {{3, 0.5, 0.9}, "folder in1 gap 4"},
      {{4, 0.5, 0.1}, "folder in1 gap 4"},
      {{4, 0.5, 0.9}, "folder in2 gap 5"},
      {{5, 0.5, 0.9}, "folder end gap 6"},
      {{6, 0.5, 0.1}, "pinned p1 gap 6"},
      {{6, 0.5, 0.9}, "pinned end gap 7"},
      {{7, 0.5, 0.5}, "today t1 gap 8"},
      {{8, 0.5, 0.9}, "today t2 gap 9"},
      {{9, 0.5, 0.9}, "today end gap 10"},
      {{10, 0.5, 0.5}, "today end gap 10"},
      {{11, 0.5, 0.5}, "none"},
  };
  for (const auto& one : cases)
    EXPECT_EQ(describe(one.point), one.meaning)
        << "row " << one.point.row << " at " << one.point.x << ", " << one.point.y;
}

TEST_F(SidebarDrops, KeysMoveAnItemByOnePlace) {
  // As above; a folder is left at either of its ends.
  const struct {
    size_t row;
    int step;
    const char* meaning;
  } cases[] = {
      {4, -1, "pinned folder"}, {4, 1, "folder end"}, {5, -1, "folder in1"}, {5, 1, "pinned p1"},
      {6, -1, "folder end"},    {6, 1, "today t1"},   {8, -1, "pinned end"}, {8, 1, "today end"},
      {9, -1, "today t1"},      {9, 1, "none"},       {3, 1, "pinned end"},  {0, 1, "none"},
      {3, -1, "none"},
  };
  for (const auto& one : cases)
    EXPECT_EQ(describe(sidebarMove(rows, one.row, one.step)), one.meaning)
        << "row " << one.row << " by " << one.step;
  world.store->folders.toggle(folder);
  rows = sidebarRows(world.space(), 4);
  EXPECT_EQ(describe(sidebarMove(rows, 4, -1)), "pinned folder") << "past one that is closed";
  EXPECT_EQ(describe(sidebarMove({}, 0, 1)), "none");

  const FolderRef other =
      std::make_shared<Folder>(UUID::random(), "Other", Folder::Expansion::Expanded);
  world.space().pinned.update([&](SidebarItemList& items) { items.emplace_back(other); });
  rows = sidebarRows(world.space(), 4);
  EXPECT_EQ(describe(sidebarMove(rows, 5, 1)), "none") << "Today takes no folder";
  EXPECT_EQ(describe(sidebarMove(rows, 5, -1)), "pinned p1");
  const auto home = world.store->activeSpace();
  for (const FolderRef& into : {other, folder})
    world.store->move(folder, PinnedDestination{into, std::nullopt}, home);
  EXPECT_EQ(parentOf(home->pinned, folder->id), other) << "not into itself";
}

TEST_F(SidebarDrops, WithoutFavoritesTheirPlaceIsAboveTheFirstHeading) {
  rows.erase(rows.begin(), rows.begin() + 2);
  EXPECT_EQ(describe({0, 0.5, 0.1}), "favorites end gap 0");
  EXPECT_EQ(describe({0, 0.5, 0.9}), "pinned folder gap 1");
}

}  // namespace
}  // namespace orvel
