#include "BrowserCore/ContentBlocking/URLFilterPattern.h"

#include <array>
#include <cstdint>

namespace orvel::filters {

namespace {

// The scheme, then any subdomains.
constexpr std::string_view hostAnchor = "^[^:]+://+([^:/]+\\.)?";
// Deliberately without the end of the address.
constexpr std::string_view separatorClass = "[/:?=&]";

enum class Meaning : uint8_t { literal, escaped, wildcard, separator, unsupported };

constexpr auto meanings = [] {
  std::array<Meaning, 256> table{};
  for (size_t c = 0x80; c < table.size(); ++c) table[c] = Meaning::unsupported;
  for (const char c : std::string_view("()[\\]{}|"))
    table[static_cast<size_t>(c)] = Meaning::unsupported;
  for (const char c : std::string_view("$+.?")) table[static_cast<size_t>(c)] = Meaning::escaped;
  table['*'] = Meaning::wildcard;
  table['^'] = Meaning::separator;
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
      arena.reserve(prefix.size() + body.size() * separatorClass.size() + sizeof(".*"));
  char* end = append(begin, prefix);
  for (const char c : body) {
    switch (meanings[static_cast<uint8_t>(c)]) {
      case Meaning::literal:
        *end++ = c;
        break;
      case Meaning::escaped:
        *end++ = '\\';
        *end++ = c;
        break;
      case Meaning::wildcard:
        end = append(end, ".*");
        break;
      case Meaning::separator:
        end = append(end, separatorClass);
        break;
      case Meaning::unsupported:
        return std::nullopt;
    }
  }
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
