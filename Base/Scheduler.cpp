#include "Base/Scheduler.h"

#include "Base/Assert.h"
#include "Base/Observable.h"

namespace orvel {

namespace {

constexpr SleepClock kClocks[] = {SleepClock::Monotonic, SleepClock::Boot};

}  // namespace

TaskHandle& TaskHandle::operator=(TaskHandle&& other) noexcept {
  if (this == &other) return *this;
  // The new handle is in place before the old task hears of it.
  TaskHandle former(std::exchange(context_, std::exchange(other.context_, {})));
  return *this;
}

void TaskHandle::cancel() {
  const auto context = std::exchange(context_, {}).lock();
  if (!context || context->isCancelled) return;
  context->isCancelled = true;
  if (context->sleeper)
    context->scheduler->endSleep(static_cast<Scheduler::Sleeper*>(context->sleeper),
                                 SleepResult::Cancelled);
}

Scheduler::Scheduler() {
  onEffectsWoken([this] { wake(); });
}

Scheduler::~Scheduler() {
  destroyTasks();
  onEffectsWoken(nullptr);
}

void Scheduler::destroyTasks() {
  dropReady();
  for (auto& sleepers : sleepers_) {
    for (auto& [deadline, sleeper] : sleepers) {
      sleeper->context->sleeper = nullptr;
      delete sleeper;
    }
    sleepers.clear();
  }
  // A frame's destructors may start or cancel others; take one at a time.
  while (!tasks_.empty()) {
    const auto context = tasks_.begin()->second;
    tasks_.erase(tasks_.begin());
    context->root.destroy();
  }
  dropReady();
}

// What goes with an action may post another one.
void Scheduler::dropReady() {
  while (!ready_.empty()) const auto dropped = std::exchange(ready_, {});
}

void Scheduler::post(std::function<void()> action) {
  requireMainThread();
  ready_.push_back(std::move(action));
  wake();
}

TaskHandle Scheduler::start(Task<> task) {
  const auto handle = task.release();
  auto context = std::make_shared<detail::TaskContext>();
  context->scheduler = this;
  context->root = handle;
  context->id = ++lastTask_;
  handle.promise().context = context;
  tasks_.emplace(context->id, context);
  resumeOnNextTurn(context, handle);
  return TaskHandle(context);
}

void Scheduler::resumeOnNextTurn(std::shared_ptr<detail::TaskContext> context,
                                 std::coroutine_handle<> handle) {
  post([this, context = std::move(context), handle] { resume(context, handle); });
}

void Scheduler::resume(const std::shared_ptr<detail::TaskContext>& context,
                       std::coroutine_handle<> handle) {
  handle.resume();
  if (!context->root.done()) return;
  tasks_.erase(context->id);
  context->root.destroy();
}

void Scheduler::sleep(std::shared_ptr<detail::TaskContext> context, std::coroutine_handle<> handle,
                      Duration duration, SleepClock clock, SleepResult* result) {
  if (context->isCancelled) {
    *result = SleepResult::Cancelled;
    return resumeOnNextTurn(std::move(context), handle);
  }
  auto* sleeper = new Sleeper{std::move(context), handle, result, clock, {}};
  sleeper->context->sleeper = sleeper;
  auto& sleepers = sleepers_[static_cast<int>(clock)];
  sleeper->position = sleepers.emplace(instant(clock) + duration, sleeper);
  if (sleeper->position == sleepers.begin()) deadlinesChanged(clock);
}

void Scheduler::endSleep(Sleeper* sleeper, SleepResult result) {
  const std::unique_ptr<Sleeper> owned(sleeper);
  sleepers_[static_cast<int>(sleeper->clock)].erase(sleeper->position);
  sleeper->context->sleeper = nullptr;
  *sleeper->result = result;
  resumeOnNextTurn(std::move(sleeper->context), sleeper->handle);
}

void Scheduler::wakeDueSleepers(SleepClock clock) {
  auto& sleepers = sleepers_[static_cast<int>(clock)];
  const Instant present = instant(clock);
  bool hasWoken = false;
  while (!sleepers.empty() && sleepers.begin()->first <= present) {
    endSleep(sleepers.begin()->second, SleepResult::Done);
    hasWoken = true;
  }
  if (hasWoken) deadlinesChanged(clock);
}

std::optional<Instant> Scheduler::nextDeadline(SleepClock clock) const {
  const auto& sleepers = sleepers_[static_cast<int>(clock)];
  if (sleepers.empty()) return std::nullopt;
  return sleepers.begin()->first;
}

void Scheduler::runTurn(std::optional<Duration> budget) {
  requireMainThread();
  flushEffects();
  for (const SleepClock clock : kClocks) wakeDueSleepers(clock);
  const Instant begin = instant();
  for (size_t left = ready_.size(); left > 0 && !ready_.empty(); --left) {
    const auto action = std::move(ready_.front());
    ready_.pop_front();
    action();
    if (budget && instant() - begin > *budget) break;
  }
  flushEffects();
}

}  // namespace orvel
