#include "Base/GLibScheduler.h"

#include <glib-unix.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "Base/Observable.h"

namespace orvel {

namespace {

// A turn that takes longer leaves the rest of its queue for after the next frame.
constexpr Duration kTurnBudget = 4ms;

// Below the frame clock's paint (G_PRIORITY_HIGH_IDLE + 20), so that a long queue cannot starve it.
constexpr int kPriorityAfterFrame = G_PRIORITY_HIGH_IDLE + 25;

// Effects that events have woken run after those events and before the toolkit's layout
// (G_PRIORITY_HIGH_IDLE + 10).
constexpr int kPriorityBeforeLayout = G_PRIORITY_HIGH_IDLE;

constexpr int kUtilityNiceness = 10;

// How long waiting work may hold up the end.
constexpr Duration kMaxEnd = 1s;

}  // namespace

struct GLibScheduler::TurnSource {
  GSource source;
  GLibScheduler* scheduler;

  static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
    reinterpret_cast<TurnSource*>(source)->scheduler->dispatch();
    return G_SOURCE_CONTINUE;
  }
};

GLibScheduler::GLibScheduler() {
  static GSourceFuncs functions = {nullptr, nullptr, TurnSource::dispatch,
                                   nullptr, nullptr, nullptr};
  turns_ = g_source_new(&functions, sizeof(TurnSource));
  reinterpret_cast<TurnSource*>(turns_)->scheduler = this;
  g_source_set_name(turns_, "orvel turns");
  g_source_set_priority(turns_, G_PRIORITY_DEFAULT);
  g_source_set_ready_time(turns_, -1);
  g_source_attach(turns_, nullptr);
  bootTimer_ = timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC);
  if (bootTimer_ >= 0)
    bootSource_ = g_unix_fd_add(bootTimer_, G_IO_IN, &GLibScheduler::bootDeadlineReached, this);
}

GLibScheduler::~GLibScheduler() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = instant();
    for (const WorkPriority dropped :
         {WorkPriority::UserInitiated, WorkPriority::Utility, WorkPriority::Files})
      workers_[static_cast<int>(dropped)].jobs.clear();
  }
  wanted_.notify_all();
  for (Worker& worker : workers_)
    if (worker.thread.joinable()) worker.thread.join();
  destroyTasks();
  g_source_destroy(turns_);
  g_source_unref(turns_);
  if (flush_) g_source_remove(flush_);
  if (bootSource_) g_source_remove(bootSource_);
  if (bootTimer_ >= 0) close(bootTimer_);
}

Date GLibScheduler::now() const {
  return std::chrono::time_point_cast<Date::duration>(std::chrono::system_clock::now());
}

Instant GLibScheduler::instant() const { return Instant(Duration(g_get_monotonic_time())); }

Instant GLibScheduler::instant(SleepClock clock) const {
  if (clock == SleepClock::Monotonic || bootTimer_ < 0) return instant();
  timespec time{};
  clock_gettime(CLOCK_BOOTTIME, &time);
  return Instant(std::chrono::seconds(time.tv_sec) + Duration(time.tv_nsec / 1000));
}

void GLibScheduler::wake() {
  if (hasReadyActions()) {
    g_source_set_ready_time(turns_, 0);
  } else if (!flush_) {
    flush_ =
        g_idle_add_full(kPriorityBeforeLayout, &GLibScheduler::flushBeforeLayout, this, nullptr);
  }
}

gboolean GLibScheduler::flushBeforeLayout(gpointer self) {
  static_cast<GLibScheduler*>(self)->flush_ = 0;
  flushEffects();
  return G_SOURCE_REMOVE;
}

void GLibScheduler::deadlinesChanged(SleepClock clock) {
  const auto deadline = nextDeadline(clock);
  if (clock == SleepClock::Monotonic || bootTimer_ < 0) {
    if (!hasReadyActions())
      g_source_set_ready_time(turns_, deadline ? deadline->time_since_epoch().count() : -1);
    return;
  }
  itimerspec timer{};
  if (deadline) {
    // Zero would disarm the timer.
    const auto count = std::max<Duration::rep>(deadline->time_since_epoch().count(), 1);
    timer.it_value.tv_sec = count / 1'000'000;
    timer.it_value.tv_nsec = (count % 1'000'000) * 1000;
  }
  timerfd_settime(bootTimer_, TFD_TIMER_ABSTIME, &timer, nullptr);
}

gboolean GLibScheduler::bootDeadlineReached(gint timer, GIOCondition, gpointer self) {
  uint64_t expirations = 0;
  [[maybe_unused]] const ssize_t size = read(timer, &expirations, sizeof expirations);
  g_source_set_ready_time(static_cast<GLibScheduler*>(self)->turns_, 0);
  return G_SOURCE_CONTINUE;
}

void GLibScheduler::dispatch() {
  std::vector<std::function<void()>> finished;
  {
    const std::lock_guard lock(mutex_);
    finished.swap(finished_);
  }
  for (auto& done : finished) post(std::move(done));

  runTurn(kTurnBudget);

  g_source_set_priority(turns_, hasReadyActions() ? kPriorityAfterFrame : G_PRIORITY_DEFAULT);
  const auto deadline = nextDeadline(SleepClock::Monotonic);
  g_source_set_ready_time(turns_, hasReadyActions() ? 0
                                  : deadline        ? deadline->time_since_epoch().count()
                                                    : -1);
  // A worker may have reported between the first lines of this call and the line above.
  const std::lock_guard lock(mutex_);
  if (!finished_.empty()) g_source_set_ready_time(turns_, 0);
}

void GLibScheduler::runInBackground(std::function<void()> work, std::function<void()> done,
                                    WorkPriority priority) {
  Worker& worker = workers_[static_cast<int>(priority)];
  {
    const std::lock_guard lock(mutex_);
    worker.jobs.push_back({std::move(work), std::move(done)});
  }
  if (!worker.thread.joinable())
    worker.thread = std::thread([this, &worker, priority] { this->work(worker, priority); });
  wanted_.notify_all();
}

void GLibScheduler::work(Worker& worker, WorkPriority priority) {
  if (priority == WorkPriority::Utility)
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), kUtilityNiceness);
  for (;;) {
    Job job;
    {
      std::unique_lock lock(mutex_);
      wanted_.wait(lock, [&] { return ending_ || !worker.jobs.empty(); });
      if (worker.jobs.empty() || (ending_ && instant() - *ending_ > kMaxEnd)) return;
      job = std::move(worker.jobs.front());
      worker.jobs.pop_front();
    }
    job.work();
    job.work = nullptr;
    const std::lock_guard lock(mutex_);
    if (ending_) continue;
    finished_.push_back(std::move(job.done));
    g_source_set_ready_time(turns_, 0);
  }
}

}  // namespace orvel
