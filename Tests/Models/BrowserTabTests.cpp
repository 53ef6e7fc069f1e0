#include "Base/Log.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Windows/Toasts.h"
#include "Tests/Models/ModelTest.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel::test {
namespace {

constexpr auto kMayExist = PageState::FormerFile::MayExist;

struct Tab : ModelTest {
  TabRef make(BrowserTab::Values values) {
    if (!values.profile) values.profile = space().profile;
    if (!hasNoStore) values.host = world.store->tabHost();
    return BrowserTab::make(world.services, std::move(values));
  }
  TabRef make(const std::string& url) { return make({.url = address(url)}); }
  // One whose page has come.
  TabRef makeLoaded(BrowserTab::Values values) {
    const TabRef tab = make(std::move(values));
    tab->webView();
    settle();
    return tab;
  }

  bool hasNoStore = false;
};

// The engine often knows the title only when the page has finished.
TEST_F(Tab, NamesAVisitWhoseTitleComesLate) {
  world.engine.pages["https://a/"] = {.title = ""};
  const TabRef tab = load("https://a/");
  EXPECT_THAT(visits(tab->profile->id), ElementsAre("https://a/ "));
  for (const char* title : {"", "Late", "Later"}) world.view(tab)->setTitle(title);
  EXPECT_THAT(visits(tab->profile->id), ElementsAre("https://a/ Late"));
  world.engine.pages["https://b/"] = {.title = ""};
  advance(1s);
  const TabRef other = load("https://b/");
  world.view(other)->setURL("https://b/#moved");
  world.view(other)->setTitle("Of another address");
  EXPECT_THAT(visits(tab->profile->id), ElementsAre("https://b/ ", "https://a/ Late"));
}

TEST_F(Tab, MirrorsItsPageAndSaves) {
  world.engine.pages["https://a/"] = {.title = "First", .redirect = "https://a/final"};
  const TabRef tab = world.open("https://a/");
  advance(2s);
  EXPECT_EQ(tab->title.peek(), "First");
  EXPECT_EQ(tab->url.peek(), address("https://a/final"));
  EXPECT_THAT(world.sessionFile(), HasSubstr("https://a/final"));
  EXPECT_THAT(visits(tab->profile->id), ElementsAre("https://a/final First"));
  world.told.clear();
  world.view(tab)->setTitle("");
  EXPECT_EQ(tab->title.peek(), "First") << "an empty title never overwrites a good one";
  world.view(tab)->setTitle("Second");
  world.view(tab)->setURL("https://a/other");
  EXPECT_THAT(world.told, ElementsAre("title https://a/final", "url https://a/other"));
  tab->load(address("https://b/"));
  settle();
  EXPECT_TRUE(tab->canGoBack);
  tab->goBack();
  settle();
  EXPECT_TRUE(tab->canGoForward);
}

TEST_F(Tab, TheIconChangesWithTheHost) {
  const ImageRef icon = Image::make(1, 1, {1, 2, 3, 255});
  world.disk->put("/data/Orvel/Favicons/cached.org", icon->encodedPNG());
  const TabRef tab = load("https://a/");
  tab->setFavicon(icon);
  world.view(tab)->setURL("https://a/path");
  EXPECT_EQ(tab->favicon(), icon);
  std::optional<URL> shownWithIcon;
  const Effect watcher = effect([&] {
    if (tab->favicon() && tab->favicon() != icon) shownWithIcon = tab->url.get();
  });
  world.view(tab)->setURL("https://cached.org/");
  settle();
  EXPECT_EQ(shownWithIcon, address("https://cached.org/"));
  world.view(tab)->setURL("https://unknown/");
  EXPECT_EQ(tab->favicon(), nullptr);
  EXPECT_NE(make("https://cached.org/x")->favicon(), nullptr) << "also without a view";
}

TEST_F(Tab, RestoresItsStateLazilyAndOnlyOnce) {
  const TabRef first = load("https://a/");
  first->load(address("https://b/"));
  settle();
  const InteractionState state = *first->currentState();
  const auto remade = [&](const char* url) {
    return make({.id = first->id, .url = address(url), .stateFile = kMayExist});
  };
  world.disk->put(first->pageState.file(), PageState::encoded(state));
  const TabRef tab = remade("https://b/");
  tab->reload();
  EXPECT_THAT(world.view(tab)->restoredStates, ElementsAre(state.bytes));
  EXPECT_TRUE(world.view(tab)->requests.empty());
  EXPECT_FALSE(tab->pageState.saved());
  settle();
  EXPECT_TRUE(tab->canGoBack);
}

TEST_F(Tab, WithoutAStateOfItsOwnThePageIsLoadedAfresh) {
  const InteractionState other{"{}", address("https://elsewhere/")};
  const std::string whole = PageState::encoded({"bytes", address("https://a/")});
  const std::pair<const char*, std::string> files[] = {
      {"another page's", PageState::encoded(other)},
      {"what the engine refuses", whole},
      {"cut in the address", whole.substr(0, whole.find("https") + 5)},
      {"no state", "x"},
      {"no heading", "A" + PageState::encoded(*load("https://a/")->currentState()).substr(1)},
      {"no address", "Orvel page state 1\n\nbytes"}};
  for (const auto& [name, bytes] : files) {
    SCOPED_TRACE(name);
    const TabRef tab = make({.url = address("https://a/"), .stateFile = kMayExist});
    world.disk->put(tab->pageState.file(), bytes);
    tab->webView();
    settle();
    EXPECT_EQ(world.view(tab)->requests.size(), 1u);
    EXPECT_EQ(tab->title.peek(), "https://a/");
  }
}

// A page may make its address as long as it likes.
TEST_F(Tab, HugeAddressesAndTitlesAreNeitherMirroredNorSaved) {
  const std::string huge(3 << 20, 'x');
  const TabRef tab = load("https://a/");
  world.view(tab)->setURL("https://other.test/" + huge);
  world.view(tab)->setTitle(huge);
  EXPECT_EQ(tab->url.peek(), address("https://other.test/")) << "the host is told as it is";
  tab->pinnedURL = address("data:" + huge);
  const TabRef opened = store().openTab(address("https://a/" + huge));
  advance(2s);
  EXPECT_LT(world.sessionFile().size(), 1u << 20);
  for (const auto& [path, bytes] : world.disk->contents()) EXPECT_LT(bytes.size(), 1u << 20);
}

TEST_F(Tab, TheFirstPageWaitsForTheRules) {
  store().contentBlocker.isEnabled = true;
  store().contentBlocker.state = ContentBlocker::State::Preparing;
  const TabRef waiting = make("https://a/");
  const TabRef overtaken = make("https://b/");
  const TabRef gone = make("https://c/");
  waiting->pageState.set(InteractionState{"the state", address("https://a/")});
  for (const TabRef& tab : {waiting, overtaken, gone}) {
    tab->webView();
    EXPECT_TRUE(world.view(tab)->requests.empty());
  }
  EXPECT_EQ(waiting->currentState()->bytes, "the state") << "whatever ends the wait loses nothing";
  overtaken->load(address("https://newer/"));
  gone->teardown();
  for (const auto& handler : std::exchange(store().contentBlocker.readyHandlers, {})) handler();
  EXPECT_THAT(world.view(waiting)->restoredStates, ElementsAre("the state"));
  EXPECT_EQ(world.view(overtaken)->requests.size(), 1u);
}

TEST_F(Tab, TeardownGivesEverythingBackButWhatTheSidebarShows) {
  const TabRef tab = load("https://a/");
  auto view = world.viewOnScreen(tab);
  view->snapshot = Image::make(1, 1, {0, 0, 0, 0});
  tab->captureThumbnail();
  settle();
  EXPECT_NE(tab->thumbnail.peek(), nullptr);
  tab->load(address("https://b/"));
  tab->teardown();
  tab->teardown();
  EXPECT_FALSE(tab->isLoading);
  EXPECT_EQ(view->observerCount(), 0u);
  EXPECT_EQ(view->stopCount, 1);
  EXPECT_FALSE(view->isOnScreen || view->navigationDelegate() || view->uiDelegate());
  EXPECT_EQ(tab->thumbnail.peek(), nullptr);
  EXPECT_EQ(tab->url.peek(), address("https://b/"));
  view.reset();
  settle();
  EXPECT_TRUE(world.engine.views.front().expired());
}

TEST_F(Tab, SoundAndZoomFollowTheTabAndTheSite) {
  const TabRef tab = load("https://a/");
  tab->toggleMute();
  EXPECT_TRUE(world.view(tab)->isMuted);
  tab->teardown();
  tab->webView();
  settle();
  EXPECT_TRUE(world.view(tab)->isMuted) << "a page made later";
  tab->toggleMute();
  EXPECT_FALSE(world.view(tab)->isMuted || tab->isMuted.peek());
  tab->setZoom(1.5);
  EXPECT_EQ(load("https://a/b")->webView()->pageZoom(), 1.5);
  tab->load(address("https://b/"));
  settle();
  EXPECT_EQ(tab->webView()->pageZoom(), 1);
  EXPECT_TRUE(world.view(tab)->controller().post("orvelMedia", ContentWorld::defaultClient(), "0"));
}

TEST_F(Tab, APrivateTabLeavesNoTrace) {
  world.engine.pages["https://fails.org/"] = {.load = FakePage::Load::Fail};
  makeLoaded({.profile = privateProfile(), .url = address("https://fails.org/")});
  const TabRef tab = makeLoaded({.profile = privateProfile(), .url = address("https://secret/")});
  tab->setZoom(2);
  EXPECT_EQ(store().settings.zoom(tab->url.peek()), 1);
  world.view(tab)->clickLink("https://other/", {.control = true});
  advance(10s);
  EXPECT_EQ(tab->url.peek(), address("https://other/"));
  EXPECT_FALSE(tab->webView()->configuration().websiteDataStore->isPersistent());
  EXPECT_EQ(world.view(tab)->openWindow("https://popup/"), nullptr);
  for (const auto& profile : {tab->profile, space().profile})
    EXPECT_THAT(visits(profile->id), IsEmpty());
  EXPECT_THAT(world.told, IsEmpty());
  for (const auto& [path, bytes] : world.disk->contents())
    for (const char* trace : {"secret", "other", "fails.org"})
      EXPECT_THAT(bytes, Not(HasSubstr(trace))) << path;
  for (const Log::Entry& entry : Log::recent())
    EXPECT_THAT(entry.message, Not(HasSubstr("fails.org")));
}

TEST_F(Tab, WorksWithoutItsStore) {
  hasNoStore = true;
  const TabRef tab = makeLoaded({.url = address("https://a/")});
  EXPECT_EQ(tab->title.peek(), "https://a/");
  EXPECT_EQ(world.view(tab)->openWindow("https://popup/"), nullptr);
  EXPECT_EQ(world.view(tab)->clickLink("https://b/", {.control = true}), NavigationPolicy::Cancel);
  EXPECT_EQ(world.view(tab)->clickLink("https://b/", {.shift = true}), NavigationPolicy::Allow);
  world.view(tab)->closeWindow();
  world.viewOnScreen(tab)->die();
}

TEST_F(Tab, ResponsesThatAreNoPagesAreDownloaded) {
  const struct {
    FakePage page;
    size_t downloads;
  } cases[] = {{{.title = "shown"}, 0},
               {{.contentDisposition = "inline; filename=a"}, 0},
               {{.contentDisposition = "ATTACHMENT; filename=a"}, 1},
               {{.mimeType = "application/zip", .canShowMIMEType = false}, 1}};
  for (const auto& test : cases) {
    world.engine.downloads.clear();
    world.engine.pages["https://file/"] = test.page;
    makeLoaded({.url = address("https://file/")});
    ASSERT_EQ(world.engine.downloads.size(), test.downloads);
    if (test.downloads == 0) continue;
    world.engine.downloads[0]->begin("../a.txt");
    EXPECT_EQ(world.services.downloads->items.peek()[0].destination.parent_path(), "/downloads");
  }
}

// Failures

TEST_F(Tab, AFailedLoadShowsTheErrorPageUnlessItWasNoFailure) {
  using enum LoadError::Kind;
  for (const auto& [kind, showsPage] : {std::pair(Cancelled, false),
                                        {PolicyInterrupted, false},
                                        {CannotFindHost, true},
                                        {BadCertificate, true}}) {
    world.engine.pages["https://bad/?a&b"] = {
        .load = FakePage::Load::Fail, .error = {.kind = kind, .localizedDescription = "No luck."}};
    const TabRef tab = makeLoaded({.url = address("https://bad/?a&b")});
    EXPECT_FALSE(tab->isLoading);
    const std::string& html = world.view(tab)->html;
    EXPECT_EQ(!html.empty(), showsPage);
    if (!showsPage) continue;
    EXPECT_THAT(html, AllOf(HasSubstr("No luck."), HasSubstr("href=\"https://bad/?a&amp;b\"")));
    EXPECT_EQ(tab->url.peek(), address("https://bad/?a&b"));
  }
  world.engine.pages["https://torn/"] = {.load = FakePage::Load::BreakOff, .title = "Torn"};
  const TabRef torn = makeLoaded({.url = address("https://torn/")});
  EXPECT_EQ(torn->title.peek(), "Torn");
  EXPECT_EQ(world.view(torn)->html, "") << "what has come of a page stays";
  EXPECT_THAT(visits(torn->profile->id), IsEmpty()) << "no page has finished";
}

TEST_F(Tab, CrashesAreAnsweredByPlaceAndTime) {
  const TabRef tab = load("https://a/");
  const auto crashAndCountReloads = [&](Duration after) {
    advance(after);
    const auto view = world.viewOnScreen(tab);
    view->setURL("https://a/");
    const size_t before = view->requests.size();
    view->html.clear();
    view->die();
    return view->html.empty() ? view->requests.size() - before : 99;
  };
  world.view(tab)->die();
  EXPECT_EQ(tab->liveWebView(), nullptr) << "off screen: unloaded";
  ASSERT_TRUE(tab->pageState.saved());
  tab->webView();
  settle();
  // The page has no address any more after its end; reloading is the engine's matter.
  EXPECT_NE(crashAndCountReloads(1s), 99u) << "the off-screen crash set no time";
  EXPECT_EQ(crashAndCountReloads(3s), 99u) << "the error page";
  EXPECT_THAT(world.view(tab)->html, HasSubstr("This page keeps crashing."));
  EXPECT_EQ(crashAndCountReloads(9999ms), 99u);
  EXPECT_NE(crashAndCountReloads(10s), 99u) << "exactly ten seconds count as long ago";
}

// Panels

struct Panels : Tab {
  Panels() : tab(world.open("https://a/")) {
    world.interface.shown = &world.window;
    settle();
    view = world.viewOnScreen(tab);
  }
  UIDelegate& page() { return *view->uiDelegate(); }
  const PageQuestion& question() { return tab->questions.current.peek().value(); }
  void give(std::optional<size_t> button, bool isSilencing = false) {
    tab->questions.answer(
        question().id,
        {.button = button, .fields = {"typed", "secret"}, .isSuppressionOn = isSilencing});
  }

