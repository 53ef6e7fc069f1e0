#include "Models/Commands/PageMenu.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSource.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

// The rows as one text, sections between bars, what is not available in brackets.
std::string shown(const PageHit& hit, const std::string& page = "https://a.org/") {
  std::string text;
  const PageMenuState state{.page = address(page), .canGoBack = true, .searchEngine = "Kagi"};
  for (const auto& row : pageMenuRows(hit, state)) {
    if (!text.empty()) text += row.beginsSection ? " | " : ", ";
    text += row.isEnabled ? row.title : "(" + row.title + ")";
    if (row.isOn) text += *row.isOn ? "+" : "-";
  }
  return text;
}

TEST(PageMenu, ShowsWhatCanBeDoneThere) {
  const std::string openLink =
      "Open in New Tab, Open in Split View, Open in Little Window, Open in Private Window | ";
  const auto link = [](const char* text) { return PageHit{.link = address(text)}; };
  EXPECT_EQ(shown(link("https://b.org/x")),
            openLink + "Download Link…, Copy Link, Copy as Markdown Link");
  EXPECT_EQ(shown(link("https://b.org/x?utm_source=z")),
            openLink + "Download Link…, Copy Link, Copy Clean Link, Copy as Markdown Link");
  // The engine keeps a page of the web from all of these.
  for (const char* kept : {"file:///etc/passwd", "javascript:alert(1)", "mailto:x@y.org",
                           "blob:https://a.org/1", "webkit-extension://x/y"})
    EXPECT_EQ(shown(link(kept)), "Copy Link, Copy as Markdown Link") << kept;
  EXPECT_EQ(shown(link("file:///b"), "file:///a"), openLink + "Copy Link, Copy as Markdown Link");

  PageHit hit = {.picture = address("https://b.org/p.png")};
  const std::string picture =
      "Open Picture in New Tab | Save Picture…, Copy Picture, Copy Picture Link";
  EXPECT_EQ(shown(hit), picture);
  hit.link = address("mailto:x@y.org");
  EXPECT_EQ(shown(hit), "Copy Link, Copy as Markdown Link | " + picture);
  EXPECT_EQ(shown({.picture = address("blob:https://a.org/1")}), "Copy Picture Link");

  hit = {.mediaAddress = address("https://b.org/v"),
         .media = PageHit::Media{.isVideo = true, .isMuted = true, .hasControls = true}};
  EXPECT_EQ(shown(hit), "Play, Unmute, Loop-, Show Controls+ | Copy Video Link");
  hit = {.media = PageHit::Media{.isPaused = false}};
  EXPECT_EQ(shown(hit), "Pause, Mute, Loop-, Show Controls-");

  hit = {.selection = " two\n words "};
  EXPECT_EQ(shown(hit),
            "Copy, Search Kagi for “\u2068two words\u2069”, Open Search in Split View | Print…");
  hit = {.selection = std::string(100, 'x') + "\u2069", .isEditable = true};
  EXPECT_EQ(shown(hit),
            "Undo, Redo | Cut, Copy, Paste, Paste as Plain Text | Select All | "
            "Search Kagi for “\u2068" +
                std::string(30, 'x') + "…\u2069”, Open Search in Split View");
  EXPECT_EQ(shown({.isEditable = true}),
            "Undo, Redo | (Cut), (Copy), Paste, Paste as Plain Text | Select All");
  EXPECT_EQ(shown({}),
            "Back, (Forward), Reload | Save Page As…, Print…, Capture… | View Source, "
            "Inspect Element");
}

struct PageMenuActions : ModelTest {
  void choose(PageMenuCommand command, const PageHit& hit = {}) {
    performPageMenu(store(), tab, hit, command);
    settle();
  }
  TabRef tab = load("https://a.org/");
  std::shared_ptr<FakeWebView> view = world.viewOnScreen(tab);
};

TEST_F(PageMenuActions, LinksOpenBehindAndAreCopied) {
  const PageHit hit{.link = address("https://b.org/x?utm_source=z&k=1"), .linkText = "A [b]"};
  choose(PageMenuCommand::OpenLink, hit);
  EXPECT_EQ(selected(), tab);
  EXPECT_THAT(urls(space().today.peek()), Contains("https://b.org/x?k=1"));
  const std::pair<PageMenuCommand, const char*> copies[] = {
      {PageMenuCommand::CopyLink, "https://b.org/x?utm_source=z&k=1"},
      {PageMenuCommand::CopyCleanLink, "https://b.org/x?k=1"},
      {PageMenuCommand::CopyMarkdownLink, "[A [b\\]](https://b.org/x?k=1)"}};
  for (const auto& [command, text] : copies) {
    choose(command, hit);
    EXPECT_EQ(world.desktop.clipboardText, text);
  }
}

TEST_F(PageMenuActions, ASavedPictureReplacesWhatTheUserNamed) {
  world.desktop.chosenDestination = "/pictures/x.png";
  world.disk->createFolders("/pictures");
  world.disk->write("/pictures/x.png", "former");
  choose(PageMenuCommand::SavePicture, {.picture = address("https://b.org/p.png")});
  const auto download = world.engine.downloads.back();
  download->begin("else.png");
  world.disk->write(download->destination.value(), "picture");
  download->finish();
  settle();
  EXPECT_EQ(world.disk->read("/pictures/x.png", 100).value_or(""), "picture");
}

TEST_F(PageMenuActions, TheSourceIsShownAsText) {
  view->source = "<b>\r\n\"&</b>";
  choose(PageMenuCommand::ViewSource);
  EXPECT_NE(selected(), tab);
  EXPECT_THAT(world.view(selected())->html, HasSubstr("&lt;b&gt;\r\n</code><code>&quot;&amp;&lt;"));
  EXPECT_THAT(world.view(selected())->html, HasSubstr("<title>Source of a.org</title>"));
}

}  // namespace
}  // namespace orvel::test
