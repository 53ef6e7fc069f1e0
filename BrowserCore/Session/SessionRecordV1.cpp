#include "BrowserCore/Session/SessionRecordV1.h"

namespace orvel {

using JSONCoding::Decoder;
using JSONCoding::Value;

static bool decode(Decoder& decoder, Value value, SessionRecordV1::Tab& tab) {
  return decoder.field(value, "id", tab.id) && decoder.field(value, "title", tab.title) &&
         decoder.field(value, "url", tab.url) && decoder.field(value, "pinnedURL", tab.pinnedURL);
}

static bool decode(Decoder& decoder, Value value, SessionRecordV1::Profile& profile) {
  return decoder.field(value, "id", profile.id) && decoder.field(value, "name", profile.name) &&
         decoder.field(value, "hue", profile.hue) &&
         decoder.field(value, "symbol", profile.symbol) &&
         decoder.field(value, "selectedTabID", profile.selectedTabID) &&
         decoder.field(value, "pinnedTabs", profile.pinnedTabs) &&
         decoder.field(value, "tabs", profile.tabs);
}

static std::vector<TabRecord> upgradedTabs(const std::vector<SessionRecordV1::Tab>& tabs,
                                           Date now) {
  std::vector<TabRecord> result;
  result.reserve(tabs.size());
  for (const auto& tab : tabs)
    result.push_back({.id = tab.id,
                      .title = tab.title,
                      .url = tab.url,
                      .pinnedURL = tab.pinnedURL,
                      .lastActiveAt = now});
  return result;
}

bool decode(Decoder& decoder, Value value, SessionRecordV1& session) {
  return decoder.field(value, "activeProfileID", session.activeProfileID) &&
         decoder.field(value, "isSidebarVisible", session.isSidebarVisible) &&
         decoder.field(value, "sidebarWidth", session.sidebarWidth) &&
         decoder.field(value, "profiles", session.profiles);
}

SessionRecord SessionRecordV1::upgraded(Date now) const {
  SessionRecord result{.activeSpaceID = activeProfileID,
                       .isSidebarVisible = isSidebarVisible,
                       .sidebarWidth = sidebarWidth};
  for (const Profile& profile : profiles) {
    result.profiles.push_back({.id = profile.id,
                               .name = profile.name,
                               .favorites = upgradedTabs(profile.pinnedTabs, now)});
    result.spaces.push_back({.id = profile.id,
                             .name = profile.name,
                             .symbol = profile.symbol,
                             .hue = profile.hue,
                             .profileID = profile.id,
                             .selectedTabID = profile.selectedTabID,
                             .today = upgradedTabs(profile.tabs, now)});
  }
  return result;
}

}  // namespace orvel
