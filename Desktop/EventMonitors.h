#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <variant>

#include "Base/Observation.h"
#include "Desktop/ModifierKeys.h"

namespace orvel {

class DesktopWindow;

// A key went down or repeats. The modifier keys themselves come as `ModifiersChanged`.
struct KeyDown {
  // Return is the keypad's Enter, too.
  enum class Key { Other, Tab, Escape, Return };
  Key key = Key::Other;
  // Those held when it went down.
  ModifierKeys modifiers;
};

// A modifier key went down or up, or the keyboard left the window, which lets all of them go.
struct ModifiersChanged {
  // Those held from now on.
  ModifierKeys modifiers;
};

struct MouseDown {
  enum class Button { Left, Middle, Right, Other };
  Button button = Button::Left;
  // From the window's top left corner, in points.
  double x = 0;
  double y = 0;
};

// One event of a two-finger scroll on a touchpad.
struct ScrollEvent {
  enum class Phase { Began, Changed, Ended, Cancelled };
  Phase phase = Phase::Changed;
  // Fingers have left the pad and the motion runs out by itself.
  bool isMomentum = false;
  // In pixels; content moves with the fingers: positive moves it right and down. Where the
  // interface runs from right to left, positive moves it left.
  double deltaX = 0;
  double deltaY = 0;
  // Seconds on a monotonic clock.
  double timestamp = 0;
  // How far the pointer stands from the window's leading edge, in points.
  double pointerX = 0;
};

using InputEvent = std::variant<KeyDown, ModifiersChanged, MouseDown, ScrollEvent>;

enum class EventUse { PassedOn, Swallowed };

// Who sees the events of the program's windows before anything in those windows does.
//
//   monitor_ = events.install([](DesktopWindow& window, const InputEvent& event) {
//     return std::holds_alternative<KeyDown>(event) ? EventUse::Swallowed : EventUse::PassedOn;
//   });
//
// Monitors are asked in the order of their installation. An event that one swallows reaches neither
// the later ones nor the window; of a change of modifiers only the later monitors are spared. Each
// event is offered once.
class EventMonitors {
 public:
  using Monitor = std::function<EventUse(DesktopWindow& window, const InputEvent& event)>;

  // The monitor is asked until the observation ends, which a monitor may do itself, and which may
  // outlive this object.
  [[nodiscard]] Observation install(Monitor monitor);

  // For whoever has the events: asks the monitors.
  EventUse offer(DesktopWindow& window, const InputEvent& event) const;

 private:
  struct Installed {
    std::map<uint64_t, std::shared_ptr<const Monitor>> monitors;
    uint64_t last = 0;
  };
  std::shared_ptr<Installed> installed_ = std::make_shared<Installed>();
};

}  // namespace orvel
