#include <gmock/gmock.h>

#include "Support/Downloads/DownloadManager.h"
#include "Tests/Engine/EngineTest.h"
#include "Tests/Engine/LongestStall.h"
#include "Tests/Fakes/FakeDesktop.h"

namespace orvel::test {
namespace {

TEST_F(EngineTest, FiveLargeDownloadsAtOnceComeWholeAndHoldNothingUp) {
  constexpr int kCount = 5;
  constexpr uint64_t kSize = 40'000'000;
  constexpr Duration kNoticeable = 60ms;
  const std::string block(1'000'000, 'x');
  server.serve("http://files.test/large", {.body = block,
                                           .headers = {{"Content-Type", "application/zip"}},
                                           .repeat = kSize / block.size()});
  FakeDesktop desktop(scheduler);
  const auto disk = FileSystem::disk();
  const auto manager = std::make_shared<DownloadManager>(*disk, desktop, folder.path / "Downloads");
  int finished = 0;
  manager->onFinish = [&](const std::string&) { ++finished; };
  const Duration stall = longestStall([&] {
    for (int i = 0; i < kCount; ++i)
      store->startDownload({.url = *URL::parse("http://files.test/large")})->setDelegate(manager);
    EXPECT_TRUE(eventually([&] { return finished == kCount; }, 300s));
  });
  std::cout << fmt::format("longest stall {:.1f} ms\n", inSeconds(stall) * 1e3);
  EXPECT_LT(stall, kNoticeable);
  for (const auto& item : manager->items.peek())
    EXPECT_EQ(std::filesystem::file_size(item.destination), kSize);
  EXPECT_EQ(manager->items.peek().size(), kCount);
}

}  // namespace
}  // namespace orvel::test
