// What an extension store sent.

#include "BrowserCore/Extensions/ExtensionGallery.h"
#include "Fuzzers/Fuzz.h"

void fuzz(std::string_view input) {
  const auto archive = orvel::ExtensionGallery::zipArchive(input);
  if (archive) require(archive->starts_with("PK\x03\x04") && input.ends_with(*archive));
}
