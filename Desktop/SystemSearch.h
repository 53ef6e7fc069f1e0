#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Base/Image.h"
#include "BrowserCore/Addresses/URL.h"

namespace orvel {

struct SearchableItem {
  std::string identifier;
  std::string domain;
  std::string title;
  std::string contentDescription;
  std::optional<URL> url;
  ImageRef thumbnail;
};

// The desktop's own search. Each answer comes on a later turn; failures answer too.
class SystemSearch {
 public:
  virtual ~SystemSearch() = default;
  virtual void deleteDomain(const std::string& domain, std::function<void()> answer) = 0;
  virtual void deleteItems(std::vector<std::string> identifiers, std::function<void()> answer) = 0;
  virtual void index(std::vector<SearchableItem> items, std::function<void()> answer) = 0;
};

}  // namespace orvel
