#include "BrowserCore/Answers/QuickAnswer.h"

#include <gtest/gtest.h>
#include <unicode/numberformatter.h>

#include <cmath>
#include <random>

#include "BrowserCore/Answers/Calculator.h"
#include "BrowserCore/Text/Text.h"

namespace orvel {
namespace {

// The answer to a text, or "" when there is none.
std::string answer(std::string_view text) {
  const auto found = QuickAnswer::evaluate(text, nullptr);
  return found ? found->answer : "";
}

// As "2+2 = 4; 2*3 = 6".
void expectAnswers(std::string_view cases) {
  for (const std::string_view one : text::splitNonEmpty(cases, ';')) {
    const size_t sign = one.find(" = ");
    EXPECT_EQ(answer(one.substr(0, sign)), one.substr(sign + 3)) << one;
  }
}

void expectNoAnswers(std::initializer_list<const char*> texts) {
  for (const char* text : texts) EXPECT_EQ(answer(text), "") << text;
}

TEST(QuickAnswer, Calculates) {
  expectAnswers(
      "2+2 = 4; 2 × 3 = 6; 7 ÷ 2 = 3.5; 1/3 = 0.3333333333; 0.1+0.2 = 0.3; 1,5+1 = 16; "
      "SQRT(16) = 4; PI*2 = 6.2831853072; Π*2 = 6.2831853072; e+1 = 3.7182818285; .5+5. = 5.5; "
      "\u20092\u00a0+\t2\n = 4; 8 - 2 - 3 = 3; 8/2/2 = 2; 2+3*4-6/2 = 11; 2--3 = 5; +-+2*1 = -2; "
      "-(2+3)*2 = -10; 0*-1 = 0; -2^2 = -4; 2^3^2 = 512; 2^-3^2 = 0.001953125; 200%^2 = 4; "
      "10 + 50% = 10.5; 20% of 50 = 10; (1+1)% = 0.02; sqrt sqrt 16 = 2; sqrt 16 + 9 = 13; "
      "sqrt 16^2 = 16; sin pi/2 = 6.123234E-17; cos(0) = 1; tan(0)+1 = 1; abs(-3) = 3; "
      "round(-2.5) = -3; floor(-0.5) = -1; ceil(0.5) = 1; ln(e^2) = 2; log 1000 = 3");
  EXPECT_EQ(QuickAnswer::evaluate("  2 × SQRT(4)\n", nullptr), (QuickAnswer{"2 × SQRT(4)", "4"}))
      << "the question as it was typed";
}

TEST(QuickAnswer, LeavesEverythingElseAlone) {
  expectNoAnswers({
      "",       "  ",     "hello",       "e",       "pi",        "5",       "-5",    "(5)",
      "+5-",    "pi*pi",  "sqrt(pi)",    "-pi",     "2e5",       "2pi",     "2(3)",  "(2)(3)",
      "1/0",    "0/0",    "sqrt(-1)",    "sqrt -4", "sqrt +4",   "(1+2",    "1+2)",  "1+",
      "*2",     "()+1",   "1+()",        "2^",      "2+%",       "1.2.3+1", ".+1",   "½+1",
      "٣+١",    "五+1",   "2+2=",        "2+2?",    "$2+2",      "2 x 3",   "2 of3", "sine 2",
      "sqrt",   "sqrt()", "1e999*9^9^9", "2+\xff",  "2\u0301+2", "1of 2",   "inf+1", "nan+1",
      "0x10+1",
  });
}

TEST(QuickAnswer, TellsSubtractionsFromCodes) {
  expectNoAnswers(
      {"2024-01-15", "1-2-3", "555-0142", "007-1", "1234-5679", "1000-200-", "5-", "-5-"});
  expectAnswers(
      "2024 - 01 - 15 = 2008; 100-20 = 80; 123-456 = -333; 10-0 = 10; 0-10 = -10; -5-3 = -8; "
      "1234-5678.0 = -4444; 1,234-5678 = -4444; 2024−01−15 = 2008");
}

TEST(QuickAnswer, KnowsTheAnswer) {
  const QuickAnswer expected{"Life, the Universe and Everything", "42"};
  for (const char* text :
       {"life the universe and everything", "the answer to life, the universe, and everything?",
        "what is the meaning of life the universe and everything",
        "LIFE-THE-UNIVERSE-AND-EVERYTHING", "afterlife, the universe and everything",
        "42 life the universe and everything 42"})
    EXPECT_EQ(QuickAnswer::evaluate(text, nullptr), expected) << text;
  expectNoAnswers({"life, the universe and everything else", "lifetheuniverseandeverything",
                   "lif\u0435 the universe and everything",
                   "life\u0301 the universe and everything", "the universe and everything"});
}

TEST(QuickAnswer, BearsEndlessInput) {
  const auto repeated = [](std::string_view piece, size_t count) {
    std::string result;
    for (size_t i = 0; i < count; ++i) result += piece;
    return result;
  };
  constexpr size_t kCount = 1'000'000;
  EXPECT_EQ(answer(repeated("(", kCount) + "1+1" + repeated(")", kCount)), "2");
  EXPECT_EQ(answer(repeated("-", kCount) + "1"), "1");
  EXPECT_EQ(answer(repeated("1^", kCount) + "1"), "1");
  EXPECT_EQ(answer(repeated("abs ", kCount) + "1"), "1");
  EXPECT_EQ(answer(repeated("1+", kCount) + "1"), "1000001");
  for (const char* piece : {"1-", "9", "life ", " ", "1 of ", "½", "$", "1 in ", "é", ".,", "((("})
    EXPECT_EQ(answer(repeated(piece, kCount)), "") << piece;
}

// The system's own formatter gives the same texts.
TEST(QuickAnswer, FormatsAsTheSystemDoes) {
  using namespace icu::number;
  const auto common = NumberFormatter::withLocale(icu::Locale("en_US_POSIX"))
                          .roundingMode(UNUM_ROUND_HALFEVEN)
                          .grouping(UNUM_GROUPING_OFF);
  const auto plain = common.precision(Precision::maxFraction(10));
  const auto scientific =
      common.notation(Notation::scientific()).precision(Precision::maxSignificantDigits(8));
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> exponent(-20, 25);
  for (int i = 0; i < 20'000; ++i) {
    double value = std::pow(10, exponent(random)) * (i % 2 == 0 ? 1 : -1);
    if (i % 3 == 0) value = std::round(value * 1024) / 1024;
    const double magnitude = std::abs(value);
    const bool isPlain = value == 0 || (magnitude >= 1e-6 && magnitude < 1e15);
    UErrorCode status = U_ZERO_ERROR;
    std::string expected;
    (isPlain ? plain : scientific)
        .formatDouble(value, status)
        .toString(status)
        .toUTF8String(expected);
    EXPECT_EQ(QuickAnswer::format(value), expected == "-0" ? "0" : expected);
  }
}

}  // namespace
}  // namespace orvel
