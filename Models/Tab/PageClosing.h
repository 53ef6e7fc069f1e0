#pragma once

#include <functional>
#include <unordered_set>
#include <utility>

#include "Models/Spaces/Space.h"

namespace orvel {

class BrowserStore;

// Closing as the user asks for it: pages that guard what was entered are heard first.
class PageClosing {
 public:
  explicit PageClosing(BrowserStore& store) : store_(store) {}

  // Closes the tab unless the user stays on its page; at once where nothing is guarded. Asked for
  // again, it shows the page that waits for an answer.
  void close(TabRef tab);
  // Closes those of today's tabs that are there now, but for pages that the user stays on. Asked
  // for again, it shows the page that waits for an answer.
  void clearToday(std::shared_ptr<Space> space);
  // Ends the program unless the user stays on one of its pages: then `stays` is called. Leaving one
  // is leaving all. Asked for again, it shows the page that waits for an answer.
  void quit(std::function<void()> stays = {});
  // The tab is asked whether the program may end; null: no tab is any more.
  void willAskToQuit(TabRef tab) { askedToQuit_ = std::move(tab); }
  // The same for clearing a space.
  void willAskToClear(TabRef tab) { askedToClear_ = std::move(tab); }
  bool isAsking(const TabRef& tab) const { return asked_.contains(tab); }

 private:
  BrowserStore& store_;
  // Those whose answer is awaited.
  std::unordered_set<TabRef> asked_;
  // The one that is asked whether the program may end, or a space be cleared; null while none is.
  TabRef askedToQuit_;
  TabRef askedToClear_;
};

}  // namespace orvel
