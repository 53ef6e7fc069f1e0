#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Base/Scheduler.h"
#include "BrowserCore/Result.h"

namespace orvel {

// A folder for one run of the compiler, below the store's so that files can be moved over at once.
// Goes with this object.
class CompilerFolder {
 public:
  // Absent when it cannot be made.
  static std::optional<CompilerFolder> make(const std::filesystem::path& store);
  // Removes what runs that were interrupted left behind.
  static void clear(const std::filesystem::path& store);

  CompilerFolder(CompilerFolder&& other) noexcept;
  CompilerFolder& operator=(CompilerFolder&&) = delete;
  ~CompilerFolder();

  const std::filesystem::path& path() const { return path_; }

 private:
  explicit CompilerFolder(std::filesystem::path path) : path_(std::move(path)) {}
  std::filesystem::path path_;
};

// Rules on their way to the compiler: in memory, under a descriptor that it inherits.
class CompilerInput {
 public:
  static std::optional<CompilerInput> make(const std::string& json);

  CompilerInput(CompilerInput&& other) noexcept;
  CompilerInput& operator=(CompilerInput&&) = delete;
  ~CompilerInput();

  // Gives the descriptor away.
  int release();

 private:
  explicit CompilerInput(int descriptor) : descriptor_(descriptor) {}
  int descriptor_;
};

// Runs the compiler's program on `input` with `folder` as its store and for its temporary files.
// A run that takes minutes is ended.
Task<Result<void, std::string>> runCompiler(std::filesystem::path program,
                                            std::filesystem::path folder, std::string identifier,
                                            CompilerInput input);

}  // namespace orvel
