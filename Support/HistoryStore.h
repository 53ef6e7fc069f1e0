#pragma once

#include <cstdint>
#include <optional>
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
  // Absent profile: of every profile.
  virtual void removeAll(const std::optional<UUID>& profile) = 0;
};

}  // namespace orvel
