#pragma once

#include "Base/Scheduler.h"
#include "Desktop/Dialogs.h"

namespace orvel {

class BrowserStore;

// Asks on the main window, for tasks: `auto asking = ask(store, alert); const AlertAnswer given =
// co_await std::move(asking);`.
[[nodiscard]] Future<AlertAnswer> ask(const BrowserStore& store, const Alert& alert);

}  // namespace orvel
