#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Base/Observable.h"
#include "BrowserCore/Session/SidebarItemRecord.h"
#include "BrowserCore/UUID.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class Folder;
using FolderRef = std::shared_ptr<Folder>;

// One entry of a pinned list. Its identity is its payload's id.
using SidebarItem = std::variant<TabRef, FolderRef>;
using SidebarItemList = std::vector<SidebarItem>;

// A folder of pinned tabs. Folders nest to any depth: nothing about them costs stack.
class Folder {
 public:
  enum class Expansion { Collapsed, Expanded };

  Folder(UUID id, std::string name, Expansion expansion);
  ~Folder();

  const UUID id;
  Observable<std::string> name;
  Observable<bool> isExpanded;
  Observable<SidebarItemList> children;
};

[[nodiscard]] const UUID& idOf(const SidebarItem& item);

// Goes through a list and the folders in it, depth first, in the order of the sidebar. The lists
// must not change meanwhile. Reading subscribes the running effect to every list on the way.
class SidebarWalk {
 public:
  enum class Folders { All, ExpandedOnly };

  explicit SidebarWalk(const SidebarItemList& items, Folders folders = Folders::All);

  // The next item; null at the end. A folder comes before what it holds.
  const SidebarItem* next();
  // How many folders the item that `next` answered lies in, and the innermost of them (null at the
  // top level).
  size_t depth() const { return levels_.size() - 1; }
  FolderRef parent() const;

 private:
  struct Level {
    const SidebarItemList* items;
    const FolderRef* folder;
    size_t next = 0;
  };
  std::vector<Level> levels_;
  // The folder that was answered last, when the walk goes into it.
  const FolderRef* entered_ = nullptr;
  Folders folders_;
};

// All tabs, in the order of the sidebar.
[[nodiscard]] TabList tabsOf(const SidebarItemList& items);
// The tabs that are not in a collapsed folder.
[[nodiscard]] TabList visibleTabsOf(const SidebarItemList& items);
// All folders, each before its own sub-folders.
[[nodiscard]] std::vector<FolderRef> foldersOf(const SidebarItemList& items);
// The first folder that has a direct child with this id; null for an item of the top level and for
// one that is nowhere.
[[nodiscard]] FolderRef parentOf(const SidebarItemList& items, const UUID& id);

// Takes the item with this id out of the list or out of the first folder that holds it; absent when
// there is none.
std::optional<SidebarItem> removeItem(Observable<SidebarItemList>& items, const UUID& id);

// The records of the items, folders with all they hold.
[[nodiscard]] std::vector<SidebarItemRecord> recordsOf(const SidebarItemList& items);

// Puts the item in front of the member with the id `before`; at the end without one.
void insertItem(Observable<SidebarItemList>& items, SidebarItem item,
                const std::optional<UUID>& before);
void insertTab(Observable<TabList>& tabs, TabRef tab, const std::optional<UUID>& before);

[[nodiscard]] bool contains(const TabList& tabs, const BrowserTab& tab);
// The tab's index; absent when it is not in the list.
[[nodiscard]] std::optional<size_t> indexOf(const TabList& tabs, const BrowserTab& tab);
// Returns whether the tab was in the list.
bool removeTab(Observable<TabList>& tabs, const BrowserTab& tab);

}  // namespace orvel
