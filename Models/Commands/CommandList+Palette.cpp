#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Commands/Actions.h"
#include "Models/Commands/CommandList.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"

// The command bar's own commands.
namespace orvel {

PaletteCommand CommandList::paletteCommand(ActionID id, const TabRef& tab) {
  const ActionInfo& action = actionInfo(id);
  const PaletteRow& row = action.palette;
  const bool isOn = row.titleWhenOn && Actions::isOn(store_, id, tab);
  const char* title = isOn ? row.titleWhenOn : row.title;
  const auto keywords = text::splitNonEmpty(row.keywords, ',');
  return {.id = std::string(row.id),
          .title = title ? _(title) : plainTitle(id),
          .symbol = std::string(isOn && !row.symbolWhenOn.empty() ? row.symbolWhenOn : row.symbol),
          .keywords = {keywords.begin(), keywords.end()},
          .shortcut = glyphs(action.equivalent),
          .perform = [this, id, tab] { Actions::perform(store_, id, tab); }};
}

std::vector<PaletteCommand> CommandList::paletteCommands() {
  std::vector<PaletteCommand> commands;
  for (const ActionID id : paletteActions()) commands.push_back(paletteCommand(id, nullptr));
  if (const TabRef tab = store_.activeSpace()->selectedTab())
    for (const ActionID id : tabPaletteActions()) commands.push_back(paletteCommand(id, tab));
  addSpaceCommands(commands);
  return commands;
}

void CommandList::addSpaceCommands(std::vector<PaletteCommand>& commands) {
  const auto active = store_.activeSpace();
  const auto& all = store_.spaces.peek();
  for (size_t i = 0; i < all.size(); ++i) {
    const auto& space = all[i];
    if (space == active) continue;
    const auto index = static_cast<int>(i);
    commands.push_back({"space." + space->id.text(),
                        filled(_("Switch to {space}"), {{"space", space->name.peek()}}),
                        space->symbol.peek(),
                        {"space"},
                        index < kNumberedActions ? glyphs(actionInfo(spaceAction(index)).equivalent)
                                                 : std::nullopt,
                        [this, space] { store_.switching.switchTo(space); }});
  }
}

}  // namespace orvel
