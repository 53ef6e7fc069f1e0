#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvel {

// The addresses and titles of one profile's history in one stretch of memory, so that a search is
// one pass over it. Rows are known by their number in the database.
class HistoryIndex {
 public:
  struct Match {
    int64_t row;
    double score;
    double lastVisit;  // seconds since 1970
  };

  // Adds a row, or puts it in the place of the one of this number.
  void set(int64_t row, std::string_view url, std::string_view title, int64_t visitCount,
           double lastVisit);
  void remove(int64_t row);
  size_t size() const { return positions_.size(); }

  // The `limit` best rows whose address or title contains `query`, the best first (see
  // HistoryDatabase::search). `now` in seconds since 1970.
  std::vector<Match> search(std::string_view query, size_t limit, double now) const;

  // A query that memory and the database read alike: well-formed, and without control characters.
  static bool canSearch(std::string_view query);

 private:
  struct Row {
    int64_t id;
    uint64_t begin;  // of its text; the next row's begin is its end
    int64_t visitCount;
    double lastVisit;
    bool isGone = false;
  };

  void compact();
  bool contains(size_t position, const std::string& needle) const;
  Match matchOf(const Row& row, double now) const;
  // The matches above a score that some thousand rows of a large history reach, most of the time:
  // the best of all, when there are enough of them. Nothing for a small history.
  std::vector<Match> searchBest(const std::string& needle, double now) const;
  std::vector<Match> searchAll(const std::string& needle, double now) const;

  // For each row the lower-cased address, kSeparator, the lower-cased title, kSeparator.
  std::string text_;
  std::vector<Row> rows_;
  std::unordered_map<int64_t, size_t> positions_;
  size_t goneCount_ = 0;
};

}  // namespace orvel
