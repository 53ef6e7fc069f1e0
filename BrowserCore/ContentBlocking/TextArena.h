#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace orvel::filters {

// Room for many small texts that live and die together. Texts never move.
class TextArena {
 public:
  // At least `size` bytes to write to, of which `commit` keeps the first ones. Room that isn't
  // committed is given out again by the next call.
  char* reserve(size_t size) {
    if (static_cast<size_t>(end_ - next_) < size) grow(size);
    return next_;
  }

  // Keeps the first `size` bytes of what was reserved last.
  std::string_view commit(size_t size) {
    const std::string_view text(next_, size);
    next_ += size;
    return text;
  }

  std::string_view copy(std::string_view text) {
    text.copy(reserve(text.size()), text.size());
    return commit(text.size());
  }

 private:
  void grow(size_t size) {
    constexpr size_t blockSize = 64 * 1024;
    const size_t capacity = size < blockSize ? blockSize : size;
    // Left uninitialized: of a block reserved for the worst case only what is used costs memory.
    blocks_.push_back(std::unique_ptr<char[]>(new char[capacity]));
    next_ = blocks_.back().get();
    end_ = next_ + capacity;
  }

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* next_ = nullptr;
  char* end_ = nullptr;
};

}  // namespace orvel::filters
