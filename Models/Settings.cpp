#include "Models/Settings.h"

#include "WebEngine/ContentBlocker.h"

namespace orvel {

double Settings::zoom(const std::optional<URL>& url) const {
  const auto site = url ? ContentBlocker::site(*url) : std::nullopt;
  if (!site) return 1;
  const auto found = siteZoom.get().find(*site);
  return found == siteZoom.get().end() ? 1 : found->second;
}

}  // namespace orvel
