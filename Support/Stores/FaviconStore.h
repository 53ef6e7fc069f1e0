#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Base/FileSystem.h"
#include "Base/Image.h"
#include "Base/Scheduler.h"
#include "Support/Network/HTTPSession.h"

namespace orvel {

// The icons of sites by host, in memory and in a folder. Its tasks must not outlive it.
class FaviconStore {
 public:
  // Larger files are taken for no icon.
  static constexpr uint64_t kMaxFile = 1 << 20;
  // An icon is kept in memory no larger, in pixels: enough for its largest place at twice the size.
  static constexpr int kSide = 128;

  FaviconStore(Scheduler& scheduler, FileSystem& files, MakeHTTPSession makeSession,
               std::filesystem::path directory)
      : scheduler_(scheduler),
        files_(files),
        makeSession_(std::move(makeSession)),
        directory_(std::move(directory)) {}

  // The icon that is known for the host; null without one. The first question about a host may read
  // its file, later ones ask no disk.
  ImageRef cachedImage(std::string_view host);
  // The same without asking the disk: null for a host known to have none, absent for one that
  // nothing is known of.
  std::optional<ImageRef> knownImage(std::string_view host) const;
  // The same as `cachedImage`, with the file read on a worker.
  Task<ImageRef> image(std::string host);

  enum class Memory { Remembers, Forgets };
  // Fetches an icon without cookies. Null unless the server sends, with the status 200, a picture
  // of at most `kMaxFile` bytes over http or https. `Remembers` keeps it for the host, on the disk
  // too; `Forgets` leaves no trace.
  Task<ImageRef> fetch(URL url, std::string host, Memory memory);

  // Where the host's icon lies: named by the host's letters, numbers, "." and "-", without an
  // extension.
  std::filesystem::path file(std::string_view host) const;

 private:
  static ImageRef read(FileSystem& files, const std::filesystem::path& file);
  void remember(const std::string& host, const ImageRef& image);

  Scheduler& scheduler_;
  FileSystem& files_;
  MakeHTTPSession makeSession_;
  // Made for the first fetch.
  std::unique_ptr<HTTPSession> session_;
  const std::filesystem::path directory_;
  std::unordered_map<std::string, ImageRef> memory_;
  // Hosts that are known to have no file.
  std::unordered_set<std::string> misses_;
};

}  // namespace orvel
