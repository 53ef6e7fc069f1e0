#pragma once

#include <optional>

#include "Base/Image.h"
#include "Base/Observable.h"
#include "BrowserCore/Addresses/URL.h"
#include "Support/Stores/FaviconStore.h"

namespace orvel {

class BrowserTab;
class WebView;

// The icon of the site that a tab shows. Read from the icon cache when first asked for.
class TabIcon {
 public:
  explicit TabIcon(FaviconStore& cache) : cache_(cache) {}

  // That of `address` until another is set; null without one.
  ImageRef favicon(const std::optional<URL>& address) const;
  void setFavicon(ImageRef icon) { favicon_.set(std::move(icon)); }
  // Swaps it for the cached one of another site.
  void follow(const std::optional<URL>& address) { setFavicon(cached(address)); }

  // Fetches the icon that the page in the tab's view declares, or else the site's usual one, and
  // shows it when the tab is still at that site. When there is none the tab keeps what it has.
  static Task<> load(std::weak_ptr<BrowserTab> tab, std::shared_ptr<WebView> view,
                     FaviconStore& cache);

 private:
  ImageRef cached(const std::optional<URL>& address) const;

  FaviconStore& cache_;
  // Absent until first asked for.
  mutable Observable<std::optional<ImageRef>> favicon_;
};

}  // namespace orvel
