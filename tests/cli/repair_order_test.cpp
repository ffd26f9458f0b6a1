// The end of a repair, step by step: what is flushed before a name is given, and stops that come between two steps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/environment.h"
#include "platform/headless/film_player.h"
#include "platform/headless/trial_decoder.h"
#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/new_files.h"
#include "platform/linux/property_lists.h"
#include "platform/linux/workers.h"
#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using cli::Console;
using cli::Environment;
using cli::Exit;
using cli::makeRepairCommand;
using cli::Option;

using testing::ElementsAre;
using testing::HasSubstr;
using Steps = std::vector<std::string>;

/// A file of the system that notes when it is flushed and closed. One thread at a time does either.
class NotedFile final : public platform::WritableFile {
 public:
  NotedFile(std::unique_ptr<platform::WritableFile> file, Steps& steps) : file_(std::move(file)), steps_(steps) {}
  platform::IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override {
    return file_->writeAt(offset, from);
  }
  std::error_code reserve(std::uint64_t size) override { return file_->reserve(size); }
  std::error_code truncate(std::uint64_t size) override { return file_->truncate(size); }
  std::error_code flush() override {
    steps_.emplace_back("flush the content");
    return file_->flush();
  }
  std::error_code close() override {
    steps_.emplace_back("close");
    return file_->close();
  }

 private:
  std::unique_ptr<platform::WritableFile> file_;
  Steps& steps_;
};

class PartlyUnreadableFiles final : public platform::Files {
 public:
  platform::Opened<platform::ReadableFile> openForReading(const std::string& path) override {
    if (!unreadable.empty() && path.find(unreadable) != std::string::npos) {
      auto file = std::make_unique<MemoryReadable>(std::string(100000, 'x'));
      file->makeUnreadable(99000, 100000);
      return {std::move(file), {}};
    }
    return files_.openForReading(path);
  }

  std::string unreadable;  ///< what is in the paths whose last 1000 of 100000 bytes cannot be read
  platform::Opened<platform::WritableFile> openForWriting(const std::string& path) override {
    return files_.openForWriting(path);
  }

 private:
  platform::linux_::LinuxFiles files_;
};

class NotedNames final : public platform::NewFiles {
 public:
  explicit NotedNames(Steps& steps) : steps_(steps) {}
  platform::Opened<platform::WritableFile> createNewFile(const std::string& path) override {
    auto created = names_.createNewFile(path);
    if (created.file) created.file = std::make_unique<NotedFile>(std::move(created.file), steps_);
    return created;
  }
  std::error_code renameToNew(const std::string& from, const std::string& to) override {
    steps_.push_back("name " + to);
    return names_.renameToNew(from, to);
  }
  std::error_code setPermissions(const std::string& path, std::uint32_t permissions) override {
    return names_.setPermissions(path, permissions);
  }
  std::error_code flushFolder(const std::string& folder) override {
    steps_.push_back("flush " + folder);
    if (whenFolderIsFlushed) whenFolderIsFlushed();
    return names_.flushFolder(folder);
  }

  std::function<void()> whenFolderIsFlushed;

 private:
  platform::linux_::LinuxNewFiles names_;
  Steps& steps_;
};

class RepairOrder : public testing::Test {
 protected:
  void SetUp() override {
    for (const std::string& input : {one_, other_}) writeFile(input, SmallAvi{}.bytes());
  }

  Exit repair(const std::vector<std::string>& inputs, const std::string& into = {}) {
    PartlyUnreadableFiles files;
    files.unreadable = unreadable_;
    platform::linux_::LinuxFileManager fileManager;
    platform::linux_::LinuxMainQueue queue;
    platform::linux_::LinuxWorkers workers;
    Console console(false);
    platform::linux_::LinuxPropertyLists propertyLists;
    platform::headless::HeadlessTrialDecoder trialDecoder;
    platform::headless::HeadlessFilmPlayer filmPlayer;
    Environment environment{.files = files,
                            .fileManager = fileManager,
                            .newFiles = names_,
                            .workers = workers,
                            .mainQueue = queue,
                            .runUntil =
                                [&](const auto& done) {
                                  queue.runUntil(done);
                                  if (whenRunHasEnded_) whenRunHasEnded_();
                                },
                            .lookAtStorage = {},
                            .propertyLists = propertyLists,
                            .trialDecoder = trialDecoder,
                            .filmPlayer = filmPlayer,
                            .console = console,
                            .stopRequested = stop_};
    const auto command = makeRepairCommand();
    for (const Option& option : command->options()) {
      if (option.names == "INPUT") *std::get<std::vector<std::string>*>(option.target) = inputs;
      if (option.names == "--into" && !into.empty()) *std::get<std::optional<std::string>*>(option.target) = into;
    }
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const Exit exit = command->run(environment);
    console.flushResult();
    out_ = testing::internal::GetCapturedStdout();
    err_ = testing::internal::GetCapturedStderr();
    return exit;
  }

  Steps steps_;
  NotedNames names_{steps_};
  std::function<void()> whenRunHasEnded_;
  platform::Relaxed<bool> stop_;
  std::string unreadable_;
  std::string out_;
  std::string err_;
  const TempFolder folder_;
  const std::string one_ = folder_ / "one.avi";
  const std::string other_ = folder_ / "other.avi";
};

TEST_F(RepairOrder, ContentIsFlushedBeforeItsNameIsGivenAndTheFolderAfterwards) {
  EXPECT_EQ(repair({one_}), Exit::done) << err_;

  EXPECT_THAT(steps_, ElementsAre("flush the content", "close", "name " + (folder_ / "one-repaired.avi"),
                                  "flush " + folder_.path()));
}

TEST_F(RepairOrder, PaddedCopyIsFlushedBeforeItsNameIsGivenAndBothFoldersAfterwards) {
  EXPECT_EQ(repair({one_}, folder_ / "Repaired"), Exit::done) << err_;

  EXPECT_THAT(steps_, ElementsAre("flush the content", "close", "name " + (folder_ / "Repaired/repaired.avi"),
                                  "flush " + (folder_ / "Repaired"), "flush " + folder_.path()));
}

TEST_F(RepairOrder, RebuiltFileThatCannotBeReadBackIsAFailureThatLeavesNothing) {
  unreadable_ = "/.zelvo-avi-";

  EXPECT_EQ(repair({one_}, folder_ / "Repaired"), Exit::ioFailed);

  EXPECT_THAT(err_, HasSubstr("the rebuilt file could not be read back: 1,000 bytes missing, Input/output error."));
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "Repaired"));
}

TEST_F(RepairOrder, StopBetweenTwoInputsLeavesTheSecondNotBegun) {
  names_.whenFolderIsFlushed = [this] { stop_ = true; };  // the last step of the first

  EXPECT_EQ(repair({one_, other_}), Exit::stopped);

  EXPECT_THAT(out_, HasSubstr("2 inputs: 1 repaired, 1 not started.\n"));
  EXPECT_THAT(folder_.names(), ElementsAre("one-repaired.avi", "one.avi", "other.avi"));
}

TEST_F(RepairOrder, StopBetweenTheWorkAndTheNameLeavesNothing) {
  whenRunHasEnded_ = [this] { stop_ = true; };

  EXPECT_EQ(repair({one_}), Exit::stopped);

  EXPECT_THAT(steps_, ElementsAre("flush the content", "close"));
  EXPECT_THAT(err_, HasSubstr("nothing was written, and it is unchanged."));
  EXPECT_THAT(folder_.names(), ElementsAre("one.avi", "other.avi"));
}

}  // namespace
}  // namespace zelvo::tests
