#include "Support/Feeds/CurrencyFeed.h"

#include <gtest/gtest.h>

#include "Base/GLibScheduler.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Kit/Eventually.h"
#include "Tests/Kit/TestServer.h"

namespace orvel {
namespace {

using test::eventually;
using test::ServedPage;
using test::turnFor;

constexpr auto kCache = "/data/Orvel/eurofxref.xml";

std::string document(double dollars) {
  return fmt::format(
      "<Cube time='2026-01-02'><Cube currency='USD' rate='{}'/><Cube currency='JPY' "
      "rate='160'/></Cube>",
      dollars);
}

struct CurrencyFeedTest : testing::Test {
  GLibScheduler scheduler;
  std::shared_ptr<test::MemoryFileSystem> disk = std::make_shared<test::MemoryFileSystem>();
  FileWriter writer{scheduler, disk};
  test::TestServer server;
  const std::string address = server.proxy() + "/stats/eurofxref/eurofxref-daily.xml";
  std::unique_ptr<CurrencyFeed> feed = makeFeed();

  std::unique_ptr<CurrencyFeed> makeFeed() {
    return std::make_unique<CurrencyFeed>(scheduler, writer, &HTTPSession::ephemeral, kCache,
                                          *URL::parse(address));
  }
  std::optional<double> dollars() const {
    const auto& rates = feed->rates.peek();
    return rates ? rates->convert(1, "EUR", "USD") : std::nullopt;
  }
  // Asks and waits until whatever that caused is over.
  void request() {
    feed->requestIfNeeded();
    ASSERT_TRUE(eventually([&] { return scheduler.liveTaskCount() == 0; }));
  }
  void cache(const std::string& bytes, Duration age) {
    disk->put(kCache, bytes);
    disk->dates[kCache] = scheduler.now() - age;
  }
};

TEST_F(CurrencyFeedTest, FetchesOnceAndKeepsTheDocument) {
  server.serve(address, ServedPage{.body = document(1.25), .delay = 0.2});
  feed->requestIfNeeded();
  feed->requestIfNeeded();
  EXPECT_EQ(dollars(), std::nullopt);
  turnFor(50ms);
  feed->requestIfNeeded();
  ASSERT_TRUE(eventually([&] { return dollars() == 1.25; }));
  request();
  EXPECT_EQ(server.requestCount(address), 1);
  EXPECT_LT(scheduler.now() - feed->fetchedAt().value(), 5s);
  ASSERT_TRUE(writer.drain(1s));
  EXPECT_EQ(disk->contents()[kCache], document(1.25));
}

TEST_F(CurrencyFeedTest, AnswersFromItsFileAndFetchesWhenThatIsStale) {
  cache(document(2), 11h);
  request();
  EXPECT_EQ(dollars(), 2);
  EXPECT_EQ(feed->fetchedAt(), disk->dates[kCache]);
  EXPECT_EQ(server.requests().size(), 0u);
  server.serve(address, document(3));
  feed = makeFeed();
  cache("<html>", 1h);
  request();
  EXPECT_EQ(dollars(), 3) << "a file that is no document counts as none";
  feed = makeFeed();
  cache(document(2), 12h + 1s);
  feed->requestIfNeeded();
  EXPECT_EQ(dollars(), 2);
  EXPECT_TRUE(eventually([&] { return dollars() == 3; }));
}

TEST_F(CurrencyFeedTest, KeepsTheLastGoodRatesThroughEveryFailure) {
  const ServedPage failures[] = {
      {.body = document(9), .status = 500},
      {.body = "<html>Welcome to our hotel's network</html>"},
      {.body = document(9), .truncate = 60},
      {.body = document(9) + std::string(CurrencyFeed::kMaxDocument, ' ')},
  };
  cache(document(2), 24h);
  for (const ServedPage& failure : failures) {
    server.serve(address, failure);
    server.clearRequests();
    request();
    EXPECT_EQ(server.requestCount(address), 1) << "asked again with no pause: " << failure.body;
    EXPECT_EQ(dollars(), 2) << failure.body.substr(0, 80);
    EXPECT_EQ(disk->contents()[kCache], document(2));
  }
  server.serve(address, document(3));
  disk->failAlways(test::MemoryFileSystem::Fault::DiskFull);
  request();
  EXPECT_EQ(dollars(), 3) << "a file that cannot be written is no failure of the rates";
}

}  // namespace
}  // namespace orvel
