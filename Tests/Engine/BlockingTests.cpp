#include <gmock/gmock.h>

#include "Engine/WebKitGtk/Rules/HidingRules.h"
#include "Engine/WebKitGtk/Rules/RuleListSeal.h"
#include "Tests/Engine/BlockingTest.h"

namespace orvel {
namespace {

using test::BlockingTest;
using test::eventually;
using test::RecordingDelegate;

// What the compiler gets

TEST(HidingRulesTest, AreForDocumentsUnlessTheySayOtherwise) {
  const std::string hides = R"(},"action":{"type":"css-display-none","selector":".a"}})";
  const std::string any = R"({"trigger":{"url-filter":".*")";
  const std::string images = any + R"(,"resource-type":["image"])";
  const std::string documents = any + R"(,"resource-type":["document"])";
  const std::string blocks = any + R"(},"action":{"type":"block"}})";
  // A text that only looks like a rule.
  const std::string quotes = any + R"(},"action":{"type":"block","x":"},\"action\":{\"type\":"}})";
  EXPECT_EQ(hidingRulesForDocuments("[" + any + hides + "," + blocks + "," + images + hides + "," +
                                    quotes + "," + any + hides + "]"),
            "[" + documents + hides + "," + blocks + "," + images + hides + "," + quotes + "," +
                documents + hides + "]");
  for (const std::string odd : {"", "[]", "},\"action\":{\"type\":\"css-display-none\""})
    EXPECT_EQ(hidingRulesForDocuments(odd), odd);
}

// Lists of a few lines

struct SmallListTest : BlockingTest {
  SmallListTest() {
    ship("easylist",
         "||ads.test^\n##.banner\n@@||ads.test/allowed.js\nfriend.test#@#.banner\n"
         "@@||trusted.test^$document\n");
    for (const char* site : {"news.test", "friend.test", "trusted.test", "sub.news.test"})
      server.serve(fmt::format("http://{}/", site),
                   "<title>x</title><script src=http://ads.test/ad.js></script>"
                   "<script src=http://ads.test/allowed.js></script>"
                   "<div id=banner class=banner>Buy</div>");
  }
  // What the page of a site shows and asks for: "ad", "allowed" and "banner".
  std::string seen(WebView& view, const std::string& url) {
    server.clearRequests();
    visit(view, url);
    std::string parts;
    if (server.requestCount("http://ads.test/ad.js")) parts += "ad ";
    if (server.requestCount("http://ads.test/allowed.js")) parts += "allowed ";
    if (display(view, "banner") == "\"block\"") parts += "banner";
    return parts;
  }
};

TEST_F(SmallListTest, BlocksButForExceptionsAndPauses) {
  start();
  const auto view = makePage();
  constexpr auto kAll = "ad allowed banner";
  EXPECT_EQ(seen(*view, "http://news.test/"), "allowed ");
  EXPECT_EQ(seen(*view, "http://friend.test/"), "allowed banner");
  EXPECT_EQ(seen(*view, "http://trusted.test/"), kAll);

  EXPECT_TRUE(blocker->togglePause(*URL::parse("http://www.news.test/")));
  EXPECT_EQ(seen(*view, "http://news.test/"), kAll);
  EXPECT_EQ(seen(*view, "http://sub.news.test/"), kAll);
  EXPECT_EQ(seen(*view, "http://friend.test/"), "allowed banner") << "no other site is paused";
  EXPECT_FALSE(blocker->togglePause(*URL::parse("http://sub.news.test/")));
  EXPECT_EQ(seen(*view, "http://news.test/"), "allowed ");

  blocker->setEnabled(false);
  EXPECT_EQ(seen(*view, "http://news.test/"), kAll);
  EXPECT_EQ(seen(*view, "http://friend.test/"), kAll);
}

