#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace orvel::filters {

// Writes a long JSON text into one buffer. Its memory is reserved for what the result will be
// about, and is made ready in steps that stay in the processor's cache until they are written over.
class JSONWriter {
 public:
  // `expectedSize`: a result that is longer only takes longer.
  explicit JSONWriter(size_t expectedSize);

  // For keys and signs. Between two other writes they take less than `literalRoom` bytes, for which
  // there is always room.
  template <size_t size>
  void literal(const char (&text)[size]) {
    std::memcpy(next_, text, size - 1);
    next_ += size - 1;
  }

  // A text as it stands.
  void raw(std::string_view text) {
    makeRoom(text.size());
    next_ += text.copy(next_, text.size());
  }

  // A text as the inside of a JSON string; ill-formed UTF-8 becomes U+FFFD. Slashes and whatever is
  // outside ASCII stay as they are.
  void escaped(std::string_view text);

  // Writes once more what was written from `begin` to `end`.
  void repeat(size_t begin, size_t end) {
    makeRoom(end - begin);
    std::memcpy(next_, buffer_.data() + begin, end - begin);
    next_ += end - begin;
  }

  // How much is written.
  [[nodiscard]] size_t size() const { return static_cast<size_t>(next_ - buffer_.data()); }

  [[nodiscard]] std::string finish() && {
    buffer_.resize(size());
    return std::move(buffer_);
  }

 private:
  static constexpr size_t literalRoom = 256;

  [[nodiscard]] bool hasRoom(size_t size) const {
    return static_cast<size_t>(last_ - next_) >= size + literalRoom;
  }
  void makeRoom(size_t size) {
    if (!hasRoom(size)) grow(size + literalRoom);
  }
  void makeRoomFor(std::string_view text);
  void grow(size_t size);
  bool copyEscaped(std::string_view text);

  std::string buffer_;
  // The end of what is written, and of what is ready to be written to.
  char* next_ = nullptr;
  char* last_ = nullptr;
};

}  // namespace orvel::filters
