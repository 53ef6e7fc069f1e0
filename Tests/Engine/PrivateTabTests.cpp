#include <gmock/gmock.h>

#include "Tests/Engine/EngineTest.h"

namespace orvel::test {
namespace {

struct PrivateTabTest : EngineTest {
  // A page with a cookie, stored data, a title, an icon and a cached picture.
  void visit(const std::shared_ptr<WebsiteDataStore>& data, const std::string& host) {
    const std::string site = "http://" + host;
    server.serve(site + "/", {.body = "<title>At " + host + "</title><link rel=icon href=/icon>" +
                                      "<img src=/icon><script>localStorage.mark = '" + host +
                                      "'; indexedDB.open('" + host + "')</script>",
                              .headers = {{"Set-Cookie", "mark=" + host + "; Max-Age=99999"}}});
    server.serve(site + "/icon",
                 {.body = "icon of " + host,
                  .headers = {{"Content-Type", "image/gif"}, {"Cache-Control", "max-age=99999"}}});
    const auto view = makeView({.websiteDataStore = data});
    show(*view);
    load(*view, site + "/");
    EXPECT_TRUE(eventually([&] { return view->title() == "At " + host; }));
  }
  std::vector<std::string> traces(const char* word) { return filesHolding(engineFolder(), word); }
};

TEST_F(PrivateTabTest, LeavesNothingThatATwinLeaves) {
  visit(engine->dataStoreForIdentifier(UUID::random()), "open-harbour.test");
  visit(engine->nonPersistentDataStore(), "hidden-harbour.test");
  ASSERT_TRUE(eventually([&] { return !traces("open-harbour").empty(); }, 15s))
      << "the twin left nothing either, so this test could not fail";
  turnFor(1s);
  EXPECT_THAT(traces("hidden-harbour"), testing::IsEmpty());
}

}  // namespace
}  // namespace orvel::test
