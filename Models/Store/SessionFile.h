#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Base/KeptFile.h"
#include "Base/Task.h"
#include "BrowserCore/Session/SessionRecord.h"
#include "Models/Sidebar/SidebarItem.h"

namespace orvel {

class BrowserStore;

// What moves the session to the disk and back. A bad or newer file never stops the program from
// starting, and never costs the user the file.
class SessionFile {
 public:
  explicit SessionFile(BrowserStore& store);

  // Puts the session of the former run, or else a first space, into the store.
  void restore();
  // Asks for a save within a second. Every change of what is saved ends with it.
  void scheduleSave();
  bool isSavePending() const { return static_cast<bool>(saving_); }
  // Hands the session to the disk now.
  void save();
  // Saves the archive behind the session, so that a tab on its way from one to the other is in one
  // of them at any time.
  void saveArchive();
  // What a save writes.
  SessionRecord record() const;

  TabRef makeTab(const TabRecord& record, std::shared_ptr<Profile> profile);
  SidebarItem makeItem(const SidebarItemRecord& record, std::shared_ptr<Profile> profile);
  SidebarItemList makeItems(const std::vector<SidebarItemRecord>& records,
                            std::shared_ptr<Profile> profile);

 private:
  struct Loaded {
    SessionRecord record;
    bool isMigrated = false;
  };
  std::optional<Loaded> load();
  void apply(const SessionRecord& record);
  void createDefaultSpace();
  FileWriter::Request writingArchive();

  BrowserStore& store_;
  KeptFile file_;
  TaskHandle saving_;
  bool isArchiveStale_ = false;  // its file is
};

}  // namespace orvel
