#include <nlohmann/json.hpp>

#include "Models/Settings/Settings.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

using nlohmann::json;
using testing::Pair;

const char* const kRoute = "6BA7B810-9DAD-41D1-80B4-00C04FD430C8";

struct SettingsDocument : testing::Test {
  void store(const json& document) { defaults.setData("settings", document.dump()); }
  json stored() const { return json::parse(defaults.data("settings").value_or("null")); }
  // Every key with a value that isn't its default.
  static json full() {
    return {{"searchEngine", "kagi"},
            {"externalLinks", "currentSpace"},
            {"linkRoutes", {{{"id", kRoute}, {"pattern", "a.org"}, {"spaceID", kRoute}}}},
            {"archiveAfter", "week"},
            {"sitePermissions", {{"a.org", {{"camera", true}, {"location", false}}}}},
            {"siteZoom", {{"a.org", 1.5}}},
            {"autoPictureInPicture", false},
            {"searchSuggestions", true},
            {"searchShortcuts",
             {{{"id", kRoute}, {"keyword", "k"}, {"name", "N"}, {"template", "x.org?q=%s"}}}},
            {"quickBarKey", "shiftOptionSpace"},
            {"hiddenItems", {{"a.org", {".ad"}}}}};
  }
  UserDefaults defaults;
};

// What the settings hold, as the document that they would store.
json contents(const UserDefaults& given) {
  UserDefaults copy;
  if (const auto data = given.data("settings")) copy.setData("settings", *data);
  Settings settings(copy);
  settings.autoPictureInPicture = settings.autoPictureInPicture.peek();
  return json::parse(*copy.data("settings"));
}

TEST_F(SettingsDocument, StartsWithDefaults) {
  for (const char* document : {"", "{", "null", "[]", "\"text\"", "{}"}) {
    defaults.setData("settings", document);
    EXPECT_EQ(contents(defaults), contents(UserDefaults())) << document;
  }
  EXPECT_FALSE(Settings(defaults).searchSuggestions) << "nobody hears what is typed unasked";
}

TEST_F(SettingsDocument, ComesBackWholeAndABrokenKeyCostsThatKeyAlone) {
  const json base = contents(UserDefaults());
  const json whole = full();
  store(whole);
  EXPECT_EQ(contents(defaults), whole);
  const json broken[] = {7,
                         "unknown",
                         json::array({1}),
                         {{"a.org", {{"x", json::array()}}}},
                         {{"a.org", json::array({1})}},
                         nullptr,
                         json::array({json::object()})};
  for (const auto& [key, value] : whole.items()) {
    json expected = whole;
    expected.erase(key);
    store(expected);
    if (base.contains(key)) expected[key] = base[key];
    EXPECT_EQ(contents(defaults), expected) << "without " << key;
    for (const json& wrong : broken) {
      json document = whole;
      document[key] = wrong;
      store(document);
      EXPECT_EQ(contents(defaults), expected) << key << " " << wrong;
    }
  }
}

TEST_F(SettingsDocument, AnotherEngineEndsItsConsent) {
  Settings settings(defaults);
  settings.searchEngine = SearchEngine::kagi;
  settings.searchSuggestions = true;
  settings.searchEngine = SearchEngine::kagi;
  EXPECT_TRUE(settings.searchSuggestions);
  settings.searchEngine = SearchEngine::bing;
  EXPECT_FALSE(settings.searchSuggestions);
  EXPECT_EQ(stored()["searchEngine"], "bing");
  EXPECT_EQ(stored()["searchSuggestions"], false);
}

TEST_F(SettingsDocument, TheBuiltInShortcutsAreNotStored) {
  Settings settings(defaults);
  std::vector<SearchShortcut> list = SearchShortcut::builtIn();
  for (SearchShortcut& shortcut : list) shortcut.id = UUID::random();
  settings.searchShortcuts = list;
  EXPECT_FALSE(stored().contains("searchShortcuts"));
  list.pop_back();
  settings.searchShortcuts = list;
  EXPECT_EQ(stored()["searchShortcuts"].size(), list.size());
  EXPECT_EQ(Settings(defaults).searchShortcuts.peek(), list);
  settings.searchShortcuts = std::vector<SearchShortcut>();
  EXPECT_THAT(Settings(defaults).searchShortcuts.peek(), IsEmpty()) << "none is not untouched";
}

TEST_F(SettingsDocument, ZoomIsFiledBySite) {
  Settings settings(defaults);
  settings.setZoom(1.5, address("https://www.Example.com/path"));
  settings.setZoom(2, std::nullopt);
  settings.setZoom(2, address("about:blank"));
  EXPECT_THAT(settings.siteZoom.peek(), ElementsAre(Pair("example.com", 1.5)));
  EXPECT_EQ(settings.zoom(address("http://example.com/")), 1.5);
  EXPECT_EQ(settings.zoom(address("https://m.example.com/")), 1);
  EXPECT_EQ(settings.zoom(std::nullopt), 1);
  settings.setZoom(1.005, address("https://example.com/"));
  EXPECT_THAT(settings.siteZoom.peek(), IsEmpty());
  settings.setZoom(0.98, address("https://example.com/"));
  EXPECT_EQ(stored()["siteZoom"]["example.com"], 0.98);
}

}  // namespace
}  // namespace orvel::test
