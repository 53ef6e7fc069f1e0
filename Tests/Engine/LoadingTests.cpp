#include <gmock/gmock.h>
#include <signal.h>

#include <algorithm>
#include <fstream>
#include <set>

#include "Engine/WebKitGtk/Policy/HTTPSFirst.h"
#include "Tests/Contract/RecordingDelegate.h"
#include "Tests/Engine/EngineTest.h"

namespace orvel {
namespace {

using test::EngineTest;
using test::eventually;
using test::RecordingDelegate;
using test::turnFor;

struct LoadingTest : EngineTest {
  RecordingDelegate delegate;
};

// A load that takes the place of a refused redirect has a limit of its own.
TEST_F(LoadingTest, GivesUpAServerThatARefusedRedirectLedTo) {
  const auto view = makeView();
  delegate.attachTo(*view);
  server.serve("http://one.test/", {.status = 302, .headers = {{"Location", "/?tracked"}}});
  server.serve("http://slow.test/", {.body = "<title>Slow</title>", .delay = 30});
  delegate.decide = [&](const NavigationAction& action) {
    if (action.request->url != URL::parse("http://one.test/?tracked"))
      return NavigationPolicy::Allow;
    view->load({.url = *URL::parse("http://slow.test/?clean"), .timeout = 300ms});
    return NavigationPolicy::Cancel;
  };
  view->load({.url = *URL::parse("http://one.test/"), .timeout = 60s});
  EXPECT_TRUE(eventually([&] {
    return !delegate.errors.empty() && delegate.errors.back().kind == LoadError::Kind::TimedOut;
  }));
}

// The page processes of this test, by their ids.
std::set<int> webProcesses() {
  std::set<int> ids;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream status(entry.path() / "status");
    bool isWebProcess = false;
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("Name:")) isWebProcess = line.find("WebKitWebP") != std::string::npos;
      if (line.starts_with("PPid:") && isWebProcess && std::stoi(line.substr(6)) == getpid())
        ids.insert(std::stoi(entry.path().filename().string()));
    }
  }
  return ids;
}

TEST_F(LoadingTest, EndsThePageProcessWithItsView) {
  server.serve("http://one.test/", "<title>One</title>");
  auto view = makeView();
  load(*view, "http://one.test/");
  const std::set<int> before = webProcesses();
  ASSERT_FALSE(before.empty());
  view.reset();
  // The engine may keep a fresh process ready for the next page; the old one has to go.
  EXPECT_TRUE(eventually(
      [&] {
        const std::set<int> now = webProcesses();
        return std::any_of(before.begin(), before.end(), [&](int id) { return !now.contains(id); });
      },
      10s));
}

TEST_F(LoadingTest, SendsThePrivacySignalAndShowsItToPages) {
  server.serve("http://signal.test/", "<title>x</title><script src=/s.js></script>");
  for (const bool isSignalling : {true, false}) {
    server.clearRequests();
    const auto view = makeView({.isGlobalPrivacyControlEnabled = isSignalling});
    load(*view, "http://signal.test/");
    EXPECT_EQ(evaluate(*view, "navigator.globalPrivacyControl") == "true", isSignalling);
    for (const auto& request : server.requests())
      EXPECT_EQ(request.headers.contains("sec-gpc"), isSignalling) << request.url;
  }
}

// HTTPS first

struct HTTPSFirstTest : LoadingTest {
  std::shared_ptr<WebView> makeUpgradingView() {
    auto view = makeView(
        {.preferredHTTPSNavigationPolicy = HTTPSNavigationPolicy::AutomaticFallbackToHTTP});
    delegate.attachTo(*view);
    return view;
  }
};

// A proxy that will not connect answers with nothing that a page could show.
TEST_F(HTTPSFirstTest, AnEmptyRefusalIsAFailedLoad) {
  server.serve("http://denied.test/", "<title>Plain</title>");
  server.serve("http://busy.test/", test::ServedPage{.status = 503});
  server.serve("http://broken.test/",
               test::ServedPage{.status = 500, .headers = {{"Content-Type", "application/zip"}}});
  const auto view = makeUpgradingView();
  view->load({.url = *URL::parse("http://denied.test/")});
  EXPECT_TRUE(eventually([&] { return view->title() == "Plain"; }));
  for (const char* address : {"http://busy.test/", "http://broken.test/", "http://one.test:25/"}) {
    server.refuse(std::string(*URL::parse(address)->host()), 443);
    delegate.errors.clear();
    view->load({.url = *URL::parse(address)});
    EXPECT_TRUE(eventually([&] { return !delegate.errors.empty(); })) << address;
    EXPECT_EQ(delegate.errors.front().kind, LoadError::Kind::Other) << address;
    EXPECT_EQ(delegate.errors.front().failingURL, URL::parse(address)) << address;
  }
  EXPECT_TRUE(delegate.downloads.empty());
}

