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
using Fault = MemoryFileSystem::Fault;

constexpr auto kFile = "/data/Orvel/session.json";

struct FileWriterTest : testing::Test {
  VirtualScheduler scheduler;
  std::shared_ptr<MemoryFileSystem> disk = std::make_shared<MemoryFileSystem>();
  FileWriter writer{scheduler, disk};
  std::vector<std::string> log, order;

  FileWriter::Completion note(std::string name) {
    return [this, name](const WriteResult& result) {
      const char* outcome = !result                         ? "failed"
                            : *result == Written::Overtaken ? "overtaken"
                                                            : "done";
      log.push_back(fmt::format("{} {}", name, outcome));
    };
  }
};

TEST_F(FileWriterTest, TheNewestOfWaitingWritesWinsAndKeepsItsPlace) {
  const auto add = [&](const char* path) {
    return FileWriter::Request{path,
                               [this, path](FileSystem&) {
                                 order.push_back(path);
                                 return std::error_code();
                               },
                               note(path)};
  };
  using Paths = std::vector<const char*>;
  const struct {
    const char* name;
    std::vector<Paths> asked;
    std::vector<std::string> carriedOut;
    size_t overtaken;
  } cases[] = {
      {"in the order of asking", {{"s"}, {"b"}, {"a"}}, {"s", "b", "a"}, 0},
      {"asked for again and again", {{"s"}, {"a"}, {"s"}, {"a"}, {"s"}}, {"s", "a"}, 3},
      {"what belongs together", {{"a"}, {"s", "a"}, {"b"}, {"s"}}, {"s", "a", "b"}, 2},
      {"in another order", {{"b"}, {"s", "a"}, {"c"}, {"a", "s"}}, {"b", "a", "s", "c"}, 2},
      {"with more", {{"s"}, {"b"}, {"copy", "s", "a"}}, {"copy", "s", "a", "b"}, 1},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    order.clear();
    log.clear();
    for (const Paths& paths : test.asked) {
      std::vector<FileWriter::Request> together;
      for (const char* path : paths) together.push_back(add(path));
      writer.carryOut(std::move(together));
    }
    scheduler.settle();
    EXPECT_EQ(order, test.carriedOut);
    EXPECT_EQ(std::ranges::count_if(log, [](auto& l) { return l.ends_with("overtaken"); }),
              static_cast<int64_t>(test.overtaken));
    EXPECT_EQ(log.size(), test.carriedOut.size() + test.overtaken) << "each is told once";
  }
  for (const char* path : {"a", "b", "s"}) writer.carryOut({add(path)});
  order.clear();
  EXPECT_TRUE(writer.drain(2s, "s"));
  EXPECT_THAT(order, ElementsAre("s", "a", "b")) << "the end has one that comes first";
}

TEST_F(FileWriterTest, ASlowDiskAndOtherWorkHoldNoFileUp) {
  disk->put(kFile, "former");
  disk->put("/data/Orvel/a file asked for in each frame", "");
  disk->beforeStep = [&] { scheduler.spend(5ms); };
  scheduler.runInBackground([&] { scheduler.spend(10s); }, [] {}, WorkPriority::UserInitiated);
  scheduler.advance(1ms);
  writer.write(kFile, "present");
  for (int frame = 0; frame < 10; ++frame) {
    writer.write("/data/Orvel/a file asked for in each frame", std::to_string(frame));
    scheduler.advance(16ms);
  }
  EXPECT_EQ(disk->read(kFile, 100), "present");
}

TEST_F(FileWriterTest, WhatBelongsTogetherFailsTogether) {
  ASSERT_FALSE(disk->createFolders("/data/Orvel"));
  disk->failAtStep(0, Fault::DiskFull);
  const auto text = [] { return std::string("x"); };
  writer.carryOut({FileWriter::writing(kFile, text, note("one")),
                   FileWriter::writing("/data/Orvel/other", text, note("two"))});
  scheduler.settle();
  EXPECT_THAT(log, ElementsAre("one failed", "two failed"));
  EXPECT_THAT(disk->contents(), testing::IsEmpty());
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
      EXPECT_EQ(static_cast<bool>(error), step < 3) << "done once it has its name";
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
  EXPECT_EQ(disk->read(file, 3).error(), std::errc::file_too_large);
  EXPECT_EQ(disk->read(folder).error(), std::errc::is_a_directory);
  EXPECT_TRUE(isMissing(disk->read(folder / "none").error()));
  EXPECT_TRUE(isMissing(disk->read(file / "below").error()));
  EXPECT_FALSE(isMissing(disk->read(folder).error()));
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
  EXPECT_FALSE(disk->read(folder / "pipe"));
}

TEST_F(DiskTest, LeavesAUsersFilesAsTheyAre) {
  const auto read = [&](const char* name) { return disk->read(folder / name).value_or(""); };
  const auto mode = [&](const char* name) {
    struct stat status {};
    return stat((folder / name).c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
  };
  std::ofstream(folder / "x.pdf.new") << "a neighbor";
  std::ofstream(folder / "shared.pdf") << "old";
  ASSERT_EQ(chmod((folder / "shared.pdf").c_str(), 0664), 0);
  ASSERT_EQ(symlink("shared.pdf", (folder / "link.pdf").c_str()), 0);
  const mode_t mask = umask(022);
  for (const char* name : {"x.pdf", "link.pdf"})
    EXPECT_TRUE(disk->writeForUser(folder / name, "new"));
  umask(mask);
  EXPECT_EQ(read("x.pdf") + read("shared.pdf"), "newnew");
  EXPECT_EQ(mode("x.pdf"), 0644u);
  EXPECT_EQ(mode("shared.pdf"), 0664u);
  EXPECT_EQ(read("x.pdf.new"), "a neighbor");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.pdf"));
  EXPECT_EQ(disk->list(folder).size(), 4u) << "nothing else is left";
  EXPECT_NE(disk->writeForUser(folder / "none" / "x.pdf", "new").error(), "");
}

}  // namespace
}  // namespace orvel
