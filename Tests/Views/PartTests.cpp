#include <gtest/gtest.h>

#include "DesignSystem/ShownText.h"
#include "DesignSystem/SiteIcon.h"
#include "Views/Page/LoadingBar.h"

namespace orvel {
namespace {

using Step = LoadingBarState::Step;

TEST(ShownText, IsOneValidBoundedLine) {
  const struct {
    std::string text;
    size_t limit;
    const char* shown;
  } cases[] = {
      {"Plain", 10, "Plain"},
      {"", 10, ""},
      {"two\nlines\tand\x01more", 40, "two lines and more"},
      {"broken \xFF byte", 40, "broken \uFFFD byte"},
      {"0123456789ab", 10, "0123456789…"},
      {"01234567é9", 9, "01234567…"},
      {std::string("nul\0inside", 10), 40, "nul inside"},
  };
  for (const auto& one : cases) EXPECT_EQ(shownText(one.text, one.limit), one.shown);
  EXPECT_LT(shownText(std::string(10'000'000, 'x')).size(), kMaxShownText + 4);
}

TEST(SiteIcon, TakesTheFirstLetterOrDigit) {
  EXPECT_EQ(initialOf("kelp.example"), "K");
  EXPECT_EQ(initialOf("  4chan"), "4");
  EXPECT_EQ(initialOf("éclair"), "É");
  EXPECT_EQ(initialOf("..."), "");
  EXPECT_EQ(initialOf("\xFFx"), "");
}

TEST(LoadingBar, ComesAtOnceForAPageThatIsLoadingAndNeverGoesBack) {
  EXPECT_EQ(LoadingBarState().appear(true, 0.3), (Step{0.3, true, 0, {}}));
  LoadingBarState bar;
  EXPECT_EQ(bar.appear(false, 0.3), (Step{0, false, 0, {}}));
  EXPECT_EQ(bar.setProgress(0.9), std::nullopt) << "nothing is loading";
  EXPECT_EQ(bar.setLoading(true, 0.1), (Step{0.1, true, 0, {}}));
  EXPECT_EQ(bar.setProgress(0.5), (Step{0.5, true, 0.25, {}}));
  for (const double notAhead : {0.4, 0.5}) EXPECT_EQ(bar.setProgress(notAhead), std::nullopt);
}

TEST(LoadingBar, RunsToItsFullWidthBeforeItFades) {
  LoadingBarState bar;
  (void)bar.appear(true, 0.6);
  const auto finish = bar.setLoading(false, 0.6);
  ASSERT_TRUE(finish && finish->load);
  EXPECT_EQ(*finish, (Step{1, true, 0.2, finish->load}));
  EXPECT_EQ(bar.didEnd(*finish->load), (Step{1, false, 0.25, {}}));
}

TEST(LoadingBar, StaysWhenANewLoadBeginsBeforeOrDuringTheFade) {
  for (const bool isFading : {false, true}) {
    LoadingBarState bar;
    (void)bar.appear(true, 0.5);
    const auto finish = bar.setLoading(false, 1);
    if (isFading) (void)bar.didEnd(*finish->load);
    EXPECT_EQ(bar.setLoading(true, 0.1), (Step{0.1, true, 0, {}}));
    EXPECT_EQ(bar.didEnd(*finish->load), std::nullopt);
  }
}

}  // namespace
}  // namespace orvel
