#pragma once

#include <memory>
#include <string>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "Support/Network/HTTPSession.h"

namespace orvel {

// Completions of what is typed, from the user's search engine. One session without cookies serves
// every question; it is made for the first.
class EngineSuggestions {
 public:
  // Larger replies are taken for something else.
  static constexpr uint64_t kMaxReply = 64u << 10;

  explicit EngineSuggestions(MakeHTTPSession makeSession) : makeSession_(std::move(makeSession)) {}

  // Asks the engine at `url` (see SearchEngine::suggestionsURL). Empty when it cannot be reached or
  // answers with an error or something else. The object outlives the task.
  Task<std::vector<std::string>> fetch(URL url);

 private:
  MakeHTTPSession makeSession_;
  std::unique_ptr<HTTPSession> session_;
};

}  // namespace orvel
