#include <nlohmann/json.hpp>

#include "Base/Log.h"
#include "Models/CommandBar/ChoicesFile.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

using nlohmann::json;

constexpr auto kSessionFile = "/data/Orvel/session.json";
constexpr const char* kSpace = "10000000-0000-4000-8000-000000000001";
constexpr const char* kProfile = "20000000-0000-4000-8000-000000000002";
constexpr const char* kTab = "30000000-0000-4000-8000-000000000003";

json tabRecord(const std::string& id = kTab) {
  return {{"id", id}, {"title", "A"}, {"url", "https://a/"}};
}

json session() {
  return {{"schemaVersion", 2},
          {"activeSpaceID", kSpace},
          {"isSidebarVisible", false},
          {"sidebarWidth", 300},
          {"profiles", {{{"id", kProfile}, {"name", "P"}, {"favorites", json::array()}}}},
          {"spaces",
           {{{"id", kSpace},
             {"name", "S"},
             {"symbol", "star.fill"},
             {"hue", 0.5},
             {"profileID", kProfile},
             {"selectedTabID", kTab},
             {"pinned", json::array()},
             {"today", {tabRecord()}}}}}};
}

size_t countLogged(Log::Level level, const std::string& text) {
  size_t count = 0;
  for (const Log::Entry& entry : Log::recent())
    if (entry.level == level && entry.category == "Session" &&
        entry.message.find(text) != std::string::npos)
      ++count;
  return count;
}

struct Session : testing::Test {
  World& launch(const std::string& bytes) {
    world.disk->put("/data/Orvel/session.json", bytes);
    return world.launch();
  }
  World world;
};

TEST_F(Session, ChangesAreSavedOnceASecond) {
  world.launch();
  world.scheduler.advance(10s);
  EXPECT_THAT(world.sessionFile(), IsEmpty()) << "a start alone writes nothing";
  const int before = world.disk->stepCount();
  world.open("https://a/", false);
  world.scheduler.advance(400ms);
  world.open("https://b/", false);
  world.scheduler.advance(599ms);
  EXPECT_THAT(world.sessionFile(), IsEmpty());
  world.scheduler.advance(1ms);
  EXPECT_THAT(world.sessionFile(), HasSubstr("https://b/"));
  const int oneSave = world.disk->stepCount() - before;
  for (int change = 0; change < 30; ++change) {
    world.space().name = "S" + std::to_string(change);
    world.store->scheduleSave();
    world.scheduler.advance(100ms);
  }
  world.scheduler.advance(2s);
  EXPECT_EQ(world.disk->stepCount() - before, oneSave * 4);
}

TEST_F(Session, EverythingComesBack) {
  World& first = world.launch();
  const TabRef favorite = first.open("https://favorite/", false);
  favorite->title = "A “quoted” title";
  first.store->move(favorite, FavoritesDestination{});
  const TabRef pinned = first.open("https://pinned/?q=a|b&c[]=%zz", false);
  first.store->folders.newFolder(pinned);
  first.store->folders.toggle(foldersOf(first.space().pinned).front());
  const TabRef left = first.open("https://left/");
  const TabRef right = first.open("https://right/");
  first.space().setSplit({left->id, right->id});
  first.space().splitWidths = std::vector<double>{0.25, 0.75};
  first.space().appearance = Space::Appearance::Dark;
  first.store->chrome.setSidebarWidth(311);
  first.store->chrome.toggleSidebar();
  first.scheduler.advance(2s);
  // Times lose what is less than a second.
  for (const TabRef& tab : first.space().allTabs())
    tab->lastActiveAt = VirtualScheduler::startDate();
  first.store->session.save();
  first.scheduler.settle();
  const SpaceRecord before = first.space().record();

  World second(first.disk);
  second.launch();
  EXPECT_EQ(second.space().record(), before);
  EXPECT_EQ(second.space().profile->favorites.peek().front()->title.peek(), "A “quoted” title");
  EXPECT_FALSE(second.store->chrome.isSidebarVisible);
  EXPECT_EQ(second.store->chrome.sidebarWidth.peek(), 311);
  EXPECT_EQ(second.engine.views.size(), 1u) << "only the page on screen gets a view";
  EXPECT_EQ(second.space().selectedTab()->url.peek(), address("https://right/"));
}

