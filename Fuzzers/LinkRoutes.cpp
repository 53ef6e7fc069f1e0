// Two lines: a pattern and an address. Also what else looks at a link: tracking parameters, pins,
// store listings and completion.

#include "BrowserCore/Addresses/InlineCompletion.h"
#include "BrowserCore/Addresses/LinkRoute.h"
#include "BrowserCore/Addresses/PinnedAddress.h"
#include "BrowserCore/Addresses/TrackingParameters.h"
#include "BrowserCore/Extensions/ExtensionGallery.h"
#include "BrowserCore/Text/Text.h"
#include "Fuzzers/Fuzz.h"

using namespace orvel;

void fuzz(std::string_view input) {
  const auto [pattern, address] = text::splitOnce(input, '\n');
  const auto url = URL::parse(address);
  if (!url) return;

  if (LinkRoute{.pattern = std::string(pattern)}.matches(*url)) require(url->host().has_value());

  if (const auto stripped = TrackingParameters::stripped(*url)) {
    require(stripped->text().size() < address.size());
    require(!TrackingParameters::stripped(*stripped));
    (void)hasWanderedFromPin(url, stripped);
  }
  if (const auto listing = ExtensionGallery::listing(url))
    (void)ExtensionGallery::downloadURL(*listing);

  const URL urls[] = {*url};
  if (const auto text = InlineCompletion::complete(pattern, urls))
    require(text->starts_with(pattern) && text->size() > pattern.size());
}
