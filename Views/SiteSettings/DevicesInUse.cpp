#include "Views/SiteSettings/DevicesInUse.h"

#include "Base/Texts.h"

namespace orvel {

std::string filledSymbol(const std::set<PageDevice>& devices) {
  return devices.empty() ? std::string() : std::string(keyOf(*devices.begin())) + ".fill";
}

std::string textOfUse(const std::set<PageDevice>& devices) {
  using enum PageDevice;
  if (devices.contains(Camera) && devices.contains(Microphone))
    return _("Camera and microphone in use");
  if (devices.contains(Camera)) return _("Camera in use");
  return devices.contains(Microphone) ? _("Microphone in use") : _("Location in use");
}

}  // namespace orvel
