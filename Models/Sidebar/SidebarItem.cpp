#include "Models/Sidebar/SidebarItem.h"

#include <algorithm>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

Folder::Folder(UUID folderID, std::string folderName, Expansion expansion)
    : id(folderID), name(std::move(folderName)), isExpanded(expansion == Expansion::Expanded) {}

Folder::~Folder() {
  // Whoever drops the last reference may be an effect that runs right now.
  untracked([this] {
    SidebarItemList pending;
    const auto empty = [&pending](Folder& folder) {
      const SidebarItemList held = folder.children.peek();
      folder.children.set({});
      for (const SidebarItem& item : held)
        if (std::holds_alternative<FolderRef>(item)) pending.push_back(item);
    };
    empty(*this);
    while (!pending.empty()) {
      const FolderRef folder = std::get<FolderRef>(std::move(pending.back()));
      pending.pop_back();
      // Somebody else may hold a folder longer than its parent.
      if (folder.use_count() == 1) empty(*folder);
    }
  });
}

const UUID& idOf(const SidebarItem& item) {
  return std::visit([](const auto& payload) -> const UUID& { return payload->id; }, item);
}

SidebarWalk::SidebarWalk(const SidebarItemList& items, Folders folders)
    : levels_{{&items, nullptr}}, folders_(folders) {}

const SidebarItem* SidebarWalk::next() {
  if (const FolderRef* folder = std::exchange(entered_, nullptr))
    levels_.push_back({&(*folder)->children.get(), folder});
  while (!levels_.empty() && levels_.back().next == levels_.back().items->size())
    levels_.pop_back();
  if (levels_.empty()) return nullptr;
  Level& level = levels_.back();
  const SidebarItem& item = (*level.items)[level.next++];
  const auto* folder = std::get_if<FolderRef>(&item);
  if (folder && (folders_ == Folders::All || (*folder)->isExpanded)) entered_ = folder;
  return &item;
}

FolderRef SidebarWalk::parent() const {
  const FolderRef* folder = levels_.empty() ? nullptr : levels_.back().folder;
  return folder ? *folder : nullptr;
}

namespace {

TabList tabsOf(const SidebarItemList& items, SidebarWalk::Folders folders) {
  TabList tabs;
  SidebarWalk walk(items, folders);
  while (const SidebarItem* item = walk.next())
    if (const auto* tab = std::get_if<TabRef>(item)) tabs.push_back(*tab);
  return tabs;
}

auto positionOf(const SidebarItemList& items, const UUID& id) {
  return std::ranges::find_if(items, [&](const SidebarItem& item) { return idOf(item) == id; });
}

auto positionOf(const TabList& tabs, const UUID& id) {
  return std::ranges::find_if(tabs, [&](const TabRef& tab) { return tab->id == id; });
}

template <class List, class Item>
void insert(Observable<List>& list, Item item, const std::optional<UUID>& before) {
  list.update([&](List& members) {
    const auto position = before ? positionOf(members, *before) : members.end();
    members.insert(position, std::move(item));
  });
}

}  // namespace

TabList tabsOf(const SidebarItemList& items) { return tabsOf(items, SidebarWalk::Folders::All); }

TabList visibleTabsOf(const SidebarItemList& items) {
  return tabsOf(items, SidebarWalk::Folders::ExpandedOnly);
}

std::vector<FolderRef> foldersOf(const SidebarItemList& items) {
  std::vector<FolderRef> folders;
  SidebarWalk walk(items);
  while (const SidebarItem* item = walk.next())
    if (const auto* folder = std::get_if<FolderRef>(item)) folders.push_back(*folder);
  return folders;
}

FolderRef parentOf(const SidebarItemList& items, const UUID& id) {
  for (const FolderRef& folder : foldersOf(items)) {
    const SidebarItemList& children = folder->children;
    if (positionOf(children, id) != children.end()) return folder;
  }
  return nullptr;
}

std::optional<SidebarItem> removeItem(Observable<SidebarItemList>& items, const UUID& id) {
  const auto take = [&id](Observable<SidebarItemList>& list) -> std::optional<SidebarItem> {
    const auto position = positionOf(list.peek(), id);
    if (position == list.peek().end()) return std::nullopt;
    SidebarItem item = *position;
    const auto index = position - list.peek().begin();
    list.update([index](SidebarItemList& members) { members.erase(members.begin() + index); });
    return item;
  };
  if (auto item = take(items)) return item;
  for (const FolderRef& folder : foldersOf(items))
    if (auto item = take(folder->children)) return item;
  return std::nullopt;
}

std::vector<SidebarItemRecord> recordsOf(const SidebarItemList& items) {
  struct Level {
    const SidebarItemList* from;
    std::vector<SidebarItemRecord>* to;
  };
  std::vector<SidebarItemRecord> records;
  std::vector<Level> pending{{&items, &records}};
  while (!pending.empty()) {
    const Level level = pending.back();
    pending.pop_back();
    // Folders are filled later, through pointers: this list must not move again.
    level.to->reserve(level.from->size());
    for (const SidebarItem& item : *level.from) {
      if (const auto* tab = std::get_if<TabRef>(&item)) {
        level.to->push_back((*tab)->record());
        continue;
      }
      const Folder& folder = *std::get<FolderRef>(item);
      level.to->push_back(FolderRecord(folder.id, folder.name, folder.isExpanded));
      pending.push_back(
          {&folder.children.get(), &std::get<FolderRecord>(level.to->back()).children});
    }
  }
  return records;
}

void insertItem(Observable<SidebarItemList>& items, SidebarItem item,
                const std::optional<UUID>& before) {
  insert(items, std::move(item), before);
}

void insertTab(Observable<TabList>& tabs, TabRef tab, const std::optional<UUID>& before) {
  insert(tabs, std::move(tab), before);
}

std::optional<size_t> indexOf(const TabList& tabs, const BrowserTab& tab) {
  const auto position =
      std::ranges::find_if(tabs, [&](const TabRef& member) { return member.get() == &tab; });
  if (position == tabs.end()) return std::nullopt;
  return static_cast<size_t>(position - tabs.begin());
}

bool contains(const TabList& tabs, const BrowserTab& tab) { return indexOf(tabs, tab).has_value(); }

bool removeTab(Observable<TabList>& tabs, const BrowserTab& tab) {
  const auto index = indexOf(tabs.peek(), tab);
  if (!index) return false;
  tabs.update([&](TabList& members) {
    members.erase(members.begin() + static_cast<TabList::difference_type>(*index));
  });
  return true;
}

}  // namespace orvel
