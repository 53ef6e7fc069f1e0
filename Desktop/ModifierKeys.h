#pragma once

namespace orvel {

// The modifier keys that are held.
struct ModifierKeys {
  bool control = false;
  bool alt = false;
  bool shift = false;

  friend bool operator==(const ModifierKeys&, const ModifierKeys&) = default;
};

}  // namespace orvel
