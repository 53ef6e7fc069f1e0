#pragma once

#include <cstdint>
#include <string>

#include "BrowserCore/Date.h"
#include "BrowserCore/URL.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// The visits of each profile.
class HistoryStore {
 public:
  struct Entry {
    URL url;
    std::string title;
    int64_t visitCount = 0;
    Date lastVisit;

    friend bool operator==(const Entry&, const Entry&) = default;
  };

  virtual ~HistoryStore() = default;

  virtual void recordVisit(const UUID& profile, const URL& url, const std::string& title,
                           Date at) = 0;
};

}  // namespace orvel
