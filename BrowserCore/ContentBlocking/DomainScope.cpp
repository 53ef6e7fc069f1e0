#include "BrowserCore/ContentBlocking/DomainScope.h"

#include <algorithm>
#include <array>

namespace orvel::filters {

namespace {

// The lower case of each character of a host; 0 for every other byte.
constexpr auto hostCharacters = [] {
  std::array<char, 256> characters{};
  for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyz0123456789.-"))
    characters[static_cast<unsigned char>(c)] = c;
  for (unsigned char c = 'A'; c <= 'Z'; ++c) characters[c] = static_cast<char>(c + 'a' - 'A');
  return characters;
}();

// The only character outside ASCII whose lower case is inside.
constexpr std::string_view kelvinSign = "\xE2\x84\xAA";

}  // namespace

size_t normalizeDomain(std::string_view host, char* out) {
  if (host.empty() || host.front() == '.' || host.back() == '.') return 0;
  char* end = out;
  *end++ = '*';
  bool hasDot = false;
  for (size_t i = 0; i < host.size(); ++i) {
    char c = hostCharacters[static_cast<uint8_t>(host[i])];
    if (c == 0) {
      if (!host.substr(i).starts_with(kelvinSign)) return 0;
      c = 'k';
      i += kelvinSign.size() - 1;
    }
    hasDot |= c == '.';
    *end++ = c;
  }
  return hasDot ? static_cast<size_t>(end - out) : 0;
}

std::optional<DomainScope> DomainScopes::parse(std::string_view text, char separator) {
  if (text.empty()) return DomainScope{};
  // A key is a "~" and then the entries, each of which grows by its "*" and takes a comma.
  char* const key = arena_.reserve(2 * text.size() + 3);
  char* end = key;
  *end++ = '~';
  bool hasPlain = false;
  bool hasExcluded = false;
  bool hasDropped = false;
  while (!text.empty()) {
    std::string_view host = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(host.size() + 1, text.size()));
    if (host.empty()) continue;
    const bool isExcluded = host.front() == '~';
    if (isExcluded) host.remove_prefix(1);
    const size_t size = normalizeDomain(host, end);
    if (size == 0) {
      if (isExcluded) return std::nullopt;
      hasDropped = true;
      continue;
    }
    (isExcluded ? hasExcluded : hasPlain) = true;
    if (hasExcluded && hasPlain) return std::nullopt;
    end += size;
    *end++ = ',';
  }
  if (hasDropped && !hasPlain) return std::nullopt;
  if (!hasPlain && !hasExcluded) return DomainScope{};
  const char* const begin = hasExcluded ? key : key + 1;
  return keep({begin, static_cast<size_t>(end - 1 - begin)});
}

std::optional<DomainScope> DomainScopes::site(std::string_view host) {
  char* const key = arena_.reserve(host.size() + 1);
  const size_t size = normalizeDomain(host, key);
  if (size == 0) return std::nullopt;
  return keep({key, size});
}

DomainScope DomainScopes::operator[](uint32_t number) const {
  const std::string_view key = table_[number];
  if (key.front() == '~') return {.unlessDomain = DomainList(key.substr(1)), .number = number};
  return {.ifDomain = DomainList(key), .number = number};
}

DomainScope DomainScopes::keep(std::string_view key) {
  const TextTable::Entry entry = table_.insert(key);
  if (entry.isNew) {
    const char* const reserved = arena_.reserve(0);
    arena_.commit(static_cast<size_t>(key.data() + key.size() - reserved));
  }
  return (*this)[entry.number];
}

}  // namespace orvel::filters
