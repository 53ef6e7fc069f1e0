#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// An absolute address: the text as given and its parts by the generic split of RFC 3986, appendix
// B.
//
// The value is lenient, because whatever the engine reports as its address has to be one: any text
// with a scheme and without control characters or blanks is a URL, also `?q=a|b`, `/%zz` and
// letters beyond ASCII. Nothing is percent-encoded or normalized; two URLs are equal when their
// texts are. Whether a typed text is meant as an address is `URLInput`'s question.
class URL {
 public:
  // Absent when the text has no scheme (a letter, then letters, digits, "+", "-", "."), or holds a
  // character at or below U+0020, U+007F, or bytes that are no UTF-8, or is longer than 4 GiB.
  [[nodiscard]] static std::optional<URL> parse(std::string_view text);

  // The absolute text, byte for byte as it was given.
  const std::string& text() const { return text_; }

  // The scheme as written, without the colon.
  std::string_view scheme() const;
  // The scheme equals `lowerCase`, whatever its letters' case.
  bool hasScheme(std::string_view lowerCase) const;

  // What stands between "//" and the next "/", "?" or "#"; absent without "//".
  std::optional<std::string_view> authority() const;
  // What stands before the last "@" of the authority.
  std::optional<std::string_view> userInfo() const;
  // The host as written, with the brackets of an IPv6 literal. Absent when it is empty or when
  // there is no authority.
  std::optional<std::string_view> host() const;
  // What follows the host's colon, whatever it is; absent without a colon.
  std::optional<std::string_view> portText() const;
  // The number that `portText` holds. Absent when empty, not a number or above 65535.
  std::optional<uint16_t> port() const;
  // The host with its percent-encoded bytes decoded; as written when what they stand for is no text
  // or holds control characters or blanks.
  std::optional<std::string> decodedHost() const;
  std::string_view path() const;
  // The path with its percent-encoded bytes decoded; as written when they stand for no text.
  std::string decodedPath() const;
  // Without the "?"; absent without one.
  std::optional<std::string_view> query() const;
  // Without the "#"; absent without one.
  std::optional<std::string_view> fragment() const;

  // The address that `reference` means on this page: RFC 3986, section 5.2, with dot segments
  // removed. Absent when the result is no URL.
  [[nodiscard]] std::optional<URL> resolve(std::string_view reference) const;

  friend bool operator==(const URL& a, const URL& b) { return a.text_ == b.text_; }
  friend auto operator<=>(const URL& a, const URL& b) { return a.text_ <=> b.text_; }

 private:
  explicit URL(std::string text);
  std::string_view slice(uint32_t from, uint32_t to) const;

  std::string text_;
  // Offsets into `text_`: end of the scheme; the authority's bounds (equal to `schemeEnd_` + 1 when
  // there is none); end of the path; end of the query.
  uint32_t schemeEnd_ = 0;
  uint32_t authorityBegin_ = 0;
  uint32_t authorityEnd_ = 0;
  uint32_t pathEnd_ = 0;
  uint32_t queryEnd_ = 0;
};

}  // namespace orvel

template <>
struct std::hash<orvel::URL> {
  size_t operator()(const orvel::URL& url) const noexcept {
    return std::hash<std::string>{}(url.text());
  }
};
