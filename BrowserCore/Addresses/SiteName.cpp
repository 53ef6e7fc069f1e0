#include "BrowserCore/Addresses/SiteName.h"

#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/Characters.h"
#include "BrowserCore/Text/Text.h"
#include "BrowserCore/Text/Translatable.h"

namespace orvel {

namespace {

constexpr std::string_view kSeparators[] = {" - ", " – ", " — ", " | ", " · "};
constexpr size_t kMaxName = 30;

// The separator whose first place in the title is the furthest right; empty without any.
std::string_view lastSeparator(std::string_view title) {
  std::string_view last;
  size_t furthest = 0;
  for (const std::string_view separator : kSeparators) {
    const size_t place = title.find(separator);
    if (place == std::string_view::npos || (!last.empty() && place <= furthest)) continue;
    last = separator;
    furthest = place;
  }
  return last;
}

// The piece behind the last separator. They are counted from the left, where two share a blank.
std::string_view lastPiece(std::string_view title, std::string_view separator) {
  for (size_t place = 0; (place = title.find(separator)) != std::string_view::npos;)
    title.remove_prefix(place + separator.size());
  return title;
}

}  // namespace

std::string siteName(std::string_view title, const std::optional<URL>& url) {
  if (const std::string_view separator = lastSeparator(title); !separator.empty()) {
    const std::string_view name = text::trimmedBlanks(lastPiece(title, separator));
    if (!name.empty() && text::characterCount(name, kMaxName + 1) <= kMaxName)
      return std::string(name);
  }
  return url ? displayHost(*url) : translatable("Pinned tab");
}

}  // namespace orvel
