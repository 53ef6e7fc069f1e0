#include "Models/Tab/TabIcon.h"

namespace orvel {

ImageRef TabIcon::favicon(const std::optional<URL>& address) const {
  if (!favicon_.peek()) untracked([&] { favicon_.set(cached(address)); });
  return *favicon_.get();
}

ImageRef TabIcon::cached(const std::optional<URL>& address) const {
  const auto host = address ? address->host() : std::nullopt;
  return host ? cache_.cachedImage(*host) : nullptr;
}

}  // namespace orvel
