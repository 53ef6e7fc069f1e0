#include "BrowserCore/Text/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/locid.h>

#include "BrowserCore/Addresses/PercentCoding.h"
#include "BrowserCore/Text/Characters.h"
#include "BrowserCore/Text/TextSearch.h"

namespace orvel {
namespace {

using testing::ElementsAre;

TEST(Text, LowersEveryLetterWithoutLookingAround) {
  EXPECT_EQ(text::lower("ÀÉ STRASSE"), "àé strasse");
  EXPECT_EQ(text::lower("ΟΔΟΣ"), "οδοσ") << "a final sigma would change when typing goes on";
  EXPECT_EQ(text::lower("İX"), "i\u0307x");
  EXPECT_EQ(text::lower("A\xff\xc3Ü"), "a\xff\xc3ü");
}

TEST(Text, TrimsBlanksWithOrWithoutLineEnds) {
  EXPECT_EQ(text::trimmed(" \t\r\n\u00a0\u2028a b\u3000\u0085\n"), "a b");
  EXPECT_EQ(text::trimmed(" \u3000\n "), "");
  EXPECT_EQ(text::trimmedBlanks(" \t\u00a0\na\n\u3000\t"), "\na\n");
  EXPECT_EQ(text::trimmed("\x80\x80 \xe3\x80"), "\x80\x80 \xe3\x80");
  EXPECT_EQ(text::trimmed("//a//b//", '/'), "a//b");
  EXPECT_EQ(text::trimmed("//", '/'), "");
}

TEST(Text, CountsCharactersAsPeopleDo) {
  EXPECT_THAT(text::characterEnds("abc", 2), ElementsAre(1, 2));
  EXPECT_THAT(text::characterEnds("e\u0301a", 9), ElementsAre(3, 4));
  EXPECT_THAT(text::characterEnds("ae\u0301", 2), ElementsAre(1, 4))
      << "a mark behind the last one";
  EXPECT_THAT(text::characterEnds("a\r\nb", 9), ElementsAre(1, 3, 4));
  EXPECT_EQ(text::characterCount("👩‍👩‍👧🇩🇪", 9), 2u);
  EXPECT_EQ(text::characterCount(std::string(1 << 20, 'a'), 17), 17u);
  EXPECT_EQ(text::characterCount("", 5), 0u);
}

TEST(PercentCoding, KeepsWhatMayStandAndWhatIsNoCode) {
  EXPECT_EQ(percentEncoded("a b+c&d=e?f#g/ü%", kQueryValueCharacters),
            "a%20b%2Bc%26d%3De%3Ff%23g/%C3%BC%25");
  EXPECT_EQ(percentEncoded("\xff", kPathCharacters), std::nullopt);
  EXPECT_EQ(percentDecoded("%41%c3%BC%zz%4"), "Aü%zz%4");
  EXPECT_EQ(percentDecoded("%%34%31%"), "%41%");
  EXPECT_EQ(percentDecoded("a%ff"), "a%ff") << "what it stands for is no text";
}

TEST(TextSearch, FindsInAnyLetterCaseAndComposition) {
  const struct {
    const char* needle;
    const char* text;
    bool isIn;
  } cases[] = {
      {"Tide", "the TIDES of march", true},
      {"", "anything", false},
      {"straße", "STRASSE 4", true},
      {"e\u0301clair", "un Éclair", true},
      {"eclair", "un éclair", false},
      {"ΣΟΦΟΣ", "ο σοφος", true},
      {"\xff", "a\xfe", true},  // both read as U+FFFD
      {"k", "\u212A", true},    // the Kelvin sign
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
  std::string text(text::Needle::kMaxSearched - 4, 'a');
  EXPECT_TRUE(text::Needle("tide").isIn(text + "tide"));
  EXPECT_FALSE(text::Needle("tides").isIn(text + "tides"));
  // Cut in the middle of a letter.
  EXPECT_FALSE(text::Needle("é").isIn(text + "aaaé"));
}

}  // namespace
}  // namespace orvel
