#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvel {

// One entry of a zip archive, as the archive's own directory has it.
struct ZipEntry {
  std::string name;   // its bytes; a folder's may end with a slash
  uint32_t mode = 0;  // as of `stat`: a type and permission bits
  bool isEncrypted = false;
  uint16_t method = 0;
  uint32_t checksum = 0;
  uint64_t packedSize = 0;
  uint64_t size = 0;
  uint64_t offset = 0;  // of its header in the archive
};

// The directory at the end of a zip archive (APPNOTE 6.3), large archives' form included: the one
// place that says what an archive holds. Absent when the open file is no zip archive of one piece,
// holds more than 65,535 entries, or its directory is larger than 64 MiB. An entry that was made
// where files have no modes gets 0644, a folder 0755.
//
// It is read here and not by the library that unpacks, which has names and link targets in the
// locale's own characters and composes their letters: other bytes than those that were signed.
[[nodiscard]] std::optional<std::vector<ZipEntry>> readZipDirectory(int archive);

}  // namespace orvel
