#include "Models/Commands/ActionCatalog.h"

#include <algorithm>

#include "Base/Assert.h"
#include "Base/Texts.h"

namespace orvel {

namespace {

using enum KeyEquivalent::Modifier;

constexpr std::string_view kUpArrow = "\uF700";
constexpr std::string_view kDownArrow = "\uF701";

constexpr ActionInfo kActions[] = {
    {ActionID::About, N_("About Orvel"), {}, ""},
    {ActionID::CheckForUpdates, N_("Check for Updates…"), {}, ""},
    {ActionID::Settings, N_("Settings…"), {Command, ","}, "<Control>comma"},
    {ActionID::Quit, N_("Quit Orvel"), {Command, "q"}, "<Control>q"},

    {ActionID::NewTab, N_("New Tab"), {Command, "t"}, "<Control>t"},
    {ActionID::OpenLocation, N_("Open Location…"), {Command, "l"}, "<Control>l|<Alt>d"},
    {ActionID::ReopenClosedTab,
     N_("Reopen Closed Tab"),
     {Shift | Command, "t"},
     "<Control><Shift>t"},
    {ActionID::NewLittleWindow,
     N_("New Little Window"),
     {Option | Command, "n"},
     "<Control><Alt>n"},
    {ActionID::NewPrivateWindow,
     N_("New Private Window"),
     {Shift | Command, "p"},
     "<Control><Shift>p"},
    {ActionID::PromoteLittleWindow,
     N_("Open Little Window in Orvel"),
     {Command, "o"},
     "<Control>o"},
    {ActionID::NewSpace, N_("New Space…"), {Shift | Command, "n"}, "<Control><Shift>n"},
    {ActionID::Capture, N_("Capture…"), {Shift | Command, "2"}, "<Control><Shift>2|<Control>at"},
    {ActionID::SavePage, N_("Save Page As…"), {Shift | Command, "s"}, "<Control><Shift>s"},
    {ActionID::ExportPDF, N_("Export as PDF…"), {}, ""},
    {ActionID::Print, N_("Print…"), {Command, "p"}, "<Control>p"},
    {ActionID::CloseTab, N_("Close Tab"), {Command, "w"}, "<Control>w"},
    {ActionID::CloseWindow, N_("Close Window"), {Shift | Command, "w"}, "<Control><Shift>w"},

    // The engine knows the other editing keys, but not these two.
    {ActionID::Undo, N_("Undo"), {Command, "z"}, "<Control>z", KeyReach::AfterOthers},
    {ActionID::Redo,
     N_("Redo"),
     {Shift | Command, "z"},
     "<Control><Shift>z",
     KeyReach::AfterOthers},
    {ActionID::Cut, N_("Cut"), {Command, "x"}, "<Control>x", KeyReach::Elsewhere},
    {ActionID::Copy, N_("Copy"), {Command, "c"}, "<Control>c", KeyReach::Elsewhere},
    {ActionID::Paste, N_("Paste"), {Command, "v"}, "<Control>v", KeyReach::Elsewhere},
    {ActionID::PasteAsPlainText,
     N_("Paste and Match Style"),
     {Option | Shift | Command, "v"},
     "<Control><Shift>v|<Control><Alt><Shift>v",
     KeyReach::AfterOthers},
    {ActionID::Delete, N_("Delete"), {}, ""},
    {ActionID::SelectAll, N_("Select All"), {Command, "a"}, "<Control>a", KeyReach::Elsewhere},
    {ActionID::Find, N_("Find…"), {Command, "f"}, "<Control>f"},
    {ActionID::FindNext, N_("Find Next"), {Command, "g"}, "<Control>g|F3"},
    {ActionID::FindPrevious,
     N_("Find Previous"),
     {Shift | Command, "g"},
     "<Control><Shift>g|<Shift>F3"},

    {ActionID::ToggleSidebar, N_("Toggle Sidebar"), {Command, "s"}, "<Control>s"},
    {ActionID::ToggleReader, N_("Show Reader"), {Shift | Command, "r"}, "<Control><Shift>r"},
    {ActionID::SplitWithRecentTab,
     N_("Split with Recent Tab"),
     {Control | Shift, "="},
     "<Alt><Shift>equal|<Alt>plus"},
    {ActionID::CloseSplitView, N_("Close Split View"), {}, ""},
    {ActionID::ToggleContentBlocking, N_("Block Ads & Trackers"), {}, ""},
    {ActionID::PauseBlocking, N_("Pause Blocking on This Site"), {}, ""},
    {ActionID::ToggleCookieRejection, N_("Auto-Reject Cookie Pop-ups"), {}, ""},
    {ActionID::HideItems, N_("Hide Distracting Items…"), {}, ""},
    {ActionID::Reload, N_("Reload Page"), {Command, "r"}, "<Control>r|F5"},
    {ActionID::ReloadFromOrigin,
     N_("Reload Ignoring Cache"),
     {Option | Command, "r"},
     "<Control><Alt>r|<Control>F5|<Shift>F5"},
    {ActionID::Stop, N_("Stop"), {Command, "."}, "Escape|<Control>period", KeyReach::AfterOthers},
    {ActionID::ZoomIn,
     N_("Zoom In"),
     {Command, "="},
     "<Control>plus|<Control>equal|<Control>KP_Add"},
    {ActionID::ZoomOut, N_("Zoom Out"), {Command, "-"}, "<Control>minus|<Control>KP_Subtract"},
    {ActionID::ActualSize, N_("Actual Size"), {Command, "0"}, "<Control>0|<Control>KP_0"},
    {ActionID::ToggleFullScreen, N_("Enter Full Screen"), {Control | Command, "f"}, "F11"},

    {ActionID::ViewSource, N_("View Source"), {Option | Command, "u"}, "<Control>u"},
    {ActionID::DeveloperTools,
     N_("Developer Tools"),
     {Option | Command, "i"},
     "<Control><Shift>i|F12"},

    {ActionID::Back, N_("Back"), {Command, "["}, "<Alt>Left|<Control>bracketleft"},
    {ActionID::Forward, N_("Forward"), {Command, "]"}, "<Alt>Right|<Control>bracketright"},
    {ActionID::ShowHistory, N_("Show All History"), {Command, "y"}, "<Control>h|<Control>y"},
    {ActionID::ClearHistory, N_("Clear History…"), {}, ""},

    {ActionID::RecentTabs, N_("Recent Tabs"), {Control, "\t"}, "<Control>Tab"},
    {ActionID::NextTab,
     N_("Next Tab"),
     {Option | Command, kDownArrow},
     "<Control>Page_Down|<Control><Alt>Down"},
    {ActionID::PreviousTab,
     N_("Previous Tab"),
     {Option | Command, kUpArrow},
     "<Control>Page_Up|<Control><Alt>Up"},
    {ActionID::TogglePin, N_("Pin / Unpin Tab"), {Command, "d"}, "<Control>d"},
    {ActionID::CopyLink, N_("Copy Link"), {Shift | Command, "c"}, "<Control><Shift>c"},
    {ActionID::CopyMarkdownLink,
     N_("Copy as Markdown Link"),
     {Option | Shift | Command, "c"},
     "<Control><Alt><Shift>c"},
    {ActionID::SelectTab1, N_("Select Tab 1"), {Command, "1"}, "<Control>1"},
    {ActionID::SelectTab2, N_("Select Tab 2"), {Command, "2"}, "<Control>2"},
    {ActionID::SelectTab3, N_("Select Tab 3"), {Command, "3"}, "<Control>3"},
    {ActionID::SelectTab4, N_("Select Tab 4"), {Command, "4"}, "<Control>4"},
    {ActionID::SelectTab5, N_("Select Tab 5"), {Command, "5"}, "<Control>5"},
    {ActionID::SelectTab6, N_("Select Tab 6"), {Command, "6"}, "<Control>6"},
    {ActionID::SelectTab7, N_("Select Tab 7"), {Command, "7"}, "<Control>7"},
    {ActionID::SelectTab8, N_("Select Tab 8"), {Command, "8"}, "<Control>8"},
    {ActionID::SelectLastTab, N_("Select Last Tab"), {Command, "9"}, "<Control>9"},

    {ActionID::Space1, N_("Space 1"), {Control, "1"}, "<Alt>1"},
    {ActionID::Space2, N_("Space 2"), {Control, "2"}, "<Alt>2"},
    {ActionID::Space3, N_("Space 3"), {Control, "3"}, "<Alt>3"},
    {ActionID::Space4, N_("Space 4"), {Control, "4"}, "<Alt>4"},
    {ActionID::Space5, N_("Space 5"), {Control, "5"}, "<Alt>5"},
    {ActionID::Space6, N_("Space 6"), {Control, "6"}, "<Alt>6"},
    {ActionID::Space7, N_("Space 7"), {Control, "7"}, "<Alt>7"},
    {ActionID::Space8, N_("Space 8"), {Control, "8"}, "<Alt>8"},
    {ActionID::Space9, N_("Space 9"), {Control, "9"}, "<Alt>9"},
    {ActionID::EditCurrentSpace, N_("Edit Current Space…"), {}, ""},

    {ActionID::Minimize, N_("Minimize"), {Command, "m"}, "<Control>m"},
    {ActionID::Zoom, N_("Zoom"), {}, ""},
    {ActionID::ReportBug, N_("Report a Bug…"), {}, ""},

    {ActionID::MainMenu, N_("Main Menu"), {}, "F10"},
    {ActionID::SwitchRegion, N_("Switch Between Sidebar and Page"), {}, "F6"},
};

constexpr bool isInOrder() {
  for (size_t i = 0; i < std::size(kActions); ++i)
    if (static_cast<size_t>(kActions[i].id) != i) return false;
  return true;
}
static_assert(isInOrder(), "an action is found by its place");

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

std::span<const ActionInfo> actionCatalog() { return kActions; }

const ActionInfo& actionInfo(ActionID id) { return kActions[static_cast<size_t>(id)]; }

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
  for (const ActionInfo& action : kActions)
    if (glyphs(action.equivalent) == shortcut) return shownKeys(action.keys);
  return std::nullopt;
}

std::string withKeys(std::string_view name, ActionID action) {
  return filled(_("{name} ({keys})"),
                {{"name", name}, {"keys", shownKeys(actionInfo(action).keys)}});
}

}  // namespace orvel
