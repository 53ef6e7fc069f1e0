#include "Tests/Fakes/VirtualScheduler.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "Base/Observable.h"

namespace orvel::test {

// A thread that does one work after the other. Either it runs or the main thread does, never both.
class VirtualScheduler::Worker {
 public:
  struct Job {
    std::function<void()> work, done;
  };

  ~Worker() {
    if (!thread_.joinable()) return;
    isEnding_ = true;
    run();
    thread_.join();
  }

  // Works until there is nothing more to do or time has to pass; returns what is done.
  std::vector<std::function<void()>> run() {
    if (!thread_.joinable()) thread_ = std::thread([this] { loop(); });
    std::unique_lock lock(mutex_);
    isRunning_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return !isRunning_; });
    return std::exchange(finished_, {});
  }

  void spend(Instant until) {
    if (isEnding_) return;
    wakesAt = until;
    std::unique_lock lock(mutex_);
    handOver(lock);
    wakesAt.reset();
  }

  bool isThisThread() const { return thread_.get_id() == std::this_thread::get_id(); }

  std::deque<Job> jobs;
  std::optional<Instant> wakesAt;

 private:
  void handOver(std::unique_lock<std::mutex>& lock) {
    isRunning_ = false;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isRunning_; });
  }

  void loop() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isRunning_; });
    while (!isEnding_) {
      if (jobs.empty()) {
        handOver(lock);
        continue;
      }
      Job job = std::move(jobs.front());
      jobs.pop_front();
      lock.unlock();
      job.work();
      job.work = nullptr;
      lock.lock();
      finished_.push_back(std::move(job.done));
    }
    isRunning_ = false;
    changed_.notify_all();
  }

  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isRunning_ = false;
  bool isEnding_ = false;
  std::vector<std::function<void()>> finished_;
};

VirtualScheduler::VirtualScheduler() = default;

VirtualScheduler::~VirtualScheduler() {
  workers_.clear();
  destroyTasks();
}

Date VirtualScheduler::startDate() {
  using namespace std::chrono;
  return sys_days(2026y / January / 2) + hours(3) + minutes(4) + std::chrono::seconds(5);
}

void VirtualScheduler::runInBackground(std::function<void()> work, std::function<void()> done,
                                       WorkPriority priority) {
  auto& worker = workers_[priority];
  if (!worker) worker = std::make_unique<Worker>();
  worker->jobs.push_back({std::move(work), std::move(done)});
  post([this, &worker = *worker] {
    if (worker.wakesAt) return;  // it comes to this job in its time
    for (auto& action : worker.run()) post(std::move(action));
  });
}

void VirtualScheduler::spend(Duration duration) {
  for (const auto& [priority, worker] : workers_)
    if (worker->isThisThread()) return worker->spend(instant() + duration);
}

void VirtualScheduler::settle() {
  while (hasReadyActions() || hasWokenEffects()) turn();
}

void VirtualScheduler::advance(Duration duration) {
  settle();
  const Duration end = elapsed_ + duration;
  for (;;) {
    Instant next = Instant::max();
    for (const SleepClock clock : {SleepClock::Monotonic, SleepClock::Boot})
      next = std::min(next, nextDeadline(clock).value_or(Instant::max()));
    for (const auto& [priority, worker] : workers_)
      next = std::min(next, worker->wakesAt.value_or(Instant::max()));
    if (next.time_since_epoch() > end) break;
    elapsed_ = std::max(elapsed_, next.time_since_epoch());
    for (const auto& [priority, worker] : workers_)
      if (worker->wakesAt && *worker->wakesAt <= instant())
        for (auto& action : worker->run()) post(std::move(action));
    turn();
    settle();
  }
  elapsed_ = end;
}

}  // namespace orvel::test
