#include "Models/Commands/ActionCatalog.h"

#include <algorithm>

#include "Base/Assert.h"
#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

using enum KeyEquivalent::Modifier;

struct Name {
  std::string_view of;
  const char* shown;
};
constexpr Name kModifierNames[] = {
    {"<Control>", N_("Ctrl+")}, {"<Alt>", N_("Alt+")}, {"<Shift>", N_("Shift+")}};
constexpr Name kKeyNames[] = {{"comma", ","},
                              {"period", "."},
                              {"equal", "="},
                              {"plus", "+"},
                              {"minus", "-"},
                              {"bracketleft", "["},
                              {"bracketright", "]"},
                              {"at", "@"},
                              {"Escape", N_("Esc")},
                              {"Page_Up", N_("Page Up")},
                              {"Page_Down", N_("Page Down")}};
constexpr Name kGlyphNames[] = {
    {"\t", "⇥"}, {"\r", "↩"}, {"\x1b", "esc"}, {" ", "Space"}};  // no text

std::string upperASCII(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}

// The name of the table, or else the text itself, a single letter in upper case.
std::string named(std::string_view text, std::span<const Name> names) {
  const auto* found = std::ranges::find(names, text, &Name::of).base();
  if (found != names.data() + names.size()) return found->shown;
  return text.size() == 1 ? upperASCII(text) : std::string(text);
}

ActionID numbered(ActionID first, int index) {
  require(index >= 0 && index < kNumberedActions, "only so many are numbered");
  return static_cast<ActionID>(static_cast<int>(first) + index);
}

}  // namespace

ActionID selectTabAction(int index) { return numbered(ActionID::SelectTab1, index); }

ActionID spaceAction(int index) { return numbered(ActionID::Space1, index); }

std::optional<std::string> glyphs(const KeyEquivalent& equivalent) {
  if (equivalent.key.empty()) return std::nullopt;
  std::string text;
  if (equivalent.modifiers & Control) text += "⌃";
  if (equivalent.modifiers & Option) text += "⌥";
  if (equivalent.modifiers & Shift) text += "⇧";
  if (equivalent.modifiers & Command) text += "⌘";
  return text + named(equivalent.key, kGlyphNames);
}

const ActionInfo& actionInfo(ActionID id) { return actionCatalog()[static_cast<size_t>(id)]; }

std::string withoutEllipsis(std::string title) {
  constexpr std::string_view kEllipsis = "…";
  for (size_t at = 0; (at = title.find(kEllipsis, at)) != std::string::npos;)
    title.erase(at, kEllipsis.size());
  return std::string(text::trimmedBlanks(title));
}

std::string plainTitle(ActionID action) { return withoutEllipsis(_(actionInfo(action).title)); }

bool isTextEditing(ActionID id) { return id >= ActionID::Undo && id <= ActionID::SelectAll; }

std::string shownKeys(std::string_view keys) {
  std::string_view first = keys.substr(0, keys.find('|'));
  const size_t key = first.rfind('>') + 1;
  const std::string_view held = first.substr(0, key);
  std::string text;
  for (const Name& modifier : kModifierNames)
    if (held.find(modifier.of) != std::string_view::npos) text += _(modifier.shown);
  return text + _(named(first.substr(key), kKeyNames).c_str());
}

std::optional<std::string> shownShortcut(std::string_view shortcut) {
  for (const ActionInfo& action : actionCatalog())
    if (glyphs(action.equivalent) == shortcut) return shownKeys(action.keys);
  return std::nullopt;
}

std::string withKeys(std::string_view name, ActionID action) {
  return filled(_("{name} ({keys})"),
                {{"name", name}, {"keys", shownKeys(actionInfo(action).keys)}});
}

std::string withKeys(ActionID action) { return withKeys(plainTitle(action), action); }

}  // namespace orvel
