#include "Models/Commands/CommandList.h"

#include <algorithm>
#include <unordered_set>

#include "BrowserCore/Text/Characters.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Commands/MainMenu.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string all;
  for (const std::string& text : texts) {
    if (!all.empty()) all += separator;
    all += text;
  }
  return all;
}

// Every word of the query begins some word of the title or the keywords.
bool matches(const PaletteCommand& command, const std::vector<std::string_view>& words) {
  const std::string haystack = text::lower(command.title + " " + joined(command.keywords, " "));
  const auto candidates = text::splitNonEmpty(haystack, ' ');
  return std::ranges::all_of(words, [&](std::string_view word) {
    return std::ranges::any_of(
        candidates, [&](std::string_view candidate) { return candidate.starts_with(word); });
  });
}

// The first item with this title; null without one.
MenuItem* itemTitled(Menu& menu, const std::string& title) {
  const auto found = std::ranges::find(menu.items, title, &MenuItem::title);
  return found == menu.items.end() ? nullptr : &*found;
}

bool choose(const MenuItem& item) {
  if (!item.perform || !item.isEnabled()) return false;
  // The item may be made anew meanwhile.
  const auto perform = item.perform;
  perform();
  return true;
}

}  // namespace

Menu& CommandList::mainMenu() {
  if (!mainMenu_) mainMenu_ = std::make_unique<Menu>(MainMenu::make(store_));
  return *mainMenu_;
}

std::vector<PaletteCommand> CommandList::commandsMatching(const std::string& query) {
  constexpr size_t kMinFirstWord = 2;
  const std::string lowered = text::lower(query);
  const auto words = text::splitNonEmpty(lowered, ' ');
  if (words.empty() || text::characterCount(words.front(), kMinFirstWord) < kMinFirstWord)
    return {};

  std::vector<PaletteCommand> commands = paletteCommands();
  std::unordered_set<std::string> titles;
  std::unordered_set<std::string> shortcuts;
  for (const PaletteCommand& command : commands) {
    titles.insert(text::lower(command.title));
    if (command.shortcut) shortcuts.insert(*command.shortcut);
  }
  for (PaletteCommand& row : menuCommands())
    if (!titles.contains(text::lower(row.title)) &&
        !(row.shortcut && shortcuts.contains(*row.shortcut)))
      commands.push_back(std::move(row));
  std::erase_if(commands, [&](const auto& command) { return !matches(command, words); });
  return commands;
}

// Harvesting the menu

std::vector<PaletteCommand> CommandList::menuCommands() {
  constexpr Duration kFresh = 1s;
  const Instant now = store_.services().scheduler.instant();
  if (menuCommands_ && now - menuCommands_->time < kFresh) return menuCommands_->commands;
  std::vector<PaletteCommand> commands;
  for (const MenuItem& item : mainMenu().items)
    if (item.submenu) collect(*item.submenu, {item.title}, commands);
  menuCommands_ = {now, commands};
  return commands;
}

void CommandList::collect(Menu& menu, const std::vector<std::string>& path,
                          std::vector<PaletteCommand>& commands) {
  const auto below = [&path](const std::string& title) {
    auto longer = path;
    longer.push_back(title);
    return longer;
  };
  menu.update();
  for (const MenuItem& item : menu.items) {
    if (item.isSeparator() || item.isHidden) continue;
    if (item.submenu) {
      collect(*item.submenu, below(item.title), commands);
      continue;
    }
    if (!item.isEnabled() || (item.action && isTextEditing(*item.action))) continue;
    const std::string title = withoutEllipsis(item.title);
    if (title.empty()) continue;
    std::vector<std::string> keywords = path;
    std::erase(keywords, "");
    commands.push_back(
        {.id = "menu." + joined(below(title), "."),
         .title = title,
         .symbol = "filemenu.and.selection",
         .keywords = std::move(keywords),
         .shortcut = shortcut(item),
         .perform = [this, titles = below(item.title)] { performMenuItem(titles); }});
  }
}

std::optional<std::string> CommandList::shortcut(const MenuItem& of) {
  return of.action ? glyphs(actionInfo(*of.action).equivalent) : std::nullopt;
}

// Choosing from the menu

void CommandList::performMenuItem(std::span<const std::string> titles) {
  if (titles.empty()) return;
  Menu* menu = &mainMenu();
  for (const std::string& title : titles.first(titles.size() - 1)) {
    const MenuItem* item = itemTitled(*menu, title);
    if (!item || !item->submenu) return;
    menu = item->submenu.get();
    menu->update();
  }
  if (const MenuItem* item = itemTitled(*menu, titles.back())) choose(*item);
}

bool CommandList::performAction(ActionID action) {
  for (const MenuItem& top : mainMenu().items) {
    if (!top.submenu) continue;
    top.submenu->update();
    const auto& items = top.submenu->items;
    const auto found = std::ranges::find(items, std::optional(action), &MenuItem::action);
    if (found != items.end()) return choose(*found);
  }
  return false;
}

}  // namespace orvel
