#include <gmock/gmock.h>

#include "Tests/Engine/EngineTest.h"

namespace orvel {
namespace {

using test::EngineTest;
using test::eventually;
using test::filesHolding;

struct PrivacyTest : EngineTest {
  // Leaves a cookie, stored data and cached files, if the store keeps any.
  void visit(const std::shared_ptr<WebsiteDataStore>& dataStore, const std::string& host) {
    const std::string site = "http://" + host;
    server.serve(site + "/", {.body = "<title>x</title><img src=/picture>",
                              .headers = {{"Set-Cookie", "mark=" + host + "; Max-Age=99999"}}});
    server.serve(site + "/picture",
                 {.body = "picture of " + host,
                  .headers = {{"Content-Type", "image/gif"}, {"Cache-Control", "max-age=99999"}}});
    const auto view = makeView({.websiteDataStore = dataStore});
    load(*view, site + "/");
    evaluate(*view,
             "localStorage.setItem('mark', '" + host + "'); indexedDB.open('" + host + "'); 1");
  }
};

TEST_F(PrivacyTest, APrivateVisitLeavesNothingThatATwinLeaves) {
  visit(engine->nonPersistentDataStore(), "hidden-harbour.test");
  visit(engine->dataStoreForIdentifier(UUID::random()), "open-harbour.test");
  ASSERT_TRUE(
      eventually([&] { return !filesHolding(engineFolder(), "open-harbour").empty(); }, 15s))
      << "the twin left nothing either: this test could not fail";
  EXPECT_THAT(filesHolding(engineFolder(), "hidden-harbour"), testing::IsEmpty());
}

}  // namespace
}  // namespace orvel
