#pragma once

#include <deque>
#include <map>
#include <memory>

#include "Base/Scheduler.h"

namespace orvel::test {

// A scheduler on a clock that moves only when a test says so. Background work runs inline, one turn
// after it was asked for, and takes no time but what it spends.
class VirtualScheduler final : public Scheduler {
 public:
  // Where the wall clock stands at the start: 2026-01-02 03:04:05 UTC.
  static Date startDate();

  VirtualScheduler();
  ~VirtualScheduler() override;

  Date now() const override { return startDate() + elapsed_ + dateOffset_; }
  Instant instant() const override { return Instant(elapsed_); }
  void runInBackground(std::function<void()> work, std::function<void()> done,
                       WorkPriority priority) override;

  // Called by background work: its worker goes on when so much time has passed. Everybody else
  // spends nothing.
  void spend(Duration duration);

  // One turn, at the present moment.
  void turn() { runTurn(); }
  // Turns at the present moment until nothing is ready.
  void settle();
  // Settles, then moves the clock on, stopping and settling at each deadline on the way.
  void advance(Duration duration);

  // Sets the wall clock alone.
  void setDate(Date date) { dateOffset_ += date - now(); }

  Duration elapsed() const { return elapsed_; }

 private:
  class Worker;

  void wake() override {}
  void deadlinesChanged(SleepClock) override {}
  Instant instant(SleepClock) const override { return instant(); }

  Duration elapsed_{0};
  Duration dateOffset_{0};
  std::map<WorkPriority, std::unique_ptr<Worker>> workers_;
};

}  // namespace orvel::test