  TabRef tab;
  std::shared_ptr<FakeWebView> view;
  const FrameInfo frame{.securityOriginHost = "a.org"};
};

TEST_F(Panels, DialogsAreAnsweredAndCancelled) {
  const struct {
    std::optional<size_t> button;
    bool isConfirmed;
  } cases[] = {{0, true}, {1, false}, {std::nullopt, false}};
  for (const auto& test : cases) {
    int alerts = 0;
    std::optional<bool> confirmed, left;
    std::optional<std::string> prompted = "none yet";
    std::optional<Credential> credential;
    page().runJavaScriptAlertPanel(*view, "Hello", frame, [&] { ++alerts; });
    give(test.button);
    page().runJavaScriptConfirmPanel(*view, "Sure?", frame, [&](bool yes) { confirmed = yes; });
    give(test.button);
    page().runJavaScriptTextInputPanel(*view, "Name?", "default", frame,
                                       [&](auto text) { prompted = text; });
    give(test.button);
    view->navigationDelegate()->didReceiveAuthenticationChallenge(
        *view, {.host = "a.org", .realm = "\u202e\u2069vault"},
        [&](auto answer) { credential = answer; });
    EXPECT_THAT(question().alert.informativeText, HasSubstr("“\u2068\u202evault\u2069”"));
    EXPECT_TRUE(question().alert.fields.at(1).isSecret);
    give(test.button);
    page().runBeforeUnloadPanel(*view, frame, [&](bool leaves) { left = leaves; });
    give(test.button);
    EXPECT_EQ(alerts, 1);
    EXPECT_EQ(confirmed, test.isConfirmed);
    EXPECT_EQ(left, test.button == 1u);
    EXPECT_EQ(prompted, test.isConfirmed ? std::optional<std::string>("typed") : std::nullopt);
    ASSERT_EQ(credential.has_value(), test.isConfirmed);
    if (credential) {
      EXPECT_EQ(credential->user + credential->password, "typedsecret");
    }
  }
}

TEST_F(Panels, APageThatIsNotOnScreenIsAnsweredAtOnce) {
  view->isOnScreen = false;
  int answers = 0;
  page().runJavaScriptAlertPanel(*view, "", frame, [&] { ++answers; });
  page().runJavaScriptConfirmPanel(*view, "", frame, [&](bool yes) { answers += !yes; });
  page().runJavaScriptTextInputPanel(*view, "", "", frame, [&](auto text) { answers += !text; });
  page().runBeforeUnloadPanel(*view, frame, [&](bool leaves) { answers += leaves; });
  page().runOpenPanel(*view, {}, [&](auto files) { answers += !files; });
  EXPECT_EQ(answers, 5);
  EXPECT_FALSE(tab->questions.current.peek());
}

TEST_F(Panels, APageThatAsksWithoutEndIsSilencedAndThenHeld) {
  int answers = 0;
  const auto alert = [&] {
    page().runJavaScriptAlertPanel(*view, "Again", frame, [&] { ++answers; });
  };
  alert();
  give(0);
  alert();
  give(0, true);
  const int seen = answers;
  alert();
  EXPECT_EQ(answers, seen + 1);
  EXPECT_FALSE(tab->questions.current.peek());
  for (int i = 0; i < 1000 && !tab->questions.current.peek(); ++i) alert();
  EXPECT_EQ(question().alert.messageText, "a isn’t answering");
  const int held = answers;
  give(0);
  EXPECT_EQ(answers, held + 1) << "what was held goes on";

  // Another page is heard again.
  tab->load(*URL::parse("https://b/"));
  settle();
  alert();
  EXPECT_FALSE(question().alert.suppression);
  // One that is being left is not, whatever it has asked before.
  tab->load(*URL::parse("https://c/"));
  EXPECT_FALSE(tab->questions.current.peek());
  alert();
  EXPECT_FALSE(tab->questions.current.peek());
}

TEST_F(Panels, APageThatDoesNotAnswerIsWaitedForOrStopped) {
  view->setResponsive(false);
  EXPECT_TRUE(tab->panels.isUnresponsive.peek());
  EXPECT_EQ(question().alert.messageText, "a isn’t answering");
  give(0);
  EXPECT_FALSE(tab->questions.current.peek());
  advance(30s);
  EXPECT_TRUE(tab->questions.current.peek()) << "still waiting";
  view->setResponsive(true);
  EXPECT_FALSE(tab->questions.current.peek()) << "it answers";
  view->setResponsive(false);
  give(1);
  EXPECT_EQ(view->endedProcesses, 1);
  EXPECT_THAT(view->html, HasSubstr("was stopped"));
  EXPECT_FALSE(tab->panels.isUnresponsive.peek());
}

TEST_F(Panels, QuittingAsksThePagesThatGuardChanges) {
  const TabRef other = load("https://other/");
  view->guardsChanges = true;
  view->isOnScreen = false;
  store().pageClosing.quit();
  settle();
  EXPECT_EQ(selected(), tab) << "the page that asks is shown";
  give(0);
  settle();
  EXPECT_EQ(world.desktop.terminateCount, 0);
  // Leaving one page is leaving all.
  world.view(other)->guardsChanges = true;
  store().pageClosing.quit();
  settle();
  for (const TabRef& asked : {tab, other})
    if (const auto& open = asked->questions.current.peek())
      asked->questions.answer(open->id, {.button = 1});
  settle();
  EXPECT_EQ(world.desktop.terminateCount, 1);
  world.view(other)->guardsChanges = false;
  store().pageClosing.close(other);
  EXPECT_FALSE(store().spaceContaining(*other)) << "at once";
}

TEST_F(Panels, AnElementGivesTheScreenBackWhenItsTabLeaves) {
  const TabRef other = world.open("https://other/");
  store().select(tab);
  settle();
  view->enterFullscreen();
  world.window.isFull = true;
  store().select(other);
  settle();
  EXPECT_FALSE(view->isFullscreen || world.window.isFull);
  // A window that filled the screen before goes on doing so, and only the tab itself ends it.
  const auto second = world.viewOnScreen(other);
  world.window.isFull = true;
  store().select(other);
  second->enterFullscreen();
  store().pageFullscreen.didChange(tab, false);
  EXPECT_EQ(store().pageFullscreen.tab.peek(), other);
  store().close(other);
  EXPECT_TRUE(world.window.isFull);
}

TEST_F(Panels, FilesAreChosen) {
  world.desktop.chosenFiles = {{"/a", "/b"}};
  std::optional<std::vector<std::filesystem::path>> files;
  page().runOpenPanel(*view, {.allowsMultipleSelection = true, .allowsDirectories = true},
                      [&](auto chosen) { files = chosen; });
  settle();
  EXPECT_EQ(files->size(), 2u);
  const OpenPanel& panel = world.desktop.openPanels.back();
  EXPECT_TRUE(panel.allowsMultipleSelection && panel.allowsDirectories && panel.allowsFiles);
}

TEST_F(Panels, AHugeQuestionIsCut) {
  page().runJavaScriptAlertPanel(*view, std::string(1 << 20, 'a'), frame, [] {});
  EXPECT_LT(question().alert.informativeText.size(), 5000u);
}

TEST_F(Tab, OnePressOpensOneWindowUntilTheSiteIsAllowed) {
  world.open("https://popular.org/");
  settle();
  const auto page = world.viewOnScreen(selected());
  EXPECT_NE(page->openWindow("https://first.org/"), nullptr);
  EXPECT_EQ(page->openWindow("https://second.org/"), nullptr);
  ++page->inputs;
  EXPECT_NE(page->openWindow("https://third.org/"), nullptr);
  EXPECT_EQ(page->openWindow("mailto:x@y.org"), nullptr);
  store().toasts.undoToast();
  settle();
  EXPECT_THAT(urls(space().today.peek()), Contains("https://second.org/"));
  EXPECT_NE(page->openWindow("https://fourth.org/"), nullptr);
}

TEST_F(Tab, TabsOpenedBehindLoadTwoAtATimeAfterThePageInFront) {
  for (const char* slow : {"https://front.org/", "https://b.org/", "https://c.org/"})
    world.engine.pages[slow].load = FakePage::Load::Wait;
  world.open("https://front.org/");
  settle();
  const auto front = world.view(selected());
  std::vector<TabRef> behind;
  for (const char* link : {"https://b.org/", "https://c.org/", "https://d.org/"}) {
    front->clickLink(link, {.control = true});
    settle();
    for (const TabRef& tab : space().today.peek())
      if (tab->url.peek() == address(link)) behind.push_back(tab);
  }
  ASSERT_EQ(behind.size(), 3u);
  const auto live = [&] {
    std::string text;
    for (const TabRef& tab : behind) text += tab->liveWebView() ? 'x' : '-';
    return text;
  };
  EXPECT_EQ(live(), "---");
  front->stopLoading();
  settle();
  EXPECT_EQ(live(), "xx-");
  world.view(behind[0])->stopLoading();
  settle();
  EXPECT_EQ(live(), "xxx");
}

}  // namespace
}  // namespace orvel::test
