#include "Models/Sidebar/Folders.h"

#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

void Folders::newFolder(TabRef with) {
  const auto space = store_.activeSpace();
  const auto folder =
      std::make_shared<Folder>(UUID::random(), _("New Folder"), Folder::Expansion::Expanded);
  store_.animate(Spring::quick, [&] {
    space->pinned.update([&](SidebarItemList& items) { items.insert(items.begin(), folder); });
  });
  if (with) store_.move(with, PinnedDestination{folder, std::nullopt}, space);
  renamingFolderID = folder->id;
  store_.scheduleSave();
}

void Folders::beginRenaming(const FolderRef& folder) { renamingFolderID = folder->id; }

void Folders::endRenaming() { renamingFolderID = std::nullopt; }

void Folders::rename(FolderRef folder, const std::string& name) {
  if (const std::string_view trimmed = text::trimmed(name); !trimmed.empty())
    folder->name = std::string(trimmed);
  renamingFolderID = std::nullopt;
  store_.scheduleSave();
}

void Folders::toggle(FolderRef folder) {
  store_.animate(Spring::quick, [&] { folder->isExpanded = !folder->isExpanded.peek(); });
  store_.scheduleSave();
}

void Folders::deleteFolder(FolderRef folder) {
  const TabList tabs = tabsOf(folder->children.peek());
  const auto space = store_.activeSpace();
  store_.animate(Spring::quick, [&] {
    // A folder that has gone has given its tabs away already.
    if (!removeItem(space->pinned, folder->id)) return;
    for (const TabRef& tab : tabs) tab->pinnedURL = std::nullopt;
    space->today.update(
        [&](TabList& today) { today.insert(today.begin(), tabs.begin(), tabs.end()); });
  });
  store_.scheduleSave();
}

}  // namespace orvel
