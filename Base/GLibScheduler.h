#pragma once

#include <glib.h>

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "Base/Scheduler.h"

namespace orvel {

// The application's scheduler: turns are dispatches of a source of the default main context. It
// runs ahead of layout and drawing, and gives way to them when a turn has taken half a frame.
class GLibScheduler final : public Scheduler {
 public:
  GLibScheduler();
  // Waits for workers that are under way; what they would have reported is dropped.
  ~GLibScheduler() override;

  Date now() const override;
  Instant instant() const override;
  void runInBackground(std::function<void()> work, std::function<void()> done,
                       WorkPriority priority) override;

 private:
  struct Job {
    std::function<void()> work;
    std::function<void()> done;
  };
  // One thread a priority. Started when first needed.
  struct Worker {
    std::thread thread;
    std::deque<Job> jobs;
  };
  struct TurnSource;

  void wake() override;
  void deadlinesChanged(SleepClock clock) override;
  Instant instant(SleepClock clock) const override;
  void dispatch();
  void work(Worker& worker, WorkPriority priority);
  static gboolean flushBeforeLayout(gpointer self);
  static gboolean bootDeadlineReached(gint timer, GIOCondition condition, gpointer self);

  GSource* turns_ = nullptr;
  guint flush_ = 0;
  int bootTimer_ = -1;
  guint bootSource_ = 0;

  std::mutex mutex_;
  std::condition_variable wanted_;
  Worker workers_[4];
  std::vector<std::function<void()>> finished_;
  // When the end began; absent before.
  std::optional<Instant> ending_;
};

}  // namespace orvel
