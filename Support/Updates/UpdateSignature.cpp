#include "Support/Updates/UpdateSignature.h"

#include <fcntl.h>
#include <fmt/format.h>

#include "BrowserCore/SelfUpdate/SigningKeys.h"
#include "Support/Updates/FileBytes.h"

namespace orvel::UpdateSignature {

std::optional<std::string> message(const std::filesystem::path& archive, int64_t build) {
  const FileDescriptor file(open(archive.c_str(), O_RDONLY | O_CLOEXEC));
  const auto digest = file ? sha256(file.get()) : std::nullopt;
  if (!digest) return std::nullopt;
  return fmt::format("orvel-update-{}\n", build) + *digest;
}

bool isValid(std::string_view signature, const std::filesystem::path& archive, int64_t build,
             std::string_view publicKey) {
  const auto key = PublicKey::parse(publicKey);
  const auto signedMessage = key ? message(archive, build) : std::nullopt;
  return signedMessage && key->isValidSignature(signature, *signedMessage);
}

}  // namespace orvel::UpdateSignature
