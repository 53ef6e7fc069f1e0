#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Addresses/LinkRoute.h"
#include "BrowserCore/Addresses/SearchEngine.h"
#include "BrowserCore/Addresses/SearchShortcut.h"
#include "BrowserCore/Addresses/URL.h"
#include "Models/Settings/Setting.h"
#include "Support/Stores/UserDefaults.h"

namespace orvel {

// Where links from other applications open.
enum class ExternalLinks { LittleWindow, CurrentSpace };
// After how long unpinned tabs are archived.
enum class ArchiveInterval { TwelveHours, Day, Week, Never };
// The system-wide key of the quick bar.
enum class QuickBarKey { OptionSpace, ShiftOptionSpace, ControlShiftSpace };

inline constexpr std::array kExternalLinks = {ExternalLinks::LittleWindow,
                                              ExternalLinks::CurrentSpace};
inline constexpr std::array kArchiveIntervals = {ArchiveInterval::TwelveHours, ArchiveInterval::Day,
                                                 ArchiveInterval::Week, ArchiveInterval::Never};
inline constexpr std::array kQuickBarKeys = {
    QuickBarKey::OptionSpace, QuickBarKey::ShiftOptionSpace, QuickBarKey::ControlShiftSpace};

// As people read them in the settings window.
[[nodiscard]] std::string_view label(ExternalLinks links);
[[nodiscard]] std::string_view label(ArchiveInterval interval);
[[nodiscard]] std::string_view label(QuickBarKey key);

// What the user has chosen, kept as one JSON document under the key "settings". Every write of a
// field stores the whole document at once. A new setting is one more field here; what is new takes
// its default in an old document.
class Settings {
 public:
  // Per site the name of a permission and whether it is allowed.
  using SitePermissions = std::map<std::string, std::map<std::string, bool>>;
  using SiteZoom = std::map<std::string, double>;
  using HiddenItems = std::map<std::string, std::vector<std::string>>;

  // Reads what is stored in `defaults`, which must outlive the settings.
  explicit Settings(UserDefaults& defaults);

 private:
  UserDefaults& defaults_;
  SettingsSnapshot snapshot_{[this] { save(); }};

 public:
  // Another engine turns `searchSuggestions` off: consent to what is typed being sent was given to
  // the former one.
  Setting<SearchEngine> searchEngine{snapshot_,
                                     "searchEngine",
                                     SearchEngine::google,
                                     {.changed = [this] { searchSuggestions.follow(false); }}};
  Setting<ExternalLinks> externalLinks{snapshot_, "externalLinks", ExternalLinks::LittleWindow};
  // Rules that send such links to a space; the first match counts.
  Setting<std::vector<LinkRoute>> linkRoutes{snapshot_, "linkRoutes", {}};
  Setting<ArchiveInterval> archiveAfter{snapshot_, "archiveAfter", ArchiveInterval::TwelveHours};
  Setting<SitePermissions> sitePermissions{snapshot_, "sitePermissions", {}};
  // The page zoom by site.
  Setting<SiteZoom> siteZoom{snapshot_, "siteZoom", {}};
  // Leaving a playing video's tab puts it in picture in picture.
  Setting<bool> autoPictureInPicture{snapshot_, "autoPictureInPicture", true};
  // The engine completes what is typed.
  Setting<bool> searchSuggestions{snapshot_, "searchSuggestions", false};
  Setting<std::vector<SearchShortcut>> searchShortcuts{
      snapshot_, "searchShortcuts", SearchShortcut::builtIn(), {.leavesOutDefault = true}};
  Setting<std::optional<QuickBarKey>> quickBarKey{snapshot_, "quickBarKey", std::nullopt};
  // The selectors that the user hides, by site ("example.com") and page ("example.com/path").
  Setting<HiddenItems> hiddenItems{snapshot_, "hiddenItems", {}};

  // Sites are hosts in lower case without a leading "www."; subdomains are sites of their own.
  // Addresses without a host have none: reading gives the default, writing does nothing.

  // 1 for a site that has none.
  double zoom(const std::optional<URL>& url) const;
  // Actual size, to a hundredth, removes the site's entry.
  void setZoom(double zoom, const std::optional<URL>& url);
  // The site's, then the page's.
  std::vector<std::string> hiddenItemsOn(const std::optional<URL>& url) const;
  // A selector that starts from the body is filed under its page, any other under the site.
  void hide(const std::string& selector, const std::optional<URL>& url);
  // Forgets what is hidden on the site and all its pages.
  void showHiddenItems(const std::optional<URL>& url);

 private:
  void save();
};

}  // namespace orvel
