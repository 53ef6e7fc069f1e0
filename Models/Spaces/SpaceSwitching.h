#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Base/Published.h"
#include "Base/Spring.h"
#include "Models/Spaces/Space.h"

namespace orvel {

class BrowserStore;

// The way from one space to another, and the spaces that stand side by side on it.
class SpaceSwitching {
 public:
  explicit SpaceSwitching(BrowserStore& store) : store_(store) {}

  Published<bool, SpaceSwitching> spaceSwitchForward = true;
  // How far the fingers have moved the pages, in points; positive brings the previous space.
  Published<double, SpaceSwitching> spaceSwipeOffset = 0.0;
  Published<std::optional<UUID>, SpaceSwitching> revealingSpaceID;
  Published<std::optional<UUID>, SpaceSwitching> leavingSpaceID;

  void switchTo(std::shared_ptr<Space> space, const Spring& animation = Spring::move);
  // The spaces that stand side by side while they change, in the sidebar's order.
  std::vector<std::shared_ptr<Space>> pagerSpaces() const;
  // -1 left of the active space, 1 right of it; 0 for itself and for one that is no member.
  int pagerPosition(const Space& space) const;
  // The neighbor that a swipe brings in; null without one.
  std::shared_ptr<Space> revealingSpace() const;
  // The space `delta` further on in the sidebar's order; null beyond its ends.
  std::shared_ptr<Space> adjacentSpace(int delta) const;

  // Moves the pages by `offset`; null `target` where the row ends.
  void follow(const std::shared_ptr<Space>& target, double offset);
  // Moves the pages back to where they were. `didReturn` answers, when they have, whether that
  // still counts.
  void goBack(const Spring& animation, std::function<bool()> didReturn);

 private:
  BrowserStore& store_;
};

}  // namespace orvel
