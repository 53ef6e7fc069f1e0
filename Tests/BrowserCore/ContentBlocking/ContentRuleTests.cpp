#include "BrowserCore/ContentBlocking/ContentRule.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace orvel {
namespace {

TEST(ContentRuleJSON, WritesOnlyWhatIsPresentInDeclaredOrder) {
  EXPECT_EQ(encodedJSON({}), "[]");
  const ContentRule rules[] = {
      {.trigger = {.urlFilter = "a/b\\.c"}},
      {.trigger = {.urlFilter = "x",
                   .ifDomain = DomainList("*a.test,*b.test"),
                   .urlFilterIsCaseSensitive = true,
                   .resourceType = {ResourceType::svgDocument, ResourceType::font},
                   .loadType = ContentRule::LoadType::thirdParty,
                   .loadContext = ContentRule::LoadContext::childFrame},
       .action = {.type = ContentRule::ActionType::ignorePreviousRules}},
      {.trigger = {.urlFilter = ".*",
                   .unlessDomain = DomainList("*a.test"),
                   .loadType = ContentRule::LoadType::firstParty},
       .action = {ContentRule::ActionType::cssDisplayNone, "a[b=\"c\"], d"}},
  };
  EXPECT_EQ(encodedJSON(rules),
            R"([{"trigger":{"url-filter":"a/b\\.c"},"action":{"type":"block"}},)"
            R"({"trigger":{"url-filter":"x","url-filter-is-case-sensitive":true,)"
            R"("if-domain":["*a.test","*b.test"],"resource-type":["font","svg-document"],)"
            R"("load-type":["third-party"],"load-context":["child-frame"]},)"
            R"("action":{"type":"ignore-previous-rules"}},)"
            R"({"trigger":{"url-filter":".*","unless-domain":["*a.test"],)"
            R"("load-type":["first-party"]},)"
            R"("action":{"type":"css-display-none","selector":"a[b=\"c\"], d"}}])");
}

// Rules with the same texts share what was written; ones that differ in one field must not.
TEST(ContentRuleJSON, TellsRulesWithSharedTextsApart) {
  const std::string_view filter = "shared";
  const DomainList sites("*a.test");
  const ContentRule rules[] = {
      {.trigger = {.urlFilter = filter}},
      {.trigger = {.urlFilter = filter}},
      {.trigger = {.urlFilter = filter.substr(0, 3)}},
      {.trigger = {.urlFilter = filter, .ifDomain = sites}},
      {.trigger = {.urlFilter = filter, .unlessDomain = sites}},
      {.trigger = {.urlFilter = filter, .unlessDomain = sites, .urlFilterIsCaseSensitive = true}},
  };
  std::string oneByOne;
  for (const ContentRule& rule : rules) {
    const std::string json = encodedJSON({&rule, 1});
    oneByOne += (oneByOne.empty() ? "" : ",") + json.substr(1, json.size() - 2);
  }
  EXPECT_EQ(encodedJSON(rules), "[" + oneByOne + "]");
}

// Every byte at every place of a word, read back by another program's parser.
TEST(ContentRuleJSON, EscapesEveryByteAnywhereAndRepairsIllFormedTexts) {
  for (int byte = 0; byte < 0x80; ++byte)
    for (size_t place = 0; place < 17; ++place) {
      std::string text(17, 'x');
      text[place] = static_cast<char>(byte);
      const ContentRule rule{.trigger = {.urlFilter = text}};
      const auto json = nlohmann::json::parse(encodedJSON({&rule, 1}), nullptr, false);
      ASSERT_FALSE(json.is_discarded()) << byte << " at " << place;
      EXPECT_EQ(json[0]["trigger"]["url-filter"], text) << byte << " at " << place;
    }
  const std::pair<const char*, std::string> cases[] = {
      {"\x08\x0C\n\r\t\x01\x1F/\x7F", "\\b\\f\\n\\r\\t\\u0001\\u001f/\x7F"},
      // What is no text is repaired.
      {"caf\xC3\xA9", "caf\xC3\xA9"},
      {"ab\xFF", "ab\xEF\xBF\xBD"},
      {"\xC3\"long enough for words", "\xEF\xBF\xBD\\\"long enough for words"},
  };
  for (const auto& [text, expected] : cases) {
    const ContentRule rule{.trigger = {.urlFilter = text}};
    EXPECT_NE(encodedJSON({&rule, 1}).find('"' + expected + '"'), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace orvel
