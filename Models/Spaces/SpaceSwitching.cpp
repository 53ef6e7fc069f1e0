#include "Models/Spaces/SpaceSwitching.h"

#include <algorithm>

#include "Base/Assert.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/Peek.h"

namespace orvel {

void SpaceSwitching::switchTo(std::shared_ptr<Space> space, const Spring& animation) {
  requireMainThread();
  const UUID former = store_.activeSpaceID.peek();
  if (space->id == former || store_.spaceWithID(space->id) != space) return;
  const auto& list = store_.spaces.peek();
  spaceSwitchForward =
      indexOfSpace(list, former).value_or(0) < indexOfSpace(list, space->id).value_or(0);
  leavingSpaceID = former;
  store_.animate(
      animation,
      [&] {
        store_.setActiveSpaceID(space->id);
        revealingSpaceID = std::nullopt;
        spaceSwipeOffset = 0;
      },
      [this, former] {
        // A later switch keeps its own.
        if (leavingSpaceID.peek() == former) leavingSpaceID = std::nullopt;
      });
  store_.coming.didLeaveSpace();
  store_.peek.closePeek();
  if (const TabRef selected = space->selectedTab(); selected && !selected->isDiscarded.peek())
    selected->webView();
  store_.later([this] { store_.focusWebView(); });
  store_.scheduleSave();
}

// The pager

std::vector<std::shared_ptr<Space>> SpaceSwitching::pagerSpaces() const {
  const std::optional<UUID> shown[] = {store_.activeSpaceID.get(), leavingSpaceID.get(),
                                       revealingSpaceID.get()};
  std::vector<std::shared_ptr<Space>> pages = store_.spaces.get();
  std::erase_if(pages, [&](const auto& space) {
    return std::ranges::find(shown, std::optional(space->id)) == std::end(shown);
  });
  return pages;
}

int SpaceSwitching::pagerPosition(const Space& space) const {
  const auto index = indexOfSpace(store_.spaces.get(), space.id);
  const auto active = indexOfSpace(store_.spaces.get(), store_.activeSpaceID.get());
  if (!index || !active || index == active) return 0;
  return *index < *active ? -1 : 1;
}

std::shared_ptr<Space> SpaceSwitching::revealingSpace() const {
  const std::optional<UUID>& id = revealingSpaceID;
  return id ? store_.spaceWithID(*id) : nullptr;
}

std::shared_ptr<Space> SpaceSwitching::adjacentSpace(int delta) const {
  const auto& list = store_.spaces.peek();
  const auto active = indexOfSpace(list, store_.activeSpaceID.peek());
  if (!active) return nullptr;
  // Unsigned: before the first is beyond the last.
  const size_t index = *active + static_cast<size_t>(delta);
  return index < list.size() ? list[index] : nullptr;
}

// The swipe

void SpaceSwitching::follow(const std::shared_ptr<Space>& target, double offset) {
  revealingSpaceID = target ? std::optional(target->id) : std::nullopt;
  spaceSwipeOffset = offset;
}

void SpaceSwitching::goBack(const Spring& animation, std::function<bool()> didReturn) {
  store_.animate(
      animation, [this] { spaceSwipeOffset = 0; },
      [this, didReturn = std::move(didReturn)] {
        if (didReturn()) revealingSpaceID = std::nullopt;
      });
}

}  // namespace orvel
