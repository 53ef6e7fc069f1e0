#pragma once

#include "Base/Published.h"
#include "BrowserCore/Addresses/URL.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// The page over the page.
class Peek {
 public:
  explicit Peek(BrowserStore& store) : store_(store) {}

  Published<TabRef, Peek> tab;  // null without
  Published<bool, Peek> isPeekExpanding = false;

  void openPeek(const URL& url, TabRef from);
  // Whether the tab's links to other sites open in a peek.
  bool peeksLinks(const BrowserTab& from) const;
  void closePeek();

 private:
  BrowserStore& store_;
};

}  // namespace orvel
