#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Addresses/URL.h"

// The public stores of web extensions: which page lists which extension, and what they send.
namespace orvel::ExtensionGallery {

// An extension's place in a store.
struct Listing {
  enum class Store { chrome, firefox };

  Store store;
  std::string id;  // Chrome's 32 letters, or Firefox's slug.

  // The text by which an installed extension remembers its listing: "chrome:" or "firefox:" and the
  // id.
  [[nodiscard]] std::string source() const;

  friend bool operator==(const Listing&, const Listing&) = default;
};

// The listing that a store's page shows; absent for every other page and without an address.
[[nodiscard]] std::optional<Listing> listing(const std::optional<URL>& url);

// Where the extension's archive is fetched. Absent when the listing's id holds what no address can.
[[nodiscard]] std::optional<URL> downloadURL(const Listing& listing);

// The plain zip archive within what a store sent: the data itself, or the archive inside a CRX
// container of version 2 or 3. It lies within `data`; signatures are not checked. Absent when the
// data is no extension.
[[nodiscard]] std::optional<std::string_view> zipArchive(std::string_view data);

}  // namespace orvel::ExtensionGallery
