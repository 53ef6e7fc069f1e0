#include <algorithm>
#include <cmath>

#include "Models/Store/BrowserStore.h"

// The two-finger swipe over the sidebar: the pages follow the fingers, and when they let go the
// nearer page takes over their speed.
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

}  // namespace

// Watches, and leaves every event to the others.
void BrowserStore::installSpaceSwipeMonitor() {
  swipeMonitor_ = services_.desktop.events.install(
      [weak = weak_from_this()](DesktopWindow& from, const InputEvent& event) {
        const auto store = weak.lock();
        const auto* scroll = std::get_if<ScrollEvent>(&event);
        if (store && scroll && &from == store->window) store->watchSpaceSwipe(*scroll);
        return EventUse::PassedOn;
      });
}

void BrowserStore::watchSpaceSwipe(const ScrollEvent& event) {
  // What stands over the sidebar takes the rest of a gesture.
  if (spaceDraft.peek() || commandBar.peek()) {
    if (const auto travel = std::exchange(swipe_.travel, std::nullopt))
      finishSpaceSwipe(*travel, event.timestamp, SwipeEnd::GoesBack);
    return;
  }
  const bool isSidebarShown = isSidebarVisible.peek() || isSidebarPeeking.peek();
  if (event.isMomentum || !isSidebarShown || event.pointerX >= sidebarWidth.peek()) return;
  switch (event.phase) {
    case ScrollEvent::Phase::Began:
      swipe_.travel = 0;
      swipe_.samples.clear();
      ++swipe_.generation;
      return;
    case ScrollEvent::Phase::Changed: {
      const bool hasMoved = event.deltaX != 0 || event.deltaY != 0;
      if (!swipe_.travel || !hasMoved) return;
      if (*swipe_.travel == 0 && std::abs(event.deltaX) <= std::abs(event.deltaY)) {
        // A vertical scroll: the rest of the gesture is none of ours.
        swipe_.travel.reset();
        return;
      }
      // Fingers that move the page to the left travel towards the next space.
      return trackSpaceSwipe(*swipe_.travel - event.deltaX, event.timestamp);
    }
    case ScrollEvent::Phase::Ended:
    case ScrollEvent::Phase::Cancelled:
      if (const auto travel = std::exchange(swipe_.travel, std::nullopt))
        finishSpaceSwipe(
            *travel, event.timestamp,
            event.phase == ScrollEvent::Phase::Ended ? SwipeEnd::Switches : SwipeEnd::GoesBack);
  }
}

void BrowserStore::trackSpaceSwipe(double travel, double time) {
  swipe_.travel = travel;
  swipe_.samples.push_back({time, travel});
  forgetOldSwipeSamples(time);
  const auto target = adjacentSpace(directionOf(travel));
  revealingSpaceID = target ? std::optional(target->id) : std::nullopt;
  const double width = sidebarWidth.peek();
  if (target) {
    spaceSwipeOffset = std::clamp(-travel, -width, width);
  } else {
    // The row ends here: the page follows less and less, and never a full width.
    const double share = 1 - 1 / (std::abs(travel) * kResistance / width + 1);
    spaceSwipeOffset = std::copysign(width * share, travel >= 0 ? -1 : 1);
  }
}

void BrowserStore::forgetOldSwipeSamples(double time) {
  std::erase_if(swipe_.samples,
                [&](const SwipeSample& sample) { return time - sample.time > kSampleWindow; });
}

double BrowserStore::swipeSpeed() const {
  if (swipe_.samples.empty()) return 0;
  const SwipeSample& first = swipe_.samples.front();
  const SwipeSample& last = swipe_.samples.back();
  if (first.time >= last.time) return 0;
  return (last.travel - first.travel) / (last.time - first.time);
}

void BrowserStore::finishSpaceSwipe(double travel, double time, SwipeEnd end) {
  const double width = sidebarWidth.peek();
  const int direction = directionOf(travel);
  forgetOldSwipeSamples(time);
  const double speed = swipeSpeed();
  if (end == SwipeEnd::Switches) {
    const double projected = travel + speed * kLookAhead;
    const auto target = adjacentSpace(direction);
    if (target && std::abs(projected) > width * kShareToSwitch && direction * projected > 0) {
      const double distance = std::max(1.0, width - std::abs(travel));
      return switchTo(target, swipeSpring(direction * speed, distance));
    }
  }
  animate(
      swipeSpring(-speed * direction, std::abs(spaceSwipeOffset.peek())),
      [this] { spaceSwipeOffset = 0; },
      [weak = weak_from_this(), generation = swipe_.generation] {
        // A gesture that has begun meanwhile keeps its own.
        const auto store = weak.lock();
        if (store && store->swipe_.generation == generation) store->revealingSpaceID = std::nullopt;
      });
}

Spring BrowserStore::swipeSpring(double speed, double distance) {
  return {.response = kResponse,
          .dampingFraction = 1,
          .settling = kSettling,
          .initialVelocity =
              distance > 1 ? std::min(kHighestVelocity, std::max(speed, 0.0) / distance) : 0};
}

}  // namespace orvel
