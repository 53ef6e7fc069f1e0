#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/Observable.h"
#include "Base/Scheduler.h"
#include "BrowserCore/URL.h"
#include "Engine/Engine.h"

namespace orvel {

// Makes the content controllers of pages. It has no lists yet and is ready as soon as it starts.
class ContentBlocker {
 public:
  enum class State { Idle, Preparing, Ready };

  ContentBlocker(Engine& engine, Scheduler& scheduler) : engine_(engine), scheduler_(scheduler) {}

  Observable<State> state = State::Idle;
  Observable<bool> isEnabled = true;
  // The wait for the first lists is over: pages are held back no longer.
  bool hasTimedOut = false;
  // Run once each, in order, when the first lists are there or the wait is over.
  std::vector<std::function<void()>> readyHandlers;
  // Scripts that every page gets.
  std::vector<UserScript> standardScripts;

  void start();
  std::shared_ptr<UserContentController> makeUserContentController();

  // The name of the address's site: its host in lower case without "www."; absent without a host.
  [[nodiscard]] static std::optional<std::string> site(const URL& url);

 private:
  Engine& engine_;
  [[maybe_unused]] Scheduler& scheduler_;
};

}  // namespace orvel
