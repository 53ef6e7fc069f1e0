#include "Base/KeptFile.h"

#include <atomic>
#include <utility>

#include "Base/Log.h"

namespace orvel {

struct KeptFile::Keeping {
  std::filesystem::path name;
  std::function<std::error_code(FileSystem&)> carryOut;
  std::atomic<bool> isDone = false;

  static FileWriter::Request request(const std::shared_ptr<Keeping>& keeping) {
    // Once only: later the file is another one.
    auto once = [keeping](FileSystem& files) {
      if (keeping->isDone) return std::error_code();
      const std::error_code error = keeping->carryOut(files);
      if (!error) keeping->isDone = true;
      return error;
    };
    auto tell = [name = keeping->name.filename().string()](const WriteResult& result) {
      if (!result) Log::app.error("Couldn't keep {}: {}", name, result.error().message());
    };
    return {keeping->name, std::move(once), std::move(tell)};
  }
};

KeptFile::KeptFile(FileWriter& writer, std::filesystem::path file)
    : writer_(writer), file_(std::move(file)) {}

void KeptFile::keepCopy(std::filesystem::path copy, std::string bytes) {
  auto keeping = std::make_shared<Keeping>(copy);
  keeping->carryOut = [copy = std::move(copy), bytes = std::move(bytes)](FileSystem& files) {
    return writeAtomically(files, copy, bytes);
  };
  keep(std::move(keeping));
}

void KeptFile::moveAside(std::filesystem::path to) {
  auto keeping = std::make_shared<Keeping>(to);
  keeping->carryOut = [from = file_, to = std::move(to)](FileSystem& files) {
    const std::error_code error = files.rename(from, to);
    if (!error) (void)files.syncFolder(from.parent_path());
    return error;
  };
  keep(std::move(keeping));
}

void KeptFile::keep(std::shared_ptr<Keeping> keeping) {
  keeping_ = std::move(keeping);
  writer_.carryOut({Keeping::request(keeping_)});
}

std::vector<FileWriter::Request> KeptFile::replacing(FileWriter::MakeBytes makeBytes,
                                                     FileWriter::Completion completion) const {
  std::vector<FileWriter::Request> requests;
  if (keeping_ && !keeping_->isDone) requests.push_back(Keeping::request(keeping_));
  requests.push_back(FileWriter::writing(file_, std::move(makeBytes), std::move(completion)));
  return requests;
}

}  // namespace orvel
