#include "Tests/Kit/Publish.h"
#include "Tests/Models/ModelTest.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Tab/Peek.h"
#include "Support/Network/UserAgent.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel::test {
namespace {

using enum NavigationPolicy;

const FrameInfo kMainFrame{.id = 1, .isMainFrame = true};
const FrameInfo kSubframe{.id = 2, .isMainFrame = false};

struct Policy : ModelTest {
  Policy() {
    world.interface.shown = &world.window;
    world.desktop.applications["mailto"] = {"org.example.Mail.desktop", "Mail"};
    show(load("https://a.org/"));
  }
  void show(const TabRef& shown) {
    tab = shown;
    tab->webView();
    settle();
    view = world.viewOnScreen(tab);
  }
  void usePrivateTab() {
    show(BrowserTab::make(world.services, {.profile = privateProfile(),
                                           .host = world.store->tabHost(),
                                           .url = address("https://a.org/")}));
  }
  static NavigationAction action(const std::string& url,
                                 NavigationType type = NavigationType::LinkActivated) {
    return {.request = URLRequest{.url = address(url)},
            .navigationType = type,
            .sourceFrame = kMainFrame,
            .targetFrame = kMainFrame};
  }
  std::string lastRequest() const { return view->requests.back().url.text(); }

  TabRef tab;
  std::shared_ptr<FakeWebView> view;
};

TEST_F(Policy, OtherApplicationsAreOpenedByClicksAndAskedForByScripts) {
  using enum NavigationType;
  enum class Outcome { Opens, Asks, Nothing };
  const struct {
    const char* url;
    NavigationType type;
    FrameInfo source;
    std::optional<FrameInfo> target;
    Outcome outcome;
  } cases[] = {
      {"mailto:x@y.org", LinkActivated, kMainFrame, kMainFrame, Outcome::Opens},
      {"mailto:x@y.org", LinkActivated, kMainFrame, std::nullopt, Outcome::Opens},
      {"mailto:x@y.org", LinkActivated, kSubframe, kMainFrame, Outcome::Nothing},
      {"MAILTO:x@y.org", Other, kMainFrame, kMainFrame, Outcome::Asks},
      {"mailto:x@y.org", FormSubmitted, kMainFrame, std::nullopt, Outcome::Asks},
      {"mailto:x@y.org", Other, kSubframe, kSubframe, Outcome::Nothing},
      {"unknown:x", Other, kMainFrame, kMainFrame, Outcome::Nothing},
  };
  for (const auto& test : cases) {
    world.desktop.opened.clear();
    world.desktop.alerts.clear();
    NavigationAction asked = action(test.url, test.type);
    asked.sourceFrame = test.source;
    asked.targetFrame = test.target;
    EXPECT_EQ(view->navigate(asked), Cancel);
    EXPECT_EQ(world.desktop.opened.size(), test.outcome == Outcome::Opens) << test.url;
    EXPECT_EQ(world.desktop.alerts.size(), test.outcome == Outcome::Asks) << test.url;
    for (const auto& answer : std::exchange(world.desktop.openAlerts, {})) answer({.button = 1});
  }
  world.desktop.alerts.clear();
  const size_t tabs = space().today.peek().size();
  EXPECT_EQ(view->openWindow("mailto:x@y.org"), nullptr);
  EXPECT_EQ(world.desktop.alerts.size(), 1u);
  EXPECT_EQ(space().today.peek().size(), tabs) << "no empty tab stays behind";
}

TEST_F(Policy, TheQuestionBeforeAnotherApplicationOpens) {
  const auto ask = [&] { view->navigate(action("mailto:x@y.org", NavigationType::Other)); };
  ask();
  ask();
  ASSERT_EQ(world.desktop.alerts.size(), 1u) << "one question at a time";
  const Alert& alert = world.desktop.alerts[0].alert;
  EXPECT_EQ(alert.messageText, "Open “Mail”?");
  EXPECT_THAT(alert.informativeText, HasSubstr("a.org wants"));
  EXPECT_EQ(world.desktop.alerts[0].parent, &world.window);
  world.desktop.openAlerts[0]({.button = 0});
  EXPECT_THAT(world.desktop.opened, ElementsAre(address("mailto:x@y.org")));

  publish(tab->url, std::nullopt);
  world.desktop.answerAlert = [](const Alert&) { return AlertAnswer{}; };
  ask();
  settle();
  EXPECT_THAT(world.desktop.alerts[1].alert.informativeText, HasSubstr("This page wants"));
  EXPECT_EQ(world.desktop.opened.size(), 1u) << "taken away without a choice";
}

TEST_F(Policy, WhatIsLetThroughAsItIs) {
  using enum NavigationType;
  NavigationAction download = action("mailto:x@y.org");
  download.shouldPerformDownload = true;
  NavigationAction nowhere = action("https://b.org/");
  nowhere.request.reset();
  const auto decide = [&](const NavigationAction& asked) {
    std::vector<NavigationPolicy> answers;
    tab->decidePolicyForAction(*view, asked, [&](auto policy) { answers.push_back(policy); });
    return answers;
  };
  EXPECT_THAT(decide(download), ElementsAre(Download));
  EXPECT_THAT(decide(nowhere), ElementsAre(Allow));
  NavigationAction post = action("https://b.org/?utm_source=x", Other);
  post.request->method = "POST";
  NavigationAction frame = action("https://b.org/?utm_source=x", Other);
  frame.targetFrame = kSubframe;
  NavigationAction window = action("https://b.org/?utm_source=x");
  window.targetFrame.reset();
  window.modifierFlags.shift = true;
  const size_t requests = view->requests.size();
  for (const NavigationAction& asked :
       {post, frame, window, action("https://b.org/?utm_source=x", BackForward),
        action("https://b.org/?utm_source=x", Reload), action("HTTPS://b.org/"),
        action("https://b.org/?utm_source=x", FormSubmitted), action("blob:https://b.org/1")})
    EXPECT_THAT(decide(asked), ElementsAre(Allow)) << asked.request->url.text();
  EXPECT_EQ(view->requests.size(), requests);
}

TEST_F(Policy, TrackingParametersAreStrippedOnceUntilAPageFinishes) {
  const std::string tracked = "https://b.org/?utm_source=x";
  const auto redirect = action(tracked, NavigationType::Other);
  EXPECT_EQ(view->navigate(redirect), Cancel);
  EXPECT_EQ(lastRequest(), "https://b.org/");
  EXPECT_EQ(view->navigate(redirect), Allow) << "the site insists";
  settle();
  EXPECT_EQ(view->navigate(redirect), Cancel) << "the page has finished meanwhile";
  EXPECT_EQ(view->navigate(action(tracked)), Cancel) << "a click is always stripped";
  EXPECT_EQ(view->navigate(action("https://c.org/?utm_source=x", NavigationType::Other)), Cancel);
  EXPECT_EQ(lastRequest(), "https://c.org/");

  world.engine.pages["https://b.org/"] = {.load = FakePage::Load::Fail};
  tab->load(address(tracked));
  settle();
  EXPECT_EQ(view->navigate(redirect), Allow) << "a page that failed has not finished";
}

TEST_F(Policy, ClicksByModifierAndButton) {
  enum class Place { Page, PrivatePage, Peek };
  using enum Place;
  enum class Opens { Nothing, Behind, InFront };
  const ModifierFlags none, shift{.shift = true}, control{.control = true};
  const struct {
    const char* name;
    ModifierFlags modifiers;
    MouseButton button;
    Place place;
    FrameInfo frame;
    Opens opens;
  } cases[] = {
      {"plain", none, MouseButton::Left, Page, kMainFrame, Opens::Nothing},
      {"control", control, MouseButton::Left, Page, kMainFrame, Opens::Behind},
      {"middle", none, MouseButton::Middle, Page, kMainFrame, Opens::Behind},
      {"shift middle", shift, MouseButton::Middle, Page, kMainFrame, Opens::InFront},
      {"control in a subframe", control, MouseButton::Left, Page, kSubframe, Opens::Behind},
      {"shift: a peek, which is a tab", shift, MouseButton::Left, Page, kMainFrame, Opens::InFront},
      {"shift in the peek", shift, MouseButton::Left, Peek, kMainFrame, Opens::Nothing},
      {"private control", control, MouseButton::Left, PrivatePage, kMainFrame, Opens::Nothing},
      {"private shift", shift, MouseButton::Left, PrivatePage, kMainFrame, Opens::Nothing},
      {"private middle", none, MouseButton::Middle, PrivatePage, kMainFrame, Opens::Nothing},
  };
  for (const auto& test : cases) {
    show(load("https://a.org/"));
    if (test.place == PrivatePage) usePrivateTab();
    publish(store().peek.tab, test.place == Peek ? tab : nullptr);
    const TabRef former = selected();
    const size_t before = space().today.peek().size();
    const bool opens = test.opens != Opens::Nothing;
    NavigationAction click = action(opens ? "https://b.org/?utm_source=x" : "https://b.org/");
    click.targetFrame = test.frame;
    click.modifierFlags = test.modifiers;
    click.buttonNumber = test.button;
    EXPECT_EQ(view->navigate(click), opens ? Cancel : Allow) << test.name;
    const auto tabs = urls(space().today);
    EXPECT_EQ(tabs.size() - before, opens ? 1u : 0u) << test.name;
    if (opens) EXPECT_EQ(std::ranges::count(tabs, "https://b.org/"), 1) << test.name;
    EXPECT_EQ(selected() != former, test.opens == Opens::InFront) << test.name;
    store().clearToday(store().activeSpace());
    publish(store().peek.tab, nullptr);
  }
}

TEST_F(Policy, PagesOfExtensionsLiveInViewsOfTheirOwn) {
  const std::string page = "webkit-extension://one/options.html";
  EXPECT_EQ(view->navigate(action(page, NavigationType::Other)), Cancel) << "nobody owns it";
  settle();
  EXPECT_EQ(tab->webViewRevision.peek(), 0);

  const TabRef early = world.open(page);
  world.hasExtension = true;
  for (int i = 0; i < 2; ++i) early->reopenExtensionPage();
  EXPECT_EQ(early->webViewRevision.peek(), 1) << "a page that waited for its extension";
  EXPECT_EQ(view->navigate(action(page)), Cancel);
  EXPECT_EQ(tab->liveWebView(), view) << "the view that asks is still in its call";
  settle();
  EXPECT_EQ(tab->webViewRevision.peek(), 1);
  EXPECT_EQ(tab->liveWebView()->configuration().applicationNameForUserAgent, "extension");
  EXPECT_EQ(tab->url.peek(), address(page));
  EXPECT_FALSE(tab->canGoBack) << "the old view's history went with it";

  view = world.view(tab);
  EXPECT_EQ(view->navigate(action("webkit-extension://one/other.html")), Allow);
  EXPECT_EQ(view->navigate(action("https://b.org/")), Cancel);
  settle();
  EXPECT_EQ(tab->webViewRevision.peek(), 2);
  EXPECT_EQ(tab->liveWebView()->configuration().applicationNameForUserAgent,
            UserAgent::safariSuffix());

  usePrivateTab();
  EXPECT_EQ(view->navigate(action(page)), Cancel);
  settle();
  EXPECT_EQ(tab->webViewRevision.peek(), 0);
}

TEST_F(Policy, SiteRulesFollowEveryNavigationOfTheMainFrame) {
  // The site's pause shows in what `install` does anew.
  store().contentBlocker.setEnabled(true);
  store().contentBlocker.togglePause(address("https://paused.org/"));
  auto& controller = view->controller();
  const auto isChanged = [&](const NavigationAction& asked) {
    const int before = controller.clearCount;
    view->navigate(asked);
    return controller.clearCount != before;
  };
  EXPECT_TRUE(isChanged(action("https://paused.org/", NavigationType::BackForward)));
  EXPECT_TRUE(isChanged(action("https://open.org/", NavigationType::Reload)));
  NavigationAction click = action("https://paused.org/");
  click.modifierFlags.control = true;
  EXPECT_TRUE(isChanged(click)) << "also for a click that then opens another tab";
  NavigationAction frame = action("https://open.org/");
  frame.targetFrame = kSubframe;
  EXPECT_FALSE(isChanged(frame));
}

TEST_F(Policy, AnAttachmentInAFrameIsShownThere) {
  for (const bool isMain : {true, false}) {
    const NavigationResponse response{.url = address("https://a.org/f"),
                                      .isForMainFrame = isMain,
                                      .contentDisposition = "Attachment; filename=f"};
    std::optional<NavigationPolicy> decided;
    tab->decidePolicyForResponse(*view, response, [&](auto policy) { decided = policy; });
    EXPECT_EQ(decided, isMain ? Download : Allow);
  }
}

}  // namespace
}  // namespace orvel::test
