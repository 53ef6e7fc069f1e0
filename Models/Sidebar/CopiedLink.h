#pragma once

#include <string>

#include "Base/Published.h"
#include "BrowserCore/Addresses/URL.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// "[text](address)".
[[nodiscard]] std::string markdownLink(const std::string& text, const URL& address);

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
