#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Date.h"
#include "BrowserCore/Session/JSONDecoder.h"
#include "BrowserCore/Session/JSONEncoder.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// Pages decide how long their addresses get: this one, or its origin alone (without an authority
// its scheme) when it's longer than 2 MiB.
[[nodiscard]] URL boundedAddress(const URL& address);

// A tab as files keep it.
struct TabRecord {
  UUID id;
  std::string title;
  std::optional<URL> url;        // the page the tab was on
  std::optional<URL> pinnedURL;  // the address the tab returns to
  std::optional<Date> lastActiveAt;

  friend bool operator==(const TabRecord&, const TabRecord&) = default;
};

void encode(JSONCoding::Encoder& encoder, const TabRecord& tab);
[[nodiscard]] bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value, TabRecord& tab);

// A tab that left the sidebar. Its identity is `tab.id`.
struct ArchivedTabRecord {
  TabRecord tab;
  UUID spaceID;  // the space it left; may name none
  Date archivedAt;

  // The bytes of "archive.json": a bare list.
  [[nodiscard]] static std::string encoded(const std::vector<ArchivedTabRecord>& archive);
  // Absent when any part of any record can't be decoded.
  [[nodiscard]] static std::optional<std::vector<ArchivedTabRecord>> decode(std::string_view data);

  friend bool operator==(const ArchivedTabRecord&, const ArchivedTabRecord&) = default;
};

void encode(JSONCoding::Encoder& encoder, const ArchivedTabRecord& record);
[[nodiscard]] bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value,
                          ArchivedTabRecord& record);

}  // namespace orvel
