#include "Tests/Kit/TemporaryFolder.h"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace orvel::test {

namespace fs = std::filesystem;

fs::path makeTemporaryFolder(const std::string& name) {
  std::string pattern = (fs::temp_directory_path() / ("orvel-" + name + "-XXXXXX")).string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp");
  return pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

std::map<std::string, std::string> filesIn(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    files[fs::relative(entry.path(), folder).string()] =
        std::string(std::istreambuf_iterator<char>(stream), {});
  }
  return files;
}

std::vector<std::string> filesHolding(const fs::path& folder, const std::string& text) {
  std::vector<std::string> names;
  for (const auto& [name, bytes] : filesIn(folder))
    if (name.find(text) != std::string::npos || bytes.find(text) != std::string::npos)
      names.push_back(name);
  return names;
}

}  // namespace orvel::test