TEST_F(SmallListTest, KeepsTheEnginesOwnMeansThroughEveryInstall) {
  start();
  RecordingDelegate delegate;
  const auto view =
      makePage({.preferredHTTPSNavigationPolicy = HTTPSNavigationPolicy::AutomaticFallbackToHTTP,
                .isGlobalPrivacyControlEnabled = true});
  delegate.attachTo(*view);
  // The server signs a certificate for each host that is tried over https.
  const auto hostsTriedOverHTTPS = [&] {
    int count = 0;
    for (const auto& [name, bytes] : test::filesIn(server.authority().parent_path()))
      count += name.starts_with("leaf-");
    return count;
  };
  int round = 0;
  const auto expectAll = [&](const char* when) {
    SCOPED_TRACE(when);
    const std::string url = fmt::format("http://upgrade{}.test/", ++round);
    server.serve(url,
                 "<title>x</title><a href=http://target.test:8080/ "
                 "style='position:fixed;inset:0'>Go</a>");
    const int before = hostsTriedOverHTTPS();
    server.clearRequests();
    visit(*view, url);
    ASSERT_TRUE(eventually([&] { return server.requestCount(url) > 0; }));
    EXPECT_GT(hostsTriedOverHTTPS(), before);
    EXPECT_EQ(server.requests().back().headers.count("sec-gpc"), 1u);
    EXPECT_EQ(evaluate(*view, "navigator.globalPrivacyControl"), "true");
    // The script that reports clicks is what tells the frame that is clicked in.
    delegate.actions.clear();
    ASSERT_TRUE(g_spawn_command_line_sync("xdotool mousemove 300 300 click 1", nullptr, nullptr,
                                          nullptr, nullptr));
    EXPECT_TRUE(eventually([&] {
      return std::any_of(delegate.actions.begin(), delegate.actions.end(), [](const auto& action) {
        return action.navigationType == NavigationType::LinkActivated && action.sourceFrame &&
               action.targetFrame && action.targetFrame->isMainFrame;
      });
    }));
  };
  expectAll("with blocking");
  blocker->setEnabled(false);
  expectAll("without blocking");
  blocker->setEnabled(true);
  blocker->setCookieRejectionEnabled(false);
  expectAll("with the rules against pop-ups");
  blocker->togglePause(*URL::parse(fmt::format("http://upgrade{}.test/", round + 1)));
  expectAll("on a paused site");
}

// What may happen to compiled lists

struct CompiledListTest : BlockingTest {
  // A compiler that counts its runs and does what the test says.
  const std::filesystem::path script = folder.path / "compiler";
  const std::filesystem::path runs = folder.path / "runs";

  CompiledListTest() {
    setCompiler("exec " + compiler().string() + " \"$@\"");
    useStore(folder.path / "Rules", script);
    for (const char* host : {"one", "two"})
      server.serve(fmt::format("http://{}.test/ad.js", host), "1");
    server.serve("http://news.test/",
                 "<title>x</title><script src=http://one.test/ad.js></script>"
                 "<script src=http://two.test/ad.js></script>");
  }
  void setCompiler(const std::string& command) {
    write(script, fmt::format("#!/bin/sh\necho run >>{}\n{}\n", runs.string(), command));
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
  }
  int runCount() {
    const auto text = disk->read(runs);
    return text ? static_cast<int>(std::count(text->begin(), text->end(), '\n')) : 0;
  }
  std::filesystem::path compiledFile() { return rules / ruleFiles("ContentRuleList-").at(0); }
  std::string identifier() { return blocker->ruleLists.peek().at(0).list->identifier(); }

  bool blocks(const std::string& host) {
    server.clearRequests();
    const auto view = makeView({.userContentController = blocker->makeUserContentController()});
    visit(*view, "http://news.test/");
    return server.requestCount(fmt::format("http://{}.test/ad.js", host)) == 0;
  }
};

