#include "BrowserCore/TextSearch.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

namespace orvel {
namespace {

TEST(TextSearch, FindsInAnyLetterCaseAndComposition) {
  const struct {
    const char* needle;
    const char* text;
    bool isIn;
  } cases[] = {
      {"Tide", "the TIDES of march", true},
      {"tides.", "the tides", false},
      {"e", "", false},
      {"", "anything", false},
      {"x", "x", true},
      {"HTTPS://A", "https://a.test/", true},
      {"straße", "STRASSE 4", true},
      {"ÉCLAIR", "un éclair", true},
      {"e\u0301clair", "un Éclair", true},
      {"eclair", "un éclair", false},
      {"ΣΟΦΟΣ", "ο σοφος", true},
      {"i", "I", true},
      {"\xff", "a\xfe", true},  // both read as U+FFFD
      {"\xff", "abc", false},
      {"k", "\u212A", true},  // the Kelvin sign
  };
  for (const auto& one : cases)
    EXPECT_EQ(text::Needle(one.needle).isIn(one.text), one.isIn) << one.needle << " " << one.text;
}

TEST(TextSearch, FollowsTheLanguage) {
  const icu::Locale former = icu::Locale::getDefault();
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale::setDefault(icu::Locale("tr", "TR"), status);
  const text::Needle istanbul("istanbul");
  const text::Needle dotless("ırmak");
  icu::Locale::setDefault(former, status);
  EXPECT_TRUE(istanbul.isIn("İSTANBUL"));
  EXPECT_FALSE(istanbul.isIn("ISTANBUL"));
  EXPECT_TRUE(dotless.isIn("IRMAK"));
  EXPECT_TRUE(text::Needle("istanbul").isIn("ISTANBUL"));
}

TEST(TextSearch, LooksAtABoundedStretchOfAText) {
  std::string text(text::Needle::kLongestSearched - 4, 'a');
  EXPECT_TRUE(text::Needle("tide").isIn(text + "tide"));
  EXPECT_FALSE(text::Needle("tides").isIn(text + "tides"));
  // Cut in the middle of a letter.
  EXPECT_FALSE(text::Needle("é").isIn(text + "aaaé"));
}

}  // namespace
}  // namespace orvel
