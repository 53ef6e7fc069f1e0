#pragma once

#include <optional>

#include "Base/Image.h"
#include "Base/Observable.h"
#include "BrowserCore/Addresses/URL.h"
#include "Support/Stores/FaviconStore.h"

namespace orvel {

// The icon of the site that a tab shows. Read from the icon cache when first asked for.
class TabIcon {
 public:
  explicit TabIcon(FaviconStore& cache) : cache_(cache) {}

  // That of `address` until another is set; null without one.
  ImageRef favicon(const std::optional<URL>& address) const;
  void setFavicon(ImageRef icon) { favicon_.set(std::move(icon)); }
  // Swaps it for the cached one of another site.
  void follow(const std::optional<URL>& address) { setFavicon(cached(address)); }

 private:
  ImageRef cached(const std::optional<URL>& address) const;

  FaviconStore& cache_;
  // Absent until first asked for.
  mutable Observable<std::optional<ImageRef>> favicon_;
};

}  // namespace orvel
