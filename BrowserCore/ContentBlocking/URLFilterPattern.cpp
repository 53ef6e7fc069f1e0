#include "BrowserCore/ContentBlocking/URLFilterPattern.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace orvel::filters {

namespace {

// The scheme, then any subdomains.
constexpr std::string_view hostAnchor = "^[^:]+://+([^:/]+\\.)?";

// What each byte of a pattern becomes: up to `maxSize` bytes, none if the pattern can't be taken.
struct Translation {
  static constexpr size_t maxSize = 8;
  std::array<char, maxSize> text{};
  size_t size = 0;
};

constexpr auto translations = [] {
  std::array<Translation, 256> table{};
  const auto set = [&](unsigned char c, std::initializer_list<char> text) {
    table[c].size = text.size();
    std::copy(text.begin(), text.end(), table[c].text.begin());
  };
  for (char c = 0; c < 0x7F; ++c) set(static_cast<unsigned char>(c), {c});
  set(0x7F, {0x7F});
  for (const char c : {'$', '+', '.', '?'}) set(static_cast<unsigned char>(c), {'\\', c});
  for (const char c : {'(', ')', '[', '\\', ']', '{', '}', '|'})
    set(static_cast<unsigned char>(c), {});
  set('*', {'.', '*'});
  // A separator; deliberately without the end of the address.
  set('^', {'[', '/', ':', '?', '=', '&', ']'});
  return table;
}();

bool consumePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

bool consumeSuffix(std::string_view& text, std::string_view suffix) {
  if (!text.ends_with(suffix)) return false;
  text.remove_suffix(suffix.size());
  return true;
}

char* append(char* end, std::string_view text) { return end + text.copy(end, text.size()); }

}  // namespace

std::optional<std::string_view> urlFilter(std::string_view pattern, TextArena& arena) {
  if (pattern.size() >= 3 && pattern.front() == '/' && pattern.back() == '/') return std::nullopt;

  std::string_view body = pattern;
  std::string_view prefix;
  if (consumePrefix(body, "||"))
    prefix = hostAnchor;
  else if (consumePrefix(body, "|"))
    prefix = "^";
  const bool isEndAnchored = consumeSuffix(body, "|");
  if (prefix.empty())
    while (consumePrefix(body, "*")) {
    }
  if (!isEndAnchored)
    while (consumeSuffix(body, "*")) {
    }
  if (prefix.empty() && !isEndAnchored && !body.empty() && body.size() < 4) return std::nullopt;

  char* const begin =
      arena.reserve(prefix.size() + body.size() * Translation::maxSize + sizeof(".*"));
  char* end = append(begin, prefix);
  bool isSupported = true;
  for (const char c : body) {
    const Translation& translation = translations[static_cast<uint8_t>(c)];
    std::memcpy(end, translation.text.data(), Translation::maxSize);
    end += translation.size;
    isSupported &= translation.size != 0;
  }
  if (!isSupported) return std::nullopt;
  if (isEndAnchored) *end++ = '$';
  if (end == begin) end = append(end, ".*");
  return arena.commit(static_cast<size_t>(end - begin));
}

std::optional<std::string_view> plainDomain(std::string_view pattern) {
  if (!consumePrefix(pattern, "||")) return std::nullopt;
  for (const std::string_view suffix : {"^|", "^", "/"})
    if (consumeSuffix(pattern, suffix)) break;
  return pattern;
}

}  // namespace orvel::filters
