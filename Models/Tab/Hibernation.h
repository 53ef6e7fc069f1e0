#pragma once

#include "Base/Task.h"
#include "Base/Time.h"
#include "Desktop/MemoryPressure.h"
#include "Models/Tab/PageStates.h"

namespace orvel {

class BrowserStore;

// Gives up the web views of tabs that nobody looks at, and keeps the pages' states on the disk.
class Hibernation {
 public:
  explicit Hibernation(BrowserStore& store);

  // From then on, every five minutes and when memory is short.
  void startHibernating();
  // Gives up the views of tabs that nobody has looked at for `age`.
  Task<> hibernateIdleTabs(Duration age, Date now);
  // Whether the tab's view may go now, as far as can be told without asking its page.
  bool mayHibernate(const BrowserTab& tab, Date cutoff, Date now) const;
  bool isOnShow(const BrowserTab& tab) const;

  enum class StateWriting { Background, Now };
  // Writes every tab's page state and removes the files of tabs that are gone.
  void saveTabStates(StateWriting writing);
  // Writes the states of the pages that have changed.
  void saveChangedStates();

 private:
  BrowserStore& store_;
  PageStates pageStates_;
  TaskHandle loop_;
  Observation memoryPressure_;
};

}  // namespace orvel
