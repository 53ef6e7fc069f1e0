#include "BrowserCore/SiteName.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

TEST(SiteName, IsTheLastPieceOfATitleOrElseTheHost) {
  const std::string thirty = "123456789012345678901234567890";
  const std::pair<std::string, std::string> cases[] = {
      {"Daily Paper | Top", "Top"},
      {"Home – Example – Site", "Site"},
      {"A - B | C", "C"},
      {"A - B - C", "C"},
      {"A | B - C - D", "D"},
      {"A - B | C - D", "C - D"},
      {"A · B — C", "C"},
      {"A -  Site\u00a0", "Site"},
      {"A - - B", "- B"},
      {"A - " + thirty, thirty},
      {"A - e\u0301" + thirty.substr(1), "e\u0301" + thirty.substr(1)},
      {"A - 1" + thirty, "a.test"},
      {"A - ", "a.test"},
      {"A-B", "a.test"},
      {"", "a.test"},
  };
  for (const auto& [title, expected] : cases)
    EXPECT_EQ(siteName(title, URL::parse("https://www.a.test/x")), expected) << title;
  EXPECT_EQ(siteName("Title", std::nullopt), "Pinned tab");
}

}  // namespace
}  // namespace orvel
