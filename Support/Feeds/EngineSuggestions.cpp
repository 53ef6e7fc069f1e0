#include "Support/Feeds/EngineSuggestions.h"

#include "BrowserCore/Addresses/SearchEngine.h"

namespace orvel {

Task<std::vector<std::string>> EngineSuggestions::fetch(URL url) {
  if (!session_) session_ = makeSession_();
  auto coming = orvel::fetch(*session_, url, {.mostBytes = kMaxReply});
  const HTTPResult answer = co_await std::move(coming);
  if (!answer || !answer->isOK()) co_return std::vector<std::string>();
  co_return SearchEngine::suggestions(answer->body);
}

}  // namespace orvel
