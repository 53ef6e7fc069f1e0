#include "Engine/WebKitGtk/RuleListSeal.h"

#include <fmt/format.h>
#include <sodium.h>

#include <algorithm>
#include <fstream>
#include <string_view>
#include <vector>

#include "Base/FileSystem.h"

namespace orvel::rule_list_seal {

namespace fs = std::filesystem;

namespace {

constexpr uint64_t kLargestSeal = 1024;
constexpr size_t kChunk = 1u << 20;
constexpr std::string_view kSealPrefix = "Seal-";

struct Measured {
  std::string checksum;
  uint32_t format = 0;
};

uint32_t littleEndian(const unsigned char* bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}

// Poly1305 with a fixed key: the fastest checksum at hand, at some 3 GB/s. Against accidents, not
// against whoever can write to the folder.
std::optional<Measured> measure(const fs::path& list) {
  std::ifstream file(list, std::ios::binary);
  if (!file || sodium_init() < 0) return std::nullopt;
  static constexpr unsigned char kKey[crypto_onetimeauth_KEYBYTES] = {'O', 'r', 'v', 'e', 'l'};
  crypto_onetimeauth_state state;
  crypto_onetimeauth_init(&state, kKey);
  Measured measured;
  std::vector<unsigned char> chunk(kChunk);
  bool isFirst = true;
  for (;;) {
    file.read(reinterpret_cast<char*>(chunk.data()), static_cast<std::streamsize>(chunk.size()));
    const auto size = static_cast<size_t>(file.gcount());
    if (size == 0) break;
    if (isFirst && size < sizeof measured.format) return std::nullopt;
    if (isFirst) measured.format = littleEndian(chunk.data());
    isFirst = false;
    crypto_onetimeauth_update(&state, chunk.data(), size);
  }
  if (isFirst || file.bad()) return std::nullopt;
  unsigned char sum[crypto_onetimeauth_BYTES];
  crypto_onetimeauth_final(&state, sum);
  measured.checksum.resize(2 * sizeof sum + 1);
  sodium_bin2hex(measured.checksum.data(), measured.checksum.size(), sum, sizeof sum);
  measured.checksum.pop_back();
  return measured;
}

std::string sealText(const std::string& engineVersion, const std::string& checksum) {
  return fmt::format("{}\n{}\n", engineVersion, checksum);
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

std::vector<std::string> sealed(const fs::path& folder) {
  std::vector<std::string> identifiers;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename();
    if (name.starts_with(kSealPrefix)) identifiers.push_back(name.substr(kSealPrefix.size()));
  }
  return identifiers;
}

Check check(const fs::path& folder, const std::string& identifier,
            const std::string& engineVersion) {
  const auto text = FileSystem::disk()->read(sealFile(folder, identifier), kLargestSeal);
  const auto measured = text ? measure(listFile(folder, identifier)) : std::nullopt;
  if (!measured) return {};
  if (*text == sealText(engineVersion, measured->checksum))
    return {Check::State::Intact, measured->format};
  const bool isIntact = text->ends_with("\n" + measured->checksum + "\n");
  return {isIntact ? Check::State::OtherEngine : Check::State::Broken, measured->format};
}

bool seal(const fs::path& folder, const std::string& identifier, const std::string& engineVersion) {
  const auto measured = measure(listFile(folder, identifier));
  return measured && !writeAtomically(*FileSystem::disk(), sealFile(folder, identifier),
                                      sealText(engineVersion, measured->checksum));
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
