#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Support/Updates/ZipDirectory.h"

namespace orvel {

// What an archive would become on the disk, every rule of `unpackZip` on names and links kept.
class ArchiveTree {
 public:
  struct Item {
    std::string path;
    uint32_t mode;                    // a type and permission bits
    const ZipEntry* entry = nullptr;  // null: a folder that other entries stand in
    std::string target;               // of a link
  };

  // Absent when a rule is broken. The entries outlive the tree.
  [[nodiscard]] static std::optional<ArchiveTree> make(int archive,
                                                       const std::vector<ZipEntry>& entries);

  // By path: a folder comes before what is in it.
  const std::map<std::string, Item>& items() const { return items_; }

 private:
  bool add(int archive, const ZipEntry& entry);
  bool addFoldersOf(const std::string& path);
  bool insert(Item item);
  bool staysInside(const Item& link) const;

  std::map<std::string, Item> items_;
  // The one path of each group that differs by the case of letters only.
  std::map<std::string, std::string> folded_;
  size_t pathBytes_ = 0;  // of all items, folders that have no entry included
};

}  // namespace orvel
