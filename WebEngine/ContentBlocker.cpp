#include "WebEngine/ContentBlocker.h"

#include <utility>

#include "BrowserCore/Text.h"

namespace orvel {

void ContentBlocker::start() {
  if (state.peek() != State::Idle) return;
  state = State::Ready;
  for (const auto& handler : std::exchange(readyHandlers, {})) handler();
}

std::shared_ptr<UserContentController> ContentBlocker::makeUserContentController() {
  auto controller = engine_.makeUserContentController();
  for (const UserScript& script : standardScripts) controller->addUserScript(script);
  return controller;
}

std::optional<std::string> ContentBlocker::site(const URL& url) {
  const auto host = url.host();
  if (!host) return std::nullopt;
  std::string site = text::lowerASCII(*host);
  if (site.starts_with("www.")) site.erase(0, 4);
  return site;
}

}  // namespace orvel
