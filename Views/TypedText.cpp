#include "Views/TypedText.h"

#include "BrowserCore/URLInput.h"

namespace orvel {

std::optional<Suggestion> suggestionFor(std::string text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == std::string::npos) return std::nullopt;
  text = text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
  if (auto url = URLInput::explicitURL(text)) return suggestion::Address{std::move(*url)};
  return suggestion::Search{std::move(text)};
}

}  // namespace orvel
