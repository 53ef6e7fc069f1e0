#include "Support/Stores/FaviconStore.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace orvel {

ImageRef FaviconStore::cachedImage(std::string_view host) {
  if (const auto known = knownImage(host)) return *known;
  ImageRef image = read(files_, file(host));
  remember(std::string(host), image);
  return image;
}

std::optional<ImageRef> FaviconStore::knownImage(std::string_view host) const {
  const std::string key(host);
  if (const auto known = memory_.find(key); known != memory_.end()) return known->second;
  return misses_.contains(key) ? std::optional<ImageRef>(nullptr) : std::nullopt;
}

Task<ImageRef> FaviconStore::image(std::string host) {
  if (auto known = knownImage(host)) co_return std::move(*known);
  auto reading =
      background(scheduler_, [&files = files_, path = file(host)] { return read(files, path); });
  ImageRef image = co_await std::move(reading);
  remember(host, image);
  co_return image;
}

Task<ImageRef> FaviconStore::fetch(URL url, std::string host, Memory memory) {
  constexpr Duration kTimeout = 30s;
  if (!session_) session_ = makeSession_();
  auto fetching = orvel::fetch(*session_, url, {.timeout = kTimeout, .mostBytes = kMaxFile});
  HTTPResult answer = co_await std::move(fetching);
  if (!answer || !answer->isOK()) co_return nullptr;
  const bool isRemembered = memory == Memory::Remembers;
  auto decoding = background(scheduler_,
                             [&files = files_, bytes = std::move(answer->body), path = file(host),
                              isRemembered]() -> ImageRef {
                               ImageRef image = Image::decodeIcon(bytes, kSide);
                               // An icon that cannot be kept is fetched again.
                               if (image && isRemembered) writeAtomically(files, path, bytes);
                               return image;
                             });
  ImageRef image = co_await std::move(decoding);
  if (image && isRemembered) remember(host, image);
  co_return image;
}

ImageRef FaviconStore::read(FileSystem& files, const std::filesystem::path& file) {
  const auto bytes = files.read(file, kMaxFile);
  return bytes ? Image::decodeIcon(*bytes, kSide) : nullptr;
}

void FaviconStore::remember(const std::string& host, const ImageRef& image) {
  if (!image) {
    misses_.insert(host);
    return;
  }
  misses_.erase(host);
  memory_.insert_or_assign(host, image);
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
