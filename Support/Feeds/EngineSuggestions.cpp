#include "Support/Feeds/EngineSuggestions.h"

#include "BrowserCore/Addresses/SearchEngine.h"

namespace orvel {

Task<std::vector<std::string>> EngineSuggestions::fetch(URL url) {
  if (!session_) session_ = makeSession_();
  auto coming = orvel::fetch(*session_, url, {.mostBytes = kMaxReply});
  const HTTPAnswer answer = co_await std::move(coming);
  co_return answer.isOK() ? SearchEngine::suggestions(answer.body) : std::vector<std::string>();
}

}  // namespace orvel
