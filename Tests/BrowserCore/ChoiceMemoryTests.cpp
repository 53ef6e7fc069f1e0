#include "BrowserCore/Addresses/ChoiceMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvel {
namespace {

using testing::ElementsAre;
using Choice = ChoiceMemory::Choice;

Date at(int seconds) { return Date(std::chrono::seconds(seconds)); }

std::optional<std::string> top(const ChoiceMemory& memory, std::string_view query,
                               std::vector<std::string> keys = {"a", "b", "c"}) {
  return memory.topChoice(query, keys);
}

TEST(ChoiceMemory, OffersWhatWasPickedTwiceForEveryPrefix) {
  ChoiceMemory memory;
  memory.record(" GitHub\n", "a", at(1));
  EXPECT_EQ(top(memory, "github"), std::nullopt);
  memory.record("gith", "a", at(2));
  for (const char* query : {"g", "gi", "GITH", " gith "})
    EXPECT_EQ(top(memory, query), "a") << query;
  EXPECT_EQ(top(memory, "githu"), std::nullopt);
  EXPECT_EQ(top(memory, "gith", {"b", "c"}), std::nullopt) << "only what is on offer";
  memory.record(" ", "a", at(3));
  EXPECT_FALSE(memory.choices.contains(""));
}

TEST(ChoiceMemory, KeepsFourChoicesMostPickedThenLatest) {
  ChoiceMemory memory;
  memory.record("x", "old", at(1));
  for (const char* key : {"a", "b"}) memory.record("x", key, at(2));
  memory.record("x", "late", at(9));
  memory.record("x", "b", at(3));
  memory.record("x", "fifth", at(5));
  EXPECT_THAT(memory.choices["x"], ElementsAre(Choice{"b", 2, at(3)}, Choice{"late", 1, at(9)},
                                               Choice{"fifth", 1, at(5)}, Choice{"a", 1, at(2)}));
}

TEST(ChoiceMemory, CountsSixteenCharacters) {
  ChoiceMemory memory;
  std::string sixteen;
  for (int i = 0; i < 16; ++i) sixteen += "e\u0301";
  for (int i = 0; i < 2; ++i) memory.record(sixteen + "z", "a", at(i));
  EXPECT_EQ(memory.choices.size(), 16u);
  EXPECT_EQ(top(memory, sixteen), "a");
  EXPECT_EQ(top(memory, sixteen + "z"), std::nullopt);
}

TEST(ChoiceMemory, ForgetsPrefixesUnusedForTheLongestTime) {
  ChoiceMemory memory;
  for (int i = 0; i < 2000; ++i) memory.choices[std::to_string(10'000 + i)] = {{"a", 2, at(i)}};
  memory.choices["10500"].clear();
  for (const char* query : {"xy", "q"}) memory.record(query, "a", at(99'999));
  EXPECT_EQ(memory.choices.size(), ChoiceMemory::kMaxPrefixes);
  EXPECT_FALSE(memory.choices.contains("10500")) << "an empty list counts as the oldest";
  EXPECT_FALSE(memory.choices.contains("10001"));
  for (const char* kept : {"x", "xy", "q", "10002", "11999"})
    EXPECT_TRUE(memory.choices.contains(kept)) << kept;
}

}  // namespace
}  // namespace orvel
