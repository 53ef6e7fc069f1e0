#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <system_error>

#include "Base/FileSystem.h"
#include "Base/Scheduler.h"

namespace orvel {

struct WriteResult {
  enum class Outcome {
    Done,
    Overtaken,  // a newer request for the same path took its place before it began
    Failed,     // `error` says why; the path holds what it held before
  };
  Outcome outcome = Outcome::Done;
  std::error_code error;
};

// Every file of the program is written here: atomically (see `writeAtomically`), on a worker, in
// the order of the requests for each path. While a request is under way, only the newest of those
// that follow for the same path is kept.
class FileWriter {
 public:
  // Called on the main thread, on a later turn.
  using Completion = std::function<void(const WriteResult&)>;

  FileWriter(Scheduler& scheduler, std::shared_ptr<FileSystem> files);
  // Drops what has not begun.
  ~FileWriter();

  using MakeBytes = std::function<std::string()>;

  void write(std::filesystem::path path, std::string bytes, Completion completion = {});
  // `makeBytes` runs on the worker, once, and not at all when the request is overtaken.
  void write(std::filesystem::path path, MakeBytes makeBytes, Completion completion = {});
  void remove(std::filesystem::path path, Completion completion = {});

  // Blocks until every request has been carried out, or until `deadline` has passed, and for no
  // longer than the request that is under way then; answers whether all of them were. Completions
  // that came due run before it returns.
  bool drain(Duration deadline);

  // Where reading goes directly.
  FileSystem& files() const;

 private:
  struct State;

  // Empty `makeBytes`: removes the file.
  void request(std::filesystem::path path, MakeBytes makeBytes, Completion completion);

  Scheduler& scheduler_;
  std::shared_ptr<State> state_;
};

}  // namespace orvel
