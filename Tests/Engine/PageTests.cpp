#include <gmock/gmock.h>

#include <fstream>

#include "Engine/WebKitGtk/Data/WebKitDataStore.h"
#include "Tests/Contract/RecordingDelegate.h"
#include "Tests/Engine/EngineTest.h"

namespace orvel {
namespace {

using test::EngineTest;
using test::eventually;
using test::RecordingDelegate;
using test::ServedPage;
using test::turnFor;
using testing::ElementsAre;

struct PageTest : EngineTest {
  RecordingDelegate delegate;

  std::shared_ptr<WebView> page(const std::string& html,
                                const std::string& url = "http://page.test/") {
    server.serve(url, html);
    auto view = makeView();
    delegate.attachTo(*view);
    show(*view);
    load(*view, url);
    return view;
  }
};

TEST_F(PageTest, AsksForEachScriptDialogAndTakesItsAnswer) {
  const auto view = page("<title>x</title>");
  EXPECT_EQ(evaluate(*view, "alert('hello'); 1"), "1");
  EXPECT_EQ(evaluate(*view, "confirm('sure?')"), "false");
  delegate.confirmAnswer = true;
  EXPECT_EQ(evaluate(*view, "confirm('sure?')"), "true");
  EXPECT_EQ(evaluate(*view, "prompt('name', 'me')"), "null");
  delegate.promptAnswer = "Ada";
  EXPECT_EQ(evaluate(*view, "prompt('name')"), "\"Ada\"");
  EXPECT_THAT(delegate.panels,
              ElementsAre("alert page.test: hello", "confirm: sure?", "confirm: sure?",
                          "prompt: name [me]", "prompt: name []"));
}

TEST_F(PageTest, QuestionsCarryTheOriginOfThePageThatIsShown) {
  server.serve("http://bank.test/", {.body = "<title>Bank</title>", .delay = 30});
  server.serve("http://localhost/out",
               {.status = 302, .headers = {{"Location", "http://bank.test/"}}});
  const auto view = page("<title>Evil</title>", "http://localhost/");
  evaluate(*view, "location = '/out'; 1");
  ASSERT_TRUE(eventually([&] { return view->url() == URL::parse("http://bank.test/"); }));
  evaluate(*view, "alert('pay'); navigator.geolocation.getCurrentPosition(() => {}); 1");
  EXPECT_TRUE(eventually([&] { return delegate.panels.size() == 2; }));
  EXPECT_THAT(delegate.panels, ElementsAre("alert localhost: pay", "location localhost"));
}

TEST_F(PageTest, OpensAWindowThatTheEngineNavigates) {
  server.serve("http://page.test/popup", "<title>Popup</title>");
  std::shared_ptr<WebView> popup;
  delegate.makeWindow = [&](const WebViewConfiguration& configuration) {
    return popup = engine->makeWebView(configuration);
  };
  const auto view = page("<title>x</title>");
  view->callAsyncJavaScript("return window.open('/popup') !== null", "{}", ContentWorld::page(),
                            {});
  if (!eventually([&] { return popup != nullptr; }, 2s))
    GTEST_SKIP() << "the engine wants a gesture here; the end-to-end tests click";
  EXPECT_TRUE(eventually([&] { return popup->title() == "Popup"; }));
  EXPECT_EQ(evaluate(*popup, "opener !== null"), "true");
}

TEST_F(PageTest, MessagesAreSignedWhoeverComesFirst) {
  const auto controller = engine->makeUserContentController();
  std::vector<ScriptMessage> messages;
  controller->addUserScript({.source = "webkit.messageHandlers.early.postMessage('first')",
                             .world = ContentWorld::hiddenItems()});
  controller->addScriptMessageHandler(
      "early", ContentWorld::hiddenItems(),
      [&](const ScriptMessage& message) { messages.push_back(message); });
  server.serve("http://page.test/", "<title>x</title>");
  const auto view = makeView({.userContentController = controller});
  load(*view, "http://page.test/");
  ASSERT_TRUE(eventually([&] { return messages.size() == 1; }));
  EXPECT_EQ(messages[0].body, "\"first\"");
  EXPECT_TRUE(messages[0].frame.isMainFrame);
}

TEST_F(PageTest, KnowsOfSoundOutsideOfThePageAndOfVideoThatNobodyHears) {
  const auto view = page("<title>x</title>");
  const auto isPlaying = [&](bool audio, bool video) {
    return eventually([&] { return view->playingMedia() == PlayingMedia{audio, video}; }, 10s);
  };
  evaluate(*view, test::kSound);
  evaluate(
      *view,
      "sound.remove(); window.loose = new Audio(sound.src); loose.loop = true; loose.play(); 1");
  EXPECT_TRUE(isPlaying(true, false));
  evaluate(*view, "loose.pause(); 1");
  EXPECT_TRUE(isPlaying(false, false));
  evaluate(*view,
           "window.video = document.createElement('video'); video.loop = video.muted = true;"
           "video.src = sound.src; document.body.append(video); video.play(); 1");
  EXPECT_TRUE(isPlaying(false, true));
  evaluate(*view, "video.muted = false; 1");
  EXPECT_TRUE(isPlaying(true, true));
}

TEST_F(PageTest, RunsNoScriptOfAPageThatMayHaveNoneAndAllOfTheProgram) {
  server.serve("http://page.test/",
               "<title>before</title><body onload=\"document.title = 'handler'\">"
               "<a id=link href=\"javascript:document.title = 'link'\">x</a>"
               "<script>document.title = 'script'</script>");
  for (const bool isEnabled : {true, false}) {
    const auto controller = engine->makeUserContentController();
    controller->addUserScript({.source = "window.own = 1", .world = ContentWorld::defaultClient()});
    const auto view =
        makeView({.userContentController = controller, .isPageJavaScriptEnabled = isEnabled});
    load(*view, "http://page.test/");
    EXPECT_EQ(evaluate(*view, "document.title"), isEnabled ? "\"handler\"" : "\"before\"");
    evaluate(*view, "document.getElementById('link').click(); 1");
    turnFor(100ms);
    EXPECT_EQ(evaluate(*view, "document.title"), isEnabled ? "\"link\"" : "\"before\"");
  }
}

TEST_F(PageTest, PaintsItsBackgroundWhereThePagePaintsNone) {
  const auto view = page("<title>x</title>");
  view->setBackground(Color::hex(0x1C1A17), 1);
  EXPECT_TRUE(eventually([&] {
    std::optional<ImageRef> image;
    view->takeSnapshot({.rect = PageRect{10, 10, 1, 1}}, [&](ImageRef taken) { image = taken; });
    eventually([&] { return image.has_value(); });
    return image && *image &&
           std::ranges::equal((*image)->pixels(), std::array{0x1C, 0x1A, 0x17, 255});
  }));
}

TEST_F(PageTest, HoldsThePointsOfItsWindowThatItCovers) {
  const auto view = makeView();
  EXPECT_FALSE(view->holdsPoint(10, 10)) << "in no window";
  show(*view);
  EXPECT_TRUE(eventually([&] { return view->holdsPoint(400, 300); })) << "once it is laid out";
  EXPECT_FALSE(view->holdsPoint(-1, 10));
  EXPECT_FALSE(view->holdsPoint(10, 5000));
}

TEST_F(PageTest, AViewMayShareAProcessAndRunItsTimersUnseen) {
  server.serve("http://page.test/",
               "<title>x</title><script>let ticks = 0; const tick = () => { ++ticks; "
               "setTimeout(tick, 10); }; tick()</script>");
  const auto first = makeView({.areHiddenTimersSlowed = false});
  load(*first, "http://page.test/");
  // Slowed ones tick once a second.
  EXPECT_TRUE(eventually([&] { return std::stoi(evaluate(*first, "ticks")) > 60; }));
  const auto second = makeView({.processSharedWith = first});
  load(*second, "http://page.test/");
  EXPECT_EQ(evaluate(*second, "opener"), "null");
  delegate.attachTo(*first);
  delegate.attachTo(*second);
  webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(first->widget()));
  EXPECT_TRUE(eventually([&] { return delegate.terminations == 2; }));
}

TEST_F(PageTest, TellsWhetherTheCursorIsInAField) {
  const auto view = page(
      "<title>x</title><input id=field><div id=note contenteditable>n</div><button "
      "id=other>b</button>");
  view->focus();
  EXPECT_FALSE(view->isEditing());
  for (const char* id : {"field", "other", "note", "other"}) {
    evaluate(*view, std::string("document.getElementById('") + id + "').focus(); 1");
    const bool isField = std::string_view(id) != "other";
    EXPECT_TRUE(eventually([&] { return view->isEditing() == isField; })) << id;
  }
}

TEST_F(PageTest, CallsAsyncFunctionsWithArguments) {
  const auto view = page("<title>x</title>");
  std::optional<ScriptResult> result;
  view->callAsyncJavaScript("return (await Promise.resolve(list)).map(x => x * factor)",
                            R"({"list": [1, 2, 3], "factor": 2})", ContentWorld::page(),
                            [&](ScriptResult r) { result = r; });
  ASSERT_TRUE(eventually([&] { return result.has_value(); }));
  EXPECT_EQ(result->value, "[2,4,6]");
  result.reset();
  view->callAsyncJavaScript("throw new Error('broken')", "{}", ContentWorld::page(),
                            [&](ScriptResult r) { result = r; });
  ASSERT_TRUE(eventually([&] { return result.has_value(); }));
  EXPECT_EQ(result->value, std::nullopt);
  EXPECT_THAT(result->error, testing::HasSubstr("broken"));
}

TEST_F(PageTest, FindsForwardsBackwardsAndNothing) {
  const auto view = page("<p>needle</p><p>Needle</p>");
  const auto find = [&](const std::string& text, bool backwards) {
    std::optional<bool> found;
    view->find(text, {.backwards = backwards}, [&](bool is) { found = is; });
    eventually([&] { return found.has_value(); });
    return found.value_or(false);
  };
  EXPECT_TRUE(find("needle", false));
  EXPECT_TRUE(find("needle", false));
  EXPECT_TRUE(find("needle", true));
  EXPECT_FALSE(find("haystack", false));

  // As fast as somebody types: each question gets its own answer.
  std::vector<bool> found;
  for (const char* text : {"nee", "needle", "needles", "needl", "x"})
    view->find(text, {}, [&](bool is) { found.push_back(is); });
  eventually([&] { return found.size() == 5; });
  EXPECT_THAT(found, testing::ElementsAre(true, true, false, true, false));
}

TEST_F(PageTest, TakesPicturesOfThePageAndOfAPart) {
  const auto view = page(
      "<body style='margin:0;background:#ff0000'><div "
      "style='width:50px;height:50px;background:#0000ff'>");
  const auto snapshot = [&](SnapshotRequest request) {
    std::optional<ImageRef> image;
    view->takeSnapshot(request, [&](ImageRef taken) { image = taken; });
    eventually([&] { return image.has_value(); });
    return image.value_or(nullptr);
  };
  turnFor(200ms);
  const ImageRef whole = snapshot({.width = 360});
  ASSERT_TRUE(whole);
  EXPECT_EQ(whole->width(), 360);
  const ImageRef part = snapshot({.rect = PageRect{10, 10, 20, 20}});
  ASSERT_TRUE(part);
  EXPECT_EQ(part->width(), 20);
  EXPECT_THAT(std::vector<uint8_t>(part->pixels().begin(), part->pixels().begin() + 4),
              ElementsAre(0, 0, 255, 255));
}

TEST_F(PageTest, APageThatChangesItsAddressInALoopHasNoGesturesUntilItRests) {
  const auto view = page("<title>x</title>");
  const auto hasGestures = [&] {
    return webkit_settings_get_enable_back_forward_navigation_gestures(
               webkit_web_view_get_settings(WEBKIT_WEB_VIEW(view->widget()))) != FALSE;
  };
  EXPECT_TRUE(hasGestures());
  evaluate(*view, "for (let i = 0; i < 20; ++i) history.pushState(0, '', '/' + i); 1");
  EXPECT_TRUE(eventually([&] { return !hasGestures(); }));
  EXPECT_TRUE(eventually(hasGestures));
}

TEST_F(PageTest, ExportsThePageAsPDF) {
  const auto view = page("<p>printed</p>");
  std::optional<PDFResult> result;
  view->createPDF([&](PDFResult r) { result = std::move(r); });
  ASSERT_TRUE(eventually([&] { return result.has_value(); }, 10s));
  EXPECT_THAT(result->data.value_or(result->error), testing::StartsWith("%PDF-"));
}

TEST_F(PageTest, AsksForNameAndPasswordAndGoesOnWithoutThem) {
  server.serve("http://locked.test/", {.body = "<title>Locked</title>",
                                       .status = 401,
                                       .headers = {{"WWW-Authenticate", "Basic realm=\"Vault\""}}});
  const auto view = makeView();
  delegate.attachTo(*view);
  view->load({.url = *URL::parse("http://locked.test/")});
  ASSERT_TRUE(eventually([&] { return !delegate.challenges.empty(); }));
  EXPECT_EQ(delegate.challenges.front().host, "locked.test");
  EXPECT_EQ(delegate.challenges.front().realm, "Vault");
  EXPECT_TRUE(delegate.challenges.front().isInsecure);
  EXPECT_TRUE(eventually([&] { return view->title() == "Locked"; }))
      << "the server's refusal shows";
}

TEST_F(PageTest, TellsWhoAsksForAPasswordAndWhetherItTravelsInTheOpen) {
  webkit_network_session_set_tls_errors_policy(static_cast<WebKitDataStore&>(*store).session(),
                                               WEBKIT_TLS_ERRORS_POLICY_IGNORE);
  for (const char* url : {"https://safe.test/", "http://plain.test/"})
    server.serve(url, {.body = "<title>Locked</title>",
                       .status = 401,
                       .headers = {{"WWW-Authenticate", "Basic realm=\"Vault\""}}});
  server.serve("https://certified.test/", "<title>Locked</title>");
  const struct {
    const char* url;
    bool isAsked;
    bool isProxy;
    bool isInsecure;
  } cases[] = {{"https://safe.test/", true, false, false},
               {"http://plain.test/", true, false, true},
               {"https://behind.test/", true, true, true},
               // Asks for a certificate, which nobody has.
               {"https://certified.test/", false, false, false}};
  for (const auto& test : cases) {
    const auto view = makeView();
    delegate.attachTo(*view);
    delegate.challenges.clear();
    view->load({.url = *URL::parse(test.url)});
    EXPECT_TRUE(eventually([&] {
      return view->title() == "Locked" || (test.isProxy && !delegate.challenges.empty());
    })) << test.url;
    ASSERT_EQ(!delegate.challenges.empty(), test.isAsked) << test.url;
    if (!test.isAsked) continue;
    EXPECT_EQ(delegate.challenges.front().isProxy, test.isProxy) << test.url;
    EXPECT_EQ(delegate.challenges.front().isInsecure, test.isInsecure) << test.url;
  }
}

struct SavingDelegate final : DownloadDelegate {
  std::filesystem::path destination;
  bool isFinished = false;
  bool hears[2] = {};
  std::vector<Observation> watches;
  void decideDestination(
      const std::shared_ptr<Download>& download, const std::string&,
      std::function<void(std::optional<std::filesystem::path>)> answer) override {
    for (bool& isHeard : hears)
      watches.push_back(download->observeProgress([&isHeard] { isHeard = true; }));
    answer(destination);
  }
  void didFinish(const std::shared_ptr<Download>&) override { isFinished = true; }
  void didFail(const std::shared_ptr<Download>&, const LoadError&) override {}
};

TEST_F(PageTest, ADownloadWithoutAPageIsFollowedAllTheSame) {
  server.serve("http://files.test/data.bin", "bytes");
  const auto saving = std::make_shared<SavingDelegate>();
  saving->destination = folder.path / "orphan.bin";
  engine->setDownloadDelegate(saving);
  auto* session = static_cast<WebKitDataStore&>(*store).session();
  const auto download = GRef<WebKitDownload>::adopt(
      webkit_network_session_download_uri(session, "http://files.test/data.bin"));
  EXPECT_TRUE(eventually([&] { return saving->isFinished; }));
  EXPECT_THAT(saving->hears, testing::Each(true)) << "each observer";
  std::ifstream file(saving->destination);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "bytes");
  engine->setDownloadDelegate({});
}

