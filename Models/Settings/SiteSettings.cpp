#include "Models/Settings/SiteSettings.h"

#include <algorithm>

#include "Base/Texts.h"
#include "BrowserCore/Text/Characters.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
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
  store_.services().scheduler.start(clear(store_.shared_from_this(), tab, *site)).detach();
}

Task<> SiteSettings::clear(std::shared_ptr<BrowserStore> store, TabRef tab, std::string site) {
  const auto data = tab->profile->dataStore();
  auto [fetching, fetched] = makeFuture<std::vector<WebsiteDataRecord>>();
  data->fetchDataRecords(fetched);
  const auto all = co_await std::move(fetching);
  const auto records = recordsOf(site, all);
  if (records.empty()) {
    store->showToast(filled(_("{site} hasn’t stored anything"), {{"site", site}}),
                     {.symbol = "checkmark.circle"});
    co_return;
  }
  const auto length = [](const WebsiteDataRecord& record) {
    return text::characterCount(record.displayName, std::string::npos);
  };
  const std::string domain = std::ranges::min_element(records, {}, length)->displayName;
  auto confirming = confirm(*store, site, domain);
  const bool isConfirmed = co_await std::move(confirming);
  if (!isConfirmed) co_return;
  auto [removing, removed] = makeFuture<bool>();
  data->removeData(records, [done = removed] { done(true); });
  co_await std::move(removing);
  tab->reload();
  store->showToast(filled(_("Cleared data for {domain}"), {{"domain", domain}}),
                   {.symbol = "trash"});
}

Task<bool> SiteSettings::confirm(BrowserStore& store, std::string site, std::string domain) {
  const std::string explanation =
      domain == site
          ? filled(_("You’ll be signed out of {domain} in this profile. Other sites aren’t "
                     "affected."),
                   {{"domain", domain}})
          : filled(_("Websites keep data per domain, so this clears all of {domain}, {site} "
                     "included: you’ll be signed out of them in this profile. Other sites aren’t "
                     "affected."),
                   {{"domain", domain}, {"site", site}});
  auto [asking, answered] = makeFuture<bool>();
  store.services().desktop.dialogs.showAlert(
      store.window(),
      {.messageText = filled(_("Clear cookies and data for {domain}?"), {{"domain", domain}}),
       .informativeText = explanation,
       .buttons = {_("Clear"), _("Cancel")},
       .isDestructive = true},
      [done = answered](const AlertAnswer& given) { done(given.isFirstButton()); });
  const bool isConfirmed = co_await std::move(asking);
  co_return isConfirmed;
}

}  // namespace orvel
