#include "BrowserCore/Addresses/SearchShortcut.h"

#include "BrowserCore/Addresses/Endpoints.h"
#include "BrowserCore/Addresses/PercentCoding.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

constexpr std::string_view kPlaceholder = "%s";
constexpr size_t kMaxAddress = size_t{64} << 20;

size_t countPlaceholders(std::string_view text) {
  size_t count = 0;
  for (size_t at = text.find(kPlaceholder); at != std::string_view::npos;
       at = text.find(kPlaceholder, at + kPlaceholder.size()))
    ++count;
  return count;
}

std::string fillPlaceholders(std::string_view text, std::string_view value) {
  std::string result;
  while (true) {
    const size_t at = text.find(kPlaceholder);
    result += text.substr(0, at);
    if (at == std::string_view::npos) return result;
    result += value;
    text.remove_prefix(at + kPlaceholder.size());
  }
}

}  // namespace

const std::vector<SearchShortcut>& SearchShortcut::builtIn() {
  const auto make = [](std::string_view word, std::string_view site, std::string_view address) {
    return SearchShortcut{UUID::random(), std::string(word), std::string(site),
                          std::string(address)};
  };
  static const std::vector<SearchShortcut> list = {
      make("yt", "YouTube", endpoints::kYouTubeTemplate),
      make("gh", "GitHub", endpoints::kGitHubTemplate),
      make("w", "Wikipedia", endpoints::kWikipediaTemplate),
      make("maps", "Apple Maps", endpoints::kAppleMapsTemplate),
      make("amz", "Amazon", endpoints::kAmazonTemplate),
      make("r", "Reddit", endpoints::kRedditTemplate),
      make("x", "X", endpoints::kXTemplate),
      make("img", "Google Images", endpoints::kGoogleImagesTemplate),
      make("so", "Stack Overflow", endpoints::kStackOverflowTemplate),
      make("npm", "npm", endpoints::kNpmTemplate),
  };
  return list;
}

std::optional<SearchShortcut::Match> SearchShortcut::match(
    std::string_view text, std::span<const SearchShortcut> shortcuts) {
  const auto [first, rest] = text::splitOnce(text::trimmedBlanks(text), ' ');
  if (rest.empty()) return std::nullopt;
  const std::string typed = text::lower(first);
  for (const SearchShortcut& shortcut : shortcuts)
    if (text::lower(text::trimmedBlanks(shortcut.keyword)) == typed &&
        shortcut.urlTemplate.find(kPlaceholder) != std::string::npos)
      return Match{shortcut, std::string(text::trimmedBlanks(rest))};
  return std::nullopt;
}

std::optional<URL> SearchShortcut::url(std::string_view query) const {
  const auto encoded = percentEncoded(query, kQueryValueCharacters);
  if (!encoded) return std::nullopt;
  const std::string_view text = text::trimmedBlanks(urlTemplate);
  if (text.size() > kMaxAddress ||
      (!encoded->empty() && countPlaceholders(text) > kMaxAddress / encoded->size()))
    return std::nullopt;
  std::string address = fillPlaceholders(text, *encoded);
  if (address.find("://") == std::string::npos) address.insert(0, "https://");
  return URL::parse(address);
}

}  // namespace orvel
