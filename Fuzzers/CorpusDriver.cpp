// Runs a fuzz target over the files of the folders and files named on the command line, so that the
// committed corpora are part of every ordinary test run, with any compiler.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

bool run(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return false;
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  size_t inputs = 0;
  for (int i = 1; i < count; ++i) {
    const std::filesystem::path path = arguments[i];
    if (!std::filesystem::is_directory(path)) {
      inputs += run(path) ? 1 : 0;
      continue;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
      if (entry.is_regular_file()) inputs += run(entry.path()) ? 1 : 0;
  }
  std::printf("%zu inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
