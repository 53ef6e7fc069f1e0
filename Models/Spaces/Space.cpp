#include "Models/Spaces/Space.h"

#include <algorithm>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

std::vector<TabRecord> records(const TabList& tabs) {
  std::vector<TabRecord> result;
  result.reserve(tabs.size());
  for (const TabRef& tab : tabs) result.push_back(tab->record());
  return result;
}

}  // namespace

Space::Space(UUID spaceID, std::shared_ptr<Profile> spaceProfile, std::string spaceName,
             std::string spaceSymbol, double spaceHue)
    : id(spaceID),
      profile(std::move(spaceProfile)),
      name(std::move(spaceName)),
      symbol(std::move(spaceSymbol)),
      hue(spaceHue) {}

void Space::setSplit(std::vector<UUID> split) {
  if (split_.set(std::move(split))) splitWidths.set({});
}

static TabList joined(const TabList& favorites, const TabList& pinned, const TabList& today) {
  TabList tabs;
  tabs.reserve(favorites.size() + pinned.size() + today.size());
  for (const TabList* part : {&favorites, &pinned, &today})
    tabs.insert(tabs.end(), part->begin(), part->end());
  return tabs;
}

TabList Space::allTabs() const { return joined(profile->favorites, tabsOf(pinned), today); }

TabList Space::visibleTabs() const {
  return joined(profile->favorites, visibleTabsOf(pinned), today);
}

TabRef Space::tab(const UUID& tabID) const {
  const auto found = [&](const TabList& tabs) {
    const auto tab = std::ranges::find_if(tabs, [&](const TabRef& t) { return t->id == tabID; });
    return tab == tabs.end() ? nullptr : *tab;
  };
  if (TabRef tab = found(profile->favorites)) return tab;
  SidebarWalk walk(pinned);
  while (const SidebarItem* item = walk.next())
    if (const auto* tab = std::get_if<TabRef>(item); tab && (*tab)->id == tabID) return *tab;
  return found(today);
}

TabRef Space::selectedTab() const {
  const std::optional<UUID>& selected = selectedTabID;
  return selected ? tab(*selected) : nullptr;
}

TabList Space::splitTabs() const {
  TabList tabs;
  for (const UUID& member : split())
    if (TabRef found = tab(member)) tabs.push_back(std::move(found));
  return tabs;
}

bool Space::isInSplit(const BrowserTab& tab) const { return contains(splitTabs(), tab); }

SpaceRecord Space::record() const {
  return {.id = id,
          .name = name,
          .symbol = symbol,
          .hue = hue,
          .profileID = profile->id,
          .selectedTabID = selectedTabID,
          .pinned = recordsOf(pinned),
          .today = records(today),
          .split = split(),
          .splitWidths = splitWidths,
          .appearance = appearance.get() == Appearance::Auto
                            ? std::nullopt
                            : std::optional<std::string>(rawText(appearance.get()))};
}

std::optional<size_t> indexOfSpace(const std::vector<std::shared_ptr<Space>>& spaces,
                                   const UUID& id) {
  const auto found = std::ranges::find(spaces, id, [](const auto& space) { return space->id; });
  if (found == spaces.end()) return std::nullopt;
  return static_cast<size_t>(found - spaces.begin());
}

std::string_view rawText(Space::Appearance appearance) {
  switch (appearance) {
    case Space::Appearance::Auto:
      return "auto";
    case Space::Appearance::Light:
      return "light";
    case Space::Appearance::Dark:
      return "dark";
  }
  return "auto";
}

Space::Appearance appearanceFrom(const std::optional<std::string>& text) {
  if (text == "light") return Space::Appearance::Light;
  if (text == "dark") return Space::Appearance::Dark;
  return Space::Appearance::Auto;
}

}  // namespace orvel
