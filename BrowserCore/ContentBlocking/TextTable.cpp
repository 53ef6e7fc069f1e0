#include "BrowserCore/ContentBlocking/TextTable.h"

#include <sodium/crypto_shorthash.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace orvel::filters {

TextTable::TextTable(size_t expectedCount)
    : slots_(std::bit_ceil(std::max<size_t>(2 * expectedCount, 16))) {
  texts_.reserve(expectedCount);
  static_assert(crypto_shorthash_KEYBYTES == sizeof(key_));
  crypto_shorthash_keygen(key_.data());
}

TextTable::Entry TextTable::insert(std::string_view text) {
  const uint32_t wanted = hash(text);
  const size_t mask = slots_.size() - 1;
  size_t i = wanted & mask;
  for (; slots_[i].number != vacant; i = (i + 1) & mask)
    if (slots_[i].hash == wanted && texts_[slots_[i].number] == text)
      return {slots_[i].number, false};
  const auto number = static_cast<uint32_t>(texts_.size());
  slots_[i] = {wanted, number};
  texts_.push_back(text);
  if (texts_.size() * 2 > slots_.size()) grow();
  return {number, true};
}

uint32_t TextTable::hash(std::string_view text) const {
  std::array<unsigned char, crypto_shorthash_BYTES> digest;
  crypto_shorthash(digest.data(), reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                   key_.data());
  uint32_t value = 0;
  std::memcpy(&value, digest.data(), sizeof(value));
  return value;
}

void TextTable::grow() {
  std::vector<Slot> larger(slots_.size() * 2);
  const size_t mask = larger.size() - 1;
  for (const Slot& slot : slots_) {
    if (slot.number == vacant) continue;
    size_t i = slot.hash & mask;
    while (larger[i].number != vacant) i = (i + 1) & mask;
    larger[i] = slot;
  }
  slots_ = std::move(larger);
}

}  // namespace orvel::filters
