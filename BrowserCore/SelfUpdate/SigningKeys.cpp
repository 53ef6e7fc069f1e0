#include "BrowserCore/SelfUpdate/SigningKeys.h"

#include <sodium/core.h>
#include <sodium/crypto_sign.h>
#include <sodium/utils.h>

#include <algorithm>
#include <utility>

#include "BrowserCore/Text/Base64.h"

namespace orvel {

namespace {

const unsigned char* bytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

}  // namespace

std::optional<PublicKey> PublicKey::parse(std::string_view base64) {
  auto bytes = Base64::decoded(base64);
  if (!bytes || bytes->size() != crypto_sign_PUBLICKEYBYTES) return std::nullopt;
  PublicKey key;
  key.bytes_ = *std::move(bytes);
  return key;
}

bool PublicKey::isValidSignature(std::string_view signature, std::string_view message) const {
  const auto raw = Base64::decoded(signature);
  return raw && raw->size() == crypto_sign_BYTES && sodium_init() >= 0 &&
         crypto_sign_verify_detached(bytesOf(*raw), bytesOf(message), message.size(),
                                     bytesOf(bytes_)) == 0;
}

std::optional<SecretKey> SecretKey::parse(std::string_view contents) {
  static_assert(kSize == crypto_sign_SECRETKEYBYTES);
  if (contents.ends_with('\n')) contents.remove_suffix(1);
  auto bytes = Base64::decoded(contents);
  if (!bytes || bytes->size() != kSize || sodium_init() < 0) return std::nullopt;
  SecretKey key;
  std::copy_n(bytesOf(*bytes), kSize, key.bytes_.data());
  sodium_memzero(bytes->data(), bytes->size());

  unsigned char publicKey[crypto_sign_PUBLICKEYBYTES];
  std::array<unsigned char, kSize> made;
  crypto_sign_seed_keypair(publicKey, made.data(), key.bytes_.data());
  const bool belongsTogether = sodium_memcmp(made.data(), key.bytes_.data(), kSize) == 0;
  sodium_memzero(made.data(), kSize);
  if (!belongsTogether) return std::nullopt;
  return key;
}

SecretKey::SecretKey(SecretKey&& other) noexcept : bytes_(other.bytes_) {}

SecretKey::~SecretKey() { sodium_memzero(bytes_.data(), kSize); }

std::string SecretKey::signature(std::string_view message) const {
  std::string raw(crypto_sign_BYTES, '\0');
  crypto_sign_detached(reinterpret_cast<unsigned char*>(raw.data()), nullptr, bytesOf(message),
                       message.size(), bytes_.data());
  return Base64::encoded(raw);
}

}  // namespace orvel
