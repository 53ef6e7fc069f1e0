#include "Engine/WebKitGtk/Rules/RuleListSeal.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sodium.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <vector>

#include "Base/FileSystem.h"

namespace orvel::rule_list_seal {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSealPrefix = "Seal-";
constexpr uint64_t kMaxSeal = 1024;
constexpr size_t kMaxUntouched = 16;
constexpr size_t kChunk = 1u << 20;

uint32_t littleEndian(const unsigned char* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

// Poly1305 with a fixed key: the fastest checksum at hand, at some 3 GB/s. Against accidents, not
// against whoever can write to the folder.
std::optional<std::string> checksumOf(const fs::path& list) {
  std::ifstream file(list, std::ios::binary);
  if (!file || sodium_init() < 0) return std::nullopt;
  static constexpr unsigned char kKey[crypto_onetimeauth_KEYBYTES] = {'O', 'r', 'v', 'e', 'l'};
  crypto_onetimeauth_state state;
  crypto_onetimeauth_init(&state, kKey);
  std::vector<unsigned char> chunk(kChunk);
  for (;;) {
    file.read(reinterpret_cast<char*>(chunk.data()), static_cast<std::streamsize>(chunk.size()));
    const auto size = static_cast<size_t>(file.gcount());
    if (size == 0) break;
    crypto_onetimeauth_update(&state, chunk.data(), size);
  }
  if (file.bad()) return std::nullopt;
  unsigned char sum[crypto_onetimeauth_BYTES];
  crypto_onetimeauth_final(&state, sum);
  std::string checksum(2 * sizeof sum + 1, 0);
  sodium_bin2hex(checksum.data(), checksum.size(), sum, sizeof sum);
  checksum.pop_back();
  return checksum;
}

// What changes when anybody writes to the file; absent without a file.
std::optional<std::string> stampOf(const fs::path& list) {
  struct stat info {};
  if (stat(list.c_str(), &info) != 0) return std::nullopt;
  return fmt::format("{} {}.{:09}", info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec);
}

struct Seal {
  std::string engineVersion;
  std::string checksum;
  std::string stamp;

  std::string text() const { return fmt::format("{}\n{}\n{}\n", engineVersion, checksum, stamp); }
};

// Absent without a seal that can be read.
std::optional<Seal> readSeal(const fs::path& file) {
  const auto text = FileSystem::disk()->read(file, kMaxSeal);
  if (!text) return std::nullopt;
  std::istringstream lines(*text);
  Seal seal;
  if (!std::getline(lines, seal.engineVersion) || !std::getline(lines, seal.checksum) ||
      !std::getline(lines, seal.stamp))
    return std::nullopt;
  return seal;
}

// Nothing that was written to the file is lost any more when the machine stops.
bool flush(const fs::path& list) {
  const int file = open(list.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool isFlushed = fsync(file) == 0;
  close(file);
  return isFlushed;
}

}  // namespace

bool isPlain(const std::string& identifier) {
  return !identifier.empty() && std::all_of(identifier.begin(), identifier.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
  });
}

fs::path listFile(const fs::path& folder, const std::string& identifier) {
  return folder / ("ContentRuleList-" + identifier);
}

fs::path sealFile(const fs::path& folder, const std::string& identifier) {
  return folder / (std::string(kSealPrefix) + identifier);
}

Check check(const fs::path& folder, const std::string& identifier,
            const std::string& engineVersion) {
  const auto seal = readSeal(sealFile(folder, identifier));
  const fs::path list = listFile(folder, identifier);
  const auto number = seal ? format(list) : std::nullopt;
  if (!number) return {};
  const bool isUntouched = stampOf(list) == seal->stamp;
  if (!isUntouched) {
    if (checksumOf(list) != seal->checksum) return {};
    // A copy, say. The next start need not read it through.
    if (!rule_list_seal::seal(folder, identifier, seal->engineVersion)) return {};
  }
  const auto state =
      seal->engineVersion == engineVersion ? Check::State::Intact : Check::State::OtherEngine;
  return {state, isUntouched, *number};
}

std::vector<std::string> untouched(const fs::path& folder, const std::string& engineVersion) {
  std::vector<std::string> identifiers;
  for (const std::string& name : FileSystem::disk()->list(folder)) {
    if (!name.starts_with(kSealPrefix) || identifiers.size() == kMaxUntouched) continue;
    const std::string identifier = name.substr(kSealPrefix.size());
    const auto seal = isPlain(identifier) ? readSeal(folder / name) : std::nullopt;
    if (seal && seal->engineVersion == engineVersion &&
        seal->stamp == stampOf(listFile(folder, identifier)))
      identifiers.push_back(identifier);
  }
  return identifiers;
}

void breakIfDamaged(const fs::path& folder, const std::string& identifier) {
  const fs::path file = sealFile(folder, identifier);
  const auto seal = readSeal(file);
  const auto checksum = seal ? checksumOf(listFile(folder, identifier)) : std::nullopt;
  std::error_code ignored;
  if (checksum && *checksum != seal->checksum) fs::remove(file, ignored);
}

bool seal(const fs::path& folder, const std::string& identifier, const std::string& engineVersion) {
  const fs::path list = listFile(folder, identifier);
  const auto checksum = flush(list) ? checksumOf(list) : std::nullopt;
  const auto stamp = stampOf(list);
  if (!checksum || !stamp) return false;
  const Seal seal{engineVersion, *checksum, *stamp};
  return !writeAtomically(*FileSystem::disk(), sealFile(folder, identifier), seal.text());
}

bool adopt(const fs::path& from, const fs::path& to, const std::string& identifier,
           const std::string& engineVersion) {
  if (!seal(from, identifier, engineVersion)) return false;
  const auto disk = FileSystem::disk();
  return !disk->rename(sealFile(from, identifier), sealFile(to, identifier)) &&
         !disk->rename(listFile(from, identifier), listFile(to, identifier));
}

std::optional<uint32_t> format(const fs::path& list) {
  std::ifstream file(list, std::ios::binary);
  unsigned char bytes[sizeof(uint32_t)];
  if (!file.read(reinterpret_cast<char*>(bytes), sizeof bytes)) return std::nullopt;
  return littleEndian(bytes);
}

}  // namespace orvel::rule_list_seal
