#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/Image.h"
#include "BrowserCore/Session/TabRecord.h"
#include "BrowserCore/UUID.h"
#include "Models/Spaces/Space.h"

// The small values that the store keeps and the interface observes.
namespace orvel {

enum class CommandBarMode { NewTab, CurrentTab, Quick };

// The find bar.
struct FindState {
  std::string query;
  std::optional<bool> matchFound;  // absent before the first answer
  int calls = 0;                   // grows when the user asks for the bar again

  friend bool operator==(const FindState&, const FindState&) = default;
};

// A short message over the page that goes by itself.
struct Toast {
  UUID id = UUID::random();
  std::string message;
  std::optional<std::string> symbol;  // the name of an icon
  std::function<void()> undo;         // empty: no button
  std::string actionTitle = "Undo";   // the button's label

  // By id and what is seen.
  friend bool operator==(const Toast& a, const Toast& b) {
    return a.id == b.id && a.message == b.message && a.symbol == b.symbol &&
           a.actionTitle == b.actionTitle && !a.undo == !b.undo;
  }
};

// A tab that can be opened again.
struct ClosedTab {
  UUID spaceID;
  TabRecord record;
};

// The article on show in the reader.
struct ReaderArticle {
  UUID id = UUID::random();
  UUID tabID;
  std::string title;
  std::optional<std::string> byline;
  std::optional<std::string> siteName;
  std::string content;  // markup
  std::optional<URL> baseURL;

  friend bool operator==(const ReaderArticle&, const ReaderArticle&) = default;
};

// The open tab switcher.
struct TabSwitcherState {
  std::vector<UUID> tabIDs;  // the most recently used first
  size_t index = 0;          // the highlighted one

  friend bool operator==(const TabSwitcherState&, const TabSwitcherState&) = default;
};

// The space that is being made or edited.
struct SpaceDraft {
  UUID id = UUID::random();
  std::optional<UUID> spaceID;  // absent for a new space
  std::string name;
  double hue = 0;
  std::string symbol;
  std::optional<UUID> profileID;  // absent: a profile of its own
  Space::Appearance appearance = Space::Appearance::Auto;

  friend bool operator==(const SpaceDraft&, const SpaceDraft&) = default;
};

// A window of one tab outside all spaces.
class LittleWindow {
 public:
  virtual ~LittleWindow() = default;
  virtual const TabRef& tab() const = 0;
  virtual bool isActive() const = 0;
  // Moves the tab to the sidebar.
  virtual void promote() = 0;
  // Ends the tab and tells the store.
  virtual void close() = 0;
};

}  // namespace orvel
