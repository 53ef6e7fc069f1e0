#include "BrowserCore/Extensions/ExtensionGallery.h"

#include <span>
#include <vector>

#include "BrowserCore/Addresses/Endpoints.h"
#include "BrowserCore/Addresses/PercentCoding.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

using ExtensionGallery::Listing;
using Components = std::span<const std::string>;

bool isChromeID(std::string_view text) {
  constexpr size_t kLength = 32;
  return text.size() == kLength &&
         std::ranges::all_of(text, [](char c) { return c >= 'a' && c <= 'p'; });
}

std::optional<Listing> chromeListing(Components behindPrefix) {
  for (size_t i = behindPrefix.size(); i-- > 0;)
    if (isChromeID(behindPrefix[i])) return Listing{Listing::Store::chrome, behindPrefix[i]};
  return std::nullopt;
}

std::optional<Listing> firefoxListing(Components path) {
  const auto addon = std::ranges::find(path, "addon");
  if (addon == path.begin() || path.end() - addon < 2 || *(addon - 1) != "firefox")
    return std::nullopt;
  return Listing{Listing::Store::firefox, *(addon + 1)};
}

std::vector<std::string> pathComponents(const URL& url) {
  std::vector<std::string> components;
  for (const std::string_view piece : text::splitNonEmpty(url.path(), '/'))
    if (std::string component = percentDecoded(piece); component != "/")
      components.push_back(std::move(component));
  return components;
}

// The unsigned 32-bit little-endian integer at `offset`, which must lie within the data.
size_t integer(std::string_view data, size_t offset) {
  size_t value = 0;
  for (size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(data[offset + i]);
  return value;
}

// Where the zip archive of a CRX container begins, by its own account.
std::optional<size_t> containerHeaderSize(std::string_view data) {
  if (!data.starts_with("Cr24") || data.size() < 12) return std::nullopt;
  switch (integer(data, 4)) {
    case 2:
      if (data.size() < 16) return std::nullopt;
      return 16 + integer(data, 8) + integer(data, 12);
    case 3:
      return 12 + integer(data, 8);
    default:
      return std::nullopt;
  }
}

}  // namespace

std::string Listing::source() const {
  return (store == Store::chrome ? "chrome:" : "firefox:") + id;
}

std::optional<Listing> ExtensionGallery::listing(const std::optional<URL>& url) {
  if (!url || url->scheme() != "https") return std::nullopt;
  const std::string host = text::lower(url->decodedHost().value_or(""));
  const std::vector<std::string> components = pathComponents(*url);
  const Components path = components;
  if (host == endpoints::kFirefoxAddonsHost) return firefoxListing(path);
  if (host == endpoints::kChromeStoreHost && !path.empty() && path[0] == "detail")
    return chromeListing(path.subspan(1));
  if (host == endpoints::kFormerChromeStoreHost && path.size() > 1 && path[0] == "webstore" &&
      path[1] == "detail")
    return chromeListing(path.subspan(2));
  return std::nullopt;
}

std::optional<URL> ExtensionGallery::downloadURL(const Listing& listing) {
  switch (listing.store) {
    case Listing::Store::chrome:
      return URL::parse(std::string(endpoints::kChromeDownload)
                            .append("?response=redirect&prodversion=141.0&acceptformat=crx2,crx3"
                                    "&x=id%3D")
                            .append(listing.id)
                            .append("%26installsource%3Dondemand%26uc"));
    case Listing::Store::firefox:
      return URL::parse(
          std::string(endpoints::kFirefoxDownload)
              .append(percentEncoded(listing.id, kPathCharacters).value_or(listing.id))
              .append("/latest.xpi"));
  }
  return std::nullopt;
}

std::optional<std::string_view> ExtensionGallery::zipArchive(std::string_view data) {
  constexpr std::string_view kZipHeader = "PK\x03\x04";
  if (data.starts_with(kZipHeader)) return data;
  const auto header = containerHeaderSize(data);
  if (!header || data.size() <= *header) return std::nullopt;
  const std::string_view archive = data.substr(*header);
  if (!archive.starts_with(kZipHeader)) return std::nullopt;
  return archive;
}

}  // namespace orvel
