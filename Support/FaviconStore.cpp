#include "Support/FaviconStore.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace orvel {

ImageRef FaviconStore::cachedImage(std::string_view host) {
  const std::string key(host);
  if (const auto known = memory_.find(key); known != memory_.end()) return known->second;
  if (misses_.contains(key)) return nullptr;
  const auto bytes = files_.read(file(host), kLargestFile);
  ImageRef image = bytes ? Image::decode(*bytes) : nullptr;
  if (image)
    memory_.emplace(key, image);
  else
    misses_.insert(key);
  return image;
}

std::filesystem::path FaviconStore::file(std::string_view host) const {
  std::string name;
  const auto length = static_cast<int32_t>(host.size());
  for (int32_t end = 0, begin = 0; end < length; begin = end) {
    UChar32 character = 0;
    U8_NEXT(host.data(), end, length, character);
    const bool isKept =
        character >= 0 && (u_isalnum(character) || character == '.' || character == '-');
    if (isKept) name += host.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin));
  }
  return directory_ / name;
}

}  // namespace orvel
