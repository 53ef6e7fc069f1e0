#include "Support/Updates/ZipDirectory.h"

#include <sys/stat.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "Support/Updates/FileBytes.h"

namespace orvel {

namespace {

constexpr uint64_t kMaxEntries = 65'535;
constexpr uint64_t kMaxDirectoryBytes = 64u << 20;

constexpr size_t kEndSize = 22;
constexpr size_t kLargeLocatorSize = 20;
constexpr size_t kLargeEndSize = 56;
constexpr size_t kEntrySize = 46;
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr uint32_t kLargeLocatorSignature = 0x07064b50;
constexpr uint32_t kLargeEndSignature = 0x06064b50;
constexpr uint32_t kEntrySignature = 0x02014b50;
constexpr uint16_t kLargeSizesField = 0x0001;
constexpr uint32_t kInLargeSizes = 0xffffffff;

// Numbers one behind the other, the lowest byte first. Reading beyond the end gives zeros, is
// remembered, and leaves nothing to be read.
class Fields {
 public:
  explicit Fields(std::string_view bytes) : bytes_(bytes) {}

  uint16_t u16() { return static_cast<uint16_t>(number(2)); }
  uint32_t u32() { return static_cast<uint32_t>(number(4)); }
  uint64_t u64() { return number(8); }
  std::string_view bytes(size_t size) {
    isCutOff_ = isCutOff_ || size > bytes_.size();
    const auto taken = isCutOff_ ? std::string_view() : bytes_.substr(0, size);
    bytes_.remove_prefix(isCutOff_ ? bytes_.size() : size);
    return taken;
  }
  bool isCutOff() const { return isCutOff_; }
  bool isAtEnd() const { return bytes_.empty(); }

 private:
  uint64_t number(size_t size) {
    uint64_t value = 0;
    const auto taken = bytes(size);
    for (size_t i = 0; i < taken.size(); ++i)
      value |= static_cast<uint64_t>(static_cast<unsigned char>(taken[i])) << 8 * i;
    return value;
  }

