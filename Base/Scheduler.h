#pragma once

#include <coroutine>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include "Base/Task.h"
#include "Base/Time.h"

namespace orvel {

enum class SleepResult { Done, Cancelled };

// Boot time goes on while the machine is suspended; monotonic time stands still.
enum class SleepClock { Monotonic, Boot };

// Each has a worker of its own, which does one work after the other in the order of asking.
enum class WorkPriority {
  UserInitiated,
  Utility,
  // For the program's files.
  Files,
  // For a database that lives on this worker. What still waits there when the scheduler ends is
  // carried out, for up to a second.
  Database,
};

// The main thread's turns. One turn runs what is due, in order, and then flushes the effects;
// layout and drawing come after it. `GLibScheduler` is the application's, on the process's main
// loop; tests run the same code on a virtual clock.
//
// Every operation belongs to the main thread.
class Scheduler {
 public:
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  virtual ~Scheduler();

  // The wall clock.
  virtual Date now() const = 0;
  // The monotonic clock.
  virtual Instant instant() const = 0;

  // Runs `action` on the next turn, after this turn's flush, in the order of posting.
  void post(std::function<void()> action);

  // Begins `task` on the next turn, in the order of starting.
  [[nodiscard]] TaskHandle start(Task<> task);

  // Runs `work` on a worker and then `done` on a turn of the main thread. `work` touches only what
  // it holds by value. When the scheduler ends first, `done` never runs.
  virtual void runInBackground(std::function<void()> work, std::function<void()> done,
                               WorkPriority priority) = 0;

  // Tasks that have been started and have not ended.
  size_t liveTaskCount() const { return tasks_.size(); }

 protected:
  Scheduler();

  // A turn is wanted as soon as possible, or when `nextDeadline` comes. Called on the main thread.
  virtual void wake() = 0;
  virtual void deadlinesChanged(SleepClock clock) = 0;
  virtual Instant instant(SleepClock clock) const = 0;

  // Flushes the effects, runs the actions that were waiting when it was called and the timers that
  // are due, and flushes again. With a `budget` it stops early once that much time has gone; what
  // is left keeps its order and its place before later actions.
  void runTurn(std::optional<Duration> budget = std::nullopt);

  bool hasReadyActions() const { return !ready_.empty(); }
  // The earliest deadline of a sleep on `clock`.
  std::optional<Instant> nextDeadline(SleepClock clock) const;

  // Ends every task where it stands. A subclass calls this first in its destructor.
  void destroyTasks();

 private:
  friend class TaskHandle;
  friend struct SleepAwaiter;
  template <class T>
  friend class FutureAwaiter;
  friend struct detail::TaskContext;

  struct Sleeper {
    std::shared_ptr<detail::TaskContext> context;
    std::coroutine_handle<> handle;
    SleepResult* result;
    SleepClock clock;
    std::multimap<Instant, Sleeper*>::iterator position;
  };

  void resume(const std::shared_ptr<detail::TaskContext>& context, std::coroutine_handle<> handle);
  void resumeOnNextTurn(std::shared_ptr<detail::TaskContext> context,
                        std::coroutine_handle<> handle);
  void sleep(std::shared_ptr<detail::TaskContext> context, std::coroutine_handle<> handle,
             Duration duration, SleepClock clock, SleepResult* result);
  void endSleep(Sleeper* sleeper, SleepResult result);
  void wakeDueSleepers(SleepClock clock);
  void dropReady();

  std::deque<std::function<void()>> ready_;
  std::multimap<Instant, Sleeper*> sleepers_[2];
  std::unordered_map<uint64_t, std::shared_ptr<detail::TaskContext>> tasks_;
  uint64_t lastTask_ = 0;
};

// `co_await sleep(d)` inside a task: `Done` after `d`, or `Cancelled` on the turn after the task
// was cancelled (also when it was cancelled before it went to sleep).
struct SleepAwaiter {
  Duration duration;
  SleepClock clock;
  SleepResult result = SleepResult::Done;

  bool await_ready() const { return false; }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> handle) {
    const auto& context = handle.promise().context;
    context->scheduler->sleep(context, handle, duration, clock, &result);
  }
  SleepResult await_resume() const { return result; }
};

[[nodiscard]] inline SleepAwaiter sleep(Duration duration,
                                        SleepClock clock = SleepClock::Monotonic) {
  return {duration, clock};
}

// A value that comes later, once. Copies of a `Resolver` share it: the first call counts. A future
// whose resolver is never called keeps its awaiting task until the scheduler ends.
template <class T>
struct FutureState {
  std::optional<T> value;
  std::shared_ptr<detail::TaskContext> context;
  std::coroutine_handle<> waiting;
};

template <class T>
class FutureAwaiter {
 public:
  explicit FutureAwaiter(std::shared_ptr<FutureState<T>> state) : state_(std::move(state)) {}
  ~FutureAwaiter() {
    if (state_) state_->waiting = nullptr;
  }
  bool await_ready() const { return state_->value.has_value(); }
  template <class Promise>
  void await_suspend(std::coroutine_handle<Promise> handle) {
    state_->context = handle.promise().context;
    state_->waiting = handle;
  }
  T await_resume() { return std::move(*state_->value); }

  static void resolve(FutureState<T>& state, T value) {
    if (state.value) return;
    state.value.emplace(std::move(value));
    if (const auto waiting = std::exchange(state.waiting, nullptr))
      state.context->scheduler->resumeOnNextTurn(std::move(state.context), waiting);
  }

 private:
  std::shared_ptr<FutureState<T>> state_;
};

template <class T>
class Future {
 public:
  explicit Future(std::shared_ptr<FutureState<T>> state) : state_(std::move(state)) {}
  FutureAwaiter<T> operator co_await() && { return FutureAwaiter<T>(std::move(state_)); }

 private:
  std::shared_ptr<FutureState<T>> state_;
};

template <class T>
using Resolver = std::function<void(T)>;

// Bridges a callback to a task: pass the resolver on, then `const auto v = co_await std::move(f)`.
// The task resumes on the turn after the resolver was called.
template <class T>
[[nodiscard]] std::pair<Future<T>, Resolver<T>> makeFuture() {
  auto state = std::make_shared<FutureState<T>>();
  return {Future<T>(state),
          [state](T value) { FutureAwaiter<T>::resolve(*state, std::move(value)); }};
}

// Runs `work` on a worker: `const auto v = co_await background(scheduler, [copied] {...});`.
template <class Work, class T = std::invoke_result_t<Work>>
[[nodiscard]] Future<T> background(Scheduler& scheduler, Work work,
                                   WorkPriority priority = WorkPriority::UserInitiated) {
  auto [future, resolve] = makeFuture<T>();
  auto result = std::make_shared<std::optional<T>>();
  scheduler.runInBackground(
      [result, work = std::move(work)]() mutable { result->emplace(work()); },
      [result, resolve = std::move(resolve)] { resolve(std::move(**result)); }, priority);
  return std::move(future);
}

// `co_await isCancelled()`: the running task has been cancelled. Does not suspend.
struct IsCancelledAwaiter {
  bool isCancelled = false;
  bool await_ready() const { return false; }
  template <class Promise>
  bool await_suspend(std::coroutine_handle<Promise> handle) {
    isCancelled = handle.promise().context->isCancelled;
    return false;
  }
  bool await_resume() const { return isCancelled; }
};
[[nodiscard]] inline IsCancelledAwaiter isCancelled() { return {}; }

}  // namespace orvel
