#include "Tests/Contract/Contract.h"

namespace orvel::test {
namespace {

using MenuContract = EngineContract;
ORVEL_BOTH(MenuContract);

std::optional<URL> address(const char* text) { return URL::parse(text); }

// What a page has in the middle of the view, and what its menu is told of it.
TEST_P(MenuContract, AMenuIsToldWhatItIsFor) {
  const std::vector<std::pair<std::string, PageHit>> kPages = {
      {"<a href='/next?a=1&b=2'>Next “page”</a>",
       {.link = address("http://menu.test/next?a=1&b=2"), .linkText = "Next “page”"}},
      {"<a href='/next'><img src='/picture.png'></a>",
       {.link = address("http://menu.test/next"),
        .picture = address("http://menu.test/picture.png")}},
      {"<p id=chosen>so <b>chosen</b></p>", {.selection = "so chosen"}},
      {"<textarea autofocus>text</textarea>", {.isEditable = true}},
      {"<input type=password value=secret autofocus onfocus='select()'>", {.isEditable = true}},
      {"<video src='/film.webm' muted loop></video>",
       {.mediaAddress = address("http://menu.test/film.webm"),
        .media = PageHit::Media{.isVideo = true, .isMuted = true, .isLooping = true}}},
      {"<p></p>", {}}};
  for (const auto& [markup, wanted] : kPages) {
    const auto view = shown("http://menu.test/" + std::to_string(delegate.finishes));
    delegate.finishes = 0;
    delegate.hits.clear();
    stage->show(*view);
    stage->askForMenu(*view, markup, wanted);
    ASSERT_TRUE(until([&] { return !delegate.hits.empty(); })) << markup;
    const PageHit& hit = delegate.hits.back();
    EXPECT_EQ(hit.link, wanted.link) << markup;
    EXPECT_EQ(hit.linkText, wanted.linkText) << markup;
    EXPECT_EQ(hit.picture, wanted.picture) << markup;
    EXPECT_EQ(hit.mediaAddress, wanted.mediaAddress) << markup;
    EXPECT_EQ(hit.media, wanted.media) << markup;
    EXPECT_EQ(hit.selection, wanted.selection) << markup;
    EXPECT_EQ(hit.isEditable, wanted.isEditable) << markup;
  }
}

}  // namespace
}  // namespace orvel::test