TEST_F(Session, AVersion1FileIsUpgradedSavedAndKept) {
  json profile = {{"id", kProfile}, {"name", "Old"}, {"hue", 0.25}, {"symbol", "star.fill"}};
  profile["pinnedTabs"] = json::array({tabRecord("40000000-0000-4000-8000-000000000004")});
  profile["tabs"] = json::array({tabRecord()});
  for (const bool hasSelection : {true, false}) {
    World old;
    if (hasSelection) profile["selectedTabID"] = kTab;
    const json v1 = {
        {"isSidebarVisible", true}, {"sidebarWidth", 200}, {"profiles", json::array({profile})}};
    profile.erase("selectedTabID");
    old.disk->put(kSessionFile, v1.dump());
    old.launch();
    EXPECT_EQ(old.space().id.text(), kProfile) << "without an active profile the first counts";
    EXPECT_EQ(old.space().profile->favorites.peek().size(), 1u);
    EXPECT_EQ(old.space().today.peek().front()->lastActiveAt, VirtualScheduler::startDate());
    EXPECT_EQ(old.space().selectedTab() != nullptr, hasSelection);
    old.scheduler.settle();
    EXPECT_EQ(old.file("session.v1.backup.json"), v1.dump());
    EXPECT_EQ(old.sessionFile(), v1.dump());
    old.scheduler.advance(1100ms);
    EXPECT_EQ(json::parse(old.sessionFile())["schemaVersion"], 2) << "by the upgrade alone";
  }
}

TEST_F(Session, PartsThatNameNothingAreTolerated) {
  json given = session();
  json stray = given["spaces"][0];
  stray["profileID"] = kTab;
  given["spaces"].push_back(stray);
  given["spaces"][0]["appearance"] = "sepia";
  given["spaces"][0]["selectedTabID"] = kProfile;
  given["spaces"][0]["split"] = json::array();
  given["activeSpaceID"] = kTab;
  given["spaces"][0]["today"][0]["url"] = "example.com/page";
  given["spaces"][0]["today"][0]["pinnedURL"] = "//example.com";
  launch(given.dump());
  EXPECT_EQ(world.store->spaces.peek().size(), 1u);
  EXPECT_EQ(world.store->activeSpaceID.get().text(), kSpace);
  EXPECT_EQ(world.space().appearance.peek(), Space::Appearance::Auto);
  EXPECT_EQ(world.space().selectedTab(), nullptr);
  const TabRef tab = world.space().today.peek().front();
  EXPECT_EQ(tab->displayTitle(), "A");
  EXPECT_FALSE(tab->url.peek() || tab->pinnedURL.peek()) << "no address without a scheme";
  tab->webView();
  EXPECT_THAT(world.view(tab)->requests, IsEmpty());
}

TEST_F(Session, DuplicateIdsAreNoHindrance) {
  json given = session();
  given["spaces"][0]["today"].push_back(tabRecord());
  given["spaces"].push_back(given["spaces"][0]);
  given["profiles"].push_back(given["profiles"][0]);
  launch(given.dump());
  EXPECT_EQ(world.store->spaces.peek().size(), 2u);
  const TabRef selected = world.space().selectedTab();
  EXPECT_EQ(selected, world.space().today.peek().front());
  world.store->close(selected);
  EXPECT_EQ(world.space().today.peek().size(), 1u);
  world.store->clearToday(world.store->activeSpace());
  world.scheduler.advance(5s);
}

TEST_F(Session, WhatCannotBeReadIsKeptAndTheProgramStarts) {
  const auto with = [](const std::string& path, const json& value) {
    json given = session();
    given[json::json_pointer(path)] = value;
    return given.dump();
  };
  const struct {
    const char* name;
    std::string bytes;
    std::errc error = {};  // of opening it
  } cases[] = {{"empty", ""},
               {"cut off", session().dump().substr(0, 100)},
               {"a later version", with("/schemaVersion", 3)},
               {"a wrong type", with("/sidebarWidth", "wide")},
               {"no address", with("/spaces/0/today/0/url", "https://a b/")},
               {"invalid UTF-8", "{\"schemaVersion\":2,\"x\":\"\xff\xfe\"}"},
               {"whole, but not ours", "whole", std::errc::permission_denied},
               {"whole, but not now", "whole", std::errc::io_error},
               {"too large", "whole", std::errc::file_too_large}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const bool isOpened = test.error == std::errc();
    const size_t faults = countLogged(Log::Level::Fault, "Couldn't read the session");
    World fresh;
    fresh.disk->put(kSessionFile, test.bytes);
    if (!isOpened) fresh.disk->unreadable[kSessionFile] = test.error;
    fresh.launch();
    EXPECT_EQ(fresh.space().name.peek(), "Personal");
    EXPECT_EQ(countLogged(Log::Level::Fault, "Couldn't read the session"), faults + 1);
    fresh.scheduler.settle();
    fresh.disk->unreadable.clear();
    EXPECT_EQ(fresh.file("session.unreadable.json"), test.bytes);
    EXPECT_EQ(fresh.sessionFile(), isOpened ? test.bytes : "") << "copied, or else moved aside";
    for (int save = 0; save < 2; ++save) {
      fresh.open("https://new/");
      fresh.scheduler.advance(1100ms);
      EXPECT_EQ(json::parse(fresh.sessionFile())["schemaVersion"], 2);
    }
    EXPECT_EQ(fresh.file("session.unreadable.json"), test.bytes);
  }
}

