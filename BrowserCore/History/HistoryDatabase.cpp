#include "BrowserCore/History/HistoryDatabase.h"

#include <sqlite3.h>

#include <optional>
#include <unordered_map>
#include <utility>

#include "BrowserCore/DateSeconds.h"
#include "BrowserCore/History/HistoryIndex.h"

namespace orvel {

namespace {

constexpr const char* kScript =
    "PRAGMA journal_mode = WAL;"
    "CREATE TABLE IF NOT EXISTS visits ("
    " profile TEXT NOT NULL,"
    " url TEXT NOT NULL,"
    " title TEXT NOT NULL DEFAULT '',"
    " visit_count INTEGER NOT NULL DEFAULT 1,"
    " last_visit REAL NOT NULL,"
    " PRIMARY KEY (profile, url));"
    "CREATE INDEX IF NOT EXISTS visits_by_recency ON visits (profile, last_visit DESC);";

constexpr const char* kRecord =
    "INSERT INTO visits (profile, url, title, visit_count, last_visit) VALUES (?1, ?2, ?3, 1, ?4) "
    "ON CONFLICT (profile, url) DO UPDATE SET visit_count = visit_count + 1, last_visit = ?4, "
    "title = CASE WHEN ?3 = '' THEN title ELSE ?3 END";

constexpr const char* kSetTitle =
    "UPDATE visits SET title = ?3 WHERE profile = ?1 AND url = ?2 AND ?3 <> ''";

constexpr const char* kSearch =
    "SELECT url, title, visit_count, last_visit FROM visits WHERE profile = ?1 AND "
    "(url LIKE ?2 ESCAPE '\\' OR title LIKE ?2 ESCAPE '\\') "
    "ORDER BY visit_count / (1.0 + (?3 - last_visit) / 86400.0) DESC LIMIT ?4";

constexpr const char* kRecent =
    "SELECT url, title, visit_count, last_visit FROM visits WHERE profile = ?1 "
    "ORDER BY last_visit DESC LIMIT ?2";

constexpr const char* kRow =
    "SELECT url, title, visit_count, last_visit FROM visits WHERE rowid = ?1";

constexpr const char* kRowsOfProfile =
    "SELECT rowid, url, title, visit_count, last_visit FROM visits NOT INDEXED WHERE profile = ?1";

constexpr const char* kRowOfPage =
    "SELECT rowid, url, title, visit_count, last_visit FROM visits WHERE profile = ?1 AND url = ?2";

// SQLite's own limit on a pattern of LIKE, in bytes; a longer one is an error, and finds nothing.
constexpr size_t kMaxPattern = 50'000;

constexpr int kBusyMilliseconds = 2000;

double inSeconds(Date date) { return date_seconds::since(Date(), date); }

using Value = std::variant<std::string, double, int64_t>;

struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

struct Close {
  void operator()(sqlite3* handle) const { sqlite3_close(handle); }
};
using Connection = std::unique_ptr<sqlite3, Close>;

// Null when the statement does not compile: the caller then does nothing further.
Statement prepare(sqlite3* handle, const char* sql, const std::vector<Value>& values) {
  sqlite3_stmt* raw = nullptr;
  if (sqlite3_prepare_v2(handle, sql, -1, &raw, nullptr) != SQLITE_OK) return nullptr;
  Statement statement(raw);
  int position = 0;
  for (const Value& value : values) {
    ++position;
    if (const auto* text = std::get_if<std::string>(&value))
      sqlite3_bind_text64(raw, position, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    else if (const auto* real = std::get_if<double>(&value))
      sqlite3_bind_double(raw, position, *real);
    else
      sqlite3_bind_int64(raw, position, std::get<int64_t>(value));
  }
  return statement;
}

std::string_view textAt(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (!text) return {};
  return {text, static_cast<size_t>(sqlite3_column_bytes(statement, column))};
}

// Absent for a row whose address is no URL.
std::optional<HistoryDatabase::Entry> entryAt(sqlite3_stmt* statement) {
  const auto url = URL::parse(textAt(statement, 0));
  if (!url) return std::nullopt;
  return HistoryDatabase::Entry{*url, std::string(textAt(statement, 1)),
                                sqlite3_column_int64(statement, 2),
                                date_seconds::after(Date(), sqlite3_column_double(statement, 3))};
}

std::string patternContaining(std::string_view query) {
  std::string pattern = "%";
  for (const char c : query) {
    if (c == '\\' || c == '%' || c == '_') pattern += '\\';
    pattern += c;
  }
  return pattern += '%';
}

}  // namespace

struct HistoryDatabase::State {
  Connection connection;
  std::unordered_map<UUID, HistoryIndex> indexes;

