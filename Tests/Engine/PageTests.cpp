#include <gmock/gmock.h>
#include <gtk/gtkunixprint.h>

#include "Engine/WebKitGtk/Data/WebKitDataStore.h"
#include "Tests/Contract/RecordingDelegate.h"
#include "Tests/Engine/EngineTest.h"

namespace orvel {
namespace {

using test::EngineTest;
using test::eventually;
using test::RecordingDelegate;
using test::SavingDelegate;
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

TEST_F(PageTest, ScriptsAreApartByWorldAndByFrameAndMessagesSayWhichFrame) {
  const auto client = ContentWorld::defaultClient();
  const auto controller = engine->makeUserContentController();
  std::vector<ScriptMessage> messages;
  const auto note = [&](const ScriptMessage& message) { messages.push_back(message); };
  controller->addUserScript({.source = "gone = 1", .world = client});
  controller->removeAllUserScripts();
  // Signed also where the script comes before its handler.
  controller->addUserScript(
      {.source = "mark = location.host; webkit.messageHandlers.probe.postMessage(mark)",
       .world = client});
  controller->addUserScript(
      {.source = "mainOnly = 1", .frames = UserScript::Frames::MainOnly, .world = client});
  controller->addScriptMessageHandler("probe", client, [](const auto&) { FAIL() << "replaced"; });
  controller->addScriptMessageHandler("probe", client, note);
  controller->addScriptMessageHandler("open", ContentWorld::page(), note);
  server.serve("http://page.test/", "<title>x</title><iframe src=http://inner.test/></iframe>");
  server.serve("http://inner.test/", "inner");
  const auto view = makeView({.userContentController = controller});
  load(*view, "http://page.test/");
  ASSERT_TRUE(eventually([&] { return messages.size() == 2; }));
  std::ranges::sort(messages, {}, [](const auto& message) { return !message.frame.isMainFrame; });
  const FrameInfo inner = messages[1].frame;
  EXPECT_EQ(messages[0].frame.securityOriginHost, "page.test");
  EXPECT_EQ(messages[0].body, "\"page.test\"");
  EXPECT_EQ(inner.securityOriginHost, "inner.test");
  EXPECT_FALSE(inner.isMainFrame);

  const auto run = [&](const std::string& script, const ContentWorld& world,
                       const std::optional<FrameInfo>& frame) {
    std::optional<ScriptResult> result;
    view->evaluateJavaScript(script, world, frame, [&](ScriptResult given) { result = given; });
    EXPECT_TRUE(eventually([&] { return result.has_value(); })) << script;
    return result.value_or(ScriptResult());
  };
  const struct {
    const char* script;
    ContentWorld world;
    std::optional<FrameInfo> frame;
    std::optional<std::string> value;  // absent: it throws, and the error says what
  } cases[] = {{"mark", client, {}, "\"page.test\""},
               {"mark", client, inner, "\"inner.test\""},
               {"own = 2", ContentWorld::page(), inner, "2"},
               {"mark", ContentWorld::page(), {}, {}},
               {"mark", ContentWorld::hiddenItems(), inner, {}},
               {"own", ContentWorld::page(), {}, {}},
               {"own", client, inner, {}},
               {"gone", client, {}, {}},
               {"mainOnly", client, inner, {}}};
  for (const auto& test : cases) {
    const ScriptResult result = run(test.script, test.world, test.frame);
    EXPECT_EQ(result.has_value(), test.value.has_value()) << test.script;
    if (result)
      EXPECT_EQ(*result, test.value);
    else
      EXPECT_THAT(result.error(), testing::HasSubstr(test.script));
  }
  run("webkit.messageHandlers.probe.postMessage(4)", ContentWorld::page(), {});
  run("webkit.messageHandlers.open.postMessage(5)", ContentWorld::page(), {});
  ASSERT_TRUE(eventually([&] { return messages.size() == 3; }));
  EXPECT_EQ(messages[2].body, "5") << "the other handler is out of the page's reach";
  EXPECT_FALSE(messages[2].frame.isMainFrame) << "the page's own word is not believed";
  load(*view, "http://inner.test/");
  EXPECT_FALSE(run("mark", client, inner)) << "the frame is gone";

  std::optional<ScriptResult> sum;
  view->callAsyncJavaScript("return (await Promise.resolve(list)).map(x => x * factor)",
                            R"({"list": [1, 2, 3], "factor": 2})", ContentWorld::page(),
                            [&](ScriptResult given) { sum = given; });
  EXPECT_TRUE(eventually([&] { return sum.has_value(); }));
  EXPECT_EQ(sum.value_or(ScriptResult()), "[2,4,6]");
}

TEST_F(PageTest, EditsWhereTheCursorIs) {
  const auto view = page("<title>x</title><div id=d contenteditable><b>one</b></div>");
  view->focus();
  evaluate(*view, "d.focus(); getSelection().selectAllChildren(d); 1");
  using enum EditingCommand;
  const std::pair<EditingCommand, const char*> steps[] = {
      {Copy, "<b>one</b>"},      {Cut, ""},          {Undo, "<b>one</b>"}, {Redo, ""},
      {PasteAsPlainText, "one"}, {SelectAll, "one"}, {Delete, ""},         {Paste, "<b>one</b>"}};
  for (const auto& [command, html] : steps) {
    view->edit(command);
    // The engine leaves a line break or the style behind.
    const std::string script = "d.innerHTML.replace(/<br>/g, '').replace(/ style=\"[^\"]*\"/g, '')";
    EXPECT_TRUE(eventually([&] { return evaluate(*view, script) == fmt::format("\"{}\"", html); }))
        << static_cast<int>(command) << " " << evaluate(*view, "d.innerHTML");
  }
}

TEST_F(PageTest, PrintsByTheToolkitsDialog) {
  const auto view = page("<title>x</title>");
  int shown = 0;
  const guint answering = g_timeout_add(
      20,
      [](gpointer count) -> gboolean {
        GList* windows = gtk_window_list_toplevels();
        for (GList* one = windows; one; one = one->next) {
          if (!GTK_IS_PRINT_UNIX_DIALOG(one->data)) continue;
          ++*static_cast<int*>(count);
          gtk_dialog_response(GTK_DIALOG(one->data), GTK_RESPONSE_CANCEL);
        }
        g_list_free(windows);
        return TRUE;
      },
      &shown);
  view->print();
  g_source_remove(answering);
  EXPECT_EQ(shown, 1);
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

TEST_F(PageTest, TakesPicturesOfThePageOfAPartAndOfItsBackground) {
  const auto view =
      page("<body style='margin:0'><div style='width:50px;height:50px;background:#0000ff'></div>");
  const auto snapshot = [&](SnapshotRequest request) {
    std::optional<ImageRef> image;
    view->takeSnapshot(request, [&](ImageRef taken) { image = taken; });
    eventually([&] { return image.has_value(); });
    return image.value_or(nullptr);
  };
  const auto isColored = [&](double x, const std::vector<uint8_t>& color) {
    const ImageRef part = snapshot({.rect = PageRect{x, 10, 20, 1}});
    return part && part->width() == 20 &&
           std::ranges::equal(std::span(part->pixels()).first(4), color);
  };
  view->setBackground(Color::hex(0x1C1A17), 1);
  EXPECT_TRUE(eventually([&] { return isColored(100, {0x1C, 0x1A, 0x17, 255}); }));
  EXPECT_TRUE(isColored(10, {0, 0, 255, 255}));
  const ImageRef whole = snapshot({.width = 360});
  EXPECT_EQ(whole ? whole->width() : 0, 360);
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

TEST_F(PageTest, FindsForwardsBackwardsAndNothing) {
  const auto view = page("<p>needle</p><p>Needle</p>");
  const auto find = [&](const std::string& text, bool backwards) {
    std::optional<bool> found;
    view->find(text, {.backwards = backwards}, [&](bool is) { found = is; });
    eventually([&] { return found.has_value(); });
    return found.value_or(false);
  };
  EXPECT_TRUE(find("needle", true));
  EXPECT_FALSE(find("haystack", false));

  // As fast as somebody types: each question gets its own answer.
  std::vector<bool> found;
  for (const char* text : {"nee", "needle", "needles", "needl", "x"})
    view->find(text, {}, [&](bool is) { found.push_back(is); });
  eventually([&] { return found.size() == 5; });
  EXPECT_THAT(found, testing::ElementsAre(true, true, false, true, false));
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
    const auto& challenge = delegate.challenges.front();
    if (!test.isProxy) EXPECT_EQ(challenge.host, URL::parse(test.url)->host());
    EXPECT_EQ(challenge.realm, test.isProxy ? "Gate" : "Vault");
    EXPECT_EQ(challenge.isProxy, test.isProxy) << test.url;
    EXPECT_EQ(challenge.isInsecure, test.isInsecure) << test.url;
  }
}

TEST_F(PageTest, ADownloadWithoutAPageIsFollowedAllTheSame) {
  server.serve("http://files.test/data.bin", "bytes");
  const auto saving = std::make_shared<SavingDelegate>();
  engine->setDownloadDelegate(saving);
  auto* session = static_cast<WebKitDataStore&>(*store).session();
  const auto native = GRef<WebKitDownload>::adopt(
      webkit_network_session_download_uri(session, "http://files.test/data.bin"));
  ASSERT_TRUE(eventually([&] { return saving->waiting != nullptr; }));
  int heard[2] = {};
  const auto first = saving->download->observeProgress([&] { ++heard[0]; });
  const auto second = saving->download->observeProgress([&] { ++heard[1]; });
  saving->waiting(folder.path / "orphan.bin");
  EXPECT_TRUE(eventually([&] { return saving->finishes == 1; }));
  EXPECT_THAT(heard, testing::Each(testing::Gt(0))) << "each observer";
  EXPECT_EQ(test::filesIn(folder.path)["orphan.bin"], "bytes");
  engine->setDownloadDelegate({});
}

TEST_F(PageTest, PagesOfTheWebGetOfASchemeOfTheProgramsOwnWhatTheyAreAllowed) {
  std::vector<std::string> requests;
  engine->setURLSchemeHandler("orvel-kept", [&](const URLRequest& request, const auto& answer) {
    requests.push_back(request.url.text());
    answer({.mimeType = "text/html", .body = "<title>Own</title>"});
  });
  server.serve("http://page.test/",
               "<title>x</title><img src=orvel-kept://host/open/a><img src=orvel-kept://host/b>"
               "<iframe src=orvel-kept://host/c></iframe>");
  for (const bool isAllowed : {false, true}) {
    const auto view = makeView();
    if (isAllowed) view->setAccessiblePatterns({"orvel-kept://host/open/*"});
    load(*view, "http://page.test/");
    evaluate(*view, "location = 'orvel-kept://host/d'; 1");
    turnFor(200ms);
    EXPECT_EQ(requests, isAllowed ? std::vector<std::string>{"orvel-kept://host/open/a"}
                                  : std::vector<std::string>());
    EXPECT_EQ(view->title(), "x");
  }
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

}  // namespace
}  // namespace orvel
