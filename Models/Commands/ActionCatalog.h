#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvel {

// Everything that the menu, the keys and the command bar can ask for.
enum class ActionID {
  About,
  CheckForUpdates,
  Settings,
  Quit,

  NewTab,
  OpenLocation,
  ReopenClosedTab,
  NewLittleWindow,
  NewPrivateWindow,
  PromoteLittleWindow,
  NewSpace,
  Capture,
  SavePage,
  ExportPDF,
  Print,
  CloseTab,
  CloseWindow,

  Undo,
  Redo,
  Cut,
  Copy,
  Paste,
  PasteAsPlainText,
  Delete,
  SelectAll,
  Find,
  FindNext,
  FindPrevious,

  ToggleSidebar,
  ToggleReader,
  SplitWithRecentTab,
  CloseSplitView,
  ToggleContentBlocking,
  PauseBlocking,
  ToggleCookieRejection,
  HideItems,
  Reload,
  ReloadFromOrigin,
  Stop,
  ZoomIn,
  ZoomOut,
  ActualSize,
  ToggleFullScreen,
  ViewSource,
  DeveloperTools,

  Back,
  Forward,
  ShowHistory,
  ClearHistory,

  RecentTabs,
  NextTab,
  PreviousTab,
  TogglePin,
  CopyLink,
  CopyMarkdownLink,
  SelectTab1,
  SelectTab2,
  SelectTab3,
  SelectTab4,
  SelectTab5,
  SelectTab6,
  SelectTab7,
  SelectTab8,
  SelectLastTab,

  Space1,
  Space2,
  Space3,
  Space4,
  Space5,
  Space6,
  Space7,
  Space8,
  Space9,
  EditCurrentSpace,

  Minimize,
  Zoom,
  ReportBug,

  // By keys alone.
  MainMenu,
  SwitchRegion,

  // From the command bar alone.
  NewFolder,
  OpenDownloads,
  ToggleMute,
};

// How many tabs and spaces have keys.
inline constexpr int kNumberedActions = 9;
// From 0 on, below `kNumberedActions`; the last of the tabs' is `SelectLastTab`.
[[nodiscard]] ActionID selectTabAction(int index);
[[nodiscard]] ActionID spaceAction(int index);

// A key with its modifiers in the notation of glyphs, by which commands are compared. What a person
// reads is `shownKeys`.
struct KeyEquivalent {
  enum Modifier : unsigned { Control = 1, Option = 2, Shift = 4, Command = 8 };

  unsigned modifiers = 0;
  std::string_view key;  // one character, small; empty: no key
};

// "⇧⌘N"; absent without a key.
[[nodiscard]] std::optional<std::string> glyphs(const KeyEquivalent& equivalent);

// Who gets an action's keys first.
enum class KeyReach {
  Everywhere,   // the program, ahead of the page and the fields
  AfterOthers,  // the program, when neither page nor field wanted them
  Elsewhere,    // the page and the fields alone; they are only told
};

// What an action works on. From the command bar it works on the selected tab.
enum class ActsOn {
  Program,
  MainWindow,    // from the menu only while the main window is key
  ActiveWindow,  // the key window; disabled while none of ours is
  Tab,           // from the menu the target tab; nothing happens without one
  CommandTab,    // from the menu the key little window's tab, or else the selected one
};

enum class MenuName { None, Application, File, Edit, View, History, Tabs, Spaces, Window, Help };

// An action's row in the main menu, where rows stand in the order of `ActionID`.
struct MenuPlace {
  MenuName menu = MenuName::None;  // none: no row
  int section = 0;                 // separators stand between sections
  bool isHidden = false;           // only its keys work
};

// An action's row in the command bar. Titles are marked, not looked up.
struct PaletteRow {
  std::string_view id;                // empty: no row
  const char* title = nullptr;        // null: the menu's
  const char* titleWhenOn = nullptr;  // null: always the same
  std::string_view symbol;
  std::string_view symbolWhenOn;  // empty: always the same
  std::string_view keywords;      // between commas
};

// All that is to be known of an action but what it does, which is `Actions`.
struct ActionInfo {  // NOLINT(clang-analyzer-optin.performance.Padding)
  ActionID id;
  // As the menu says it, which ends with "…" where more is asked first. Marked, not looked up.
  const char* title;
  MenuPlace place = {};
  ActsOn actsOn = ActsOn::Program;
  bool isMarked = false;  // the menu shows whether it is on
  KeyEquivalent equivalent = {};
  // In the toolkit's notation, alternatives between "|", the one to be read first: "<Control>r|F5".
  // Empty: none.
  std::string_view keys = {};
  KeyReach reach = KeyReach::Everywhere;
  PaletteRow palette = {};
};

// In the order of `ActionID`.
[[nodiscard]] std::span<const ActionInfo> actionCatalog();
[[nodiscard]] const ActionInfo& actionInfo(ActionID id);

// The command bar's rows, in their order: those that are always there, and those for a selected
// tab.
[[nodiscard]] std::span<const ActionID> paletteActions();
[[nodiscard]] std::span<const ActionID> tabPaletteActions();

// The menu's title in the person's language and without "…".
[[nodiscard]] std::string plainTitle(ActionID action);
[[nodiscard]] std::string withoutEllipsis(std::string title);

// One of the actions that edit text.
[[nodiscard]] bool isTextEditing(ActionID id);

// The first of the alternatives as a person reads it: "Ctrl+Shift+N". Empty for no keys.
[[nodiscard]] std::string shownKeys(std::string_view keys);
// The same for the action that has these glyphs; absent when none has.
[[nodiscard]] std::optional<std::string> shownShortcut(std::string_view glyphs);
// What a control does, with the keys that do it too: "Copy Link (Ctrl+Shift+C)".
[[nodiscard]] std::string withKeys(std::string_view name, ActionID action);
[[nodiscard]] std::string withKeys(ActionID action);

}  // namespace orvel
