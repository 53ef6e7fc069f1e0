#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// The identity of a lasting object: 128 bits, written as upper-case hyphenated text (RFC 9562).
class UUID {
 public:
  // The nil UUID, all bits zero.
  constexpr UUID() = default;

  // A fresh version 4 UUID from the system's random source.
  [[nodiscard]] static UUID random();

  // The 36 characters of the hyphenated form in any letter case; absent for anything else.
  [[nodiscard]] static std::optional<UUID> parse(std::string_view text);

  // The hyphenated form in upper case, as files carry it.
  [[nodiscard]] std::string text() const;

  friend constexpr bool operator==(const UUID&, const UUID&) = default;
  friend constexpr auto operator<=>(const UUID&, const UUID&) = default;

 private:
  friend struct std::hash<UUID>;
  std::array<uint8_t, 16> bytes_{};
};

}  // namespace orvel

template <>
struct std::hash<orvel::UUID> {
  size_t operator()(const orvel::UUID& id) const noexcept {
    size_t value = 0;
    std::memcpy(&value, id.bytes_.data(), sizeof value);
    return value;
  }
};
