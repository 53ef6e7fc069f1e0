#include "Support/Stores/HistoryStore.h"

#include "Base/Log.h"

namespace orvel {

namespace {

class QueuedHistoryStore final : public HistoryStore {
 public:
  QueuedHistoryStore(Scheduler& scheduler, std::filesystem::path file) : scheduler_(scheduler) {
    const auto failure = std::make_shared<std::optional<std::string>>();
    scheduler_.runInBackground(
        [database = database_, file = std::move(file), failure] {
          auto opened = HistoryDatabase::open(file);
          if (opened)
            database->emplace(std::move(*opened));
          else
            *failure = opened.error();
        },
        [failure] {
          if (*failure) Log::app.error("Couldn't open the history: {}", **failure);
        },
        WorkPriority::Database);
  }

  void recordVisit(const UUID& profile, const URL& url, const std::string& title,
                   Date at) override {
    enqueue([=](HistoryDatabase& database) { database.recordVisit(profile, url, title, at); });
  }

  void setTitle(const UUID& profile, const URL& url, const std::string& title) override {
    enqueue([=](HistoryDatabase& database) { database.setTitle(profile, url, title); });
  }

  Future<Entries> search(const HistorySearchField& field, std::string query, const UUID& profile,
                         size_t limit, Date now) override {
    return ask([field, number = field.begin(), query = std::move(query), profile, limit,
                now](HistoryDatabase& database) {
      return field.isOvertaken(number) ? Entries() : database.search(query, profile, limit, now);
    });
  }

  Future<Entries> recent(const UUID& profile, size_t limit) override {
    return ask([=](HistoryDatabase& database) { return database.recent(profile, limit); });
  }

  void remove(const URL& url, const UUID& profile) override {
    enqueue([=](HistoryDatabase& database) { database.remove(url, profile); });
  }

  void removeAll(const std::optional<UUID>& profile) override {
    enqueue([=](HistoryDatabase& database) {
      if (profile)
        database.removeAll(*profile);
      else
        database.removeAll();
    });
  }

  void prepareSearch(const UUID& profile) override {
    enqueue([=](HistoryDatabase& database) { database.prepareSearch(profile); });
  }

 private:
  template <class Work>
  void enqueue(Work work) {
    scheduler_.runInBackground(
        [database = database_, work = std::move(work)] {
          if (*database) work(**database);
        },
        [] {}, WorkPriority::Database);
  }

  template <class Work>
  Future<Entries> ask(Work work) {
    return background(
        scheduler_,
        [database = database_, work = std::move(work)] {
          return *database ? work(**database) : Entries();
        },
        WorkPriority::Database);
  }

  Scheduler& scheduler_;
  // Touched on the queue alone; empty before and without opening.
  const std::shared_ptr<std::optional<HistoryDatabase>> database_ =
      std::make_shared<std::optional<HistoryDatabase>>();
};

}  // namespace

std::unique_ptr<HistoryStore> HistoryStore::open(Scheduler& scheduler, std::filesystem::path file) {
  return std::make_unique<QueuedHistoryStore>(scheduler, std::move(file));
}

}  // namespace orvel
