#include "Models/CommandBar/Suggestion.h"

#include "Base/Overloaded.h"
#include "Base/Texts.h"
#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Text/LetterCase.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

std::optional<std::string> hostOf(const std::optional<URL>& url) {
  return url ? std::optional(displayHost(*url)) : std::nullopt;
}

}  // namespace

std::string suggestionID(const Suggestion& suggestion) {
  return std::visit(
      Overloaded{
          [](const suggestion::Answer& of) { return "answer:" + of.question; },
          [](const suggestion::Shortcut& of) {
            return "shortcut:" + of.shortcut.keyword + ":" + of.query;
          },
          [](const suggestion::Address& of) { return "url:" + of.url.text(); },
          [](const suggestion::Search& of) { return "search:" + of.text; },
          [](const suggestion::Command& of) { return "command:" + of.command.id; },
          [](const suggestion::Tab& of) { return "tab:" + of.tab->id.text(); },
          [](const suggestion::History& of) { return "history:" + of.entry.url.text(); },
          [](const suggestion::Archived& of) { return "archived:" + of.record.tab.id.text(); }},
      suggestion);
}

SuggestionPresentation presentation(const Suggestion& suggestion, SearchEngine searchEngine) {
  using Shown = SuggestionPresentation;
  const auto searchWith = [](std::string_view name) {
    return filled(_("Search {engine}"), {{"engine", name}});
  };
  return std::visit(
      Overloaded{
          [](const suggestion::Answer& of) {
            return Shown{"equal.circle", of.answer, of.question, _("Copy")};
          },
          [&](const suggestion::Shortcut& of) {
            return Shown{"magnifyingglass", of.query, searchWith(of.shortcut.name), {}};
          },
          [](const suggestion::Address& of) {
            return Shown{"globe", of.url.text(), _("Open page"), {}};
          },
          [&](const suggestion::Search& of) {
            return Shown{"magnifyingglass", of.text, searchWith(searchEngine.name()), {}};
          },
          [](const suggestion::Command& of) {
            return Shown{of.command.symbol, of.command.title, _("Command"), of.command.shortcut};
          },
          [](const suggestion::Tab& of) {
            return Shown{of.tab, of.tab->displayTitle(), hostOf(of.tab->url), _("Switch to Tab")};
          },
          [](const suggestion::History& of) {
            const std::string host = displayHost(of.entry.url);
            return Shown{
                "clock.arrow.circlepath", of.entry.title.empty() ? host : of.entry.title, host, {}};
          },
          [](const suggestion::Archived& of) {
            const TabRecord& tab = of.record.tab;
            return Shown{
                "archivebox",
                tab.title.empty() ? hostOf(tab.url).value_or(_("Archived tab")) : tab.title,
                hostOf(tab.url), _("Reopen")};
          }},
      suggestion);
}

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
