#include "BrowserCore/History/HistoryIndex.h"

#include <string.h>

#include <algorithm>
#include <functional>
#include <limits>

#include "BrowserCore/Text/Text.h"

namespace orvel {

namespace {

// Never part of a query that is searched here.
constexpr char kSeparator = '\x01';

constexpr double kSecondsADay = 86400.0;

// About so many rows are looked at for their score before the whole text is searched; a history
// that isn't much larger is searched as a whole at once.
constexpr size_t kBestRows = 4096;
constexpr size_t kSample = 1024;

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

HistoryIndex::Match HistoryIndex::matchOf(const Row& row, double now) const {
  return {row.id, score(row.visitCount, row.lastVisit, now), row.lastVisit};
}

bool HistoryIndex::contains(size_t position, const std::string& needle) const {
  const uint64_t begin = rows_[position].begin;
  const uint64_t end = position + 1 < rows_.size() ? rows_[position + 1].begin : text_.size();
  return memmem(text_.data() + begin, end - begin, needle.data(), needle.size()) != nullptr;
}

std::vector<HistoryIndex::Match> HistoryIndex::searchBest(const std::string& needle,
                                                          double now) const {
  if (rows_.size() < 4 * kBestRows) return {};
  std::vector<double> sample;
  const size_t stride = rows_.size() / kSample;
  for (size_t i = 0; i < rows_.size(); i += stride)
    sample.push_back(score(rows_[i].visitCount, rows_[i].lastVisit, now));
  const auto reached = sample.begin() + static_cast<std::ptrdiff_t>(kBestRows / stride);
  std::nth_element(sample.begin(), reached, sample.end(), std::greater());

  std::vector<Match> matches;
  size_t looked = 0;
  for (size_t i = 0; i < rows_.size(); ++i) {
    const Match match = matchOf(rows_[i], now);
    if (!(match.score > *reached) || rows_[i].isGone) continue;
    // The sample told nothing about these rows.
    if (++looked > 4 * kBestRows) return {};
    if (contains(i, needle)) matches.push_back(match);
  }
  return matches;
}

std::vector<HistoryIndex::Match> HistoryIndex::searchAll(const std::string& needle,
                                                         double now) const {
  std::vector<Match> matches;
  const auto add = [&](const Row& row) {
    if (!row.isGone) matches.push_back(matchOf(row, now));
  };
  if (needle.empty()) {
    for (const Row& row : rows_) add(row);
    return matches;
  }
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
  return matches;
}

std::vector<HistoryIndex::Match> HistoryIndex::search(std::string_view query, size_t limit,
                                                      double now) const {
  const std::string needle = text::lowerASCII(query);
  auto matches = searchBest(needle, now);
  if (matches.size() < limit) matches = searchAll(needle, now);
  if (matches.size() > limit) {
    std::nth_element(matches.begin(), matches.begin() + static_cast<std::ptrdiff_t>(limit),
                     matches.end(), isBetter);
    matches.resize(limit);
  }
  std::sort(matches.begin(), matches.end(), isBetter);
  return matches;
}

}  // namespace orvel
