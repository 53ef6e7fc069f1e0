#include "Support/UserDefaults.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
namespace {

constexpr auto kFile = "/config/Orvel/settings";

struct UserDefaultsTest : testing::Test {
  test::VirtualScheduler scheduler;
  std::shared_ptr<test::MemoryFileSystem> disk = std::make_shared<test::MemoryFileSystem>();
  FileWriter writer{scheduler, disk};
};

TEST_F(UserDefaultsTest, KeepsEveryTypeAcrossRuns) {
  const std::string bytes("\0\xff line\n", 8);
  const UserDefaults::List list = {"a;b", "", " blank ", "back\\slash\nline", "\xc3\xa4"};
  {
    FileUserDefaults defaults(writer, kFile);
    defaults.setBoolean("isOn", true);
    defaults.setNumber("when", 1767323045.123456);
    defaults.setText("name", "  two\nlines; \"and\" = [signs] \xc3\xa4 ");
    defaults.setText("bad", "\xff");
    defaults.setList("sites", list);
    defaults.setList("none", {});
    defaults.setData("blob", bytes);
    defaults.setText("gone", "x");
    defaults.remove("gone");
    scheduler.settle();
  }
  const FileUserDefaults defaults(writer, kFile);
  EXPECT_EQ(defaults.boolean("isOn"), true);
  EXPECT_EQ(defaults.number("when"), 1767323045.123456);
  EXPECT_EQ(defaults.text("name"), "  two\nlines; \"and\" = [signs] \xc3\xa4 ");
  EXPECT_EQ(defaults.text("bad"), "\xef\xbf\xbd");
  EXPECT_EQ(defaults.list("sites"), list);
  EXPECT_EQ(defaults.list("none"), UserDefaults::List{});
  EXPECT_EQ(defaults.data("blob"), bytes);
  EXPECT_EQ(defaults.text("gone"), std::nullopt);
}

TEST_F(UserDefaultsTest, ReadsAnotherTypeAsAbsentAndKeepsOneValueAKey) {
  FileUserDefaults defaults(writer, kFile);
  defaults.setText("key", "true");
  EXPECT_EQ(defaults.boolean("key"), std::nullopt);
  EXPECT_EQ(defaults.list("key"), std::nullopt);
  defaults.setBoolean("key", false);
  EXPECT_EQ(defaults.text("key"), std::nullopt);
  defaults.setNumber("key", NAN);
  scheduler.settle();
  EXPECT_EQ(FileUserDefaults(writer, kFile).values().size(), 0u);
}

TEST_F(UserDefaultsTest, TakesDamagedFilesForWhatIsLegibleInThem) {
  disk->put(kFile, "[Booleans]\nisOn=perhaps\nisOff=false\n[Numbers]\nn=1e999\nm=0.5\nk=1x\n");
  const FileUserDefaults partly(writer, kFile);
  EXPECT_EQ(partly.boolean("isOn"), std::nullopt);
  EXPECT_EQ(partly.boolean("isOff"), false);
  EXPECT_EQ(partly.number("n"), std::nullopt);
  EXPECT_EQ(partly.number("m"), 0.5);
  EXPECT_EQ(partly.number("k"), std::nullopt);
  disk->put(kFile, std::string("\0\xff not a key file", 18));
  FileUserDefaults defaults(writer, kFile);
  EXPECT_TRUE(defaults.values().empty());
  defaults.setBoolean("isOn", true);
  scheduler.settle();
  EXPECT_EQ(FileUserDefaults(writer, kFile).boolean("isOn"), true);
}

}  // namespace
}  // namespace orvel
