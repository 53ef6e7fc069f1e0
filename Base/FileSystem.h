#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "BrowserCore/Date.h"
#include "BrowserCore/Result.h"

namespace orvel {

// A file's bytes, or why they could not be read.
using FileContents = Result<std::string, std::error_code>;

// There is nothing to read: no failure.
[[nodiscard]] bool isMissing(const std::error_code& error);

// The steps that the program's file work is made of. One implementation is the disk; tests have one
// in memory that fails or dies at any step. Calls may come from any thread, and block.
//
// An empty error code means success.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // The file's bytes; a failure also when it is no regular file or larger than `limit`.
  virtual FileContents read(const std::filesystem::path& path,
                            uint64_t limit = kDefaultReadLimit) = 0;
  // The names of the folder's entries, in no particular order; empty when it cannot be read.
  virtual std::vector<std::string> list(const std::filesystem::path& folder) = 0;
  virtual bool exists(const std::filesystem::path& path) = 0;
  // When the contents of the regular file last changed; absent when there is none.
  virtual std::optional<Date> modificationDate(const std::filesystem::path& path) = 0;

  // The bytes that the user can still write there; absent when the disk does not tell.
  virtual std::optional<uint64_t> freeSpace(const std::filesystem::path& folder) = 0;

  // Creates or empties the file and writes `bytes` to it, readable by the user alone.
  virtual std::error_code write(const std::filesystem::path& path, std::string_view bytes) = 0;
  // Brings the file's contents to the disk.
  virtual std::error_code sync(const std::filesystem::path& path) = 0;
  // Replaces `to` by `from` in one step.
  virtual std::error_code rename(const std::filesystem::path& from,
                                 const std::filesystem::path& to) = 0;
  // Gives the file the name `to`, in the same folder; an error, and nothing done, when something
  // has that name.
  virtual std::error_code renameToNew(const std::filesystem::path& from,
                                      const std::filesystem::path& to) = 0;
  // Brings the folder's entries to the disk.
  virtual std::error_code syncFolder(const std::filesystem::path& folder) = 0;
  // Removing what does not exist succeeds.
  virtual std::error_code remove(const std::filesystem::path& path) = 0;
  // The folder with its missing parents, open to the user alone.
  virtual std::error_code createFolders(const std::filesystem::path& folder) = 0;

  // Writes a file of the user's, not the program's: where the path leads through links, with the
  // mode that it has or that new files get here, and with no other name used up in its folder.
  // Replaced as a whole where that can be done. The error is a sentence for the user.
  virtual Result<void, std::string> writeForUser(const std::filesystem::path& path,
                                                 std::string_view bytes) = 0;

  static constexpr uint64_t kDefaultReadLimit = 256u << 20;

  // The machine's own file system.
  static std::shared_ptr<FileSystem> disk();
};

// Replaces the file as a whole: temporary file beside it, sync, rename, sync of the folder. After a
// failure or a crash at any point the path holds either its former contents or `bytes`. Missing
// folders are created. Once renamed, the file counts as written: a folder that cannot be synced is
// logged.
std::error_code writeAtomically(FileSystem& files, const std::filesystem::path& path,
                                std::string_view bytes);

}  // namespace orvel
