#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvel {

// Everything that the menu and the keys can ask for.
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

// In the order in which the table reads.
struct ActionInfo {  // NOLINT(clang-analyzer-optin.performance.Padding)
  ActionID id;
  const char* title;  // marked, not looked up
  KeyEquivalent equivalent;
  // In the toolkit's notation, alternatives between "|", the one to be read first: "<Control>r|F5".
  // Empty: none.
  std::string_view keys;
  KeyReach reach = KeyReach::Everywhere;
};

// In the order of `ActionID`.
[[nodiscard]] std::span<const ActionInfo> actionCatalog();
[[nodiscard]] const ActionInfo& actionInfo(ActionID id);

// One of the actions that edit text.
[[nodiscard]] bool isTextEditing(ActionID id);

// The first of the alternatives as a person reads it: "Ctrl+Shift+N". Empty for no keys.
[[nodiscard]] std::string shownKeys(std::string_view keys);
// The same for the action that has these glyphs; absent when none has.
[[nodiscard]] std::optional<std::string> shownShortcut(std::string_view glyphs);
// What a control does, with the keys that do it too: "Copy Link (Ctrl+Shift+C)".
[[nodiscard]] std::string withKeys(std::string_view name, ActionID action);

}  // namespace orvel
