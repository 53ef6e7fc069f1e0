#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Engine/Navigation.h"

namespace orvel {

class BrowserTab;

// The windows that the page of a tab opens: one for each press of a key or a button. Others are
// refused, and a toast offers to let the site open them for the rest of this run.
class PopUps {
 public:
  explicit PopUps(BrowserTab& tab) : tab_(tab) {}

  bool allows(const NavigationAction& action);
  // Another page is there.
  void pageDidChange() { refused_.clear(); }

 private:
  void refuse(const std::string& site, const NavigationAction& action);
  void openRefused(const std::string& site);

  BrowserTab& tab_;
  // The press that the latest window was opened by.
  std::optional<uint64_t> lastInput_;
  std::vector<URL> refused_;
};

}  // namespace orvel
