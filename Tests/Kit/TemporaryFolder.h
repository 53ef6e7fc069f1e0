#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orvel::test {

// A fresh folder under the system's temporary one.
std::filesystem::path makeTemporaryFolder(const std::string& name);

// One that goes with this object.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& name) : path(makeTemporaryFolder(name)) {}
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;

  const std::filesystem::path path;
};

// Every regular file below `folder`, by its relative name.
std::map<std::string, std::string> filesIn(const std::filesystem::path& folder);

// The names of the files of `folder` that hold `text`, in their name or their bytes: what a private
// window must not leave behind.
std::vector<std::string> filesHolding(const std::filesystem::path& folder, const std::string& text);

}  // namespace orvel::test
