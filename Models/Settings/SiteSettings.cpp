#include "Models/Settings/SiteSettings.h"

#include <algorithm>

#include "Base/Texts.h"
#include "BrowserCore/Text/Characters.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/Ask.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

std::optional<bool> SiteSettings::permission(const std::string& host, PageDevice device) const {
  const auto& all = store_.settings.sitePermissions.get();
  const auto site = all.find(host);
  if (site == all.end()) return std::nullopt;
  const auto entry = site->second.find(std::string(keyOf(device)));
  return entry == site->second.end() ? std::nullopt : std::optional(entry->second);
}

void SiteSettings::setPermission(const std::string& host, PageDevice device,
                                 std::optional<bool> isAllowed) {
  store_.settings.sitePermissions.update([&](Settings::SitePermissions& all) {
    auto& site = all[host];
    if (isAllowed)
      site[std::string(keyOf(device))] = *isAllowed;
    else
      site.erase(std::string(keyOf(device)));
    if (site.empty()) all.erase(host);
  });
}

std::vector<WebsiteDataRecord> recordsOf(const std::string& site,
                                         const std::vector<WebsiteDataRecord>& all) {
  std::vector<WebsiteDataRecord> kept;
  for (const auto& record : all)
    if (record.displayName == site || site.ends_with("." + record.displayName))
      kept.push_back(record);
  return kept;
}

void SiteSettings::clearSiteData(TabRef tab) {
  const auto& address = tab->url.peek();
  const auto site = address ? ContentBlocker::site(*address) : std::nullopt;
  if (!site) return;
  store_.services().scheduler.start(clear(store_.weak_from_this(), tab, *site)).detach();
}

static Alert clearQuestion(const std::string& site, const std::string& domain) {
  const std::string explanation =
      domain == site
          ? filled(_("You’ll be signed out of {domain} in this profile. Other sites aren’t "
                     "affected."),
                   {{"domain", domain}})
          : filled(_("Websites keep data per domain, so this clears all of {domain}, {site} "
                     "included: you’ll be signed out of them in this profile. Other sites aren’t "
                     "affected."),
                   {{"domain", domain}, {"site", site}});
  return {.messageText = filled(_("Clear cookies and data for {domain}?"), {{"domain", domain}}),
          .informativeText = explanation,
          .buttons = {_("Clear"), _("Cancel")},
          .isDestructive = true};
}

Task<> SiteSettings::clear(std::weak_ptr<BrowserStore> weak, TabRef tab, std::string site) {
  const auto data = tab->profile->dataStore();
  auto [fetching, fetched] = makeFuture<std::vector<WebsiteDataRecord>>();
  data->fetchDataRecords(fetched);
  const auto all = co_await std::move(fetching);
  const auto records = recordsOf(site, all);
  if (records.empty()) {
    tab->host()->showToast(filled(_("{site} hasn’t stored anything"), {{"site", site}}),
                           {.symbol = "checkmark.circle"});
    co_return;
  }
  const auto length = [](const WebsiteDataRecord& record) {
    return text::characterCount(record.displayName, std::string::npos);
  };
  const std::string domain = std::ranges::min_element(records, {}, length)->displayName;
  std::optional<Future<AlertAnswer>> asking;
  if (const auto store = weak.lock()) asking = ask(*store, clearQuestion(site, domain));
  if (!asking) co_return;
  const AlertAnswer given = co_await *std::move(asking);
  if (!given.isFirstButton()) co_return;
  auto [removing, removed] = makeFuture<bool>();
  data->removeData(records, [done = removed] { done(true); });
  co_await std::move(removing);
  tab->reload();
  tab->host()->showToast(filled(_("Cleared data for {domain}"), {{"domain", domain}}),
                         {.symbol = "trash"});
}

}  // namespace orvel