TEST_F(Session, NothingReplacesASessionThatCouldNotBeKept) {
  const json v1 = {{"isSidebarVisible", true}, {"sidebarWidth", 200}, {"profiles", json::array()}};
  const struct {
    std::string bytes;
    std::optional<std::errc> error;
    const char* kept;
  } cases[] = {{"{}", std::nullopt, "session.unreadable.json"},
               {v1.dump(), std::nullopt, "session.v1.backup.json"},
               {"x", std::errc::io_error, "session.unreadable.json"}};
  for (const auto& test : cases) {
    World fresh;
    fresh.disk->put(kSessionFile, test.bytes);
    if (test.error) fresh.disk->unreadable[kSessionFile] = *test.error;
    fresh.disk->failAlways(MemoryFileSystem::Fault::InputOutput);
    fresh.launch();
    fresh.scheduler.settle();
    // Only the first step fails from now on, which is that of keeping.
    for (int save = 0; save < 3; ++save) {
      fresh.disk->failAlways(MemoryFileSystem::Fault::None);
      fresh.disk->failAtStep(0, MemoryFileSystem::Fault::InputOutput);
      fresh.open("https://a/");
      fresh.scheduler.advance(1100ms);
      EXPECT_EQ(fresh.disk->contents().at(kSessionFile), test.bytes);
    }
    fresh.disk->failAlways(MemoryFileSystem::Fault::None);
    fresh.disk->unreadable.clear();
    fresh.open("https://a/");
    fresh.scheduler.advance(1100ms);
    EXPECT_EQ(fresh.file(test.kept), test.bytes);
    EXPECT_THAT(fresh.sessionFile(), HasSubstr("https://a/"));
  }
}

// Reopening an archived tab moves it from one file to the other.
TEST_F(Session, AnArchivedTabIsInOneOfTheFilesAtAnyTime) {
  const ArchivedTabRecord archived{
      {.id = UUID::random(), .title = "Old", .url = address("https://old/")}, UUID::random(), {}};
  for (int step = 0; step < 12; ++step) {
    for (const auto fault :
         {MemoryFileSystem::Fault::Killed, MemoryFileSystem::Fault::InputOutput}) {
      World first;
      first.disk->put("/data/Orvel/archive.json", ArchivedTabRecord::encoded({archived}));
      first.launch();
      first.disk->failAtStep(step, fault);
      first.store->archive.reopen(archived);
      first.scheduler.settle();
      first.disk->restartAfterPowerCut();
      World after(first.disk);
      after.launch();
      const size_t found =
          after.store->archive.records.peek().size() + after.space().today.peek().size();
      EXPECT_GE(found, 1u) << "step " << step;
    }
  }
  World again;
  again.disk->put("/data/Orvel/archive.json", ArchivedTabRecord::encoded({archived}));
  again.launch();
  again.disk->failAtStep(5, MemoryFileSystem::Fault::InputOutput);
  again.store->archive.reopen(archived);
  again.scheduler.settle();
  again.open("https://a/");
  again.scheduler.advance(1100ms);
  EXPECT_EQ(again.file("archive.json"), ArchivedTabRecord::encoded({})) << "tried again";
}

TEST_F(Session, ABadArchiveOrFileOfChoicesIsPassedOver) {
  world.disk->put("/data/Orvel/archive.json", "{}");
  world.disk->put("/data/Orvel/Choices.json", R"([{"profile":"x","prefixes":[]}])");
  world.launch();
  EXPECT_THAT(world.store->archive.records.peek(), IsEmpty());
  EXPECT_TRUE(world.store->choices.byProfile.empty());
  EXPECT_EQ(world.file("archive.json"), "{}");
  ChoicesFile::Choices choices;
  choices[UUID::random()].record("gi", "url:https://git/",
                                 Date(std::chrono::microseconds(978'307'201'500'001)));
  EXPECT_THAT(ChoicesFile::encoded(choices), HasSubstr("\"lastUsed\": 1.500001\n"))
      << "seconds since 2001";
}

}  // namespace
}  // namespace orvel::test
