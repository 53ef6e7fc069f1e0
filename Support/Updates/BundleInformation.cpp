#include "Support/Updates/BundleInformation.h"

#include <fcntl.h>
#include <plist/plist.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

#include "Support/Updates/FileBytes.h"

namespace orvel {

namespace {

constexpr size_t kMaxBytes = 1u << 20;

std::optional<std::string> textAt(plist_t dictionary, const char* key) {
  const plist_t value = plist_dict_get_item(dictionary, key);
  if (!value || plist_get_node_type(value) != PLIST_STRING) return std::nullopt;
  char* raw = nullptr;
  plist_get_string_val(value, &raw);
  const std::unique_ptr<char, void (*)(void*)> text(raw, std::free);
  if (!text) return std::nullopt;
  return text.get();
}

}  // namespace

std::optional<BundleInformation> BundleInformation::read(const std::filesystem::path& app) {
  const FileDescriptor file = openRegularFile(AT_FDCWD, app / "Contents" / "Info.plist");
  const auto bytes = file ? readAll(file.get(), kMaxBytes) : std::nullopt;
  return bytes ? parse(*bytes) : std::nullopt;
}

std::optional<BundleInformation> BundleInformation::parse(std::string_view propertyList) {
  plist_t raw = nullptr;
  plist_from_memory(propertyList.data(), static_cast<uint32_t>(propertyList.size()), &raw);
  const std::unique_ptr<std::remove_pointer_t<plist_t>, void (*)(plist_t)> list(raw, plist_free);
  if (!list || plist_get_node_type(raw) != PLIST_DICT) return std::nullopt;
  return BundleInformation{textAt(raw, "CFBundleIdentifier"), textAt(raw, "CFBundleVersion"),
                           textAt(raw, "CFBundleShortVersionString")};
}

}  // namespace orvel
