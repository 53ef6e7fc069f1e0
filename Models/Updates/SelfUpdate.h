#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Base/Task.h"
#include "BrowserCore/Result.h"
#include "BrowserCore/SelfUpdate/UpdateRelease.h"
#include "Support/Updates/UpdateStage.h"

namespace orvel {

class BrowserStore;

// Looks for newer releases, prepares one while the user works, tells of it, and has it swapped in
// when the program ends. The running program is never touched.
class SelfUpdate {
 public:
  explicit SelfUpdate(BrowserStore& store) : store_(store) {}

  // Called once, at the end of the launch: removes what a former run has prepared, looks for a
  // release after ten seconds and every six hours from then on, and tells of each by one toast.
  void start();
  // The user's command: tells of what there is by an alert.
  void checkNow();
  // Called at the end of the program.
  void installIfReady();

 private:
  // An update, or why there is none, for the log.
  using Prepared = Result<StagedUpdate, std::string>;
  // One preparation and those who wait for it.
  struct Preparation;
  class Steps;

  // Ends the program, and has it started again when its update is in, unless the user stays on a
  // page.
  void restart();
  void open(const UpdateRelease& release);
  bool isNewer(const UpdateRelease& release) const;
  bool hasStaged(int64_t build) const { return staged_ && staged_->build == build; }
  // Whether this run has not told of the build yet; it has from now on.
  bool announces(int64_t build);

  BrowserStore& store_;
  TaskHandle loop_;
  std::optional<StagedUpdate> staged_;  // waits for the end of the program
  uint64_t stagedBy_ = 0;               // the number of the preparation that it is from
  std::shared_ptr<Preparation> preparing_;
  uint64_t preparations_ = 0;
  std::optional<int64_t> announced_;  // the build that the last toast told of
  bool relaunchAfterQuit_ = false;
};

}  // namespace orvel
