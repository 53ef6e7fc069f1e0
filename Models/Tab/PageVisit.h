#pragma once

#include <optional>

#include "Engine/WebView.h"

namespace orvel {

class BrowserTab;

// The visit of the page that a tab shows, as the history hears of it.
class PageVisit {
 public:
  explicit PageVisit(BrowserTab& tab) : tab_(tab) {}

  void record(const WebView& view);
  // Hands on the title of a page whose visit was recorded before the engine knew one.
  void name(const WebView& view);
  // Another page is there.
  void reset() { nameless_.reset(); }

 private:
  BrowserTab& tab_;
  // The page that was recorded without a title.
  std::optional<URL> nameless_;
};

}  // namespace orvel
