#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Date.h"
#include "BrowserCore/Result.h"
#include "BrowserCore/UUID.h"

namespace orvel {

// One row a visited address and profile: how often, and when last. Synchronous; belongs to one
// thread at a time. Everything after opening is best effort: what fails changes nothing and answers
// empty.
class HistoryDatabase {
 public:
  struct Entry {
    URL url;
    std::string title;
    int64_t visitCount = 0;
    Date lastVisit;

    friend bool operator==(const Entry&, const Entry&) = default;
  };

  // Opens or makes the file; its folder must exist. A file that is no database opens, and every
  // later operation on it fails quietly: it is never replaced. The error is a sentence for the log.
  [[nodiscard]] static Result<HistoryDatabase, std::string> open(const std::filesystem::path& file);

  HistoryDatabase(HistoryDatabase&&) noexcept;
  HistoryDatabase& operator=(HistoryDatabase&&) noexcept;
  ~HistoryDatabase();

  // Counts a visit of an http or https address; others are passed over. An empty title leaves a
  // known one in place.
  void recordVisit(const UUID& profile, const URL& url, const std::string& title, Date at);

  // Names a page that is known, without a visit; an empty title changes nothing.
  void setTitle(const UUID& profile, const URL& url, const std::string& title);

  // The profile's pages whose address or title contains `query`, the best first: visits divided by
  // one plus the age in days. Letters of ASCII match in any case. An empty query matches every
  // page. Pages of the same score come with the latest visit first.
  std::vector<Entry> search(std::string_view query, const UUID& profile, size_t limit, Date now);

  // The pages visited last, the latest first.
  std::vector<Entry> recent(const UUID& profile, size_t limit);

  void remove(const URL& url, const UUID& profile);
  void removeAll(const UUID& profile);
  void removeAll();

  // Reads the profile's texts into memory, as the first search would.
  void prepareSearch(const UUID& profile);

 private:
  struct State;
  explicit HistoryDatabase(std::unique_ptr<State> state);

  std::unique_ptr<State> state_;
};

}  // namespace orvel
