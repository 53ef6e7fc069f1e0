#include "Models/Settings/Settings.h"

#include <algorithm>
#include <cmath>

#include "Base/Texts.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

namespace {

constexpr std::string_view kKey = "settings";

std::optional<std::string> siteKey(const std::optional<URL>& url) {
  return url ? ContentBlocker::site(*url) : std::nullopt;
}

std::optional<std::string> pageKey(const std::optional<URL>& url) {
  auto key = siteKey(url);
  if (key) key->append(url->path().empty() ? "/" : url->path());
  return key;
}

}  // namespace

std::string_view label(ExternalLinks links) {
  switch (links) {
    case ExternalLinks::LittleWindow:
      return _("A little window");
    case ExternalLinks::CurrentSpace:
      return _("The current space");
  }
  return {};
}

std::string_view label(ArchiveInterval interval) {
  switch (interval) {
    case ArchiveInterval::TwelveHours:
      return _("12 hours");
    case ArchiveInterval::Day:
      return _("1 day");
    case ArchiveInterval::Week:
      return _("7 days");
    case ArchiveInterval::Never:
      return _("Never");
  }
  return {};
}

std::string_view label(QuickBarKey key) {
  switch (key) {
    case QuickBarKey::OptionSpace:
      return _("Ctrl+Alt+Space");
    case QuickBarKey::ShiftOptionSpace:
      return _("Alt+Shift+Space");
    case QuickBarKey::ControlShiftSpace:
      return _("Ctrl+Shift+Space");
  }
  return {};
}

Settings::Settings(UserDefaults& defaults) : defaults_(defaults) {
  snapshot_.decode(defaults.data(kKey).value_or(""));
}

void Settings::save() { defaults_.setData(kKey, snapshot_.encoded()); }

// Zoom

double Settings::zoom(const std::optional<URL>& url) const {
  const auto site = siteKey(url);
  if (!site) return 1;
  const auto found = siteZoom.get().find(*site);
  return found == siteZoom.get().end() ? 1 : found->second;
}

void Settings::setZoom(double zoom, const std::optional<URL>& url) {
  constexpr double kTolerance = 0.01;
  const auto site = siteKey(url);
  if (!site) return;
  siteZoom.update([&](SiteZoom& sites) {
    if (std::abs(zoom - 1) < kTolerance)
      sites.erase(*site);
    else
      sites[*site] = zoom;
  });
}

// Hidden items

std::vector<std::string> Settings::hiddenItemsOn(const std::optional<URL>& url) const {
  std::vector<std::string> selectors;
  for (const auto& key : {siteKey(url), pageKey(url)}) {
    const auto found = key ? hiddenItems.get().find(*key) : hiddenItems.get().end();
    if (found == hiddenItems.get().end()) continue;
    selectors.insert(selectors.end(), found->second.begin(), found->second.end());
  }
  return selectors;
}

void Settings::hide(const std::string& selector, const std::optional<URL>& url) {
  const auto key = selector.starts_with("body") ? pageKey(url) : siteKey(url);
  if (!key) return;
  hiddenItems.update([&](HiddenItems& items) {
    std::vector<std::string>& selectors = items[*key];
    if (std::ranges::find(selectors, selector) == selectors.end()) selectors.push_back(selector);
  });
}

void Settings::showHiddenItems(const std::optional<URL>& url) {
  const auto site = siteKey(url);
  if (!site) return;
  hiddenItems.update([&](HiddenItems& items) {
    std::erase_if(items, [&](const auto& item) {
      return item.first == *site || item.first.starts_with(*site + "/");
    });
  });
}

}  // namespace orvel
