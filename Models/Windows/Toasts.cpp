#include "Models/Windows/Toasts.h"

#include "Base/Assert.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

void Toasts::showToast(std::string message, ToastOptions options) {
  requireMainThread();
  constexpr Duration kWithUndo = 4s;
  constexpr Duration kWithoutUndo = 1600ms;
  removal_.cancel();
  const Duration lasts = options.lasts.value_or(options.undo ? kWithUndo : kWithoutUndo);
  const std::optional<Toast> shown = toast.peek();
  if (shown && shown->symbol == options.symbol && !shown->undo && !options.undo) {
    store_.animate(Spring::quick, [&] {
      toast.update([&](std::optional<Toast>& present) { present->message = std::move(message); });
    });
  } else {
    store_.animate(Spring::entry, [&] {
      toast = Toast{.message = std::move(message),
                    .symbol = std::move(options.symbol),
                    .undo = std::move(options.undo),
                    .actionTitle = std::move(options.actionTitle)};
    });
  }
  removal_ = store_.after(
      lasts, [this] { store_.animate(Spring::quick, [this] { toast = std::nullopt; }); });
}

void Toasts::undoToast() {
  const auto undo = toast.peek() ? toast.peek()->undo : nullptr;
  store_.animate(Spring::quick, [this] { toast = std::nullopt; });
  if (undo) undo();
}

}  // namespace orvel