TEST_F(PageTest, ASchemeOfTheProgramsOwnGetsTheWholeRequest) {
  std::vector<URLRequest> requests;
  engine->setURLSchemeHandler("orvel-test", [&](const URLRequest& request, const auto& answer) {
    requests.push_back(request);
    answer({.mimeType = "text/html", .body = "<title>Own</title>"});
  });
  const auto view = makeView();
  load(*view, "orvel-test://host/");
  evaluate(*view, "fetch('/x', {method: 'POST', headers: {'X-Word': 'yes'}, body: 'said'}); 1");
  ASSERT_TRUE(eventually([&] { return requests.size() == 2; }));
  EXPECT_EQ(requests[1].method, "POST");
  EXPECT_EQ(requests[1].body, "said");
  EXPECT_THAT(requests[1].headers, testing::Contains(testing::Pair("X-Word", "yes")));
}

TEST_F(PageTest, AnAddressWithBlanksIsDecidedOnLikeAnyOther) {
  page("<iframe src='data:text/html,<b>two words</b>'></iframe>");
  ASSERT_TRUE(eventually([&] { return delegate.responses.size() == 2; }));
  EXPECT_EQ(delegate.responses[1].url, URL::parse("data:text/html,<b>two%20words</b>"));
}

TEST_F(PageTest, BlocksAndRestoresByContentRules) {
  server.serve("http://page.test/", "<title>x</title><img src='http://ads.test/pixel.gif'>");
  std::shared_ptr<ContentRuleList> rules;
  const auto store = engine->contentRuleListStore();
  const auto compile = [&](const std::string& json) {
    bool isDone = false;
    store->compile("list", json, [&](CompiledRules result) {
      rules = result.list;
      isDone = true;
    });
    eventually([&] { return isDone; }, 10s);
  };
  compile(R"([{"trigger":{"url-filter":"ads\\.test"},"action":{"type":"block"}}])");
  ASSERT_TRUE(rules);

  auto controller = engine->makeUserContentController();
  const auto view = makeView({.userContentController = controller});
  load(*view, "http://page.test/");
  EXPECT_EQ(server.requestCount("http://ads.test/pixel.gif"), 1);
  controller->addContentRuleList(rules);
  server.clearRequests();
  load(*view, "http://page.test/?blocked");
  EXPECT_EQ(server.requestCount("http://ads.test/pixel.gif"), 0);
  controller->removeAllContentRuleLists();
  load(*view, "http://page.test/?again");
  EXPECT_EQ(server.requestCount("http://ads.test/pixel.gif"), 1);
}

TEST_F(PageTest, AsksAboutLateMainFrameNavigationsBeforeTheyCommit) {
  server.serve("http://next.test/", "<title>Next</title>");
  const auto view = page("<title>Here</title>");
  delegate.actions.clear();
  delegate.decide = [](const NavigationAction& action) {
    const bool isRefused = action.targetFrame && action.targetFrame->isMainFrame &&
                           action.request->url.host() == "next.test";
    return isRefused ? NavigationPolicy::Cancel : NavigationPolicy::Allow;
  };
  evaluate(*view, "location = 'http://next.test/'; 1");
  ASSERT_TRUE(eventually([&] {
    return !delegate.actions.empty() && delegate.actions.back().targetFrame->isMainFrame;
  }));
  turnFor(200ms);
  EXPECT_EQ(view->title(), "Here") << "the old page stays";
  EXPECT_EQ(delegate.commits, 1);
}

}  // namespace
}  // namespace orvel
