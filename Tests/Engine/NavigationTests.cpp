#include <gmock/gmock.h>

#include <fmt/format.h>

#include "Tests/Contract/RecordingDelegate.h"
#include "Tests/Engine/EngineTest.h"

namespace orvel {
namespace {

using test::EngineTest;
using test::eventually;
using test::RecordingDelegate;
using test::turnFor;
using testing::IsEmpty;

// What the delegate is asked about the main frame, on a page with a frame that has been somewhere.
struct NavigationTest : EngineTest {
  RecordingDelegate delegate;
  std::shared_ptr<WebView> view;

  void open(HTTPSNavigationPolicy https = HTTPSNavigationPolicy::KeepAsRequested) {
    server.serve("http://localhost/",
                 "<title>Here</title><a id=mail href='mailto:x@y.org'>m</a>"
                 "<a id=tel href='tel:+1 (555) 010-9999'>t</a><iframe src=/frame></iframe>");
    server.serve("http://localhost/frame", "frame");
    server.serve("http://localhost/other", "<title>Other</title>");
    view = makeView({.preferredHTTPSNavigationPolicy = https});
    delegate.attachTo(*view);
    show(*view);
    load(*view, "http://localhost/");
    delegate.actions.clear();
    delegate.decide = [](const NavigationAction& action) {
      const bool isElsewhere = !action.request->url.hasScheme("http");
      return isElsewhere ? NavigationPolicy::Cancel : NavigationPolicy::Allow;
    };
  }
  // The addresses that the main frame was asked about, those of user's clicks marked.
  std::vector<std::string> asked() const {
    std::vector<std::string> addresses;
    for (const auto& action : delegate.actions)
      if (action.targetFrame && action.targetFrame->isMainFrame)
        addresses.push_back(
            (action.navigationType == NavigationType::LinkActivated ? "click " : "") +
            (action.request ? action.request->url.text() : ""));
    return addresses;
  }
  void run(const std::string& script) {
    delegate.actions.clear();
    evaluate(*view, script + "; 1");
  }
};

TEST_F(NavigationTest, AFrameOfThePageIsNotThePage) {
  open();
  const std::vector<std::pair<const char*, std::function<void()>>> cases = {
      {"reload", [&] { run("frames[0].location.reload()"); }},
      {"load", [&] { run("frames[0].location = '/other'"); }},
      {"step", [&] { run("history.back()"); }},
      {"the program's step, which is the frame's", [&] { view->goForward(); }},
  };
  for (const auto& [name, navigate] : cases) {
    run("frames[0].isFormer = true");
    navigate();
    EXPECT_TRUE(eventually([&] {
      return evaluate(*view, "frames[0].isFormer ?? frames[0].document.readyState") ==
             "\"complete\"";
    })) << name;
    EXPECT_FALSE(delegate.actions.empty()) << name;
    EXPECT_THAT(asked(), IsEmpty()) << name;
  }
  run("frames[0].location = 'mailto:x@y.org'");
  turnFor(200ms);
  EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(NavigationTest, ScriptsThatLeaveThePageAreAskedAboutOnce) {
  open(HTTPSNavigationPolicy::AutomaticFallbackToHTTP);
  server.serve("http://next.test/", "<title>Next</title>");
  server.refuse("next.test", 443);
  server.serve("http://localhost/away",
               {.status = 302, .headers = {{"Location", "mailto:x@y.org"}}});
  const struct {
    const char* script;
    std::vector<std::string> asked;
  } cases[] = {
      {"location = 'mailto:x@y.org'", {"mailto:x@y.org"}},
      {"location = '/away'", {"http://localhost/away", "mailto:x@y.org"}},
      {"document.getElementById('mail').click()", {"mailto:x@y.org"}},
      {"document.getElementById('tel').click()", {"tel:+1%20(555)%20010-9999"}},
      {"location.reload()", {"http://localhost/"}},
      // Upgraded, refused and made again.
      {"location = 'http://next.test/#part'", {"http://next.test/#part", "http://next.test/#part"}},
      // By then the page's frames have asked for more than anybody counts.
      {"for (let i = 0; i < 300; ++i) document.body.append(Object.assign(document.createElement("
       "'iframe'), {src: 'http://localhost/frame?' + i})); setTimeout(() => location = "
       "'http://localhost/other', 50)",
       {"http://localhost/other"}},
  };
  for (const auto& test : cases) {
    run(test.script);
    EXPECT_TRUE(eventually([&] { return asked().size() >= test.asked.size(); }, 10s))
        << test.script;
    EXPECT_TRUE(eventually([&] { return !view->isLoading(); }, 10s)) << test.script;
    EXPECT_EQ(asked(), test.asked) << test.script;
    EXPECT_NE(view->url(), URL::parse("mailto:x@y.org"));
  }
  EXPECT_THAT(delegate.errors,
              testing::Each(testing::Field(
                  &LoadError::kind,
                  testing::AnyOf(LoadError::Kind::Cancelled, LoadError::Kind::PolicyInterrupted))))
      << "no page was lost";
}

TEST_F(NavigationTest, WhatTheProgramLoadsIsKnownAtOnce) {
  open();
  server.serve("http://bare.test/", "<title>Bare</title>");
  const auto isKnown = [&](const std::string& address) {
    const bool isFirst = eventually([&] { return !delegate.actions.empty(); }) &&
                         delegate.actions.front().targetFrame->isMainFrame;
    EXPECT_TRUE(eventually([&] { return !view->isLoading(); }));
    return isFirst && asked() == std::vector{address};
  };
  delegate.actions.clear();
  load(*view, "http://bare.test");
  EXPECT_TRUE(isKnown("http://bare.test/"));
  for (const auto& [name, step] : std::vector<std::pair<const char*, std::function<void()>>>{
           {"http://bare.test/", [&] { view->reload(ReloadSource::Cache); }},
           {"http://localhost/", [&] { view->goBack(); }},
           {"http://bare.test/", [&] { view->goForward(); }}}) {
    delegate.actions.clear();
    step();
    EXPECT_TRUE(isKnown(name)) << name;
  }
}

}  // namespace
}  // namespace orvel
