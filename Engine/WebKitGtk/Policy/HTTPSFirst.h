#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "Engine/WebKitGtk/Rules/WebKitRuleListStore.h"

namespace orvel {

// Every main-frame load of http on the usual port is tried over https first. The engine does the
// upgrade by a small content rule; hosts that turned out not to serve https are exceptions in it,
// for this run of the program.
//
// The engine's own switch for this has no way back to http, so it is not used.
class HTTPSFirst {
 public:
  explicit HTTPSFirst(const std::filesystem::path& folder);

  // Runs `action` once the rule is there: at once when it is, or when it cannot be had.
  void whenReady(std::function<void()> action);

  // Null until it is ready, and when it could not be compiled.
  const std::shared_ptr<ContentRuleList>& rules() const { return list_; }

  // Makes the host of `url` an exception and tells `done` when the rule is in force, or that it
  // could not be made.
  void addException(const URL& url, std::function<void(bool isInForce)> done);
  // The host of `url` is tried over http at once.
  bool isException(const URL& url) const;

  // Is told of each new rule, to put it in the place of the old one. `key` names the listener.
  void addListener(const void* key, std::function<void()> changed);
  void removeListener(const void* key);

 private:
  void compile();
  std::string source() const;

  std::shared_ptr<WebKitRuleListStore> store_;
  std::shared_ptr<ContentRuleList> list_;
  std::set<std::string> exceptions_;
  std::vector<std::function<void()>> waiting_;
  std::vector<std::pair<const void*, std::function<void()>>> listeners_;
  bool isReady_ = false;
  bool hasFailed_ = false;
  int generation_ = 0;
  // Keeps answers that come after the end from touching this.
  std::shared_ptr<bool> isAlive_ = std::make_shared<bool>(true);
};

}  // namespace orvel
