#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Base/Observable.h"
#include "BrowserCore/LinkRoute.h"
#include "BrowserCore/SearchEngine.h"
#include "BrowserCore/URL.h"

namespace orvel {

// Where links from other applications open.
enum class ExternalLinks { LittleWindow, CurrentSpace };

// What the user has chosen.
class Settings {
 public:
  Observable<SearchEngine> searchEngine{SearchEngine::google};
  Observable<ExternalLinks> externalLinks = ExternalLinks::LittleWindow;
  // Rules that send such links to a space; the first match counts.
  Observable<std::vector<LinkRoute>> linkRoutes;
  // The page zoom by site, named as `ContentBlocker::site` does.
  Observable<std::unordered_map<std::string, double>> siteZoom;
  // Leaving a playing video's tab puts it in picture in picture.
  Observable<bool> autoPictureInPicture = true;

  // The page zoom of the address's site; 1 without an address and for a site that has none.
  double zoom(const std::optional<URL>& url) const;
};

}  // namespace orvel
