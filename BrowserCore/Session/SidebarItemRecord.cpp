#include "BrowserCore/Session/SidebarItemRecord.h"

#include <algorithm>

namespace orvel {

FolderRecord::FolderRecord(UUID folderID, std::string folderName, bool expanded)
    : id(folderID), name(std::move(folderName)), isExpanded(expanded) {}

FolderRecord::FolderRecord(const FolderRecord& other)
    : FolderRecord(other.id, other.name, other.isExpanded) {
  std::vector<std::pair<const FolderRecord*, FolderRecord*>> pending{{&other, this}};
  while (!pending.empty()) {
    const auto [from, to] = pending.back();
    pending.pop_back();
    to->children.reserve(from->children.size());
    for (const SidebarItemRecord& item : from->children) {
      if (const auto* folder = std::get_if<FolderRecord>(&item)) {
        to->children.emplace_back(FolderRecord(folder->id, folder->name, folder->isExpanded));
        pending.emplace_back(folder, &std::get<FolderRecord>(to->children.back()));
      } else {
        to->children.push_back(item);
      }
    }
  }
}

FolderRecord& FolderRecord::operator=(const FolderRecord& other) {
  return *this = FolderRecord(other);
}

FolderRecord::~FolderRecord() {
  std::vector<std::vector<SidebarItemRecord>> pending;
  const auto detach = [&pending](FolderRecord& folder) {
    if (!folder.children.empty()) pending.push_back(std::move(folder.children));
  };
  detach(*this);
  while (!pending.empty()) {
    std::vector<SidebarItemRecord> items = std::move(pending.back());
    pending.pop_back();
    for (SidebarItemRecord& item : items)
      if (auto* folder = std::get_if<FolderRecord>(&item)) detach(*folder);
  }
}

bool operator==(const FolderRecord& first, const FolderRecord& second) {
  std::vector<std::pair<const FolderRecord*, const FolderRecord*>> pending{{&first, &second}};
  const auto isEqualApartFromFolders = [&pending](const SidebarItemRecord& a,
                                                  const SidebarItemRecord& b) {
    const auto* folder = std::get_if<FolderRecord>(&a);
    const auto* other = std::get_if<FolderRecord>(&b);
    if (!folder || !other) return a == b;
    pending.emplace_back(folder, other);
    return true;
  };
  while (!pending.empty()) {
    const auto [a, b] = pending.back();
    pending.pop_back();
    if (a->id != b->id || a->name != b->name || a->isExpanded != b->isExpanded) return false;
    if (!std::equal(a->children.begin(), a->children.end(), b->children.begin(), b->children.end(),
                    isEqualApartFromFolders))
      return false;
  }
  return true;
}

void encode(JSONCoding::Encoder& encoder, const std::vector<SidebarItemRecord>& items) {
  // The lists that are being written, outermost first; every list but the first is a folder's.
  struct Level {
    const FolderRecord* folder;
    const std::vector<SidebarItemRecord>* items;
    size_t next = 0;
  };
  std::vector<Level> levels{{nullptr, &items}};
  encoder.beginList();
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.items->size()) {
      encoder.endList();
      if (const FolderRecord* folder = level.folder) {
        encoder.field("id", folder->id);
        encoder.field("isExpanded", folder->isExpanded);
        encoder.field("name", folder->name);
        encoder.endObject();
        encoder.endObject();
      }
      levels.pop_back();
      continue;
    }
    const SidebarItemRecord& item = (*level.items)[level.next++];
    encoder.beginObject();
    if (const auto* tab = std::get_if<TabRecord>(&item)) {
      encoder.field("tab", *tab);
      encoder.endObject();
      continue;
    }
    const auto& folder = std::get<FolderRecord>(item);
    encoder.key("folder");
    encoder.beginObject();
    encoder.key("children");
    encoder.beginList();
    levels.push_back({&folder, &folder.children});
  }
}

bool decode(JSONCoding::Decoder& decoder, JSONCoding::Value value,
            std::vector<SidebarItemRecord>& items) {
  struct Level {
    JSONCoding::Value list;
    std::vector<SidebarItemRecord>* items;
    size_t depth;
  };
  std::vector<Level> pending{{value, &items, 0}};
  while (!pending.empty()) {
    const Level level = pending.back();
    pending.pop_back();
    if (!level.list.isList()) return decoder.fail(level.list, "a list");
    level.items->clear();
    // Folders below are filled later, through pointers: this list must not move again.
    level.items->reserve(static_cast<size_t>(std::distance(level.list.begin(), level.list.end())));
    for (const JSONCoding::Value item : level.list) {
      if (item.member("tab")) {
        if (!decoder.field(item, "tab", std::get<TabRecord>(level.items->emplace_back())))
          return false;
        continue;
      }
      const auto source = item.member("folder");
      if (!source) return decoder.failMissing(item, "tab or folder");
      if (level.depth == FolderRecord::kMaxLevels)
        return decoder.fail(*source, "within the deepest level of folders");
      auto& folder = std::get<FolderRecord>(level.items->emplace_back(FolderRecord()));
      if (!decoder.field(*source, "id", folder.id) ||
          !decoder.field(*source, "name", folder.name) ||
          !decoder.field(*source, "isExpanded", folder.isExpanded))
        return false;
      const auto children = source->member("children");
      if (!children) return decoder.failMissing(*source, "children");
      pending.push_back({*children, &folder.children, level.depth + 1});
    }
  }
  return true;
}

}  // namespace orvel