  std::string_view bytes_;
  bool isCutOff_ = false;
};

// Where the directory stands.
struct Place {
  uint64_t count;
  uint64_t size;
  uint64_t offset;
};

// The end record that begins at `tail`, which goes to the end of the file; absent when there is
// none.
std::optional<Place> endRecord(std::string_view tail) {
  Fields fields(tail);
  const bool isEnd = fields.u32() == kEndSignature;
  const uint16_t disk = fields.u16();
  const uint16_t directoryDisk = fields.u16();
  const uint16_t countHere = fields.u16();
  Place place{};
  place.count = fields.u16();
  place.size = fields.u32();
  place.offset = fields.u32();
  const uint16_t commentSize = fields.u16();
  const bool isOnePiece = disk == 0 && directoryDisk == 0 && countHere == place.count;
  if (!isEnd || !isOnePiece || tail.size() != kEndSize + commentSize) return std::nullopt;
  return place;
}

// A large archive's end record, to which a locator before the plain one at `end` leads: with
// `place` unchanged where there is none. False for a damaged one.
bool readLargeEnd(int archive, uint64_t& end, Place& place) {
  char locator[kLargeLocatorSize];
  if (end < sizeof locator || !readAt(archive, end - sizeof locator, locator, sizeof locator))
    return true;
  Fields fields({locator, sizeof locator});
  if (fields.u32() != kLargeLocatorSignature) return true;
  fields.u32();  // its disk
  const uint64_t offset = fields.u64();
  char record[kLargeEndSize];
  if (offset >= end || !readAt(archive, offset, record, sizeof record)) return false;
  Fields large({record, sizeof record});
  if (large.u32() != kLargeEndSignature) return false;
  large.bytes(20);  // its size, versions and disks
  const uint64_t countHere = large.u64();
  place.count = large.u64();
  place.size = large.u64();
  place.offset = large.u64();
  end = offset;
  return countHere == place.count;
}

std::optional<Place> findDirectory(int archive) {
  struct stat info {};
  if (fstat(archive, &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  const auto size = static_cast<uint64_t>(info.st_size);
  std::string tail(std::min<uint64_t>(size, kEndSize + 65'535), '\0');
  if (tail.size() < kEndSize || !readAt(archive, size - tail.size(), tail.data(), tail.size()))
    return std::nullopt;
  for (size_t begin = tail.size() - kEndSize + 1; begin-- > 0;) {
    auto place = endRecord(std::string_view(tail).substr(begin));
    if (!place) continue;
    uint64_t end = size - tail.size() + begin;
    if (!readLargeEnd(archive, end, *place)) return std::nullopt;
    const bool fits = place->size <= kMaxDirectoryBytes && place->count <= kMaxEntries &&
                      place->offset <= end && place->size == end - place->offset;
    return fits ? place : std::nullopt;
  }
  return std::nullopt;
}

// Sizes and offset that do not fit the entry's own fields.
void readLargeSizes(std::string_view extra, ZipEntry& entry) {
  Fields fields(extra);
  while (!fields.isAtEnd()) {
    const uint16_t kind = fields.u16();
    const uint16_t size = fields.u16();
    const auto contents = fields.bytes(size);
    if (kind != kLargeSizesField) continue;
    Fields numbers(contents);
    for (uint64_t* number : {&entry.size, &entry.packedSize, &entry.offset})
      if (*number == kInLargeSizes) *number = numbers.u64();
    return;
  }
}

uint32_t modeOf(std::string_view name, uint8_t system, uint32_t attributes) {
  constexpr uint8_t kUnix = 3;
  constexpr uint8_t kDarwin = 19;
  constexpr uint32_t kIsFolder = 0x10;
  uint32_t mode = system == kUnix || system == kDarwin ? attributes >> 16 : 0;
  if (!(mode & S_IFMT)) {
    const bool isFolder = name.ends_with('/') || (attributes & kIsFolder);
    if (!mode) mode = isFolder ? 0755 : 0644;
    mode |= isFolder ? S_IFDIR : S_IFREG;
  }
  return mode;
}

std::optional<ZipEntry> readEntry(Fields& fields) {
  ZipEntry entry;
  if (fields.u32() != kEntrySignature) return std::nullopt;
  const auto system = static_cast<uint8_t>(fields.u16() >> 8);
  fields.u16();  // the version needed
  const uint16_t flags = fields.u16();
  entry.method = fields.u16();
  fields.u32();  // date and time
  entry.checksum = fields.u32();
  entry.packedSize = fields.u32();
  entry.size = fields.u32();
  const uint16_t nameSize = fields.u16();
  const uint16_t extraSize = fields.u16();
  const uint16_t commentSize = fields.u16();
  const uint16_t disk = fields.u16();
  fields.u16();  // internal attributes
  const uint32_t attributes = fields.u32();
  entry.offset = fields.u32();
  entry.name = fields.bytes(nameSize);
  readLargeSizes(fields.bytes(extraSize), entry);
  fields.bytes(commentSize);
  if (fields.isCutOff() || disk != 0) return std::nullopt;
  constexpr uint16_t kEncryptionFlags = 1 | 1 << 6 | 1 << 13;
  entry.isEncrypted = flags & kEncryptionFlags;
  entry.mode = modeOf(entry.name, system, attributes);
  return entry;
}

}  // namespace

std::optional<std::vector<ZipEntry>> readZipDirectory(int archive) {
  const auto place = findDirectory(archive);
  if (!place || place->count * kEntrySize > place->size) return std::nullopt;
  std::string bytes(place->size, '\0');
  if (!readAt(archive, place->offset, bytes.data(), bytes.size())) return std::nullopt;
  Fields fields(bytes);
  std::vector<ZipEntry> entries;
  entries.reserve(place->count);
  while (!fields.isAtEnd()) {
    auto entry = readEntry(fields);
    if (!entry || entries.size() == place->count) return std::nullopt;
    entries.push_back(*std::move(entry));
  }
  if (entries.size() != place->count) return std::nullopt;
  return entries;
}

}  // namespace orvel
