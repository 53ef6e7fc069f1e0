#include "Support/Updates/ZipContents.h"

#include <archive.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include "Support/Updates/FileBytes.h"

namespace orvel {

namespace {

constexpr size_t kChunk = 64 << 10;
constexpr size_t kHeaderSize = 30;
constexpr uint16_t kStored = 0;
constexpr uint16_t kDeflated = 8;
constexpr std::string_view kHeaderSignature("PK\x03\x04");

void append(std::string& bytes, uint64_t number, int size) {
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * i);
}

// An archive of one entry, which the library reads from its beginning: a header that says of the
// entry what the directory says, and behind it the packed bytes as they are.
class OneEntry {
 public:
  OneEntry(int archive, const ZipEntry& entry, uint64_t offset)
      : archive_(archive), offset_(offset), left_(entry.packedSize) {
    constexpr uint16_t kVersion = 20;
    bytes_ = kHeaderSignature;
    append(bytes_, kVersion, 2);
    append(bytes_, 0, 2);
    append(bytes_, entry.method, 2);
    append(bytes_, 0, 4);
    append(bytes_, entry.checksum, 4);
    append(bytes_, entry.packedSize, 4);
    append(bytes_, entry.size, 4);
    append(bytes_, 1, 2);
    append(bytes_, 0, 2);
    bytes_ += 'e';
  }

  static la_ssize_t read(archive*, void* data, const void** bytes) {
    return static_cast<OneEntry*>(data)->next(bytes);
  }

 private:
  la_ssize_t next(const void** bytes) {
    if (hasGivenHeader_) {
      bytes_.resize(std::min<uint64_t>(left_, kChunk));
      if (!readAt(archive_, offset_, bytes_.data(), bytes_.size())) return ARCHIVE_FATAL;
      offset_ += bytes_.size();
      left_ -= bytes_.size();
    }
    hasGivenHeader_ = true;
    *bytes = bytes_.data();
    return static_cast<la_ssize_t>(bytes_.size());
  }

  int archive_;
  uint64_t offset_;
  uint64_t left_;
  std::string bytes_;
  bool hasGivenHeader_ = false;
};

// Where the entry's packed bytes begin: behind its header in the archive, of which only the length
// counts.
std::optional<uint64_t> contentsOffset(int archive, const ZipEntry& entry) {
  unsigned char header[kHeaderSize];
  if (!readAt(archive, entry.offset, reinterpret_cast<char*>(header), sizeof header) ||
      !std::equal(kHeaderSignature.begin(), kHeaderSignature.end(), header))
    return std::nullopt;
  return entry.offset + kHeaderSize + (header[26] | header[27] << 8) +
         (header[28] | header[29] << 8);
}

}  // namespace

bool readZipContents(int archive, const ZipEntry& entry,
                     const std::function<bool(std::string_view)>& take) {
  constexpr uint64_t kMaxPlainSize = std::numeric_limits<uint32_t>::max();
  const bool isPlain = std::max(entry.size, entry.packedSize) < kMaxPlainSize;
  const bool isKnown = entry.method == kStored || entry.method == kDeflated;
  if (entry.isEncrypted || !isPlain || !isKnown) return false;
  const auto offset = contentsOffset(archive, entry);
  if (!offset) return false;

  OneEntry source(archive, entry, *offset);
  const std::unique_ptr<::archive, int (*)(::archive*)> reader(archive_read_new(),
                                                               archive_read_free);
  archive_entry* header = nullptr;
  if (archive_read_support_format_zip_streamable(reader.get()) != ARCHIVE_OK ||
      archive_read_open(reader.get(), &source, nullptr, OneEntry::read, nullptr) != ARCHIVE_OK ||
      archive_read_next_header(reader.get(), &header) != ARCHIVE_OK)
    return false;
  for (uint64_t given = 0;;) {
    const void* bytes = nullptr;
    size_t size = 0;
    la_int64_t at = 0;
    const int status = archive_read_data_block(reader.get(), &bytes, &size, &at);
    if (status == ARCHIVE_EOF) return given == entry.size;
    if (status != ARCHIVE_OK || size > entry.size - given) return false;
    if (size > 0 && !take({static_cast<const char*>(bytes), size})) return false;
    given += size;
  }
}

}  // namespace orvel
