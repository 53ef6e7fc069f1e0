#include "Models/Commands/ActionCatalogue.h"

#include <algorithm>

#include "Base/Assert.h"

namespace orvel {

namespace {

using enum KeyEquivalent::Modifier;

constexpr std::string_view kUpArrow = "\uF700";
constexpr std::string_view kDownArrow = "\uF701";

constexpr ActionInfo kActions[] = {
    {ActionID::About, "About Orvel", {}, ""},
    {ActionID::CheckForUpdates, "Check for Updates…", {}, ""},
    {ActionID::Settings, "Settings…", {Command, ","}, "<Control>comma"},
    {ActionID::Quit, "Quit Orvel", {Command, "q"}, "<Control>q"},

    {ActionID::NewTab, "New Tab", {Command, "t"}, "<Control>t"},
    {ActionID::OpenLocation, "Open Location…", {Command, "l"}, "<Control>l|<Alt>d"},
    {ActionID::ReopenClosedTab, "Reopen Closed Tab", {Shift | Command, "t"}, "<Control><Shift>t"},
    {ActionID::NewLittleWindow, "New Little Window", {Option | Command, "n"}, "<Control><Alt>n"},
    {ActionID::NewPrivateWindow, "New Private Window", {Shift | Command, "p"}, "<Control><Shift>p"},
    {ActionID::PromoteLittleWindow, "Open Little Window in Orvel", {Command, "o"}, "<Control>o"},
    {ActionID::NewSpace, "New Space…", {Shift | Command, "n"}, "<Control><Shift>n"},
    {ActionID::Capture, "Capture…", {Shift | Command, "2"}, "<Control><Shift>2|<Control>at"},
    {ActionID::ExportPDF, "Export as PDF…", {}, ""},
    {ActionID::Print, "Print…", {Command, "p"}, "<Control>p"},
    {ActionID::CloseTab, "Close Tab", {Command, "w"}, "<Control>w"},
    {ActionID::CloseWindow, "Close Window", {Shift | Command, "w"}, "<Control><Shift>w"},

    // The engine knows the other editing keys, but not these two.
    {ActionID::Undo, "Undo", {Command, "z"}, "<Control>z", KeyReach::AfterOthers},
    {ActionID::Redo, "Redo", {Shift | Command, "z"}, "<Control><Shift>z", KeyReach::AfterOthers},
    {ActionID::Cut, "Cut", {Command, "x"}, "<Control>x", KeyReach::Elsewhere},
    {ActionID::Copy, "Copy", {Command, "c"}, "<Control>c", KeyReach::Elsewhere},
    {ActionID::Paste, "Paste", {Command, "v"}, "<Control>v", KeyReach::Elsewhere},
    {ActionID::PasteAsPlainText,
     "Paste and Match Style",
     {Option | Shift | Command, "v"},
     "<Control><Shift>v|<Control><Alt><Shift>v",
     KeyReach::AfterOthers},
    {ActionID::Delete, "Delete", {}, ""},
    {ActionID::SelectAll, "Select All", {Command, "a"}, "<Control>a", KeyReach::Elsewhere},
    {ActionID::Find, "Find…", {Command, "f"}, "<Control>f"},
    {ActionID::FindNext, "Find Next", {Command, "g"}, "<Control>g|F3"},
    {ActionID::FindPrevious,
     "Find Previous",
     {Shift | Command, "g"},
     "<Control><Shift>g|<Shift>F3"},

    {ActionID::ToggleSidebar, "Toggle Sidebar", {Command, "s"}, "<Control>s"},
    {ActionID::ToggleReader, "Show Reader", {Shift | Command, "r"}, "<Control><Shift>r"},
    {ActionID::SplitWithRecentTab,
     "Split with Recent Tab",
     {Control | Shift, "="},
     "<Alt><Shift>equal|<Alt>plus"},
    {ActionID::CloseSplitView, "Close Split View", {}, ""},
    {ActionID::ToggleContentBlocking, "Block Ads & Trackers", {}, ""},
    {ActionID::PauseBlocking, "Pause Blocking on This Site", {}, ""},
    {ActionID::ToggleCookieRejection, "Auto-Reject Cookie Pop-ups", {}, ""},
    {ActionID::HideItems, "Hide Distracting Items…", {}, ""},
    {ActionID::Reload, "Reload Page", {Command, "r"}, "<Control>r|F5"},
    {ActionID::ReloadFromOrigin,
     "Reload Ignoring Cache",
     {Option | Command, "r"},
     "<Control><Alt>r|<Control>F5|<Shift>F5"},
    {ActionID::Stop, "Stop", {Command, "."}, "Escape|<Control>period", KeyReach::AfterOthers},
    {ActionID::ZoomIn, "Zoom In", {Command, "="}, "<Control>plus|<Control>equal|<Control>KP_Add"},
    {ActionID::ZoomOut, "Zoom Out", {Command, "-"}, "<Control>minus|<Control>KP_Subtract"},
    {ActionID::ActualSize, "Actual Size", {Command, "0"}, "<Control>0|<Control>KP_0"},
    {ActionID::ToggleFullScreen, "Enter Full Screen", {Control | Command, "f"}, "F11"},

    {ActionID::Back, "Back", {Command, "["}, "<Alt>Left|<Control>bracketleft"},
    {ActionID::Forward, "Forward", {Command, "]"}, "<Alt>Right|<Control>bracketright"},
    {ActionID::ShowHistory, "Show All History", {Command, "y"}, "<Control>h|<Control>y"},
    {ActionID::ClearHistory, "Clear History…", {}, ""},

    {ActionID::RecentTabs, "Recent Tabs", {Control, "\t"}, "<Control>Tab"},
    {ActionID::NextTab,
     "Next Tab",
     {Option | Command, kDownArrow},
     "<Control>Page_Down|<Control><Alt>Down"},
    {ActionID::PreviousTab,
     "Previous Tab",
     {Option | Command, kUpArrow},
     "<Control>Page_Up|<Control><Alt>Up"},
    {ActionID::TogglePin, "Pin / Unpin Tab", {Command, "d"}, "<Control>d"},
    {ActionID::CopyLink, "Copy Link", {Shift | Command, "c"}, "<Control><Shift>c"},
    {ActionID::CopyMarkdownLink,
     "Copy as Markdown Link",
     {Option | Shift | Command, "c"},
     "<Control><Alt><Shift>c"},
    {ActionID::SelectTab1, "Select Tab 1", {Command, "1"}, "<Control>1"},
    {ActionID::SelectTab2, "Select Tab 2", {Command, "2"}, "<Control>2"},
    {ActionID::SelectTab3, "Select Tab 3", {Command, "3"}, "<Control>3"},
    {ActionID::SelectTab4, "Select Tab 4", {Command, "4"}, "<Control>4"},
    {ActionID::SelectTab5, "Select Tab 5", {Command, "5"}, "<Control>5"},
    {ActionID::SelectTab6, "Select Tab 6", {Command, "6"}, "<Control>6"},
    {ActionID::SelectTab7, "Select Tab 7", {Command, "7"}, "<Control>7"},
    {ActionID::SelectTab8, "Select Tab 8", {Command, "8"}, "<Control>8"},
    {ActionID::SelectLastTab, "Select Last Tab", {Command, "9"}, "<Control>9"},

    {ActionID::Space1, "Space 1", {Control, "1"}, "<Alt>1"},
    {ActionID::Space2, "Space 2", {Control, "2"}, "<Alt>2"},
    {ActionID::Space3, "Space 3", {Control, "3"}, "<Alt>3"},
    {ActionID::Space4, "Space 4", {Control, "4"}, "<Alt>4"},
    {ActionID::Space5, "Space 5", {Control, "5"}, "<Alt>5"},
    {ActionID::Space6, "Space 6", {Control, "6"}, "<Alt>6"},
    {ActionID::Space7, "Space 7", {Control, "7"}, "<Alt>7"},
    {ActionID::Space8, "Space 8", {Control, "8"}, "<Alt>8"},
    {ActionID::Space9, "Space 9", {Control, "9"}, "<Alt>9"},
    {ActionID::EditCurrentSpace, "Edit Current Space…", {}, ""},

    {ActionID::Minimize, "Minimize", {Command, "m"}, "<Control>m"},
    {ActionID::Zoom, "Zoom", {}, ""},
    {ActionID::ReportBug, "Report a Bug…", {}, ""},

    {ActionID::MainMenu, "Main Menu", {}, "F10"},
    {ActionID::SwitchRegion, "Switch Between Sidebar and Page", {}, "F6"},
};

constexpr bool isInOrder() {
  for (size_t i = 0; i < std::size(kActions); ++i)
    if (static_cast<size_t>(kActions[i].id) != i) return false;
  return true;
}
static_assert(isInOrder(), "an action is found by its place");

struct Name {
  std::string_view of;
  std::string_view shown;
};
constexpr Name kModifierNames[] = {
    {"<Control>", "Ctrl+"}, {"<Alt>", "Alt+"}, {"<Shift>", "Shift+"}};
constexpr Name kKeyNames[] = {{"comma", ","},
                              {"period", "."},
                              {"equal", "="},
                              {"plus", "+"},
                              {"minus", "-"},
                              {"bracketleft", "["},
                              {"bracketright", "]"},
                              {"at", "@"},
                              {"Escape", "Esc"},
                              {"Page_Up", "Page Up"},
                              {"Page_Down", "Page Down"}};
constexpr Name kGlyphNames[] = {{"\t", "⇥"}, {"\r", "↩"}, {"\x1b", "esc"}, {" ", "Space"}};

std::string upperASCII(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}

// The name of the table, or else the text itself, a single letter in upper case.
std::string named(std::string_view text, std::span<const Name> names) {
  const auto* found = std::ranges::find(names, text, &Name::of).base();
  if (found != names.data() + names.size()) return std::string(found->shown);
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

std::span<const ActionInfo> actionCatalogue() { return kActions; }

const ActionInfo& actionInfo(ActionID id) { return kActions[static_cast<size_t>(id)]; }

bool isTextEditing(ActionID id) { return id >= ActionID::Undo && id <= ActionID::SelectAll; }

std::string shownKeys(std::string_view keys) {
  std::string_view first = keys.substr(0, keys.find('|'));
  const size_t key = first.rfind('>') + 1;
  const std::string_view held = first.substr(0, key);
  std::string text;
  for (const Name& modifier : kModifierNames)
    if (held.find(modifier.of) != std::string_view::npos) text += modifier.shown;
  return text + named(first.substr(key), kKeyNames);
}

std::optional<std::string> shownShortcut(std::string_view shortcut) {
  for (const ActionInfo& action : kActions)
    if (glyphs(action.equivalent) == shortcut) return shownKeys(action.keys);
  return std::nullopt;
}

}  // namespace orvel
