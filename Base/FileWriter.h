#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "Base/FileSystem.h"
#include "Base/Scheduler.h"

namespace orvel {

enum class Written {
  Done,
  Overtaken,  // a newer request for the same path took its place before it began
};
// After a failure the path holds what it held before.
using WriteResult = Result<Written, std::error_code>;

// Every file of the program is written here: atomically (see `writeAtomically`), on a worker of its
// own, in the order of asking. While a request waits, a newer one for the same path takes its
// place: however often a file is asked for, it is not put off and holds nobody up.
class FileWriter {
 public:
  // Called on the main thread, on a later turn.
  using Completion = std::function<void(const WriteResult&)>;
  using MakeBytes = std::function<std::string()>;

  FileWriter(Scheduler& scheduler, std::shared_ptr<FileSystem> files);
  // Drops what has not begun.
  ~FileWriter();

  void write(std::filesystem::path path, std::string bytes, Completion completion = {});
  // `makeBytes` runs on the worker, once, and not at all when the request is overtaken.
  void write(std::filesystem::path path, MakeBytes makeBytes, Completion completion = {});
  void remove(std::filesystem::path path, Completion completion = {});

  // What is to become of one file. `carryOut` runs on the worker, once.
  struct Request {
    std::filesystem::path path;
    std::function<std::error_code(FileSystem&)> carryOut;
    Completion completion;
  };
  [[nodiscard]] static Request writing(std::filesystem::path path, MakeBytes makeBytes,
                                       Completion completion = {});
  // Files that belong together: nothing comes between them, and where one fails, those behind it
  // fail with it, untouched. Files that are asked for together are so in one order only, unless the
  // newer request is for all of them.
  void carryOut(std::vector<Request> together);

  // Blocks until every request has been carried out, the one for `first` before the others, or
  // until `deadline` has passed, and for no longer than the request that is under way then; answers
  // whether all of them were. Completions that came due run before it returns.
  bool drain(Duration deadline, const std::filesystem::path& first = {});

  // Where reading goes directly.
  FileSystem& files() const;

 private:
  struct State;

  Scheduler& scheduler_;
  std::shared_ptr<State> state_;
};

}  // namespace orvel
