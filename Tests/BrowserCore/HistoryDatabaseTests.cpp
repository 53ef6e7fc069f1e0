#include "BrowserCore/History/HistoryDatabase.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <functional>
#include <random>

#include "BrowserCore/History/HistoryIndex.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {
namespace {

using testing::ElementsAre;

constexpr Date kNow = Date(std::chrono::seconds(1'800'000'000));

struct HistoryTest : testing::Test {
  std::filesystem::path folder;
  UUID profile = UUID::random();

  void SetUp() override {
    char name[] = "/tmp/orvel-history-XXXXXX";
    folder = mkdtemp(name);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  std::filesystem::path file() const { return folder / "history.sqlite"; }
  HistoryDatabase open() { return HistoryDatabase::open(file()).value(); }

  void visit(HistoryDatabase& history, const std::string& url, const std::string& title = "",
             int times = 1, Date at = kNow) {
    for (int i = 0; i < times; ++i) history.recordVisit(profile, *URL::parse(url), title, at);
  }
  std::vector<std::string> urls(const std::vector<HistoryDatabase::Entry>& entries) {
    std::vector<std::string> result;
    for (const auto& entry : entries) result.push_back(entry.url.text());
    return result;
  }
  std::vector<std::string> found(HistoryDatabase& history, const std::string& query) {
    return urls(history.search(query, profile, 50, kNow));
  }
};

TEST_F(HistoryTest, KeepsOneRowAPageAndProfileAndTheLastKnownTitle) {
  auto history = open();
  const URL page = *URL::parse("https://a.test/");
  const UUID other = UUID::random();
  visit(history, page.text(), "First", 1, kNow - std::chrono::days(1));
  visit(history, page.text(), "", 1, kNow);
  history.recordVisit(other, page, "Second", kNow);
  const auto entries = history.recent(profile, 10);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].title, "First");
  EXPECT_EQ(entries[0].visitCount, 2);
  EXPECT_EQ(entries[0].lastVisit, kNow);
  EXPECT_EQ(history.recent(other, 10).at(0).visitCount, 1);

  // A title that comes later is no visit, and finds the page.
  history.prepareSearch(profile);
  history.setTitle(profile, page, "Tides");
  history.setTitle(profile, page, "");
  history.setTitle(profile, *URL::parse("https://unknown.test/"), "Tides");
  EXPECT_THAT(found(history, "tides"), ElementsAre("https://a.test/"));
  ASSERT_EQ(history.recent(profile, 5).size(), 1u);
  EXPECT_EQ(history.recent(profile, 5)[0].title, "Tides");
  EXPECT_EQ(history.recent(profile, 5)[0].visitCount, 2);
}

// What the plain statement answers, from the file itself.
std::vector<std::string> plainSearch(const std::filesystem::path& file, const UUID& profile,
                                     const std::string& query, int limit) {
  sqlite3* handle = nullptr;
  sqlite3_open(file.c_str(), &handle);
  std::string pattern = "%";
  for (const char c : query) {
    if (c == '\\' || c == '%' || c == '_') pattern += '\\';
    pattern += c;
  }
  pattern += "%";
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(handle,
                     "SELECT url FROM visits WHERE profile = ?1 AND (url LIKE ?2 ESCAPE '\\' OR "
                     "title LIKE ?2 ESCAPE '\\') ORDER BY visit_count / (1.0 + (?3 - last_visit) / "
                     "86400.0) DESC LIMIT ?4",
                     -1, &statement, nullptr);
  sqlite3_bind_text(statement, 1, profile.text().c_str(), -1, SQLITE_TRANSIENT);
  sqlite3_bind_text(statement, 2, pattern.c_str(), -1, SQLITE_TRANSIENT);
  sqlite3_bind_double(statement, 3, 1'800'000'000);
  sqlite3_bind_int(statement, 4, limit);
  std::vector<std::string> urls;
  while (sqlite3_step(statement) == SQLITE_ROW)
    urls.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
  sqlite3_finalize(statement);
  sqlite3_close(handle);
  return urls;
}

TEST_F(HistoryTest, AnswersAsThePlainStatementDoes) {
  auto history = open();
  std::mt19937 draw(7);
  const char* words[] = {"Tide", "häfen", "light%", "under_score", "NEEDLE", "back\\", "x", "ÄRA"};
  history.prepareSearch(profile);
  for (int i = 0; i < 250; ++i) {
    const std::string url =
        fmt::format("https://{}{}.test/{}", words[draw() % 3], draw() % 200, words[draw() % 8]);
    // No two of the same score: their order is nobody's promise.
    const auto age = std::chrono::milliseconds(draw() % 900'000'000 + 1);
    visit(history, url, fmt::format("{}\t{}", words[draw() % 8], i),
          static_cast<int>(draw() % 9) + 1, kNow - age);
  }
  for (const char* url : {"file:///tide", "about:tide", "data:text/plain,tide"})
    visit(history, url);
  // What is no line of text is asked of the database itself.
  for (const char* query :
       {"",    "t",     "TI",  "needle",       "%",    "_",   "\\",  "ä",   "Ä",   "är",
        "x 1", "häfen", "://", ".test/light%", "X\t1", "\t1", "_\t", "%\t", "\t%", "test/x\t"})
    EXPECT_EQ(urls(history.search(query, profile, 40, kNow)),
              plainSearch(file(), profile, query, 40))
        << query;
  for (const auto& page : history.recent(profile, 1000)) EXPECT_EQ(page.url.scheme(), "https");
}

std::string firstBytes(const std::filesystem::path& file) {
  std::string bytes(16, '\0');
  std::ifstream(file, std::ios::binary).read(bytes.data(), std::ssize(bytes));
  return bytes;
}

// Whatever befell the file, it opens, answers what can be read, and keeps what was in it.
TEST_F(HistoryTest, LivesWithAFileInTrouble) {
  const auto run = [](sqlite3* handle, const char* sql) {
    sqlite3_exec(handle, sql, nullptr, nullptr, nullptr);
  };
  const struct {
    const char* name;
    std::function<void(const std::filesystem::path&, sqlite3*)> make;
    // What still works.
    bool reads;
  } troubles[] = {
      {"locked by another program",
       [&](const auto&, sqlite3* other) { run(other, "BEGIN IMMEDIATE"); }, true},
      // Nothing is refused to root.
      {"read-only",
       [](const auto& path, sqlite3*) {
         std::filesystem::permissions(path, std::filesystem::perms::owner_read);
       },
       true},
      {"full",
       [&](const auto&, sqlite3* other) {
         run(other,
             "CREATE TRIGGER full BEFORE INSERT ON visits BEGIN SELECT RAISE(ABORT, 'full'); END");
       },
       true},
      {"with times that no date holds",
       [&](const auto&, sqlite3* other) { run(other, "UPDATE visits SET last_visit = -1e300"); },
       true},
      {"of another program",
       [&](const auto&, sqlite3* other) {
         run(other, "ALTER TABLE visits RENAME TO theirs; CREATE TABLE visits (other TEXT)");
       },
       false},
      {"corrupt",
       [&](const auto& path, sqlite3* other) {
         run(other, "PRAGMA wal_checkpoint(TRUNCATE)");
         std::fstream stream(path, std::ios::in | std::ios::out | std::ios::binary);
         stream.seekp(100);
         stream << std::string(8000, 'x');
       },
       false},
      {"no database",
       [](const auto& path, sqlite3*) { std::ofstream(path) << std::string(500, 'x'); }, false}};
  for (const auto& trouble : troubles) {
    SCOPED_TRACE(trouble.name);
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    {
      auto history = open();
      visit(history, "https://kept.test/", "Kept", 3);
    }
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file().c_str(), &other), SQLITE_OK);
    trouble.make(file(), other);
    const auto size = std::filesystem::file_size(file());
    const std::string header = firstBytes(file());
    {
      auto history = open();
      visit(history, "https://new.test/");
      EXPECT_EQ(found(history, "kept").size(), trouble.reads ? 1u : 0u);
      EXPECT_EQ(history.recent(profile, 5).empty(), !trouble.reads);
    }
    sqlite3_close(other);
    EXPECT_GE(std::filesystem::file_size(file()), size);
    EXPECT_EQ(firstBytes(file()), header);
  }
}

// A large history is searched by its best rows first: the answers are those of a look at every row.
TEST(HistoryIndex, FindsTheBestOfManyRows) {
  struct Page {
    std::string text;
    double score;
  };
  std::mt19937 draw(3);
  for (const bool isOneScore : {false, true}) {
    HistoryIndex index;
    std::vector<Page> pages;
    for (int i = 0; i < 40'000; ++i) {
      const int visits = isOneScore ? 1 : static_cast<int>(draw() % 100'000 + 1);
      pages.push_back({fmt::format("{}{}", draw() % 2 ? "often" : "else", i), 1.0 * visits});
      index.set(i, pages.back().text, "", visits, 0);
    }
    for (const char* query : {"", "often", "7", "often399", "else39999", "never"}) {
      std::vector<double> expected;
      for (const Page& page : pages)
        if (page.text.find(query) != std::string::npos) expected.push_back(page.score);
      std::ranges::sort(expected, std::greater());
      if (expected.size() > 30) expected.resize(30);
      std::vector<double> scores;
      for (const auto& match : index.search(query, 30, 0)) scores.push_back(match.score);
      EXPECT_EQ(scores, expected) << query;
    }
  }
}

}  // namespace
}  // namespace orvel