TEST_F(HTTPSFirstTest, TriesHTTPSFirstAndFallsBackByItself) {
  server.serve("http://old.test/page", "<title>Old</title>");
  server.refuse("old.test", 443);
  const auto view = makeUpgradingView();
  view->load({.url = *URL::parse("http://old.test/page")});
  ASSERT_TRUE(eventually([&] { return view->title() == "Old"; }));
  EXPECT_EQ(view->url(), URL::parse("http://old.test/page"));
  EXPECT_TRUE(delegate.errors.empty());
  // The host is known now: no second try.
  load(*view, "http://old.test/page?again");
  EXPECT_TRUE(eventually([&] { return server.requestCount("http://old.test/page") == 2; }));
}

TEST_F(HTTPSFirstTest, AnAddressGoesWithoutHTTPSUnlessThatWasAskedFor) {
  for (const auto& [host, scheme] :
       {std::pair("given.test", SchemeSource::Given), {"router.test", SchemeSource::Supplied}}) {
    const std::string plain = fmt::format("http://{}/", host);
    server.serve(plain, "<title>Old</title>");
    server.refuse(host, 443);
    const auto view = makeUpgradingView();
    delegate.errors.clear();
    view->load({.url = *URL::parse(fmt::format("https://{}", host)), .schemeSource = scheme});
    EXPECT_TRUE(eventually([&] { return !delegate.errors.empty() || view->title() == "Old"; }));
    EXPECT_EQ(server.requestCount(plain), scheme == SchemeSource::Supplied) << host;
    EXPECT_EQ(delegate.errors.empty(), scheme == SchemeSource::Supplied) << host;
  }
}

// Over http the host leads back to https, which cannot be had: once is enough.
TEST_F(HTTPSFirstTest, EndsWhereBothWaysLeadToHTTPS) {
  for (const char* host : {"expired.loop.test", "closed.loop.test"}) {
    const std::string plain = fmt::format("http://{}/", host);
    server.serve(plain,
                 {.status = 302, .headers = {{"Location", fmt::format("https://{}/", host)}}});
    if (std::string_view(host).starts_with("closed")) server.refuse(host, 443);
    const auto view = makeUpgradingView();
    delegate.errors.clear();
    view->load({.url = *URL::parse(plain)});
    EXPECT_TRUE(eventually([&] { return !delegate.errors.empty(); })) << host;
    turnFor(200ms);
    EXPECT_EQ(server.requestCount(plain), 1) << host;
    EXPECT_EQ(delegate.errors.size(), 1u) << host;
    EXPECT_FALSE(view->isLoading()) << host;
  }
}

TEST_F(HTTPSFirstTest, TellsOfAnExceptionThatCannotBeMade) {
  std::ofstream(folder.path / "file") << "in the way";
  HTTPSFirst rules(folder.path / "file" / "rules");
  std::optional<bool> isInForce;
  rules.addException(*URL::parse("http://old.test/"), [&](bool is) { isInForce = is; });
  EXPECT_TRUE(eventually([&] { return isInForce.has_value(); }));
  EXPECT_EQ(isInForce, false);
  EXPECT_FALSE(rules.isException(*URL::parse("http://old.test/")));
}

// However far it got: asked over https, refused there, waiting for its exception, asked again.
TEST_F(HTTPSFirstTest, AStoppedLoadStaysStopped) {
  server.serve("http://localhost/", "<title>Local</title>");
  for (const int turns : {0, 8, 24, 48}) {
    const std::string host = "slow" + std::to_string(turns) + ".test";
    server.serve("http://" + host + "/", {.body = "<title>Slow</title>", .delay = 30});
    server.refuse(host, 443);
    const auto view = makeUpgradingView();
    bool isShownLoading = false;
    const auto watch =
        view->observe(WebViewProperty::IsLoading, [&] { isShownLoading = view->isLoading(); });
    view->load({.url = *URL::parse("http://" + host + "/")});
    for (int turn = 0; turn < turns; ++turn) g_main_context_iteration(nullptr, TRUE);
    view->stopLoading();
    EXPECT_FALSE(view->isLoading()) << turns;
    turnFor(200ms);
    EXPECT_FALSE(isShownLoading) << turns;
    EXPECT_NE(view->title(), "Slow") << turns;
    // What is asked for next is loaded.
    load(*view, "http://localhost/");
    EXPECT_TRUE(eventually([&] { return view->title() == "Local"; })) << turns;
  }
}

}  // namespace
}  // namespace orvel
