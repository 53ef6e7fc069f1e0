#include "Support/Stores/UserDefaults.h"

#include <gtest/gtest.h>

#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
namespace {

constexpr auto kFile = "/config/Orvel/settings.ini";
constexpr auto kDamaged = "/config/Orvel/settings.damaged.ini";

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

TEST_F(UserDefaultsTest, KeepsWhatIsLegibleAndTheDamagedFileBeside) {
  const struct {
    const char* name;
    std::string bytes;
    std::vector<std::string> legible;
  } cases[] = {
      {"values of other types",
       "[Booleans]\na=perhaps\nb=false\n[Numbers]\nc=1e999\nd=0.5\ne=1x\n",
       {"b", "d"}},
      {"a line that is none", "[Booleans]\na=true\nxxx\n[Texts]\nb=y\n", {"a", "b"}},
      {"a cut line", "[Texts]\na=x\n\nno", {"a"}},
      {"bytes of another file",
       "[Texts]\na=x\nb\xff=y\n" + std::string("c\0=z\n", 5) + "d=z\n",
       {"a", "d"}},
      {"a broken heading", "[Texts]\na=x\n[Num\nb=1\n[Lists]\nc=y;\n", {"a", "c"}},
      {"a changed heading", "[Texts]\na=x\n[Num\xff]\nb=1\n", {"a"}},
      {"no key file", std::string("\0\xff not a key file", 18), {}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    disk->put(kFile, test.bytes);
    FileUserDefaults defaults(writer, kFile);
    std::vector<std::string> legible;
    for (const auto& [key, value] : defaults.values()) legible.push_back(key);
    EXPECT_EQ(legible, test.legible);
    EXPECT_EQ(disk->read(kFile, ~0ull), test.bytes) << "left alone until the next change";
    defaults.setBoolean("isOn", true);
    scheduler.settle();
    EXPECT_EQ(FileUserDefaults(writer, kFile).values().size(), test.legible.size() + 1);
    EXPECT_EQ(disk->read(kDamaged, ~0ull), test.bytes);
  }
}

}  // namespace
}  // namespace orvel
