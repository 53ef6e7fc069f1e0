#include "Base/FileWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
namespace {

using test::MemoryFileSystem;
using test::VirtualScheduler;
using testing::ElementsAre;
using testing::Pair;
using Fault = MemoryFileSystem::Fault;

constexpr auto kFile = "/data/Orvel/session.json";

struct FileWriterTest : testing::Test {
  VirtualScheduler scheduler;
  std::shared_ptr<MemoryFileSystem> disk = std::make_shared<MemoryFileSystem>();
  FileWriter writer{scheduler, disk};
  std::vector<std::string> log;

  FileWriter::Completion note(std::string name) {
    return [this, name](const WriteResult& result) {
      static constexpr const char* kOutcomes[] = {"done", "overtaken", "failed"};
      log.push_back(fmt::format("{} {}", name, kOutcomes[static_cast<int>(result.outcome)]));
    };
  }
};

TEST_F(FileWriterTest, TheNewestOfWaitingWritesWins) {
  writer.write(kFile, "one", note("one"));
  writer.write(
      kFile, [&] { return log.emplace_back("made"); }, note("two"));
  writer.write("/data/other", "x", note("other"));
  const std::string late = "three";
  writer.write(
      kFile, [&] { return late; }, note("three"));
  scheduler.settle();
  EXPECT_THAT(disk->contents(), ElementsAre(Pair(kFile, "three"), Pair("/data/other", "x")))
      << "nothing lies beside them";
  EXPECT_THAT(log, testing::UnorderedElementsAre("one overtaken", "two overtaken", "three done",
                                                 "other done"));
}

TEST_F(FileWriterTest, RemovesInOrderWithWrites) {
  writer.write(kFile, "one");
  writer.remove(kFile);
  scheduler.settle();
  EXPECT_FALSE(disk->exists(kFile));
  writer.remove(kFile);
  writer.write(kFile, "two");
  scheduler.settle();
  EXPECT_EQ(disk->read(kFile, 100), "two");
}

TEST_F(FileWriterTest, ReportsFailuresKeepsTheOldFileAndTriesAgain) {
  writer.write(kFile, "old");
  scheduler.settle();
  disk->failAlways(Fault::DiskFull);
  writer.write(kFile, "new contents", note("write"));
  scheduler.settle();
  disk->failAlways(Fault::None);
  EXPECT_EQ(disk->read(kFile, 100), "old");
  EXPECT_THAT(log, ElementsAre("write failed"));
  writer.write(kFile, "new contents");
  scheduler.settle();
  EXPECT_EQ(disk->read(kFile, 100), "new contents");
}

TEST_F(FileWriterTest, AFaultAtAnyStepLeavesTheOldFileOrTheNewOne) {
  enum class Ending { StepFails, Kill, PowerCut };
  const std::pair<Fault, Ending> endings[] = {{Fault::DiskFull, Ending::StepFails},
                                              {Fault::InputOutput, Ending::StepFails},
                                              {Fault::Killed, Ending::Kill},
                                              {Fault::Killed, Ending::PowerCut}};
  for (const auto& [fault, ending] : endings) {
    bool sawOld = false;
    bool sawNew = false;
    for (int step = 0; step <= 4; ++step) {
      MemoryFileSystem files;
      ASSERT_FALSE(files.createFolders("/data/Orvel"));
      ASSERT_FALSE(writeAtomically(files, kFile, "the old contents"));
      files.failAtStep(step, fault);
      const std::error_code error = writeAtomically(files, kFile, "the new contents");
      EXPECT_EQ(static_cast<bool>(error), step < 4) << "a step without a check";
      if (ending == Ending::StepFails) files.failAlways(Fault::None);
      if (ending == Ending::Kill) files.restartAfterKill();
      if (ending == Ending::PowerCut) files.restartAfterPowerCut();
      const std::string left = files.read(kFile, 100).value_or("missing");
      EXPECT_THAT(left, testing::AnyOf("the old contents", "the new contents")) << "step " << step;
      sawOld |= left == "the old contents";
      sawNew |= left == "the new contents";
      EXPECT_FALSE(writeAtomically(files, kFile, "next")) << "leftovers of step " << step;
      EXPECT_EQ(files.read(kFile, 100), "next");
    }
    EXPECT_TRUE(sawOld && sawNew);
  }
}

TEST_F(FileWriterTest, DrainsWhatIsWaitingWithoutATurn) {
  writer.write(kFile, "one", note("one"));
  EXPECT_FALSE(writer.drain(0s)) << "nothing is begun after the deadline";
  EXPECT_FALSE(disk->exists(kFile));
  EXPECT_TRUE(writer.drain(2s));
  EXPECT_EQ(disk->read(kFile, 100), "one");
  EXPECT_THAT(log, ElementsAre("one done"));
  scheduler.settle();
  EXPECT_EQ(log.size(), 1u);
}

struct DiskTest : testing::Test {
  std::filesystem::path folder;
  std::shared_ptr<FileSystem> disk = FileSystem::disk();
  void SetUp() override {
    char name[] = "/tmp/orvel-disk-XXXXXX";
    folder = mkdtemp(name);
  }
  void TearDown() override { std::filesystem::remove_all(folder); }
};

TEST_F(DiskTest, WritesReadsListsAndRemoves) {
  const auto file = folder / "a" / "b.json";
  ASSERT_FALSE(writeAtomically(*disk, file, "text"));
  EXPECT_EQ(disk->read(file), "text");
  EXPECT_EQ(disk->read(file, 3), std::nullopt) << "larger than the limit";
  EXPECT_EQ(disk->read(folder), std::nullopt) << "a folder is no file";
  EXPECT_THAT(disk->list(folder / "a"), ElementsAre("b.json"));
  EXPECT_FALSE(disk->remove(file));
  EXPECT_FALSE(disk->remove(file)) << "removing what is gone succeeds";
  EXPECT_FALSE(disk->exists(file));
  EXPECT_TRUE(disk->list(folder / "none").empty());
}

TEST_F(DiskTest, KeepsFilesPrivateIsNotHeldUpByPipesAndReportsFailures) {
  const auto file = folder / "private";
  ASSERT_FALSE(writeAtomically(*disk, file, "x"));
  EXPECT_EQ(writeAtomically(*disk, file / "below", "x"), std::errc::not_a_directory);
  struct stat status {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(disk->read(folder / "pipe"), std::nullopt);
}

}  // namespace
}  // namespace orvel
