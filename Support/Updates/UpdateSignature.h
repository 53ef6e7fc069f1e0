#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// The signature of an update's archive.
namespace orvel::UpdateSignature {

// What is signed: "orvel-update-", the build in decimal, a line feed, and the 32 bytes of the
// archive's SHA-256. The build is in it so that no old archive can be offered as a newer one.
// Absent when the archive cannot be read; it is never in memory whole.
[[nodiscard]] std::optional<std::string> message(const std::filesystem::path& archive,
                                                 int64_t build);

// Whether `signature` is that of the archive as this build by the owner of `publicKey`, both in
// base64. False for anything that cannot be read.
[[nodiscard]] bool isValid(std::string_view signature, const std::filesystem::path& archive,
                           int64_t build, std::string_view publicKey);

}  // namespace orvel::UpdateSignature
