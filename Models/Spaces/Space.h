#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Base/Observable.h"
#include "BrowserCore/Session/SessionRecord.h"
#include "BrowserCore/Text/Translatable.h"
#include "Models/Sidebar/SidebarItem.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

// An icon that a space may have, and what people call it.
struct SpaceSymbol {
  const char* symbol;
  const char* name;
};
// New spaces are offered them in turn.
inline constexpr std::array<SpaceSymbol, 12> kSpaceSymbols = {{
    {"person.fill", translatable("Person")},
    {"briefcase.fill", translatable("Briefcase")},
    {"house.fill", translatable("House")},
    {"graduationcap.fill", translatable("Graduation Cap")},
    {"gamecontroller.fill", translatable("Game Controller")},
    {"sparkles", translatable("Sparkles")},
    {"leaf.fill", translatable("Leaf")},
    {"flame.fill", translatable("Flame")},
    {"star.fill", translatable("Star")},
    {"heart.fill", translatable("Heart")},
    {"bolt.fill", translatable("Bolt")},
    {"globe.americas.fill", translatable("Globe")},
}};

// A set of tabs with a look of its own. It shares web data and favorites with the other spaces of
// its profile.
class Space {
 public:
  enum class Appearance { Auto, Light, Dark };

  Space(UUID id, std::shared_ptr<Profile> profile, std::string name, std::string symbol,
        double hue);

  const UUID id;
  const std::shared_ptr<Profile> profile;
  Observable<std::string> name;
  Observable<std::string> symbol;  // the name of an icon
  Observable<double> hue;          // the place of the space's color, 0 to 1
  Observable<SidebarItemList> pinned;
  Observable<TabList> today;
  // May name no tab; it is not corrected then.
  Observable<std::optional<UUID>> selectedTabID;
  Observable<Appearance> appearance = Appearance::Auto;

  // The ids of the tabs that stand side by side, from left to right; empty without a split.
  const std::vector<UUID>& split() const { return split_.get(); }
  // A real change also empties `splitWidths`.
  void setSplit(std::vector<UUID> split);
  // The panes' shares; empty means equal ones.
  Observable<std::vector<double>> splitWidths;

  // The profile's favorites, the pinned tabs and today's, in this order.
  TabList allTabs() const;
  // The same without the tabs in collapsed folders.
  TabList visibleTabs() const;
  // The first tab with the id; null without one.
  TabRef tab(const UUID& tabID) const;
  // Null without a selection, and when the selection names no tab.
  TabRef selectedTab() const;
  // The tabs of the split that exist, in its order.
  TabList splitTabs() const;
  bool isInSplit(const BrowserTab& tab) const;

  SpaceRecord record() const;

 private:
  Observable<std::vector<UUID>> split_;
};

// Where the space with the id stands in the list; absent when it is no member.
[[nodiscard]] std::optional<size_t> indexOfSpace(const std::vector<std::shared_ptr<Space>>& spaces,
                                                 const UUID& id);

// "auto", "light", "dark".
[[nodiscard]] std::string_view rawText(Space::Appearance appearance);
// Automatic for any other text and for none.
[[nodiscard]] Space::Appearance appearanceFrom(const std::optional<std::string>& text);

}  // namespace orvel
