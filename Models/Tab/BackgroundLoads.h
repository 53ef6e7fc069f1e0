#pragma once

#include <memory>
#include <vector>

#include "Base/Observable.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// Loads the tabs that a click has opened behind the page in front, in their order, once that page
// has loaded.
class BackgroundLoads {
 public:
  static constexpr size_t kMaxAtOnce = 2;

  explicit BackgroundLoads(BrowserStore& store) : store_(store) {}

  void add(const TabRef& tab);

 private:
  struct Load {
    std::weak_ptr<BrowserTab> tab;
    bool hasBegun = false;
  };
  bool isRoom();
  static bool isUnderWay(Load& load);
  void follow();
  void begin();

  BrowserStore& store_;
  std::vector<std::weak_ptr<BrowserTab>> waiting_;
  std::vector<Load> loads_;
  Effect effect_;
};

}  // namespace orvel
