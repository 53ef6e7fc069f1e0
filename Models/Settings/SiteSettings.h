#pragma once

#include <optional>
#include <string>

#include "Engine/WebsiteDataStore.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

class BrowserStore;

// What the user decides about the site of a tab.
class SiteSettings {
 public:
  explicit SiteSettings(BrowserStore& store) : store_(store) {}

  // Absent: the user is asked. Reads as an observable.
  std::optional<bool> permission(const std::string& host, PageDevice device) const;
  // Absent: the user is to be asked again.
  void setPermission(const std::string& host, PageDevice device, std::optional<bool> isAllowed);

  // Asks whether to remove what the tab's site has stored in the tab's profile, and does so. A site
  // that has stored nothing, or an address without a site, is not asked about.
  void clearSiteData(TabRef tab);

 private:
  static Task<> clear(std::weak_ptr<BrowserStore> weak, TabRef tab, std::string site);

  BrowserStore& store_;
};

// The records that hold data of the site: those under its own name and under a domain above it.
[[nodiscard]] std::vector<WebsiteDataRecord> recordsOf(const std::string& site,
                                                       const std::vector<WebsiteDataRecord>& all);

}  // namespace orvel
