#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Engine/Navigation.h"

namespace orvel {

struct SchemeResponse {
  int status = 200;
  std::string mimeType;
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;
};

// Serves the pages of a scheme of the program's own. Answers exactly once, at once or later.
using URLSchemeHandler =
    std::function<void(const URLRequest& request, std::function<void(SchemeResponse)> answer)>;

}  // namespace orvel
