#include "BrowserCore/HistoryIndex.h"

#include <string.h>

#include <algorithm>
#include <limits>

#include "BrowserCore/Text.h"

namespace orvel {

namespace {

// Never part of a query that is searched here.
constexpr char kSeparator = '\x01';

constexpr double kSecondsADay = 86400.0;

double score(int64_t visitCount, double lastVisit, double now) {
  const double divisor = 1.0 + (now - lastVisit) / kSecondsADay;
  // The database has no value for a division by zero, and sorts it last.
  if (divisor == 0) return -std::numeric_limits<double>::infinity();
  return static_cast<double>(visitCount) / divisor;
}

bool isBetter(const HistoryIndex::Match& a, const HistoryIndex::Match& b) {
  if (a.score != b.score) return a.score > b.score;
  if (a.lastVisit != b.lastVisit) return a.lastVisit > b.lastVisit;
  return a.row < b.row;
}

void appendLowered(std::string& text, std::string_view part) {
  const size_t begin = text.size();
  text.append(part);
  for (size_t i = begin; i < text.size(); ++i) {
    char& c = text[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    if (c == kSeparator) c = ' ';
  }
  text.push_back(kSeparator);
}

}  // namespace

bool HistoryIndex::canSearch(std::string_view query) {
  return text::isValidUTF8(query) &&
         std::none_of(query.begin(), query.end(), [](char c) { return c >= 0 && c < 0x20; });
}

void HistoryIndex::set(int64_t row, std::string_view url, std::string_view title,
                       int64_t visitCount, double lastVisit) {
  remove(row);
  positions_[row] = rows_.size();
  rows_.push_back({row, text_.size(), visitCount, lastVisit});
  appendLowered(text_, url);
  appendLowered(text_, title);
}

void HistoryIndex::remove(int64_t row) {
  const auto position = positions_.find(row);
  if (position == positions_.end()) return;
  rows_[position->second].isGone = true;
  positions_.erase(position);
  if (++goneCount_ > rows_.size() / 2) compact();
}

void HistoryIndex::compact() {
  std::string kept;
  std::vector<Row> rows;
  rows.reserve(positions_.size());
  for (size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].isGone) continue;
    const uint64_t end = i + 1 < rows_.size() ? rows_[i + 1].begin : text_.size();
    Row row = rows_[i];
    positions_[row.id] = rows.size();
    kept.append(text_, row.begin, end - row.begin);
    row.begin = kept.size() - (end - rows_[i].begin);
    rows.push_back(row);
  }
  text_ = std::move(kept);
  rows_ = std::move(rows);
  goneCount_ = 0;
}

std::vector<HistoryIndex::Match> HistoryIndex::search(std::string_view query, size_t limit,
                                                      double now) const {
  const std::string needle = text::lowerASCII(query);
  std::vector<Match> matches;
  const auto add = [&](const Row& row) {
    if (!row.isGone)
      matches.push_back({row.id, score(row.visitCount, row.lastVisit, now), row.lastVisit});
  };
  if (needle.empty()) {
    for (const Row& row : rows_) add(row);
  } else {
    size_t row = 0;
    for (const char* at = text_.data();;) {
      const char* const end = text_.data() + text_.size();
      const auto* found = static_cast<const char*>(
          memmem(at, static_cast<size_t>(end - at), needle.data(), needle.size()));
      if (!found) break;
      const auto offset = static_cast<uint64_t>(found - text_.data());
      // Most finds are in the next few rows; a jump over many is rare enough to walk.
      while (row + 1 < rows_.size() && rows_[row + 1].begin <= offset) ++row;
      add(rows_[row]);
      if (++row >= rows_.size()) break;
      at = text_.data() + rows_[row].begin;
    }
  }
  if (matches.size() > limit) {
    std::nth_element(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(limit),
                     matches.end(), isBetter);
    matches.resize(limit);
  }
  std::sort(matches.begin(), matches.end(), isBetter);
  return matches;
}

}  // namespace orvel
