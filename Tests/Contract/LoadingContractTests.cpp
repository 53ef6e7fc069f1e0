#include "Tests/Contract/Contract.h"

namespace orvel::test {
namespace {

using testing::IsEmpty;
using Kind = Site::Kind;

struct LoadingContract : EngineContract {
  LoadingContract() {
    stage->put("http://one.test/", {.title = "One"});
    stage->put("http://two.test/", {.title = "Two"});
  }
  bool logged(std::vector<std::string> log) {
    const bool isSo = until([&] { return delegate.log.size() >= log.size(); });
    stage->pass();
    EXPECT_EQ(delegate.log, log);
    return isSo && delegate.log == log;
  }
};

TEST_P(LoadingContract, TheStepsOfALoadComeInOrderAndAFailedOneLeavesThePageAlone) {
  const struct {
    Kind kind;
    std::vector<std::string> log;
    const char* origin;
  } cases[] = {
      {Kind::Page, {"ask", "response", "commit", "finish"}, "http://next.test:8080"},
      {Kind::Torn, {"ask", "response", "commit", "break"}, "http://next.test:8080"},
      {Kind::File, {"ask", "response", "fail", "download"}, "http://one.test"},
  };
  for (const auto& test : cases) {
    delegate = {};
    const auto view = shown("http://one.test/");
    EXPECT_EQ(view->committedOrigin(), "http://one.test");
    stage->put("http://next.test:8080/", {.title = "Next", .kind = test.kind});
    go(*view, "http://next.test:8080/");
    EXPECT_TRUE(until([&] { return delegate.log.size() >= test.log.size(); })) << test.origin;
    stage->pass();
    // A file's download and the end of its load have no order.
    if (test.kind == Kind::File)
      EXPECT_THAT(delegate.log, testing::UnorderedElementsAreArray(test.log));
    else
      EXPECT_EQ(delegate.log, test.log);
    EXPECT_EQ(view->committedOrigin(), test.origin);
    EXPECT_FALSE(view->isLoading());
  }
  EXPECT_EQ(delegate.errors.front().kind, LoadError::Kind::PolicyInterrupted);
}

TEST_P(LoadingContract, WhatIsRefusedOrTakesTooLongFailsOnceAndWhatIsStoppedIsNotToldOf) {
  stage->put("http://closed.test/", {.kind = Kind::Refused});
  stage->put("http://silent.test/", {.kind = Kind::Silent});
  const auto view = shown("http://one.test/");
  go(*view, "http://closed.test/");
  EXPECT_TRUE(logged({"ask", "fail"}));
  EXPECT_EQ(delegate.errors.back().failingURL, URL::parse("http://closed.test/"));
  EXPECT_NE(delegate.errors.back().kind, LoadError::Kind::Cancelled);
  delegate.log.clear();
  go(*view, "http://silent.test/");
  EXPECT_TRUE(logged({"ask"}));
  view->stopLoading();
  EXPECT_FALSE(view->isLoading());
  EXPECT_TRUE(logged({"ask"}));
  view->load({.url = *URL::parse("http://silent.test/"), .timeout = 100ms});
  EXPECT_TRUE(logged({"ask", "ask", "fail"}));
  EXPECT_EQ(delegate.errors.back().kind, LoadError::Kind::TimedOut);
  EXPECT_EQ(delegate.errors.back().failingURL, URL::parse("http://silent.test/"));
  EXPECT_FALSE(view->isLoading());
  EXPECT_EQ(view->committedOrigin(), "http://one.test");
}

TEST_P(LoadingContract, ADecisionMayComeLateAndIsThenCarriedOut) {
  const auto view = shown("http://one.test/");
  for (const bool isResponse : {false, true}) {
    for (const auto policy : {NavigationPolicy::Cancel, NavigationPolicy::Allow}) {
      delegate.log.clear();
      PolicyHandler waiting;
      const auto take = [&](PolicyHandler answer) {
        waiting = std::move(answer);
        return true;
      };
      delegate.hold = [&](const auto&, PolicyHandler answer) {
        return !isResponse && take(answer);
      };
      delegate.holdResponse = [&](const auto&, PolicyHandler answer) {
        return isResponse && take(answer);
      };
      go(*view, "http://two.test/");
      EXPECT_TRUE(until([&] { return waiting != nullptr; }));
      stage->pass();
      EXPECT_THAT(delegate.log, testing::Not(testing::Contains("commit"))) << "the engine waits";
      waiting(policy);
      std::vector<std::string> log = {"ask"};
      if (isResponse || policy == NavigationPolicy::Allow) log.emplace_back("response");
      if (policy == NavigationPolicy::Allow)
        log.insert(log.end(), {"commit", "finish"});
      else if (isResponse)
        log.emplace_back("fail");
      EXPECT_TRUE(logged(log));
    }
  }
}

TEST_P(LoadingContract, AnAnswerThatNobodyWaitsForDoesNothing) {
  std::vector<PolicyHandler> waiting;
  delegate.hold = [&](const NavigationAction& action, PolicyHandler answer) {
    if (action.request->url != URL::parse("http://one.test/")) return false;
    waiting.push_back(std::move(answer));
    return true;
  };
  auto view = makeView();
  go(*view, "http://one.test/");
  EXPECT_TRUE(until([&] { return waiting.size() == 1; }));
  go(*view, "http://two.test/");
  EXPECT_TRUE(until([&] { return delegate.finishes == 1; }));
  waiting[0](NavigationPolicy::Allow);
  stage->pass();
  EXPECT_EQ(view->title(), "Two") << "a newer load was asked for";
  go(*view, "http://one.test/");
  EXPECT_TRUE(until([&] { return waiting.size() == 2; }));
  view.reset();
  waiting[1](NavigationPolicy::Allow);
  stage->pass();
  EXPECT_EQ(delegate.commits, 1) << "the view is gone";
}

TEST_P(LoadingContract, ADelegateThatWasTakenOffHearsNothing) {
  const auto view = shown("http://one.test/");
  view->setNavigationDelegate(nullptr);
  view->setUIDelegate(nullptr);
  go(*view, "http://two.test/");
  EXPECT_TRUE(until([&] { return view->title() == "Two"; }));
  EXPECT_THAT(delegate.log, IsEmpty());
}

TEST_P(LoadingContract, APageThatStandsInForAnotherHasItsAddressAndFinishesNothing) {
  const auto view = shown("http://one.test/");
  stage->put("http://closed.test/", {.kind = Kind::Refused});
  view->loadHTMLString("<title>Sorry</title>", URL::parse("http://two.test/"));
  EXPECT_TRUE(until([&] { return view->title() == "Sorry" && !view->isLoading(); }));
  EXPECT_TRUE(logged({"commit"}));
  EXPECT_EQ(view->url(), URL::parse("http://two.test/"));
  EXPECT_EQ(view->committedOrigin(), std::nullopt);
  view->reload(ReloadSource::Origin);
  EXPECT_TRUE(until([&] { return view->title() == "Two" && delegate.finishes == 2; }));
  EXPECT_EQ(view->committedOrigin(), "http://two.test");
}

TEST_P(LoadingContract, AProcessThatDiesIsToldOfAndOneThatIsEndedIsNot) {
  const auto view = shown("http://one.test/");
  stage->crash(*view);
  EXPECT_TRUE(logged({"end"}));
  EXPECT_EQ(view->committedOrigin(), std::nullopt);
  go(*view, "http://two.test/");
  EXPECT_TRUE(until([&] { return delegate.finishes == 2; }));
  view->endProcess();
  stage->pass();
  EXPECT_EQ(delegate.terminations, 1);
  go(*view, "http://one.test/");
  EXPECT_TRUE(until([&] { return view->title() == "One" && delegate.finishes == 3; }));
}

TEST_P(LoadingContract, AViewStandsWhereItIsPutAndKeepsItsZoom) {
  const auto view = shown("http://one.test/");
  EXPECT_EQ(view->estimatedProgress(), 1);
  EXPECT_TRUE(view->isResponsive());
  EXPECT_FALSE(view->isInWindow() || view->holdsPoint(400, 300));
  stage->show(*view);
  EXPECT_TRUE(until([&] { return view->holdsPoint(400, 300) && !view->isBlank(); }));
  EXPECT_FALSE(view->holdsPoint(-1, 10) || view->holdsPoint(10, 5000));
  view->exitFullscreen();  // nothing fills the screen
  view->setPageZoom(1.5);
  go(*view, "http://two.test/");
  EXPECT_TRUE(until([&] { return delegate.finishes == 2; }));
  EXPECT_EQ(view->pageZoom(), 1.5);
  bool mayClose = false;
  view->requestClose([&](bool may) { mayClose = may; });
  EXPECT_TRUE(mayClose) << "within the call, as nothing is guarded";
  view->removeFromParent();
  EXPECT_FALSE(view->isInWindow());
}

TEST_P(LoadingContract, TheWayBackIsKeptAsBytes) {
  std::string state;
  {
    const auto view = shown("http://one.test/");
    EXPECT_FALSE(view->canGoBack());
    go(*view, "http://two.test/");
    EXPECT_TRUE(until([&] { return view->canGoBack() && delegate.finishes == 2; }));
    state = view->interactionState()->bytes;
    EXPECT_EQ(view->interactionState()->address, URL::parse("http://two.test/"));
  }
  const auto view = makeView();
  EXPECT_EQ(view->interactionState(), std::nullopt);
  for (const std::string& bytes :
       std::vector<std::string>{"garbage", state.substr(0, state.size() / 2), ""})
    EXPECT_FALSE(view->setInteractionState(bytes));
  EXPECT_TRUE(view->setInteractionState(state));
  EXPECT_EQ(view->url(), URL::parse("http://two.test/")) << "known before anything has loaded";
  EXPECT_EQ(view->interactionState()->address, view->url());
  EXPECT_TRUE(until([&] { return delegate.finishes == 3; }));
  stage->put("http://closed.test/", {.kind = Kind::Refused});
  go(*view, "http://closed.test/");
  EXPECT_EQ(view->interactionState()->address, URL::parse("http://two.test/"))
      << "what is not committed is no part of it";
  EXPECT_TRUE(until([&] { return !view->isLoading(); }));
  view->goBack();
  EXPECT_TRUE(until([&] { return view->title() == "One" && view->canGoForward(); }));
}

ORVEL_BOTH(LoadingContract);

}  // namespace
}  // namespace orvel::test
