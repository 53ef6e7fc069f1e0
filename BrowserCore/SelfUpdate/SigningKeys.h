#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// An Ed25519 public key.
class PublicKey {
 public:
  // Of base64 of the 32 raw bytes; absent for anything else.
  [[nodiscard]] static std::optional<PublicKey> parse(std::string_view base64);

  // Whether `signature`, base64 of 64 bytes, is this key's over `message`. False for anything that
  // is no signature.
  [[nodiscard]] bool isValidSignature(std::string_view signature, std::string_view message) const;

 private:
  std::string bytes_;
};

// An Ed25519 secret key: its bytes are wiped when it ends.
class SecretKey {
 public:
  // Of a key file's contents: base64 of the seed's 32 bytes and the public key's, and maybe one
  // line feed. Absent for anything else, also when the two do not belong together.
  [[nodiscard]] static std::optional<SecretKey> parse(std::string_view contents);

  SecretKey(SecretKey&& other) noexcept;
  SecretKey& operator=(SecretKey&&) = delete;
  ~SecretKey();

  // In base64.
  [[nodiscard]] std::string signature(std::string_view message) const;

 private:
  static constexpr size_t kSize = 64;

  SecretKey() = default;
  std::array<unsigned char, kSize> bytes_{};
};

}  // namespace orvel