TEST_F(CompiledListTest, StaysInForceWhenItsSuccessorCannotBeCompiled) {
  ship("easylist", "||one.test^\n");
  start();
  EXPECT_EQ(runCount(), 1);
  EXPECT_TRUE(blocks("one"));
  EXPECT_FALSE(blocks("two"));

  ship("easylist", "||two.test^\n");
  const std::string failures[] = {
      "kill -9 $$",
      "echo refused; exit 1",
      "exit 0",
      "echo '[' >\"$1/rules\"; " + compiler().string() + " \"$@\" <\"$1/rules\"",
      "head -c 100 /dev/zero >\"$1/ContentRuleList-$2\"; kill -9 $$",
  };
  for (const std::string& failure : failures) {
    SCOPED_TRACE(failure);
    setCompiler(failure);
    start();
    EXPECT_TRUE(blocks("one"));
    EXPECT_FALSE(blocks("two"));
    EXPECT_EQ(ruleFiles("ContentRuleList-").size(), 1u);
    EXPECT_TRUE(eventually([&] { return ruleFiles("compile-").empty(); }));
  }
  std::filesystem::remove(script);
  start();
  EXPECT_TRUE(blocks("one"));

  setCompiler("exec " + compiler().string() + " \"$@\"");
  start();
  EXPECT_FALSE(blocks("one"));
  EXPECT_TRUE(blocks("two"));
  EXPECT_TRUE(eventually([&] { return ruleFiles("ContentRuleList-").size() == 1; }));
  EXPECT_TRUE(eventually([&] { return ruleFiles("Seal-").size() == 1; }));
}

TEST_F(CompiledListTest, IsCompiledAgainWhenItsFileIsNotWhatWasWritten) {
  ship("easylist", "||one.test^\n");
  start();
  const std::string good = disk->read(compiledFile()).value();
  std::string flipped = good;
  flipped[flipped.size() / 2] ^= 0x10;
  int expectedRuns = 1;
  for (const std::string& bytes : {flipped, std::string(), good.substr(0, good.size() - 1)}) {
    write(compiledFile(), bytes);
    useStore(rules, script);
    start();
    EXPECT_EQ(runCount(), ++expectedRuns);
    EXPECT_TRUE(blocks("one"));
    EXPECT_EQ(disk->read(compiledFile()), good);
  }
  ASSERT_FALSE(disk->remove(rules / ruleFiles("Seal-").at(0)));
  start();
  EXPECT_EQ(runCount(), ++expectedRuns) << "without a seal nothing is known of a file";
  useStore(rules, script);
  start();
  EXPECT_EQ(runCount(), expectedRuns) << "unchanged lists are only loaded";
  EXPECT_TRUE(blocks("one"));
}

TEST_F(CompiledListTest, LosesItsSealWhenReadingItThroughFindsDamage) {
  ship("easylist", "||one.test^\n");
  start();
  const auto state = [&] { return rule_list_seal::check(rules, identifier(), "1.2.3"); };
  ASSERT_TRUE(rule_list_seal::seal(rules, identifier(), "1.2.3"));
  rule_list_seal::breakIfDamaged(rules, identifier());
  EXPECT_EQ(state().state, rule_list_seal::Check::State::Intact);

  // A byte that changes with nobody writing.
  const auto time = std::filesystem::last_write_time(compiledFile());
  std::string bytes = disk->read(compiledFile()).value();
  bytes[bytes.size() / 2] ^= 0x10;
  write(compiledFile(), bytes);
  std::filesystem::last_write_time(compiledFile(), time);
  EXPECT_TRUE(state().isUnread);
  rule_list_seal::breakIfDamaged(rules, identifier());
  EXPECT_EQ(state().state, rule_list_seal::Check::State::Broken);
}

TEST_F(CompiledListTest, OutlivesAnUpdateOfTheEngineUnlessItsFormatChanged) {
  ship("easylist", "||one.test^\n");
  start();
  const std::string good = disk->read(compiledFile()).value();
  ASSERT_TRUE(rule_list_seal::seal(rules, identifier(), "1.2.3"));
  start();
  EXPECT_EQ(runCount(), 1);
  EXPECT_TRUE(blocks("one"));

  std::string outdated = good;
  ++outdated[0];
  write(compiledFile(), outdated);
  ASSERT_TRUE(rule_list_seal::seal(rules, identifier(), "1.2.3"));
  start();
  EXPECT_EQ(runCount(), 2);
  EXPECT_TRUE(blocks("one"));
  EXPECT_EQ(disk->read(compiledFile()), good);
}

TEST_F(CompiledListTest, ClearsAwayWhatAnInterruptedRunLeft) {
  // A folder that no other store is clearing meanwhile.
  const auto left = folder.path / "Left";
  write(left / "compile-abcdef" / "ContentRuleList-x", "half");
  useStore(left, script);
  EXPECT_TRUE(eventually([&] { return ruleFiles("compile-").empty(); }));
}

}  // namespace
}  // namespace orvel
