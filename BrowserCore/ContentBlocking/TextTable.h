#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace orvel::filters {

// Numbers texts from 0 in order of first appearance; equal texts get the same number. The hash is
// keyed at random, so that no list can be written to make it slow; nothing that the table answers
// depends on it.
class TextTable {
 public:
  struct Entry {
    uint32_t number;
    bool isNew;
  };

  // Makes room for `expectedCount` texts; more only take longer.
  explicit TextTable(size_t expectedCount = 0);

  // `text` must outlive the table if it is new.
  Entry insert(std::string_view text);

  [[nodiscard]] size_t size() const { return texts_.size(); }
  [[nodiscard]] std::string_view operator[](uint32_t number) const { return texts_[number]; }

 private:
  struct Slot {
    uint32_t hash = 0;
    uint32_t number = vacant;
  };

  static constexpr uint32_t vacant = UINT32_MAX;

  [[nodiscard]] uint32_t hash(std::string_view text) const;
  void grow();

  std::array<unsigned char, 16> key_;
  std::vector<std::string_view> texts_;
  std::vector<Slot> slots_;
};

}  // namespace orvel::filters
