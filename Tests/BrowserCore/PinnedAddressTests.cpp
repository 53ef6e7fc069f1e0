#include "BrowserCore/PinnedAddress.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

TEST(PinnedAddress, OnlyAnotherPageOrQueryHasWandered) {
  struct Case {
    const char* pinned;
    const char* shown;
    bool expected;
  };
  const Case cases[] = {
      {"https://a.test", "https://a.test", false},
      {"https://a.test", "https://a.test///#top", false},
      {"https://a.test/#one", "https://a.test#two#three", false},
      {"https://a.test/?q", "https://a.test/", true},
      {"https://a.test/", "http://a.test/", true},
      {"https://a.test/a/", "https://a.test/b/", true},
  };
  for (const auto& [pinned, shown, expected] : cases)
    EXPECT_EQ(hasWanderedFromPin(URL::parse(pinned), URL::parse(shown)), expected)
        << pinned << " and " << shown;
  EXPECT_FALSE(hasWanderedFromPin(std::nullopt, URL::parse("https://a.test")));
  EXPECT_FALSE(hasWanderedFromPin(URL::parse("https://a.test"), std::nullopt));
}

}  // namespace
}  // namespace orvel
