#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include "Base/FileSystem.h"

namespace orvel::test {

// A disk in memory that fails and dies on command. It keeps two pictures of itself: what programs
// see, and what would still be there after the power went out.
class MemoryFileSystem final : public FileSystem {
 public:
  enum class Fault {
    None,
    DiskFull,     // half of the bytes, then ENOSPC
    InputOutput,  // nothing, then EIO
    Killed,       // half of the bytes of a write, and no step ever again
  };

  FileContents read(const std::filesystem::path& path, uint64_t limit) override;
  std::vector<std::string> list(const std::filesystem::path& folder) override;
  bool exists(const std::filesystem::path& path) override;
  std::optional<Date> modificationDate(const std::filesystem::path& path) override;
  std::optional<uint64_t> freeSpace(const std::filesystem::path&) override { return free; }
  std::error_code write(const std::filesystem::path& path, std::string_view bytes) override;
  std::error_code sync(const std::filesystem::path& path) override;
  std::error_code rename(const std::filesystem::path& from,
                         const std::filesystem::path& to) override;
  std::error_code renameToNew(const std::filesystem::path& from,
                              const std::filesystem::path& to) override;
  std::error_code syncFolder(const std::filesystem::path& folder) override;
  std::error_code remove(const std::filesystem::path& path) override;
  std::error_code createFolders(const std::filesystem::path& folder) override;
  Result<void, std::string> writeForUser(const std::filesystem::path& path,
                                         std::string_view bytes) override;

  // Makes the step with this number fail, counting the changing steps from 0 now on.
  void failAtStep(int step, Fault fault);
  // Makes every changing step fail until further notice; `None` mends the disk.
  void failAlways(Fault fault);
  int stepCount() const { return steps_; }

  // The machine starts again after its program was killed: everything written is there.
  void restartAfterKill();
  // The machine starts again after a power cut: only what was synced is there.
  void restartAfterPowerCut();

  // Runs before each changing step, on its thread: what takes the step's time. Set it while nothing
  // is under way.
  std::function<void()> beforeStep;
  // Files that cannot be read, and why.
  std::map<std::string, std::errc> unreadable;
  // The bytes that fit on it yet.
  std::optional<uint64_t> free;
  // When files last changed; the date of any other file cannot be read.
  std::map<std::string, Date> dates;
  // Puts a file in place without counting a step.
  void put(const std::filesystem::path& path, std::string bytes);
  std::map<std::string, std::string> contents() const;

 private:
  Fault nextStep();
  std::error_code fail(Fault fault) const;
  // One step, which applies the change unless it fails.
  std::error_code change(const std::function<void()>& apply);
  void addFolders(const std::filesystem::path& folder);

  mutable std::recursive_mutex mutex_;
  std::map<std::string, std::string> seen_;
  // Synced contents by the name they have now, and the names that the disk knows.
  std::map<std::string, std::string> synced_;
  std::map<std::string, std::string> durable_;
  std::set<std::string> folders_ = {"/"};
  int steps_ = 0;
  int faultyStep_ = -1;
  Fault fault_ = Fault::None;
  bool isDead_ = false;
};

}  // namespace orvel::test
