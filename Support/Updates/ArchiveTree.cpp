#include "Support/Updates/ArchiveTree.h"

#include <limits.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "BrowserCore/Text/Text.h"
#include "Support/Updates/LinkTarget.h"
#include "Support/Updates/ZipContents.h"

namespace orvel {

namespace {

constexpr uint64_t kMaxBytes = 2ull << 30;
constexpr size_t kMaxPathBytes = 64u << 20;

bool isAcceptable(std::string_view path) {
  if (path.size() >= PATH_MAX || path.find('\\') != path.npos || path.find('\0') != path.npos)
    return false;
  for (size_t begin = 0; begin <= path.size();) {
    const size_t end = std::min(path.find('/', begin), path.size());
    const auto piece = path.substr(begin, end - begin);
    if (piece.empty() || piece == "." || piece == "..") return false;
    begin = end + 1;
  }
  return true;
}

}  // namespace

std::optional<ArchiveTree> ArchiveTree::make(int archive, const std::vector<ZipEntry>& entries) {
  uint64_t left = kMaxBytes;
  for (const ZipEntry& entry : entries) {
    if (entry.size > left || entry.isEncrypted) return std::nullopt;
    left -= entry.size;
  }
  ArchiveTree tree;
  for (const ZipEntry& entry : entries)
    if (!tree.add(archive, entry)) return std::nullopt;
  for (const auto& [path, item] : tree.items_)
    if (S_ISLNK(item.mode) && !tree.staysInside(item)) return std::nullopt;
  return tree;
}

bool ArchiveTree::add(int archive, const ZipEntry& entry) {
  Item item{entry.name, entry.mode, &entry, {}};
  if (S_ISDIR(entry.mode)) {
    if (item.path.ends_with('/')) item.path.pop_back();
    if (entry.size > 0) return false;
  } else if (S_ISLNK(entry.mode)) {
    if (entry.size == 0 || entry.size >= PATH_MAX) return false;
    const bool isRead = readZipContents(archive, entry, [&](std::string_view bytes) {
      item.target += bytes;
      return true;
    });
    if (!isRead || item.target.find('\0') != std::string::npos) return false;
  } else if (!S_ISREG(entry.mode)) {
    return false;
  }
  return isAcceptable(item.path) && addFoldersOf(item.path) && insert(std::move(item));
}

bool ArchiveTree::addFoldersOf(const std::string& path) {
  for (size_t slash = path.rfind('/'); slash != std::string::npos;
       slash = path.rfind('/', slash - 1)) {
    Item folder{path.substr(0, slash), S_IFDIR | 0755, nullptr, {}};
    // Where it stands already those above it do, too.
    if (const auto there = items_.find(folder.path); there != items_.end())
      return S_ISDIR(there->second.mode);
    if (!insert(std::move(folder))) return false;
  }
  return true;
}

bool ArchiveTree::insert(Item item) {
  const auto [same, isNew] = folded_.emplace(text::caseFolded(item.path), item.path);
  if (isNew) {
    pathBytes_ += item.path.size();
    if (pathBytes_ > kMaxPathBytes) return false;
    std::string path = item.path;
    items_.emplace(std::move(path), std::move(item));
    return true;
  }
  // The entry of a folder may come behind those of what is in it.
  if (same->second != item.path || !S_ISDIR(item.mode)) return false;
  Item& there = items_.at(item.path);
  if (there.entry) return false;
  there = std::move(item);
  return true;
}

bool ArchiveTree::staysInside(const Item& link) const {
  const size_t slash = link.path.find('/');
  if (slash == std::string::npos) return false;
  const std::string top = link.path.substr(0, slash + 1);
  return !leadsOut(std::string_view(link.path).substr(top.size()), link.target,
                   [&](const std::string& path) -> std::optional<std::string> {
                     const auto item = items_.find(top + path);
                     if (item == items_.end() || !S_ISLNK(item->second.mode)) return std::nullopt;
                     return item->second.target;
                   });
}

}  // namespace orvel
