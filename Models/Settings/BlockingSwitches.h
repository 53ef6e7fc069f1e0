#pragma once

#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// What the user switches about blocking. Each tells by a toast and reloads the selected tab.
class BlockingSwitches {
 public:
  explicit BlockingSwitches(BrowserStore& store) : store_(store) {}

  void toggleContentBlocking();
  void toggleCookieRejection();
  // Null tab: the selected one. Does nothing for an address without a host.
  void toggleBlockingOnCurrentSite(TabRef tab = nullptr);

 private:
  void reloadSelectedTab();

  BrowserStore& store_;
};

}  // namespace orvel
