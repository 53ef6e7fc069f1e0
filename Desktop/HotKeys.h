#pragma once

#include <functional>
#include <memory>

#include "Desktop/ModifierKeys.h"

namespace orvel {

// A registered key; destroying it gives the key back.
class HotKey {
 public:
  virtual ~HotKey() = default;
};

class HotKeys {
 public:
  virtual ~HotKeys() = default;
  // Registers the space bar with these modifiers for the whole desktop. Tells on a later turn,
  // null when the desktop or another application holds the key or when there is no such service.
  virtual void registerSpace(ModifierKeys modifiers, std::function<void()> pressed,
                             std::function<void(std::unique_ptr<HotKey>)> answer) = 0;
};

}  // namespace orvel
