#pragma once

#include "Desktop/Windows.h"
#include "Engine/WebView.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// What commands act on.
class CommandTarget {
 public:
  explicit CommandTarget(BrowserStore& store) : store_(store) {}

  bool isMainWindowKey() const;
  // The tab that a menu row acts on: the key little window's, or else, while the main window is
  // key, the selected one. Null while another window is.
  TabRef targetTab() const;
  // The key little window's tab, or else the selected one.
  TabRef commandTab() const;
  // To the field that has the keyboard, or else to the target tab's page.
  void edit(EditingCommand command);
  // Closes the key window if it is not the main one, or else the peek, the selected tab, or,
  // without any, the main window.
  void closeSelectedTab();

 private:
  BrowserStore& store_;
};

}  // namespace orvel
