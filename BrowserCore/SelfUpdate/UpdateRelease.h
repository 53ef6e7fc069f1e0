#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Addresses/URL.h"

namespace orvel {

// The record of the newest release, which the update feed holds as "version.json".
struct UpdateRelease {
  std::string version;                   // for people
  int64_t build = 0;                     // the one value that is compared
  URL url;                               // a page from which a person can download it
  std::optional<URL> archive;            // the zip archive of the application
  std::optional<std::string> signature;  // of the archive, 64 bytes in base64

  // The record in a JSON text, whose keys are the fields' names; unknown keys are passed over.
  // Absent when a required key is missing, or a value is of the wrong type or no address.
  [[nodiscard]] static std::optional<UpdateRelease> decode(std::string_view json);

  friend bool operator==(const UpdateRelease&, const UpdateRelease&) = default;
};

// The build number that a text stands for in decimal; absent for anything but a 64-bit integer.
[[nodiscard]] std::optional<int64_t> buildNumber(std::string_view text);

}  // namespace orvel
