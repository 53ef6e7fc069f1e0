#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Base/FileSystem.h"
#include "Base/Image.h"
#include "Base/Scheduler.h"

namespace orvel {

// The icons of sites by host, in memory and in a folder.
class FaviconStore {
 public:
  // Larger files, and pictures with a longer side in pixels, are taken for no icon.
  static constexpr uint64_t kMaxFile = 1 << 20;
  static constexpr int kMaxSide = 1024;

  FaviconStore(FileSystem& files, std::filesystem::path directory)
      : files_(files), directory_(std::move(directory)) {}

  // The icon that is known for the host; null without one. The first question about a host may read
  // its file, later ones ask no disk.
  ImageRef cachedImage(std::string_view host);
  // The same without asking the disk: null for a host known to have none, absent for one that
  // nothing is known of.
  std::optional<ImageRef> knownImage(std::string_view host) const;
  // The same as `cachedImage`, with the file read on a worker. The store outlives the task.
  Task<ImageRef> image(Scheduler& scheduler, std::string host);

  // Where the host's icon lies: named by the host's letters, numbers, "." and "-", without an
  // extension.
  std::filesystem::path file(std::string_view host) const;

 private:
  static ImageRef read(FileSystem& files, const std::filesystem::path& file);
  void remember(const std::string& host, const ImageRef& image);

  FileSystem& files_;
  const std::filesystem::path directory_;
  std::unordered_map<std::string, ImageRef> memory_;
  // Hosts that are known to have no file.
  std::unordered_set<std::string> misses_;
};

}  // namespace orvel
