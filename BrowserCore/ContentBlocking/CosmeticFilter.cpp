#include "BrowserCore/ContentBlocking/CosmeticFilter.h"

#include <algorithm>
#include <array>

namespace orvel::filters {

namespace {

constexpr size_t maxSelectorSize = 3999;

constexpr std::array<std::string_view, 16> allowedPseudoClasses = {"not",
                                                                   "has",
                                                                   "is",
                                                                   "where",
                                                                   "root",
                                                                   "empty",
                                                                   "first-child",
                                                                   "last-child",
                                                                   "only-child",
                                                                   "nth-child",
                                                                   "nth-last-child",
                                                                   "first-of-type",
                                                                   "last-of-type",
                                                                   "only-of-type",
                                                                   "nth-of-type",
                                                                   "nth-last-of-type"};

constexpr bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-';
}

// Without an early end, so that the compiler can look at many bytes at a time.
bool isPlainASCII(std::string_view text) {
  bool isPlain = true;
  for (const char c : text) isPlain &= (c & 0x80) == 0 && c != '\\';
  return isPlain;
}

}  // namespace

std::optional<CosmeticMarker> CosmeticMarker::find(std::string_view line) {
  const size_t hash = line.find('#');
  if (hash == std::string_view::npos) return std::nullopt;
  const std::string_view domains = line.substr(0, hash);
  const std::string_view tail = line.substr(hash);
  if (tail.starts_with("##")) return CosmeticMarker{Kind::hide, domains, tail.substr(2)};
  if (tail.starts_with("#@#")) return CosmeticMarker{Kind::exception, domains, tail.substr(3)};
  for (const std::string_view marker : {"#?#", "#$#", "#%#", "#@?#", "#@$#", "#@%#"})
    if (tail.starts_with(marker)) return CosmeticMarker{Kind::unsupported, {}, {}};
  return std::nullopt;
}

bool isSupportedSelector(std::string_view selector) {
  if (selector.empty() || selector.size() > maxSelectorSize) return false;
  if (selector.front() == '+' || selector.front() == '^' || !isPlainASCII(selector)) return false;
  char quote = 0;
  int brackets = 0;
  int parentheses = 0;
  for (size_t i = 0; i < selector.size(); ++i) {
    const char c = selector[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
      continue;
    }
    switch (c) {
      case '"':
      case '\'':
        quote = c;
        break;
      case '[':
        ++brackets;
        break;
      case ']':
        --brackets;
        break;
      case '(':
        ++parentheses;
        break;
      case ')':
        --parentheses;
        break;
      case ':': {
        if (brackets != 0) break;
        const auto name = selector.substr(i + 1);
        const auto end = std::ranges::find_if_not(name, isNameCharacter);
        const auto length = static_cast<size_t>(end - name.begin());
        if (std::ranges::find(allowedPseudoClasses, name.substr(0, length)) ==
            allowedPseudoClasses.end())
          return false;
        i += length;
        break;
      }
      default:
        break;
    }
    if (brackets < 0 || parentheses < 0) return false;
  }
  return quote == 0 && brackets == 0 && parentheses == 0;
}

}  // namespace orvel::filters
