#pragma once

#include <optional>
#include <string>
#include <vector>

#include "BrowserCore/Session/SessionRecord.h"

namespace orvel {

// The previous schema of "session.json". It knew no spaces: profiles carried the look and the tabs.
struct SessionRecordV1 {
  struct Tab {
    UUID id;
    std::string title;
    std::optional<URL> url;
    std::optional<URL> pinnedURL;
  };

  struct Profile {
    UUID id;
    std::string name;
    double hue = SpaceRecord::kDefaultHue;
    std::string symbol;
    std::optional<UUID> selectedTabID;
    std::vector<Tab> pinnedTabs;
    std::vector<Tab> tabs;
  };

  std::optional<UUID> activeProfileID;
  bool isSidebarVisible = true;
  double sidebarWidth = SessionRecord::kDefaultSidebarWidth;
  std::vector<Profile> profiles;

  // The same session in the present schema: each profile becomes a profile and a space of the same
  // id, its pinned tabs the favorites, and every tab counts as active at `now`.
  [[nodiscard]] SessionRecord upgraded(Date now) const;
};

[[nodiscard]] bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value,
                          SessionRecordV1& session);

}  // namespace orvel
