#include <fstream>

#include "Tests/Contract/Contract.h"

namespace orvel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = Site::Kind;

// What is asked of a page, and of what it is made from

struct AnswerContract : EngineContract {
  AnswerContract() {
    stage->put("http://page.test/", {.title = "Page"});
    stage->put("http://cookie.test/", {.title = "Cookie", .storesData = true});
    stage->put("http://inner.test/", {.title = "Inner"});
    stage->put("http://files.test/data.bin", {.kind = Kind::File});
  }
};

TEST_P(AnswerContract, EachQuestionIsAnsweredOnceOnALaterTurnWhateverBecomesOfThePage) {
  enum class Fate { Lives, ViewGoes, Crashes, Hangs };
  for (const Fate fate : {Fate::Lives, Fate::ViewGoes, Fate::Crashes, Fate::Hangs}) {
    delegate = {};
    auto view = shown("http://page.test/");
    if (fate == Fate::Hangs) stage->hang(*view);
    std::map<std::string, int> counts;
    std::map<std::string, bool> failures;
    const auto note = [&](const std::string& question, bool hasFailed) {
      ++counts[question];
      failures[question] = hasFailed;
    };
    const auto script = [&](const std::string& question) {
      return [&, question](const ScriptResult& result) { note(question, !result); };
    };
    view->evaluateJavaScript("1", {}, {}, script("script"));
    view->evaluateJavaScript("1", {}, FrameInfo{77, false, ""}, script("no frame"));
    view->callAsyncJavaScript("return 1", "{}", {}, script("call"));
    view->find("needle", {}, [&](bool isFound) { note("find", !isFound); });
    view->takeSnapshot({}, [&](const ImageRef& image) { note("picture", !image); });
    view->createPDF(
        [&](const PageFile& result) { note("PDF", !result.value_or("").starts_with("%PDF-")); });
    view->requestMediaPlaybackState([&](MediaPlaybackState) { note("media", false); });
    EXPECT_TRUE(counts.empty()) << "a later turn";
    if (fate == Fate::ViewGoes) view.reset();
    if (fate == Fate::Crashes) stage->crash(*view);
    EXPECT_TRUE(until([&] { return counts.size() == 7; }))
        << static_cast<int>(fate) << testing::PrintToString(counts);
    stage->pass();
    for (const auto& [question, count] : counts) EXPECT_EQ(count, 1) << question;
    EXPECT_TRUE(failures["no frame"]);
    if (fate == Fate::Lives)
      EXPECT_FALSE(failures["script"] || failures["call"] || failures["PDF"]);
    if (fate == Fate::Hangs) EXPECT_TRUE(failures["script"] && failures["call"]);
  }
}

TEST_P(AnswerContract, APromiseOfAPageThatIsLeftHasFailed) {
  const auto view = shown("http://page.test/");
  std::optional<ScriptResult> result;
  view->callAsyncJavaScript("await new Promise(() => {})", "{}", {},
                            [&](const ScriptResult& given) { result = given; });
  stage->pass();
  EXPECT_FALSE(result) << "it may take as long as it likes";
  go(*view, "http://inner.test/");
  EXPECT_TRUE(until([&] { return result.has_value(); }));
  EXPECT_FALSE(result.value_or("1"));
}

TEST_P(AnswerContract, WhatPlaysCanBeFollowedAndIsOverWithThePage) {
  const auto view = shown("http://page.test/");
  std::vector<PlayingMedia> told;
  const auto watch =
      view->observe(WebViewProperty::PlayingMedia, [&] { told.push_back(view->playingMedia()); });
  const PlayingMedia sound{.audio = true};
  stage->play(*view);
  EXPECT_TRUE(until([&] { return view->playingMedia() == sound; }));
  std::optional<MediaPlaybackState> state;
  view->requestMediaPlaybackState([&](MediaPlaybackState given) { state = given; });
  EXPECT_TRUE(until([&] { return state == MediaPlaybackState::Playing; }));
  view->pauseAllMediaPlayback();
  EXPECT_TRUE(until([&] { return view->playingMedia() == PlayingMedia(); }));
  stage->play(*view);
  EXPECT_TRUE(until([&] { return view->playingMedia() == sound; }));
  go(*view, "http://inner.test/");
  EXPECT_TRUE(until([&] { return view->playingMedia() == PlayingMedia(); }));
  EXPECT_THAT(told, ElementsAre(sound, PlayingMedia(), sound, PlayingMedia()));
}

TEST_P(AnswerContract, DataIsOfOneStoreAndGoesWhenItIsRemoved) {
  const UUID identifier = UUID::random();
  auto kept = engine.dataStoreForIdentifier(identifier);
  EXPECT_EQ(engine.dataStoreForIdentifier(identifier), kept);
  EXPECT_TRUE(kept->isPersistent());
  EXPECT_FALSE(store->isPersistent());
  const auto domains = [&](WebsiteDataStore& of) {
    std::optional<std::vector<std::string>> names;
    of.fetchDataRecords([&](const auto& records) {
      names.emplace();
      for (const auto& record : records) names->push_back(record.displayName);
    });
    EXPECT_FALSE(names);
    EXPECT_TRUE(until([&] { return names.has_value(); }));
    return names.value_or(std::vector<std::string>());
  };
  shown("http://cookie.test/", {.websiteDataStore = kept});
  EXPECT_TRUE(until([&] { return domains(*kept) == std::vector<std::string>{"cookie.test"}; }));
  EXPECT_THAT(domains(*store), IsEmpty());
  EXPECT_THAT(domains(*engine.dataStoreForIdentifier(UUID::random())), IsEmpty());
  int removed = 0;
  kept->removeData({{"cookie.test"}, {"unknown.test"}}, [&] { ++removed; });
  EXPECT_EQ(removed, 0);
  EXPECT_TRUE(until([&] { return removed == 1; }));
  EXPECT_THAT(domains(*kept), IsEmpty());

  const auto remove = [&] {
    std::optional<Result<void, std::string>> result;
    engine.removeDataStoreForIdentifier(identifier, [&](auto given) { result = given; });
    EXPECT_FALSE(result);
    EXPECT_TRUE(until([&] { return result.has_value(); }));
    return result.value_or(Failure("no answer"));
  };
  EXPECT_FALSE(remove()) << "in use";
  kept.reset();
  EXPECT_TRUE(remove());
}

