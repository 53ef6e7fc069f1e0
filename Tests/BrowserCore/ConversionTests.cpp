#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <random>

#include "BrowserCore/ConversionPhrase.h"
#include "BrowserCore/CurrencyConversion.h"
#include "BrowserCore/UnitConversion.h"

namespace orvel {
namespace {

using CurrencyConversion::Request;

TEST(UnitConversion, RestatesAndAnswers) {
  EXPECT_EQ(UnitConversion::convert("10 km to mi"), (QuickAnswer{"10 km in mi", "6.21 mi"}));
  EXPECT_EQ(UnitConversion::convert(" 100 C  TO F "), (QuickAnswer{"100 c in f", "212 f"}));
  EXPECT_EQ(UnitConversion::convert("1,000 m in km"), (QuickAnswer{"1000 m in km", "1 km"}));
}

TEST(UnitConversion, KnowsEveryUnit) {
  const std::pair<const char*, const char*> cases[] = {
      {"10km to mi", "6.21 mi"},
      {"-40 c to f", "-40 f"},
      {"1 mile as m", "1609.34 m"},
      {"2 miles in mile", "2 mile"},
      {"1 inch to mm", "25.4 mm"},
      {"1 in in cm", "2.54 cm"},
      {"36 inches to foot", "3 foot"},
      {"1 foot in inches", "12 inches"},
      {"3 feet to yd", "1 yd"},
      {"1 yd in ft", "3 ft"},
      {"1 lb to g", "453.59 g"},
      {"14 lbs to st", "1 st"},
      {"16 oz to lb", "1 lb"},
      {"1 kg in lbs", "2.2 lbs"},
      {"0 celsius to kelvin", "273.15 kelvin"},
      {"0 k in °c", "-273.15 °c"},
      {"212 °f to k", "373.15 k"},
      {"98.6 fahrenheit as celsius", "37 celsius"},
      {"1 gal to l", "3.79 l"},
      {"1 gal to floz", "128 floz"},
      {"1 gal to cups", "16 cups"},
      {"1 cup to ml", "236.59 ml"},
      {"36 km/h to m/s", "10 m/s"},
      {"100 kmh in mph", "62.14 mph"},
      {"1 knots to km/h", "1.85 km/h"},
      {"1 tb to gb", "1000 gb"},
      {"1500 b in kb", "1.5 kb"},
      {"1 gb as mb", "1000 mb"},
      {"90 min to hours", "1.5 hours"},
      {"1 h in s", "3600 s"},
      {"1 hr to sec", "3600 sec"},
      {".5 m to cm", "50 cm"},
      {"5. m to m", "5 m"},
      {"-0.001 m to m", "0 m"},
      {"0.005 m to m", "0.01 m"},
      {"-0.005 m to m", "-0.01 m"},
      {"1\u2003km\u00a0to\u3000m", "1000 m"},
      {"1 K to c", "-272.15 c"},  // the Kelvin sign's lower case is k
      {"1,.m to km", "0 km"},
  };
  for (const auto& [text, expected] : cases) {
    const auto found = UnitConversion::convert(text);
    EXPECT_EQ(found ? found->answer : "", expected) << text;
  }
  for (const char* text :
       {"1e5 m to km", "5 kg to km", "1.2.3 m to km", ", m to km", "- 1 m to km", "+1 m to km",
        "1 meter to km", "1 m to hour", "1 m km", "1 m into km", "1 m tokm", "1 m to km2",
        "1 m to km now", "m to km", "٣ m to km", "1 m2 to km"})
    EXPECT_EQ(UnitConversion::convert(text), std::nullopt) << text;
  EXPECT_EQ(UnitConversion::convert(std::string(308, '9') + " km to mm"), std::nullopt);
}

TEST(CurrencyConversion, ReadsRequests) {
  const std::pair<const char*, Request> cases[] = {
      {"100 usd to eur", {100, "USD", "EUR"}},
      {"$100 to eur", {100, "USD", "EUR"}},
      {"$ 100 to eur", {100, "USD", "EUR"}},
      {"100$ in euros", {100, "USD", "EUR"}},
      {"100 dollars as €", {100, "USD", "EUR"}},
      {" 100 USD TO EUR ", {100, "USD", "EUR"}},
      {"usd100 as gbp", {100, "USD", "GBP"}},
      {"1.234,56 eur to usd", {1234.56, "EUR", "USD"}},
      {"1,234.56 eur to usd", {1234.56, "EUR", "USD"}},
      {"1,234 eur to usd", {1234, "EUR", "USD"}},
      {"1,2345 eur to usd", {12345, "EUR", "USD"}},
      {"1,23 eur to usd", {1.23, "EUR", "USD"}},
      {"1,5€ to $", {1.5, "EUR", "USD"}},
      {"1.5 eur to usd", {1.5, "EUR", "USD"}},
      {"100, eur to usd", {100, "EUR", "USD"}},
      {"1.000.000,5 eur to usd", {1000000.5, "EUR", "USD"}},
      {"1,000,000.5 eur to usd", {1000000.5, "EUR", "USD"}},
      {"$100, in eur", {100, "USD", "EUR"}},
      {"¥5 to yuan", {5, "JPY", "CNY"}},
      {"5 francs in pounds", {5, "CHF", "GBP"}},
      {"₹5 in ₩", {5, "INR", "KRW"}},
      {"5 rmb in yen", {5, "CNY", "JPY"}},
      {"1 idr to zar", {1, "IDR", "ZAR"}},
      {"1 uſd to eur", {1, "USD", "EUR"}},  // the long s in upper case
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(CurrencyConversion::parse(text), expected) << text;
  for (const char* text :
       {"5 fr in francs", "100 to eur", "$100 usd to eur", "100 usd to usd", "$1 to usd",
        "-100 usd to eur", "$-100 to eur", "100 usd eur", "100 franc to eur", "100 kr to eur",
        "100 usd to eur now", "1.234.567 eur to usd", "1,2,3 eur to usd", "1.2,3.4 eur to usd",
        ".5 eur to usd", "10 c to usd", "$100 to to eur", ""})
    EXPECT_EQ(CurrencyConversion::parse(text), std::nullopt) << text;
}

const char kDocument[] = R"(<Cube><Cube time='2024-01-02'><Cube currency='USD' rate='1.1'/>
  <Cube currency="JPY"
        rate="150.5"/><Cube currency='GBP' rate='0'/><Cube currency='CHF' rate='1.2.3'/>
  <Cube rate='9' currency='SEK'/><Cube currency='PLNX' rate='4'/><Cube currency='usd' rate='5'/>
  <Cube currency='NOK'rate='4'/><Cube currency='DKK' rate='7,4'/><Cube currency='CZK" rate="25'/>
  <Cube currency='JPY' rate='160'/></Cube><Cube time='2024-01-03'/>)";

TEST(CurrencyRates, ReadsTheDailyDocument) {
  const CurrencyRates expected({{"USD", 1.1}, {"JPY", 160}, {"CZK", 25}, {"EUR", 1}}, "2024-01-02");
  EXPECT_EQ(CurrencyRates::parse(kDocument), expected);
  EXPECT_EQ(CurrencyRates::parse("currency='EUR' rate='2' currency='USD' rate='1'"),
            CurrencyRates({{"EUR", 2}, {"USD", 1}}));
  EXPECT_EQ(CurrencyRates::parse("time='2024-1-02' time='2024-01-021' time=\"2024-01-05' "
                                 "currency='USD'\u2003\trate='1'")
                ->date(),
            "2024-01-05");
  for (const std::string& broken :
       {std::string(), std::string("currency='JPY' rate='1'"),
        std::string("currency='USD' rate='0'"), std::string("currency='USD' rate='٣'"),
        std::string("\xff currency='USD' rate='1'"), std::string("currency='USD' rate='1"),
        std::string("currency='USD' rate='") + std::string(400, '9') + "'"})
    EXPECT_EQ(CurrencyRates::parse(broken), std::nullopt) << broken;
}

TEST(CurrencyRates, BearsEndlessDocuments) {
  for (const char* piece :
       {"currency=", "currency='USD' ", "time='2024-01-", "currency='USD' rate='1'"}) {
    std::string document;
    while (document.size() < 10'000'000) document += piece;
    EXPECT_EQ(CurrencyRates::parse(document).has_value(), document.ends_with("rate='1'"));
  }
}

TEST(CurrencyRates, CrossesThroughTheEuro) {
  const CurrencyRates rates({{"USD", 1.25}, {"JPY", 150}}, "2024-01-02");
  EXPECT_EQ(rates.convert(10, "USD", "JPY"), 1200);
  EXPECT_EQ(rates.convert(10, "EUR", "USD"), 12.5);
  EXPECT_EQ(rates.convert(10, "GBP", "USD"), std::nullopt);
  EXPECT_EQ(rates.convert(10, "USD", "GBP"), std::nullopt);

  EXPECT_EQ(QuickAnswer::evaluate("$1,234.5 in yen", &rates),
            (QuickAnswer{"1234.5 USD in JPY · ECB 2024-01-02", "148140 JPY"}));
  EXPECT_EQ(
      CurrencyConversion::convert("1 jpy to usd", CurrencyRates({{"USD", 1.25}, {"JPY", 150}})),
      (QuickAnswer{"1 JPY in USD", "0.01 USD"}));
  EXPECT_EQ(QuickAnswer::evaluate("1 usd to gbp", &rates), std::nullopt);
  EXPECT_EQ(QuickAnswer::evaluate("1 usd to eur", nullptr), std::nullopt);
  EXPECT_EQ(QuickAnswer::evaluate("10 m to km", &rates)->answer, "0.01 km");
}

// The phrases' definition, run by the library whose meaning of \d and \s they have.
class Expression {
 public:
  explicit Expression(const char* pattern) {
    pattern_.reset(icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(pattern), 0, status_));
  }

