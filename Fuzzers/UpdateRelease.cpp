// The record of an update feed, and a bundle's information.

#include "BrowserCore/SelfUpdate/UpdateRelease.h"

#include "Fuzzers/Fuzz.h"
#include "Support/Updates/BundleInformation.h"

void fuzz(std::string_view input) {
  if (const auto release = orvel::UpdateRelease::decode(input))
    require(orvel::URL::parse(release->url.text()) == release->url);
  if (const auto information = orvel::BundleInformation::parse(input);
      information && information->build)
    (void)orvel::buildNumber(*information->build);
}
