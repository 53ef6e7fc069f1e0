#include <gmock/gmock.h>

#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Tests/Engine/EngineTest.h"
#include "Tests/Fakes/FakeDesktop.h"
#include "Tests/Fakes/FakeHTTPSession.h"

namespace orvel::test {
namespace {

// A run of the program on the real engine, with every file of it below one folder.
struct Program {
  Program(Scheduler& given, Engine& engine, const std::filesystem::path& folder)
      : scheduler(given),
        paths(AppPaths::in(folder / "data", folder / "cache", folder / "downloads")),
        services{.scheduler = scheduler,
                 .engine = engine,
                 .desktop = desktop.desktop(),
                 .files = writer,
                 .paths = paths,
                 .favicons = favicons,
                 .defaults = defaults,
                 .filterLists = filterLists,
                 .currencies = currencies,
                 .engineSuggestions = engineSuggestions,
                 .updates = {.feed = *URL::parse("https://feed.test/version.json")},
                 .resources = folder / "share",
                 .downloads = std::make_shared<DownloadManager>(*disk, desktop, paths.downloads),
                 .openHistory = [this](const auto& file) {
                   return HistoryStore::open(scheduler, file);
                 }} {
    defaults.setBoolean("contentBlockingEnabled", false);
    defaults.setNumber("filterListsLastChecked", 1e12);
    store = BrowserStore::make(services);
  }

  Scheduler& scheduler;
  std::shared_ptr<FileSystem> disk = FileSystem::disk();
  AppPaths paths;
  FakeDesktop desktop{scheduler};
  FileWriter writer{scheduler, disk};
  FileUserDefaults defaults{writer, paths.support / "defaults.ini"};
  FaviconStore favicons{*disk, paths.favicons()};
  FakeNetwork network{scheduler};
  FilterListUpdater filterLists{scheduler, writer, defaults, {}, {disk, paths.support, {}}, {}};
  CurrencyFeed currencies{scheduler, writer, network.sessions(), paths.currencyRates(),
                          *URL::parse("https://rates.test/daily.xml")};
  EngineSuggestions engineSuggestions{network.sessions()};
  Services services;
  std::shared_ptr<BrowserStore> store;
};

// The same visit in a private tab and in its twin: a page with a cookie, stored data, a title, an
// icon and a cached picture; then a pick of it in the command bar, a save of everything, and the
// end.
class PrivateTabTest : public EngineTest {
 protected:
  TabRef visit(Program& program, const std::shared_ptr<Profile>& profile, const std::string& host) {
    const std::string site = "http://" + host;
    server.serve(site + "/", {.body = "<title>At " + host + "</title><link rel=icon href=/icon>" +
                                      "<img src=/icon><script>localStorage.mark = '" + host +
                                      "'; indexedDB.open('" + host + "')</script>",
                              .headers = {{"Set-Cookie", "mark=" + host + "; Max-Age=99999"}}});
    server.serve(site + "/icon",
                 {.body = "icon of " + host,
                  .headers = {{"Content-Type", "image/gif"}, {"Cache-Control", "max-age=99999"}}});
    server.refuse(host, 443);
    const TabRef tab = BrowserTab::make(
        program.services,
        {.profile = profile, .host = program.store->tabHost(), .url = URL::parse(site + "/")});
    show(*tab->webView());
    EXPECT_TRUE(eventually([&] { return tab->title.peek() == "At " + host; }, 15s));
    return tab;
  }
};

TEST_F(PrivateTabTest, LeavesNothingThatATwinLeaves) {
  const TemporaryFolder files("private");
  {
    Program program(scheduler, *engine, files.path);
    const auto& ordinary = program.store->activeSpace()->profile;
    const auto hidden =
        std::make_shared<Profile>(*engine, UUID::random(), "Private", Profile::Privacy::Private);
    const TabRef twin = visit(program, ordinary, "open-harbour.test");
    const TabRef tab = visit(program, hidden, "hidden-harbour.test");
    program.store->activeSpace()->today = {twin};
    program.store->choices.learn(suggestion::Tab{twin}, "open-harbour");
    program.store->session.save();
    EXPECT_TRUE(
        eventually([&] { return !filesHolding(engineFolder(), "open-harbour").empty(); }, 15s));
    tab->teardown();
    twin->teardown();
    program.store->session.save();
    program.writer.drain(2s);
  }
  turnFor(1s);
  for (const auto& [place, what] : std::vector<std::pair<std::filesystem::path, const char*>>{
           {files.path, "session and history"}, {engineFolder(), "the engine's data"}}) {
    EXPECT_THAT(filesHolding(place, "open-harbour"), testing::Not(testing::IsEmpty()))
        << what << ": the twin left nothing either, so this test could not fail";
    EXPECT_THAT(filesHolding(place, "hidden-harbour"), testing::IsEmpty()) << what;
  }
}

// What the history knows of the profile's pages, "address title".
Task<> readHistory(Future<HistoryStore::Entries> pages, std::vector<std::string>& lines) {
  const auto entries = co_await std::move(pages);
  lines.clear();
  for (const auto& page : entries) lines.push_back(page.url.text() + " " + page.title);
}

TEST_F(PrivateTabTest, AFailedLoadIsNoVisitAndRenamesNone) {
  const TemporaryFolder files("failed");
  Program program(scheduler, *engine, files.path);
  const auto& profile = program.store->activeSpace()->profile;
  const TabRef tab = visit(program, profile, "known-harbour.test");
  EXPECT_TRUE(eventually([&] { return !tab->isLoading.peek(); }));
  server.refuse("known-harbour.test", 80);
  for (const char* address : {"http://known-harbour.test/", "https://unknown-harbour.test/"}) {
    server.refuse("unknown-harbour.test", 443);
    tab->load(*URL::parse(address));
    EXPECT_TRUE(eventually([&] {
      return tab->title.peek().starts_with("Can’t open") &&
             tab->url.peek() == URL::parse(address) && !tab->isLoading.peek();
    })) << address;
  }
  turnFor(200ms);
  std::vector<std::string> known;
  scheduler.start(readHistory(program.store->history->recent(profile->id, 10), known)).detach();
  EXPECT_TRUE(eventually([&] { return !known.empty(); }));
  EXPECT_THAT(known, testing::ElementsAre("http://known-harbour.test/ At known-harbour.test"));
  tab->teardown();
}

}  // namespace
}  // namespace orvel::test
