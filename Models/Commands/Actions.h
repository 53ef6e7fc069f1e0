#pragma once

#include "Models/Commands/ActionCatalog.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// What the actions do, whoever asks for them: the menu, the keys or the command bar.
namespace Actions {

// `tab` is what an action on a tab works on; without it such an action does nothing. The numbered
// spaces and the actions by keys alone have owners of their own and do nothing here.
void perform(BrowserStore& store, ActionID action, const TabRef& tab);

// Whether what the action switches is on; false for actions that switch nothing.
[[nodiscard]] bool isOn(BrowserStore& store, ActionID action, const TabRef& tab);

}  // namespace Actions
}  // namespace orvel
