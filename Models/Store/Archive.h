#pragma once

#include <vector>

#include "Base/Published.h"
#include "Base/Task.h"
#include "BrowserCore/Session/TabRecord.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;
class Space;

// A tab that was closed and can be opened again.
struct ClosedTab {
  UUID spaceID;
  TabRecord record;

  friend bool operator==(const ClosedTab&, const ClosedTab&) = default;
};

// Tabs that have been put away: closed in this run, or archived.
class Archive {
 public:
  explicit Archive(BrowserStore& store) : store_(store) {}

  Published<std::vector<ArchivedTabRecord>, Archive> records;  // the newest first
  Published<std::vector<ClosedTab>, Archive> closedTabs;       // the latest last

  // As its file has them.
  void restore(std::vector<ArchivedTabRecord> archived);
  // Puts stale tabs away, now and every quarter of an hour.
  void startArchiving();
  void archiveStaleTabs(Date now);
  // Turns an archived tab into one of today's, in its space or else the active one.
  void reopen(ArchivedTabRecord archived);

  void didClose(const BrowserTab& tab, const Space& space);
  // The tabs are open again after all.
  void forgetClosed(const TabList& tabs);
  void reopenClosedTab();
  // The space has gone, and with it what it put away.
  void forgetSpace(const UUID& space);

 private:
  BrowserStore& store_;
  TaskHandle loop_;
};

}  // namespace orvel
