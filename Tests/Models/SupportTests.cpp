#include "Support/Network/ErrorPage.h"
#include "Support/Network/UserAgent.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

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

TEST(FaviconStore, ReadsEachHostsFileOnce) {
  MemoryFileSystem disk;
  FaviconStore store(disk, "/icons");
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
  const std::pair<const char*, const char*> cases[] = {{"new.txt", "/downloads/new.txt"},
                                                       {"a.tar.gz", "/downloads/a.tar 2.gz"},
                                                       {"../../x/y.txt", "/downloads/y.txt"},
                                                       {"", "/downloads/download 2"}};
  for (const auto& [suggested, destination] : cases)
    EXPECT_EQ(begin(suggested)->destination, destination);
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