  void run(const char* sql, const std::vector<Value>& values) {
    if (const auto statement = prepare(connection.get(), sql, values))
      sqlite3_step(statement.get());
  }

  std::vector<Entry> entries(const char* sql, const std::vector<Value>& values) {
    std::vector<Entry> result;
    const auto statement = prepare(connection.get(), sql, values);
    while (statement && sqlite3_step(statement.get()) == SQLITE_ROW)
      if (auto entry = entryAt(statement.get())) result.push_back(std::move(*entry));
    return result;
  }

  void addToIndex(HistoryIndex& index, const char* sql, const std::vector<Value>& values) {
    const auto statement = prepare(connection.get(), sql, values);
    while (statement && sqlite3_step(statement.get()) == SQLITE_ROW)
      index.set(sqlite3_column_int64(statement.get(), 0), textAt(statement.get(), 1),
                textAt(statement.get(), 2), sqlite3_column_int64(statement.get(), 3),
                sqlite3_column_double(statement.get(), 4));
  }

  // Takes over what the page's row holds now, if the profile has been searched before.
  void updateIndex(const UUID& profile, const URL& url) {
    if (const auto index = indexes.find(profile); index != indexes.end())
      addToIndex(index->second, kRowOfPage, {profile.text(), url.text()});
  }

  HistoryIndex& indexOf(const UUID& profile) {
    const auto [position, isNew] = indexes.try_emplace(profile);
    if (isNew) addToIndex(position->second, kRowsOfProfile, {profile.text()});
    return position->second;
  }
};

HistoryDatabase::HistoryDatabase(std::unique_ptr<State> state) : state_(std::move(state)) {}
HistoryDatabase::HistoryDatabase(HistoryDatabase&&) noexcept = default;
HistoryDatabase& HistoryDatabase::operator=(HistoryDatabase&&) noexcept = default;
HistoryDatabase::~HistoryDatabase() = default;

Result<HistoryDatabase, std::string> HistoryDatabase::open(const std::filesystem::path& file) {
  sqlite3* handle = nullptr;
  const int result = sqlite3_open(file.c_str(), &handle);
  auto state = std::make_unique<State>();
  state->connection.reset(handle);
  if (result != SQLITE_OK || !handle)
    return Failure(handle ? sqlite3_errmsg(handle) : "unknown error");
  // Another program that reads the file holds a write up for a moment only.
  sqlite3_busy_timeout(handle, kBusyMilliseconds);
  sqlite3_exec(handle, kScript, nullptr, nullptr, nullptr);
  return HistoryDatabase(std::move(state));
}

void HistoryDatabase::recordVisit(const UUID& profile, const URL& url, const std::string& title,
                                  Date at) {
  if (!url.hasScheme("http") && !url.hasScheme("https")) return;
  state_->run(kRecord, {profile.text(), url.text(), title, inSeconds(at)});
  state_->updateIndex(profile, url);
}

void HistoryDatabase::setTitle(const UUID& profile, const URL& url, const std::string& title) {
  state_->run(kSetTitle, {profile.text(), url.text(), title});
  state_->updateIndex(profile, url);
}

std::vector<HistoryDatabase::Entry> HistoryDatabase::search(std::string_view query,
                                                            const UUID& profile, size_t limit,
                                                            Date now) {
  const std::string pattern = patternContaining(query);
  if (pattern.size() > kMaxPattern) return {};
  if (!HistoryIndex::canSearch(query))
    return state_->entries(kSearch,
                           {profile.text(), pattern, inSeconds(now), static_cast<int64_t>(limit)});
  std::vector<Entry> result;
  for (const HistoryIndex::Match& match :
       state_->indexOf(profile).search(query, limit, inSeconds(now)))
    for (Entry& entry : state_->entries(kRow, {match.row})) result.push_back(std::move(entry));
  return result;
}

void HistoryDatabase::prepareSearch(const UUID& profile) { state_->indexOf(profile); }

std::vector<HistoryDatabase::Entry> HistoryDatabase::recent(const UUID& profile, size_t limit) {
  return state_->entries(kRecent, {profile.text(), static_cast<int64_t>(limit)});
}

void HistoryDatabase::remove(const URL& url, const UUID& profile) {
  state_->run("DELETE FROM visits WHERE profile = ?1 AND url = ?2", {profile.text(), url.text()});
  // Built again from what is left, when it is next searched.
  state_->indexes.erase(profile);
}

void HistoryDatabase::removeAll(const UUID& profile) {
  state_->run("DELETE FROM visits WHERE profile = ?1", {profile.text()});
  state_->indexes.erase(profile);
}

void HistoryDatabase::removeAll() {
  state_->run("DELETE FROM visits", {});
  state_->indexes.clear();
}

}  // namespace orvel