  std::optional<std::vector<std::string>> match(const std::string& text) {
    const auto input = icu::UnicodeString::fromUTF8(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status_));
    if (!matcher->matches(status_)) return std::nullopt;
    std::vector<std::string> groups;
    for (int32_t i = 1; i <= matcher->groupCount(); ++i)
      matcher->group(i, status_).toUTF8String(groups.emplace_back());
    return groups;
  }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  std::unique_ptr<icu::RegexPattern> pattern_;
};

TEST(ConversionPhrase, MatchesWhatItsExpressionMatches) {
  Expression units(R"(^\s*(-?[\d.,]+)\s*([^\s\d]+)\s+(?:to|in|as)\s+([^\s\d]+)\s*$)");
  Expression currencies(
      R"(^\s*([^\s\d.,-]*)\s*([\d][\d.,]*)\s*([^\s\d]*)\s+(?:to|in|as)\s+([^\s\d]+)\s*$)");
  constexpr const char* kPieces[] = {" ",      " ",  " ",      "1",  "25",     "٣", ".", ",",
                                     "-",      "to", " in ",   "as", " to ",   "m", "€", "km/h",
                                     "\u3000", "\v", "\u200b", "\n", "\u0085", "x"};
  std::mt19937 random(3);
  std::uniform_int_distribution<size_t> piece(0, std::size(kPieces) - 1);
  std::uniform_int_distribution<int> length(3, 9);
  int matches = 0;
  const auto isCutAmount = [](const std::string& unit) {
    return unit.starts_with('.') || unit.starts_with(',');
  };
  for (int i = 0; i < 300'000; ++i) {
    std::string text = i % 2 == 0 ? "1" : "";
    for (int pieces = length(random); pieces > 0; --pieces) text += kPieces[piece(random)];
    if (i % 3 == 0) text += " in m";

    if (const auto expected = units.match(text); !expected || !isCutAmount((*expected)[1])) {
      const auto found = conversionPhrase::readUnits(text);
      ASSERT_EQ(found.has_value(), expected.has_value()) << text;
      if (found)
        ASSERT_EQ((std::vector<std::string>{std::string(found->amount), std::string(found->source),
                                            std::string(found->target)}),
                  *expected);
      matches += found ? 1 : 0;
    }
    if (const auto expected = currencies.match(text); !expected || !isCutAmount((*expected)[2])) {
      const auto found = conversionPhrase::readCurrencies(text);
      ASSERT_EQ(found.has_value(), expected.has_value()) << text;
      if (found)
        ASSERT_EQ(
            (std::vector<std::string>{std::string(found->prefix), std::string(found->amount),
                                      std::string(found->suffix), std::string(found->target)}),
            *expected);
      matches += found ? 1 : 0;
    }
  }
  EXPECT_GT(matches, 5'000);
}

}  // namespace
}  // namespace orvel