TEST_P(AnswerContract, RuleListsAreKeptByNameAndEachQuestionIsAnswered) {
  const auto rules = engine.contentRuleListStore();
  const std::string good = R"([{"trigger":{"url-filter":"ads\\.test"},"action":{"type":"block"}}])";
  const auto compile = [&](const std::string& json) {
    std::optional<CompiledRules> result;
    rules->compile("contract", json, [&](const CompiledRules& given) { result = given; });
    EXPECT_FALSE(result) << "a later turn";
    EXPECT_TRUE(until([&] { return result.has_value(); }));
    return result.value_or(Failure(""));
  };
  const auto lookUp = [&] {
    std::optional<CompiledRules> result;
    rules->lookUp("contract", [&](const CompiledRules& given) { result = given; });
    EXPECT_FALSE(result);
    EXPECT_TRUE(until([&] { return result.has_value(); }));
    return result.value_or(Failure("")).value_or(nullptr);
  };
  for (const char* bad : {"", "{}", "[{\"trigger\": 5}]"}) {
    const CompiledRules refused = compile(bad);
    ASSERT_FALSE(refused) << bad;
    EXPECT_NE(refused.error(), "") << bad;
  }
  EXPECT_FALSE(lookUp());
  EXPECT_EQ(compile(good).value()->identifier(), "contract");
  EXPECT_TRUE(lookUp());
  std::optional<std::vector<std::string>> names;
  rules->getAvailableIdentifiers([&](auto given) { names = given; });
  EXPECT_TRUE(until([&] { return names.has_value(); }));
  EXPECT_THAT(names.value_or(std::vector<std::string>()), testing::Contains("contract"));
  for (const bool isThere : {true, false}) {
    std::optional<Result<void, std::string>> result;
    rules->remove("contract", [&](auto given) { result = given; });
    EXPECT_FALSE(result);
    EXPECT_TRUE(until([&] { return result.has_value(); }));
    EXPECT_EQ(result.value_or(Failure("no answer")).has_value(), isThere);
  }
  EXPECT_FALSE(lookUp());
}

TEST_P(AnswerContract, ADownloadEndsOnceHoweverItBeganAndEnds) {
  enum class End { Finishes, Cancelled, NoPlace, PlaceTaken };
  for (const bool hasPage : {true, false}) {
    for (const End end : {End::Finishes, End::Cancelled, End::NoPlace, End::PlaceTaken}) {
      const auto saving = std::make_shared<SavingDelegate>();
      delegate.downloadDelegate = saving;
      delegate.downloads.clear();
      const auto view = makeView();
      std::shared_ptr<Download> download;
      if (hasPage) {
        go(*view, "http://files.test/data.bin");
        ASSERT_TRUE(until([&] { return !delegate.downloads.empty(); }));
        download = delegate.downloads.back();
      } else {
        download = store->startDownload({.url = *URL::parse("http://files.test/data.bin")});
        download->setDelegate(saving);
      }
      int changes = 0;
      const auto watch = download->observeProgress([&] { ++changes; });
      ASSERT_TRUE(until([&] { return saving->waiting != nullptr; }));
      EXPECT_EQ(saving->suggested, "data.bin");
      EXPECT_EQ(download->originalURL(), URL::parse("http://files.test/data.bin"));
      EXPECT_EQ(download->expectedBytes(), std::string("bytes").size());
      EXPECT_EQ(download->isEphemeral(), !store->isPersistent());
      stage->pass();
      const auto place = stage->folder() / "data.bin";
      if (end == End::PlaceTaken) std::ofstream(place) << "another's";
      if (end == End::Cancelled) download->cancel();
      saving->waiting(end == End::NoPlace ? std::nullopt : std::optional(place));
      EXPECT_EQ(saving->finishes + static_cast<int>(saving->failures.size()), 0) << "a later turn";
      EXPECT_TRUE(until([&] { return saving->finishes || !saving->failures.empty(); }));
      stage->pass();
      EXPECT_EQ(saving->finishes, end == End::Finishes);
      if (end == End::Finishes) {
        EXPECT_THAT(saving->failures, IsEmpty());
        EXPECT_EQ(download->fractionCompleted(), 1);
        EXPECT_GT(changes, 0);
      } else {
        const bool isCancelled = end != End::PlaceTaken;
        EXPECT_THAT(saving->failures,
                    ElementsAre(isCancelled ? LoadError::Kind::Cancelled : LoadError::Kind::Other));
      }
      if (end == End::PlaceTaken) EXPECT_EQ(std::filesystem::file_size(place), 9u);
      std::filesystem::remove(place);
    }
  }
  EXPECT_FALSE(store->startDownload({.url = *URL::parse("mailto:x@y.org")}));
}

ORVEL_BOTH(AnswerContract);

}  // namespace
}  // namespace orvel::test
