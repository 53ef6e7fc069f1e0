#include "Models/Suggestion.h"

#include "BrowserCore/LetterCase.h"
#include "Models/BrowserTab.h"
#include "Models/Overloaded.h"

namespace orvel {

std::optional<std::string> memoryKey(const Suggestion& suggestion) {
  using Key = std::optional<std::string>;
  return std::visit(
      Overloaded{
          [](const suggestion::Answer&) { return Key(); },
          [](const suggestion::Shortcut& of) { return Key("shortcut:" + of.shortcut.keyword); },
          [](const suggestion::Address& of) { return Key("url:" + of.url.text()); },
          [](const suggestion::History& of) { return Key("url:" + of.entry.url.text()); },
          [](const suggestion::Search& of) { return Key("search:" + text::lowerCased(of.text)); },
          [](const suggestion::Command& of) { return Key("command:" + of.command.id); },
          [](const suggestion::Tab& of) { return Key("tab:" + of.tab->id.text()); },
          [](const suggestion::Archived& of) {
            return Key("archived:" + of.record.tab.id.text());
          }},
      suggestion);
}

}  // namespace orvel
