#include "Base/Assert.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

void BrowserStore::showToast(std::string message, ToastOptions options) {
  requireMainThread();
  constexpr Duration kWithUndo = 4s;
  constexpr Duration kWithoutUndo = 1600ms;
  toastTask_.cancel();
  const Duration lasts = options.lasts.value_or(options.undo ? kWithUndo : kWithoutUndo);
  const std::optional<Toast> shown = toast.peek();
  if (shown && shown->symbol == options.symbol && !shown->undo && !options.undo) {
    animate(Spring::quick, [&] {
      toast.update([&](std::optional<Toast>& present) { present->message = std::move(message); });
    });
  } else {
    animate(Spring::entry, [&] {
      toast = Toast{.message = std::move(message),
                    .symbol = std::move(options.symbol),
                    .undo = std::move(options.undo),
                    .actionTitle = std::move(options.actionTitle)};
    });
  }
  toastTask_ = services_.scheduler.start(removeToast(weak_from_this(), lasts));
}

Task<> BrowserStore::removeToast(std::weak_ptr<BrowserStore> weak, Duration after) {
  const SleepResult result = co_await sleep(after);
  const auto store = weak.lock();
  if (!store || result == SleepResult::Cancelled) co_return;
  const bool wasCancelled = co_await isCancelled();
  if (!wasCancelled) store->animate(Spring::quick, [&] { store->toast = std::nullopt; });
}

void BrowserStore::undoToast() {
  const auto undo = toast.peek() ? toast.peek()->undo : nullptr;
  animate(Spring::quick, [this] { toast = std::nullopt; });
  if (undo) undo();
}

}  // namespace orvel
