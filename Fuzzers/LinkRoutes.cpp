// Two lines: a pattern and an address. Also what else looks at a link: tracking parameters, pins,
// store listings and completion.

#include <cstdlib>

#include "BrowserCore/ExtensionGallery.h"
#include "BrowserCore/InlineCompletion.h"
#include "BrowserCore/LinkRoute.h"
#include "BrowserCore/PinnedAddress.h"
#include "BrowserCore/Text.h"
#include "BrowserCore/TrackingParameters.h"

using namespace orvel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto [pattern, address] = text::splitOnce(input, '\n');
  const auto url = URL::parse(address);
  if (!url) return 0;

  if (LinkRoute{.pattern = std::string(pattern)}.matches(*url) && !url->host()) std::abort();

  if (const auto stripped = TrackingParameters::stripped(*url)) {
    if (stripped->text().size() >= address.size()) std::abort();
    if (TrackingParameters::stripped(*stripped)) std::abort();
    (void)hasWanderedFromPin(url, stripped);
  }
  if (const auto listing = ExtensionGallery::listing(url))
    (void)ExtensionGallery::downloadURL(*listing);

  const URL urls[] = {*url};
  if (const auto text = InlineCompletion::complete(pattern, urls))
    if (!text->starts_with(pattern) || text->size() <= pattern.size()) std::abort();
  return 0;
}
