#pragma once

#include <array>
#include <concepts>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Base/Observable.h"
#include "BrowserCore/Addresses/LinkRoute.h"
#include "BrowserCore/Addresses/SearchEngine.h"
#include "BrowserCore/Addresses/SearchShortcut.h"
#include "BrowserCore/Addresses/URL.h"
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

// An observable value that is stored each time it is written.
template <class T>
class Setting : private Observable<T> {
 public:
  // `written` learns whether the new value differs from the old one.
  Setting(T initial, std::function<void(bool isChanged)> written)
      : Observable<T>(std::move(initial)), written_(std::move(written)) {}

  using Observable<T>::get;
  using Observable<T>::peek;
  using Observable<T>::operator const T&;
  using Observable<T>::operator*;
  using Observable<T>::operator->;

  bool set(T next) {
    const bool isChanged = Observable<T>::set(std::move(next));
    written_(isChanged);
    return isChanged;
  }
  Setting& operator=(T next) {
    set(std::move(next));
    return *this;
  }
  template <std::invocable<T&> Change>
  bool update(Change&& change) {
    T next = peek();
    std::forward<Change>(change)(next);
    return set(std::move(next));
  }

 private:
  std::function<void(bool isChanged)> written_;
};

// What the user has chosen, kept as one JSON document under the key "settings". Every write of a
// field stores the whole document at once.
class Settings {
 public:
  // Per site the name of a permission and whether it is allowed.
  using SitePermissions = std::map<std::string, std::map<std::string, bool>>;
  using SiteZoom = std::map<std::string, double>;
  using HiddenItems = std::map<std::string, std::vector<std::string>>;

  // The document. Reading it never fails: what is missing or damaged takes its default, key by key.
  struct Snapshot {
    SearchEngine searchEngine = SearchEngine::google;
    ExternalLinks externalLinks = ExternalLinks::LittleWindow;
    std::vector<LinkRoute> linkRoutes;
    ArchiveInterval archiveAfter = ArchiveInterval::TwelveHours;
    SitePermissions sitePermissions;
    SiteZoom siteZoom;
    bool autoPictureInPicture = true;
    bool searchSuggestions = false;
    // Absent: the built-in ones, whichever this version has.
    std::optional<std::vector<SearchShortcut>> searchShortcuts;
    std::optional<QuickBarKey> quickBarKey;
    HiddenItems hiddenItems;

    [[nodiscard]] static Snapshot decode(std::string_view data);
    [[nodiscard]] std::string encoded() const;
  };

  // Reads what is stored in `defaults`, which must outlive the settings.
  explicit Settings(UserDefaults& defaults);

  // Another engine turns `searchSuggestions` off: consent to what is typed being sent was given to
  // the former one.
  Setting<SearchEngine> searchEngine;
  Setting<ExternalLinks> externalLinks;
  // Rules that send such links to a space; the first match counts.
  Setting<std::vector<LinkRoute>> linkRoutes;
  Setting<ArchiveInterval> archiveAfter;
  Setting<SitePermissions> sitePermissions;
  // The page zoom by site.
  Setting<SiteZoom> siteZoom;
  // Leaving a playing video's tab puts it in picture in picture.
  Setting<bool> autoPictureInPicture;
  // The engine completes what is typed.
  Setting<bool> searchSuggestions;
  Setting<std::vector<SearchShortcut>> searchShortcuts;
  Setting<std::optional<QuickBarKey>> quickBarKey;
  // The selectors that the user hides, by site ("example.com") and page ("example.com/path").
  Setting<HiddenItems> hiddenItems;

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
  Settings(UserDefaults& defaults, Snapshot stored);
  void save();
  std::function<void(bool)> stores() {
    return [this](bool) { save(); };
  }

  UserDefaults& defaults_;
};

}  // namespace orvel
