#include "Desktop/EventMonitors.h"

namespace orvel {

Observation EventMonitors::install(Monitor monitor) {
  const uint64_t id = ++installed_->last;
  installed_->monitors[id] = std::make_shared<const Monitor>(std::move(monitor));
  return Observation([weak = std::weak_ptr(installed_), id] {
    if (const auto installed = weak.lock()) installed->monitors.erase(id);
  });
}

EventUse EventMonitors::offer(DesktopWindow& window, const InputEvent& event) const {
  const auto installed = installed_;
  const uint64_t last = installed->last;
  uint64_t asked = 0;
  // A monitor may end itself and others, and install new ones, which are not asked about this one.
  for (auto next = installed->monitors.begin();
       next != installed->monitors.end() && next->first <= last;
       next = installed->monitors.upper_bound(asked)) {
    asked = next->first;
    const auto monitor = next->second;
    if ((*monitor)(window, event) == EventUse::Swallowed) return EventUse::Swallowed;
  }
  return EventUse::PassedOn;
}

}  // namespace orvel
