#include <gmock/gmock.h>

#include "Tests/Engine/EngineTest.h"

namespace orvel {
namespace {

using test::EngineTest;
using test::eventually;

struct LoadingTest : EngineTest {};

TEST_F(LoadingTest, LoadsAPageOfAMadeUpHostThroughTheProxy) {
  server.serve("http://lighthouse.test/", "<title>Light</title><p id=p>on</p>");
  const auto view = makeView();
  std::vector<double> progress;
  const auto watch = view->observe(WebViewProperty::EstimatedProgress,
                                   [&] { progress.push_back(view->estimatedProgress()); });
  load(*view, "http://lighthouse.test/");
  EXPECT_TRUE(eventually([&] { return view->title() == "Light"; }));
  EXPECT_EQ(view->url(), URL::parse("http://lighthouse.test/"));
  EXPECT_EQ(evaluate(*view, "document.getElementById('p').textContent"), "\"on\"");
  EXPECT_EQ(server.requestCount("http://lighthouse.test/"), 1);
  EXPECT_FALSE(progress.empty());
  EXPECT_EQ(progress.back(), 1.0);
}

}  // namespace
}  // namespace orvel
