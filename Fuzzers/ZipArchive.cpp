// What an extension store sent.

#include <cstdlib>

#include "BrowserCore/ExtensionGallery.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view sent(reinterpret_cast<const char*>(data), size);
  const auto archive = orvel::ExtensionGallery::zipArchive(sent);
  if (archive && (!archive->starts_with("PK\x03\x04") || !sent.ends_with(*archive))) std::abort();
  return 0;
}
