#include "Support/Network/ErrorPage.h"
#include "Support/Network/UserAgent.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;

TEST(UserAgent, TakesTwoNumbersOfTheVersion) {
  EXPECT_EQ(UserAgent::safariSuffix(), "Version/26.0 Safari/605.1.15");
  EXPECT_EQ(UserAgent::safariSuffix("27"), "Version/27.0 Safari/605.1.15");
  EXPECT_EQ(UserAgent::safariSuffix("18.3.1"), "Version/18.3 Safari/605.1.15");
}

TEST(ErrorPage, NothingBreaksOutOfItsMarkup) {
  const LoadError error{.localizedDescription = "<script>\"&\"</script>"};
  const std::string page = ErrorPage::html(error, address("https://a\"<b>/?x=1&y=\"2\""));
  EXPECT_THAT(page, HasSubstr("<p>&lt;script&gt;&quot;&amp;&quot;&lt;/script&gt;</p>"));
  EXPECT_THAT(page, HasSubstr("<h1>Can’t open a&quot;&lt;b&gt;</h1>"));
  EXPECT_THAT(page, HasSubstr("href=\"https://a&quot;&lt;b&gt;/?x=1&amp;y=&quot;2&quot;\""));
}

Task<> put(Task<ImageRef> fetching, ImageRef& into) { into = co_await std::move(fetching); }

TEST(FaviconStore, KeepsWhatItFetchesUnlessTold) {
  using enum FaviconStore::Memory;
  World world;
  auto& store = world.favicons;
  const std::string png = Image::make(200, 100, std::vector<uint8_t>(80000))->encodedPNG();
  const std::string bomb = Image::make(4097, 1, std::vector<uint8_t>(4097 * 4))->encodedPNG();
  const std::string drawing =
      "<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><rect width='8' "
      "height='8'/></svg>";
  struct Case {
    const char* url;
    HTTPAnswer answer;
    int width;  // 0: no icon
  };
  const Case cases[] = {{"https://a.test/icon", {.status = 200, .body = png}, FaviconStore::kSide},
                        {"https://b.test/icon", {.status = 200, .body = drawing}, 128},
                        {"https://c.test/icon", {.status = 200, .body = bomb}, 0},
                        {"https://d.test/icon", {.status = 404, .body = png}, 0},
                        {"https://f.test/icon", {.status = 200, .body = "<html>"}, 0}};
  for (const auto& [url, answer, width] : cases) {
    const URL icon = address(url);
    const std::string host(*icon.host());
    world.network.answers[url] = answer;
    EXPECT_EQ(store.cachedImage(host), nullptr);
    for (const auto memory : {Forgets, Remembers}) {
      ImageRef got;
      world.scheduler.start(put(store.fetch(icon, host, memory), got)).detach();
      world.scheduler.settle();
      EXPECT_EQ(got ? got->width() : 0, width) << url;
      const bool isKept = memory == Remembers && width > 0;
      EXPECT_EQ(store.cachedImage(host) != nullptr, isKept) << url;
      EXPECT_EQ(world.disk->exists(store.file(host)), isKept) << url;
    }
  }
}

TEST(FaviconStore, ReadsEachHostsFileOnce) {
  World world;
  MemoryFileSystem& disk = *world.disk;
  FaviconStore store(world.scheduler, disk, world.network.sessions(), "/icons");
  const std::string png = Image::make(1, 1, {9, 8, 7, 255})->encodedPNG();
  disk.put("/icons/a.org", png);
  const ImageRef icon = store.cachedImage("a.org");
  ASSERT_NE(icon, nullptr);
  disk.put("/icons/a.org", "no picture");
  EXPECT_EQ(store.cachedImage("a.org"), icon);
  EXPECT_EQ(store.cachedImage("b.org"), nullptr);
  disk.put("/icons/b.org", png);
  EXPECT_EQ(store.cachedImage("b.org"), nullptr) << "known to have none";
  const std::pair<const char*, const char*> cases[] = {{"../../etc/passwd", "/icons/....etcpasswd"},
                                                       {"[::1]", "/icons/1"},
                                                       {"münchen.de", "/icons/münchen.de"},
                                                       {"a_b\xff.org", "/icons/ab.org"}};
  for (const auto& [host, file] : cases) EXPECT_EQ(store.file(host), file);
}

struct Downloads : testing::Test {
  std::shared_ptr<FakeDownload> begin(const std::string& name) {
    auto download = std::make_shared<FakeDownload>(address("https://a/file"));
    download->setDelegate(manager);
    download->expected = 100;
    download->begin(name);
    return download;
  }
  std::vector<DownloadManager::Item> items() { return manager->items.peek(); }
  using State = DownloadManager::Item::State;

