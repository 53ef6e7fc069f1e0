#pragma once

#include <optional>
#include <string>

#include "Base/Published.h"
#include "Models/Sidebar/SidebarItem.h"

namespace orvel {

class BrowserStore;

// The folders among the active space's pinned tabs.
class Folders {
 public:
  explicit Folders(BrowserStore& store) : store_(store) {}

  Published<std::optional<UUID>, Folders> renamingFolderID;

  // Null tab: an empty one. The new folder is about to be renamed.
  void newFolder(TabRef with = nullptr);
  void beginRenaming(const FolderRef& folder);
  // Leaves the name as it is.
  void endRenaming();
  // A name of blanks leaves it as it is. Ends the renaming.
  void rename(FolderRef folder, const std::string& name);
  void toggle(FolderRef folder);
  // Its tabs move to the top of today's; none is closed.
  void deleteFolder(FolderRef folder);

 private:
  BrowserStore& store_;
};

}  // namespace orvel
