#pragma once

#include "Base/Published.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

enum class LinkForm { Plain, Markdown };

// Copying a tab's address, without what follows people around.
class CopiedLink {
 public:
  explicit CopiedLink(BrowserStore& store) : store_(store) {}

  // For a moment after a link was copied; without a sidebar a toast tells instead.
  Published<bool, CopiedLink> didCopyLink = false;

  // Null tab: the selected one.
  void copyLink(TabRef tab = nullptr, LinkForm form = LinkForm::Plain);

 private:
  BrowserStore& store_;
};

}  // namespace orvel