  World world;
  std::shared_ptr<DownloadManager> manager = world.services.downloads;
};

TEST_F(Downloads, GetFreeNamesInTheUsersFolder) {
  world.disk->put("/downloads/a.tar.gz", "");
  world.disk->put("/downloads/download", "");
  world.disk->put("/downloads/b.txt.part", "of a former run");
  const std::pair<const char*, const char*> cases[] = {
      {"new.txt", "new.txt"},     {"new.txt", "new 2.txt"},   {"b.txt", "b 2.txt"},
      {"a.tar.gz", "a.tar 2.gz"}, {"../../x/y.txt", "y.txt"}, {"", "download 2"}};
  std::vector<std::shared_ptr<FakeDownload>> all;
  for (const auto& [suggested, name] : cases) {
    all.push_back(begin(suggested));
    EXPECT_EQ(items()[0].destination, fs::path("/downloads") / name);
    EXPECT_EQ(all.back()->destination, fs::path("/downloads") / (std::string(name) + ".part"));
  }
}

TEST_F(Downloads, ReplaceNothingThatComesMeanwhile) {
  const auto download = begin("a.txt");
  world.disk->put("/downloads/a.txt.part", "whole");
  world.disk->put("/downloads/a.txt", "another's");
  download->finish();
  EXPECT_EQ(items()[0].destination, "/downloads/a 2.txt");
  EXPECT_EQ(world.disk->contents()["/downloads/a.txt"], "another's");
  EXPECT_EQ(world.disk->contents()["/downloads/a 2.txt"], "whole");
}

TEST_F(Downloads, ThatTheDiskCannotHoldSaySo) {
  world.disk->free = 10;
  const auto large = std::make_shared<FakeDownload>(address("https://a/file"));
  large->setDelegate(manager);
  large->expected = 11;
  large->begin("large");
  EXPECT_FALSE(large->destination);
  begin("grows")->fail({.kind = LoadError::Kind::DiskFull});
  for (const auto& item : items()) {
    EXPECT_EQ(item.state, State::Failed);
    EXPECT_TRUE(item.isDiskFull);
  }
}

TEST_F(Downloads, OfPrivateWindowsAreForgotten) {
  const auto kept = begin("kept");
  std::vector<std::shared_ptr<FakeDownload>> ofWindow;
  for (const auto* name : {"done", "under way"}) {
    ofWindow.push_back(std::make_shared<FakeDownload>(address("https://a/file")));
    ofWindow.back()->isPrivate = true;
    ofWindow.back()->setDelegate(manager);
    ofWindow.back()->begin(name);
    world.disk->put(*ofWindow.back()->destination, "bytes");
  }
  ofWindow[0]->finish();
  manager->forgetPrivate();
  ASSERT_EQ(items().size(), 1u);
  EXPECT_EQ(items()[0].destination, "/downloads/kept");
  EXPECT_TRUE(world.disk->exists("/downloads/done"));
  EXPECT_FALSE(world.disk->exists("/downloads/under way.part"));
}

TEST_F(Downloads, AreFollowedToTheirEnd) {
  std::vector<std::string> finished;
  manager->onFinish = [&](const std::string& name) { finished.push_back(name); };
  EXPECT_FALSE(manager->activeProgress());
  EXPECT_FALSE(world.disk->exists("/downloads"));
  const auto first = begin("1"), second = begin("2"), third = begin("3");
  EXPECT_TRUE(world.disk->exists("/downloads"));
  first->setProgress(0.2);
  second->setProgress(0.8);
  third->fail({.domain = "D", .code = 1});
  EXPECT_DOUBLE_EQ(*manager->activeProgress(), 0.5);
  second->finish();
  EXPECT_DOUBLE_EQ(*manager->activeProgress(), 0.2);
  EXPECT_EQ(items()[0].state, State::Failed);
  EXPECT_EQ(items()[1].state, State::Finished);
  EXPECT_THAT(finished, testing::ElementsAre("2"));
  EXPECT_THAT(world.desktop.finishedDownloads, testing::SizeIs(1));
  manager->clearFinished();
  EXPECT_EQ(items().size(), 1u);
  for (int i = 0; i < 20; ++i) begin(std::to_string(i));
  EXPECT_EQ(items().size(), 20u);
  EXPECT_EQ(items().front().destination, "/downloads/19");
  first->finish();
  EXPECT_THAT(finished, testing::ElementsAre("2", "1")) << "pushed out, and still told";
}

}  // namespace
}  // namespace orvel::test
