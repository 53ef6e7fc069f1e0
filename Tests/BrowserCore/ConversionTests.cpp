#include <gtest/gtest.h>

#include "BrowserCore/Answers/CurrencyConversion.h"
#include "BrowserCore/Answers/UnitConversion.h"

namespace orvel {
namespace {

using CurrencyConversion::Request;

std::string unitAnswer(const std::string& text) {
  const auto found = UnitConversion::convert(text);
  return found ? found->question + " = " + found->answer : "none";
}

TEST(UnitConversion, KnowsEveryUnit) {
  // One amount of each dimension, in the unit that the others are told in and in all the others.
  const std::pair<const char*, std::vector<std::string_view>> dimensions[] = {
      {"16093.44 m",
       {"16093440 mm", "1609344 cm", "16.09 km", "633600 in", "633600 inch", "633600 inches",
        "52800 ft", "52800 foot", "52800 feet", "17600 yd", "10 mi", "10 mile", "10 miles"}},
      {"45.359237 kg", {"45359.24 g", "1600 oz", "100 lb", "100 lbs", "7.14 st"}},
      {"37 c",
       {"37 °c", "37 celsius", "98.6 f", "98.6 °f", "98.6 fahrenheit", "310.15 k",
        "310.15 kelvin"}},
      {"3.785411784 l", {"3785.41 ml", "1 gal", "128 floz", "16 cup", "16 cups"}},
      {"10 m/s", {"36 km/h", "36 kmh", "22.37 mph", "19.44 knots"}},
      {"1500000000 b", {"1500000 kb", "1500 mb", "1.5 gb", "0 tb"}},
      {"5400 s", {"5400 sec", "90 min", "1.5 h", "1.5 hr", "1.5 hours"}},
  };
  for (const auto& [amount, equals] : dimensions)
    for (const std::string_view expected : equals) {
      const auto answer = UnitConversion::convert(
          fmt::format("{} to {}", amount, expected.substr(expected.find(' '))));
      EXPECT_EQ(answer ? answer->answer : "none", expected) << amount;
    }
}

TEST(UnitConversion, RestatesAndAnswers) {
  const std::pair<const char*, const char*> cases[] = {
      {" 100 C  TO F ", "100 c in f = 212 f"},
      {"1,000 m in km", "1000 m in km = 1 km"},
      {"10km to mi", "10 km in mi = 6.21 mi"},
      {"1 in in cm", "1 in in cm = 2.54 cm"},
      {"98.6 fahrenheit as celsius", "98.6 fahrenheit in celsius = 37 celsius"},
      {".5 m to cm", "0.5 m in cm = 50 cm"},
      {"-0.001 m to m", "-0.001 m in m = 0 m"},
      {"0.005 m to m", "0.005 m in m = 0.01 m"},
      {"-0.005 m to m", "-0.005 m in m = -0.01 m"},
      {"1\u2003km\u00a0to\u3000m", "1 km in m = 1000 m"},
      {"1 \u212A to c", "1 k in c = -272.15 c"},  // the Kelvin sign's lower case is k
      {"1,.m to km", "1 m in km = 0 km"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(unitAnswer(text), expected) << text;
  for (const char* text :
       {"1e5 m to km", "5 kg to km",    "1.2.3 m to km", ", m to km", "- 1 m to km",
        "+1 m to km",  "1 meter to km", "1 m to hour",   "1 m km",    "1 m into km",
        "1 m tokm",    "1 m to km2",    "1 m to km now", "m to km",   "٣ m to km",
        "1 m2 to km",  "1 m to",        "1 m to ",       "1 m to 5",  " "})
    EXPECT_EQ(unitAnswer(text), "none") << text;
  EXPECT_EQ(unitAnswer(std::string(308, '9') + " km to mm"), "none");
}

TEST(CurrencyConversion, ReadsRequests) {
  const std::pair<const char*, Request> cases[] = {
      {"$100 to eur", {100, "USD", "EUR"}},
      {"100$ in euros", {100, "USD", "EUR"}},
      {" 100 USD TO EUR ", {100, "USD", "EUR"}},
      {"1.234,56 eur to usd", {1234.56, "EUR", "USD"}},
      {"1,234 eur to usd", {1234, "EUR", "USD"}},
      {"1,2345 eur to usd", {12345, "EUR", "USD"}},
      {"1,23 eur to usd", {1.23, "EUR", "USD"}},
      {"1,000,000.5 eur to usd", {1000000.5, "EUR", "USD"}},
      {"¥5 to yuan", {5, "JPY", "CNY"}},
      {"₹5 in ₩", {5, "INR", "KRW"}},
      {"1 idr to zar", {1, "IDR", "ZAR"}},
      {"1 uſd to eur", {1, "USD", "EUR"}},  // the long s in upper case
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(CurrencyConversion::parse(text), expected) << text;
  for (const char* text :
       {"5 fr in francs", "100 to eur", "$100 usd to eur", "100 usd to usd", "$1 to usd",
        "-100 usd to eur", "$-100 to eur", "100 usd eur", "100 franc to eur", "100 usd to eur now",
        "1.234.567 eur to usd", "1,2,3 eur to usd", "1.2,3.4 eur to usd", ".5 eur to usd",
        ",5 eur to usd", "$1 to", "$1to eur", "$100 to to eur", ""})
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
  EXPECT_EQ(rates.convert(10, "USD", "GBP"), std::nullopt);

  EXPECT_EQ(QuickAnswer::evaluate("$1,234.5 in yen", &rates),
            (QuickAnswer{"1234.5 USD in JPY · ECB 2024-01-02", "148140 JPY"}));
  EXPECT_EQ(
      CurrencyConversion::convert("1 jpy to usd", CurrencyRates({{"USD", 1.25}, {"JPY", 150}})),
      (QuickAnswer{"1 JPY in USD", "0.01 USD"}));
  EXPECT_EQ(QuickAnswer::evaluate("1 usd to eur", nullptr), std::nullopt);
  EXPECT_EQ(QuickAnswer::evaluate("10 m to km", &rates)->answer, "0.01 km");
}

}  // namespace
}  // namespace orvel
