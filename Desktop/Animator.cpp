#include "Desktop/Animator.h"

#include "Base/Observable.h"
#include "Base/Transaction.h"

namespace orvel {

namespace {

Task<> runAfter(Duration duration, std::function<void()> completion) {
  co_await sleep(duration);
  completion();
}

}  // namespace

void Animator::animate(const Spring& spring, const std::function<void()>& change,
                       std::function<void()> completion) {
  if (!isMotionWanted()) {
    untracked(change);
    if (completion) untracked(completion);
    return;
  }
  Transaction::run(spring, [&change] { untracked(change); });
  if (completion)
    scheduler_.start(runAfter(spring.logicalDuration(), std::move(completion))).detach();
}

}  // namespace orvel
