#include "Models/Spaces/SpaceSwipe.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

namespace {

// Speed is measured over the last moments only.
constexpr double kSampleWindow = 0.08;
// How far ahead, in seconds, a gesture's end is projected.
constexpr double kLookAhead = 0.15;
// The share of the width that the projection must pass.
constexpr double kShareToSwitch = 0.5;
constexpr double kResistance = 0.55;

// Critically damped: x(t) = (1 + wt)e^(-wt) with w = 2*pi/response is below a thousandth from
// wt = 9.233 on.
constexpr double kResponse = 0.4;
constexpr double kSettling = 9.233 * kResponse / 6.283185307179586;
constexpr double kHighestVelocity = 20;

int directionOf(double travel) { return travel > 0 ? 1 : -1; }

// `speed` is that toward the end, and `distance` the way to it.
Spring swipeSpring(double speed, double distance) {
  return {.response = kResponse,
          .dampingFraction = 1,
          .settling = kSettling,
          .initialVelocity =
              distance > 1 ? std::min(kHighestVelocity, std::max(speed, 0.0) / distance) : 0};
}

}  // namespace

void SpaceSwipe::install() {
  monitor_ = store_.services().desktop.events.install(
      [this, weak = store_.weak_from_this()](DesktopWindow& from, const InputEvent& event) {
        const auto store = weak.lock();
        const auto* scroll = std::get_if<ScrollEvent>(&event);
        if (store && scroll && &from == store->window()) watch(*scroll);
        return EventUse::PassedOn;
      });
}

void SpaceSwipe::watch(const ScrollEvent& event) {
  // What stands over the sidebar takes the rest of a gesture.
  if (store_.spaceEditing.spaceDraft.peek() || store_.commandBar.peek()) {
    if (const auto travel = std::exchange(travel_, std::nullopt))
      finish(*travel, event.timestamp, End::GoesBack);
    return;
  }
  const WindowChrome& chrome = store_.chrome;
  const bool isSidebarShown = chrome.isSidebarVisible.peek() || chrome.isSidebarPeeking.peek();
  if (event.isMomentum || !isSidebarShown || event.pointerX >= chrome.sidebarWidth.peek()) return;
  switch (event.phase) {
    case ScrollEvent::Phase::Began:
      travel_ = 0;
      samples_.clear();
      ++generation_;
      return;
    case ScrollEvent::Phase::Changed: {
      const bool hasMoved = event.deltaX != 0 || event.deltaY != 0;
      if (!travel_ || !hasMoved) return;
      if (*travel_ == 0 && std::abs(event.deltaX) <= std::abs(event.deltaY)) {
        // A vertical scroll: the rest of the gesture is none of ours.
        travel_.reset();
        return;
      }
      // Fingers that move the page to the left travel toward the next space.
      return track(*travel_ - event.deltaX, event.timestamp);
    }
    case ScrollEvent::Phase::Ended:
    case ScrollEvent::Phase::Cancelled:
      if (const auto travel = std::exchange(travel_, std::nullopt))
        finish(*travel, event.timestamp,
               event.phase == ScrollEvent::Phase::Ended ? End::Switches : End::GoesBack);
  }
}

void SpaceSwipe::track(double travel, double time) {
  travel_ = travel;
  samples_.push_back({time, travel});
  forgetOldSamples(time);
  const auto target = store_.switching.adjacentSpace(directionOf(travel));
  const double width = store_.chrome.sidebarWidth.peek();
  if (target) {
    store_.switching.follow(target, std::clamp(-travel, -width, width));
  } else {
    // The row ends here: the page follows less and less, and never a full width.
    const double share = 1 - 1 / (std::abs(travel) * kResistance / width + 1);
    store_.switching.follow(nullptr, std::copysign(width * share, travel >= 0 ? -1 : 1));
  }
}

void SpaceSwipe::forgetOldSamples(double time) {
  std::erase_if(samples_, [&](const Sample& sample) { return time - sample.time > kSampleWindow; });
}

double SpaceSwipe::speedOfFingers() const {
  if (samples_.empty()) return 0;
  const Sample& first = samples_.front();
  const Sample& last = samples_.back();
  if (first.time >= last.time) return 0;
  return (last.travel - first.travel) / (last.time - first.time);
}

void SpaceSwipe::finish(double travel, double time, End end) {
  const double width = store_.chrome.sidebarWidth.peek();
  const int direction = directionOf(travel);
  forgetOldSamples(time);
  const double speed = speedOfFingers();
  if (end == End::Switches) {
    const double projected = travel + speed * kLookAhead;
    const auto target = store_.switching.adjacentSpace(direction);
    if (target && std::abs(projected) > width * kShareToSwitch && direction * projected > 0) {
      const double distance = std::max(1.0, width - std::abs(travel));
      return store_.switching.switchTo(target, swipeSpring(direction * speed, distance));
    }
  }
  // A gesture that has begun meanwhile keeps its own.
  store_.switching.goBack(
      swipeSpring(-speed * direction, std::abs(store_.switching.spaceSwipeOffset.peek())),
      [this, generation = generation_] { return generation_ == generation; });
}

}  // namespace orvel
