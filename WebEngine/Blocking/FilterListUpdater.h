#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Base/FileWriter.h"
#include "Base/Scheduler.h"
#include "BrowserCore/Addresses/URL.h"
#include "Support/Network/HTTPSession.h"
#include "Support/Stores/UserDefaults.h"

namespace orvel {

// Where the texts of filter lists lie. A value that may be copied to any thread.
struct FilterListFolders {
  std::shared_ptr<FileSystem> files;
  // Of the downloaded copies.
  std::filesystem::path downloads;
  // Of the copies that ship with the application.
  std::filesystem::path shipped;

  // The newer of the list's two copies; the downloaded one where both are of the same date. A copy
  // whose date cannot be read counts as older than any. Absent when there is none, and when the
  // chosen one is no UTF-8. Blocks.
  [[nodiscard]] std::optional<std::string> text(std::string_view name) const;

  std::filesystem::path download(std::string_view name) const;
};

// Keeps the downloaded copies of the public filter lists fresh.
class FilterListUpdater {
 public:
  struct Source {
    std::string name;
    URL url;
  };
  // The public lists: "easylist", "easyprivacy" and "cookies".
  static std::vector<Source> publicSources();

  // Bodies of this many bytes or less are no filter list, and larger ones than `kMaxBytes` are
  // not read.
  static constexpr size_t kTooShort = 10000;
  static constexpr uint64_t kMaxBytes = 64u << 20;
  static constexpr double kSecondsBetween = 86400;

  FilterListUpdater(Scheduler& scheduler, FileWriter& writer, UserDefaults& defaults,
                    MakeHTTPSession makeSession, FilterListFolders folders,
                    std::vector<Source> sources = publicSources());

  // Fetches every list, one after the other, unless less than a day has gone since that was last
  // tried. A list that fails keeps its former copy. Returns whether a list was replaced. The
  // updater must outlive the task unless it is cancelled.
  Task<bool> updateIfDue();

  const FilterListFolders& folders() const { return folders_; }

 private:
  Task<bool> update(HTTPSession& session, Source source);

  Scheduler& scheduler_;
  FileWriter& writer_;
  UserDefaults& defaults_;
  MakeHTTPSession makeSession_;
  FilterListFolders folders_;
  std::vector<Source> sources_;
};

}  // namespace orvel
