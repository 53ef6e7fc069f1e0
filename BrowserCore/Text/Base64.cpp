#include "BrowserCore/Text/Base64.h"

#include <sodium/utils.h>

namespace orvel::Base64 {

std::optional<std::string> decoded(std::string_view encoded) {
  std::string bytes(encoded.size(), '\0');
  size_t size = 0;
  const int status = sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(),
                                       encoded.data(), encoded.size(), nullptr, &size, nullptr,
                                       sodium_base64_VARIANT_ORIGINAL);
  if (status != 0) return std::nullopt;
  bytes.resize(size);
  return bytes;
}

std::string encoded(std::string_view bytes) {
  std::string text(sodium_base64_encoded_len(bytes.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
  sodium_bin2base64(text.data(), text.size(), reinterpret_cast<const unsigned char*>(bytes.data()),
                    bytes.size(), sodium_base64_VARIANT_ORIGINAL);
  text.pop_back();  // the terminating zero
  return text;
}

}  // namespace orvel::Base64
