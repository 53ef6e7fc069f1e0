#include "Tests/Fakes/VirtualScheduler.h"

#include <algorithm>

#include "Base/Observable.h"

namespace orvel::test {

Date VirtualScheduler::startDate() {
  using namespace std::chrono;
  return sys_days(2026y / January / 2) + hours(3) + minutes(4) + std::chrono::seconds(5);
}

void VirtualScheduler::runInBackground(std::function<void()> work, std::function<void()> done,
                                       WorkPriority) {
  post([this, work = std::move(work), done = std::move(done)] {
    work();
    post(done);
  });
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
    if (next.time_since_epoch() > end) break;
    elapsed_ = std::max(elapsed_, next.time_since_epoch());
    turn();
    settle();
  }
  elapsed_ = end;
}

}  // namespace orvel::test
