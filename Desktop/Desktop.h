#pragma once

#include "Desktop/Animator.h"
#include "Desktop/Clipboard.h"
#include "Desktop/Dialogs.h"
#include "Desktop/EventMonitors.h"
#include "Desktop/HotKeys.h"
#include "Desktop/MemoryPressure.h"
#include "Desktop/SystemSearch.h"
#include "Desktop/Windows.h"
#include "Desktop/Workspace.h"

namespace orvel {

// Everything that is asked of the desktop, as one value that is handed down from the composition
// root. The services outlive whoever holds it.
struct Desktop {
  Animator& animator;
  DesktopApplication& application;
  Clipboard& clipboard;
  Dialogs& dialogs;
  EventMonitors& events;
  HotKeys& hotKeys;
  MemoryPressure& memoryPressure;
  SystemSearch& systemSearch;
  Workspace& workspace;
};

}  // namespace orvel
