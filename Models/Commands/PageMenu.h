#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Engine/PageHit.h"
#include "Models/Commands/ActionCatalog.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// What the menu of a page can be asked for.
enum class PageMenuCommand {
  OpenLink,
  OpenLinkInSplitView,
  OpenLinkInLittleWindow,
  OpenLinkInPrivateWindow,
  DownloadLink,
  CopyLink,
  CopyCleanLink,
  CopyMarkdownLink,

  OpenPicture,
  SavePicture,
  CopyPicture,
  CopyPictureLink,

  TogglePlaying,
  ToggleMuted,
  ToggleLooping,
  ToggleControls,
  CopyMediaLink,

  Undo,
  Redo,
  Cut,
  Copy,
  Paste,
  PasteAsPlainText,
  SelectAll,
  Search,
  SearchInSplitView,

  Back,
  Forward,
  Reload,
  SavePage,
  Print,
  Capture,
  ViewSource,
  Inspect,
};

struct PageMenuRow {
  PageMenuCommand command;
  std::string title;
  bool isEnabled = true;
  bool beginsSection = false;
  std::optional<ActionID> action;  // whose keys do it too
  std::optional<bool> isOn;        // whether it is marked; absent: it never is

  friend bool operator==(const PageMenuRow&, const PageMenuRow&) = default;
};

// What the rows depend on besides the page.
struct PageMenuState {
  std::optional<URL> page;  // the address of the tab
  bool canGoBack = false;
  bool canGoForward = false;
  std::string searchEngine;  // its name
};

// The rows for what the page has there: those of the link, of the picture and of media, or those of
// the field, of the selection or of the page itself.
[[nodiscard]] std::vector<PageMenuRow> pageMenuRows(const PageHit& hit, const PageMenuState& state);

[[nodiscard]] PageMenuState pageMenuState(const BrowserStore& store, const BrowserTab& tab);

// Does what the row says. Does nothing for a tab without a page.
void performPageMenu(BrowserStore& store, const TabRef& tab, const PageHit& hit,
                     PageMenuCommand command);

}  // namespace orvel
