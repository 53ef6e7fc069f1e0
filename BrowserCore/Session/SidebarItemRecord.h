#pragma once

#include <string>
#include <variant>
#include <vector>

#include "BrowserCore/Session/TabRecord.h"

namespace orvel {

struct FolderRecord;

// One entry of a space's pinned list.
using SidebarItemRecord = std::variant<TabRecord, FolderRecord>;

// A folder and what it holds. Folders nest to any depth in memory: copying, comparing, writing and
// destroying them costs no stack.
struct FolderRecord {
  // Deeper folders can't be read back from a file.
  static constexpr size_t kMaxLevels = 20'000;

  FolderRecord() = default;
  FolderRecord(UUID id, std::string name, bool isExpanded);
  FolderRecord(const FolderRecord& other);
  FolderRecord(FolderRecord&&) noexcept = default;
  FolderRecord& operator=(const FolderRecord& other);
  FolderRecord& operator=(FolderRecord&&) noexcept = default;
  ~FolderRecord();

  UUID id;
  std::string name;
  bool isExpanded = false;
  std::vector<SidebarItemRecord> children;

  friend bool operator==(const FolderRecord& a, const FolderRecord& b);
};

void encode(JSONCoding::Encoder& encoder, const std::vector<SidebarItemRecord>& items);

// An item is an object with the key "tab" or, without that key, "folder".
[[nodiscard]] bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value,
                          std::vector<SidebarItemRecord>& items);

}  // namespace orvel
