#include "Models/Windows/Ask.h"

#include "Models/Store/BrowserStore.h"

namespace orvel {

Future<AlertAnswer> ask(const BrowserStore& store, const Alert& alert) {
  auto [future, resolve] = makeFuture<AlertAnswer>();
  store.services().desktop.dialogs.showAlert(store.window(), alert, std::move(resolve));
  return std::move(future);
}

}  // namespace orvel
