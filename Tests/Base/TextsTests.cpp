#include <gtest/gtest.h>

#include "Base/Texts.h"

namespace orvel {
namespace {

TEST(TextsTests, placeholdersAreFilledOnceAndNothingElseIs) {
  const auto fill = [](std::string_view text) {
    return filled(text, {{"name", "{other}"}, {"other", "B"}});
  };
  EXPECT_EQ(fill("Pinned to {name}"), "Pinned to {other}");
  EXPECT_EQ(fill("{other}{other} {unknown}"), "BB {unknown}");
  EXPECT_EQ(fill("{ {other"), "{ {other");
  EXPECT_EQ(fill("{ {other}}"), "{ B}");
  EXPECT_EQ(fill("} {}"), "} {}");
  EXPECT_EQ(counted("{count} tabs", 12), "12 tabs");
}

}  // namespace
}  // namespace orvel
