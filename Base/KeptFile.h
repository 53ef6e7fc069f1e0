#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Base/FileWriter.h"

namespace orvel {

// A file that is replaced as a whole, and whose former contents may be worth keeping: as long as
// they do not stand beside it as well, nothing replaces it. Every request tries that again.
class KeptFile {
 public:
  KeptFile(FileWriter& writer, std::filesystem::path file);

  // Begins to keep what the file holds: these bytes of it in a copy of another name, or, for a file
  // that cannot be read, the file itself under another name. Either replaces what has that name.
  void keepCopy(std::filesystem::path copy, std::string bytes);
  void moveAside(std::filesystem::path to);

  // What it takes to replace the file.
  [[nodiscard]] std::vector<FileWriter::Request> replacing(FileWriter::MakeBytes makeBytes,
                                                           FileWriter::Completion completion) const;

 private:
  struct Keeping;

  void keep(std::shared_ptr<Keeping> keeping);

  FileWriter& writer_;
  const std::filesystem::path file_;
  // Null: nothing has to be kept.
  std::shared_ptr<Keeping> keeping_;
};

}  // namespace orvel
