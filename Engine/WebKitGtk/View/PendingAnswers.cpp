#include "Engine/WebKitGtk/View/PendingAnswers.h"

namespace orvel {

namespace {

constexpr Duration kMaxWait = 5s;

}  // namespace

void PendingAnswers::fail(EndsWith end) {
  const auto entries = entries_;
  for (const auto& weak : entries)
    if (const auto entry = weak.lock(); entry && (end == EndsWith::View || entry->endsWith == end))
      entry->fail();
}

Task<> PendingAnswers::endUnanswered(std::weak_ptr<AnyEntry> weak,
                                     std::weak_ptr<std::function<bool()>> mayTakeLonger) {
  bool isWaiting = true;
  while (isWaiting) {
    const SleepResult slept = co_await sleep(kMaxWait);
    if (slept == SleepResult::Cancelled) co_return;
    const auto question = mayTakeLonger.lock();
    isWaiting = question && (*question)();
  }
  if (const auto entry = weak.lock()) entry->fail();
}

}  // namespace orvel
