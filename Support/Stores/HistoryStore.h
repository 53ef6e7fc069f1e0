#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/Scheduler.h"
#include "BrowserCore/History/HistoryDatabase.h"

namespace orvel {

// One place where a person searches as they type: of its searches only the latest counts. Copies
// are the same place.
class HistorySearchField {
 public:
  // The number of a search that begins now, which overtakes the ones before it.
  uint64_t begin() const { return ++*latest_; }
  // May be asked on any thread.
  bool isOvertaken(uint64_t search) const { return *latest_ != search; }

 private:
  std::shared_ptr<std::atomic<uint64_t>> latest_ = std::make_shared<std::atomic<uint64_t>>(0);
};

// The visits of each profile, as `HistoryDatabase` keeps them, on a queue of their own: what is
// asked for is done in the order of asking and never on the main thread, which gets the answers.
// What fails changes nothing and answers empty. Belongs to the main thread.
class HistoryStore {
 public:
  using Entry = HistoryDatabase::Entry;
  using Entries = std::vector<Entry>;

  // Opens or makes the file on the queue. A file that cannot be opened leaves a store that keeps
  // nothing. What was asked for before the store ends is carried out.
  [[nodiscard]] static std::unique_ptr<HistoryStore> open(Scheduler& scheduler,
                                                          std::filesystem::path file);

  virtual ~HistoryStore() = default;

  virtual void recordVisit(const UUID& profile, const URL& url, const std::string& title,
                           Date at) = 0;
  // Names a page that has been visited; an empty title changes nothing.
  virtual void setTitle(const UUID& profile, const URL& url, const std::string& title) = 0;
  // The best first. A search that a later one of the same field overtakes while it waits answers
  // empty without running.
  virtual Future<Entries> search(const HistorySearchField& field, std::string query,
                                 const UUID& profile, size_t limit, Date now) = 0;
  // The latest first.
  virtual Future<Entries> recent(const UUID& profile, size_t limit) = 0;
  virtual void remove(const URL& url, const UUID& profile) = 0;
  // Absent profile: of every profile.
  virtual void removeAll(const std::optional<UUID>& profile) = 0;
  // Does what the profile's first search would have to do before it.
  virtual void prepareSearch(const UUID& profile) = 0;
};

}  // namespace orvel
