#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// What "Contents/Info.plist" says of an application bundle; absent where it has no such text.
struct BundleInformation {
  std::optional<std::string> identifier;  // "CFBundleIdentifier"
  std::optional<std::string> build;       // "CFBundleVersion"
  std::optional<std::string> version;     // "CFBundleShortVersionString"

  // Absent when the file cannot be read, is larger than 1 MiB or holds no property list.
  [[nodiscard]] static std::optional<BundleInformation> read(const std::filesystem::path& app);
  // Of a property list in XML or binary; absent for anything else, and when it is no dictionary.
  [[nodiscard]] static std::optional<BundleInformation> parse(std::string_view propertyList);
};

}  // namespace orvel
