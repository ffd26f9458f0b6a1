// Inputs that fail while they are read, with the command at work on files in memory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <mutex>

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
#include "tests/support/refusing_workers.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using cli::Command;
using cli::Console;
using cli::Environment;
using cli::Exit;
using cli::makeCheckCommand;
using cli::makeInspectCommand;
using cli::makeRepairCommand;
using cli::makeSalvageCommand;
using cli::makeVerifyCommand;
using cli::Option;

using testing::HasSubstr;

/// The system's files, but for one whose reading is prepared.
class PreparedFiles final : public platform::Files {
 public:
  PreparedFiles(std::string path, std::function<std::unique_ptr<platform::ReadableFile>()> make)
      : path_(std::move(path)), make_(std::move(make)) {}
  platform::Opened<platform::ReadableFile> openForReading(const std::string& path) override {
    if (path == path_) return {make_(), {}};
    return files_.openForReading(path);
  }
  platform::Opened<platform::WritableFile> openForWriting(const std::string& path) override {
    return files_.openForWriting(path);
  }

 private:
  platform::linux_::LinuxFiles files_;
  std::string path_;
  std::function<std::unique_ptr<platform::ReadableFile>()> make_;
};

/// Ends early once its beginning has been read a few times.
class ShrinkingFile final : public platform::ReadableFile {
 public:
  explicit ShrinkingFile(std::string bytes) : whole_(std::move(bytes)) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset > 300000) whole_.cutTo(300000);
    return whole_.readAt(offset, into);
  }
  std::uint64_t size() override { return whole_.size(); }

 private:
  MemoryReadable whole_;
};

/// Does something once its data is read.
class NotifyingFile final : public platform::ReadableFile {
 public:
  NotifyingFile(std::string bytes, std::function<void()> whenRead)
      : whole_(std::move(bytes)), whenRead_(std::move(whenRead)) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset > 300000) std::call_once(told_, whenRead_);
    return whole_.readAt(offset, into);
  }
  std::uint64_t size() override { return whole_.size(); }

 private:
  MemoryReadable whole_;
  std::function<void()> whenRead_;
  std::once_flag told_;
};

/// The system's new files, which notes what comes after the content and fails where a test wants it to.
class NotedNewFiles final : public platform::NewFiles {
 public:
  platform::Opened<platform::WritableFile> createNewFile(const std::string& path) override {
    return files_.createNewFile(path);
  }
  std::error_code renameToNew(const std::string& from, const std::string& to) override {
    steps.push_back("rename to " + to);
    return files_.renameToNew(from, to);
  }
  std::error_code setPermissions(const std::string& path, std::uint32_t permissions) override {
    return files_.setPermissions(path, permissions);
  }
  std::error_code flushFolder(const std::string& folder) override {
    steps.push_back("flush " + folder);
    return flushError;
  }

  std::vector<std::string> steps;
  std::error_code flushError;

 private:
  platform::linux_::LinuxNewFiles files_;
};

/// Hangs after its front until somebody lets it go on; `whenHanging` is told first.
class HangingFile final : public platform::ReadableFile {
 public:
  struct Gate {
    std::promise<void> open;
    std::promise<void> passed;
  };
  HangingFile(std::string bytes, std::shared_ptr<Gate> gate, std::function<void()> whenHanging)
      : whole_(std::move(bytes)), gate_(std::move(gate)), whenHanging_(std::move(whenHanging)) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    if (offset + into.size() > 300000) std::call_once(told_, [this] { hang(); });
    return whole_.readAt(offset, into);
  }
  std::uint64_t size() override { return whole_.size(); }

 private:
  void hang() {
    const auto gate = gate_;
    whenHanging_();
    gate->open.get_future().wait();
    gate->passed.set_value();
  }

  MemoryReadable whole_;
  const std::shared_ptr<Gate> gate_;
  std::function<void()> whenHanging_;
  std::once_flag told_;
};

class ReadFailure : public testing::Test {
 protected:
  struct Said {
    Exit exit;
    std::string out;
    std::string err;
  };

  /// Runs a command on an input that `make` opens, with `--json`.
  Said run(std::unique_ptr<Command> command, std::function<std::unique_ptr<platform::ReadableFile>()> make) {
    writeFile(input_, bytes_);
    PreparedFiles files(input_, std::move(make));
    platform::linux_::LinuxFileManager fileManager;
    platform::linux_::LinuxMainQueue queue;
    platform::linux_::LinuxWorkers threads;
    RefusingWorkers workers(threads, refused_);
    Console console(false);
    platform::linux_::LinuxPropertyLists propertyLists;
    platform::headless::HeadlessTrialDecoder trialDecoder;
    Environment environment{.files = files,
                            .fileManager = fileManager,
                            .newFiles = newFiles_,
                            .workers = workers,
                            .mainQueue = queue,
                            .runUntil = [&](const auto& done) { queue.runUntil(done); },
                            .lookAtStorage = {},
                            .propertyLists = propertyLists,
                            .trialDecoder = trialDecoder,
                            .filmPlayer = filmPlayer_,
                            .console = console,
                            .stopRequested = stop_};
    for (const Option& option : command->options()) {
      if (option.names == "INPUT") std::get<std::vector<std::string>*>(option.target)->push_back(input_);
      if (option.names == "-f,--force") *std::get<bool*>(option.target) = force_;
      if (option.names == "FILE") *std::get<std::string*>(option.target) = input_;
      if (option.names == "--json") *std::get<bool*>(option.target) = true;
    }
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Said said{command->run(environment), {}, {}};
    console.flushResult();
    said.out = testing::internal::GetCapturedStdout();
    said.err = testing::internal::GetCapturedStderr();
    return said;
  }

  [[nodiscard]] std::function<std::unique_ptr<platform::ReadableFile>()> unreadable(std::uint64_t start,
                                                                                    std::uint64_t end) const {
    return [this, start, end] {
      auto file = std::make_unique<MemoryReadable>(bytes_);
      file->makeUnreadable(start, end);
      return file;
    };
  }

  NotedNewFiles newFiles_;
  platform::headless::HeadlessFilmPlayer filmPlayer_;
  bool force_ = false;
  platform::Relaxed<bool> stop_;
  unsigned refused_ = 0;  ///< the start of a worker that is refused; 0 for none
  const TempFolder folder_;
  const std::string input_ = folder_ / "in.avi";
  const std::string bytes_ = SmallAvi{}.bytes();
};

TEST_F(ReadFailure, UnreadableFirstByteIsAFailure) {
  const Said said = run(makeRepairCommand(), unreadable(0, 1));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("cannot be read: Input/output error."));
}

TEST_F(ReadFailure, SalvageGoesOnAfterAFirstByteThatCannotBeRead) {
  const Said said = run(makeSalvageCommand(), unreadable(0, 1));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.out, HasSubstr("\"outcome\":\"repaired\""));
  EXPECT_THAT(said.err, HasSubstr("failed, the first at byte 0: Input/output error."));
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"in-salvaged.avi", "in.avi"}));
}

TEST_F(ReadFailure, AStopOfASalvageDoesNotWaitForAReadThatHangs) {
  const auto gate = std::make_shared<HangingFile::Gate>();
  const Said said =
      run(makeSalvageCommand(), [&] { return std::make_unique<HangingFile>(bytes_, gate, [this] { stop_ = true; }); });

  // Had it waited, it would not be here.
  EXPECT_EQ(said.exit, Exit::stopped);
  EXPECT_THAT(said.err, HasSubstr("nothing was written, and it is unchanged."));
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
  gate->open.set_value();
  gate->passed.get_future().wait();
}

TEST_F(ReadFailure, UnreadableHeadersAreAFailureAndNotAWrongFile) {
  const Said said = run(makeRepairCommand(), unreadable(30, 200));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("cannot be read at byte 30: Input/output error."));
  EXPECT_THAT(said.out, HasSubstr("\"outcome\":\"failed\""));
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
}

TEST_F(ReadFailure, UnreadableDataIsLeftOutToldAndAnsweredWithThree) {
  const Said said = run(makeRepairCommand(), unreadable(400000, 401000));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.out, HasSubstr("\"outcome\":\"repaired\""));
  EXPECT_THAT(said.err, HasSubstr("What lies there is missing from the output."));
  EXPECT_EQ(said.out.find("\"read_errors\":0"), std::string::npos);
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"in-repaired.avi", "in.avi"}));
}

TEST_F(ReadFailure, CheckTellsOfUnreadableDataToo) {
  const Said said = run(makeCheckCommand(), unreadable(400000, 401000));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.out, HasSubstr("\"outcome\":\"repairable\""));
  EXPECT_THAT(said.err, HasSubstr("failed, the first at byte"));
}

TEST_F(ReadFailure, InspectGoesOnBehindUnreadableHeadersAndAnswersThree) {
  const Said said = run(makeInspectCommand(), unreadable(100, 200));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("cannot be read at byte 100: Input/output error."));
  EXPECT_THAT(said.out, HasSubstr("\"type\":\"movi\""));
  EXPECT_THAT(said.out, HasSubstr("\"stopped\":false"));
  EXPECT_THAT(said.out, testing::Not(HasSubstr("\"read_errors\":0")));
  EXPECT_THAT(said.out, testing::Not(HasSubstr("all zero")));
}

TEST_F(ReadFailure, VerifyTellsWhatCannotBeReadAndAnswersThree) {
  filmPlayer_.films.push_back({platform::PlayedStream{.kind = platform::PlayedKind::video, .hasDecoder = true}});
  const Said said = run(makeVerifyCommand(), unreadable(100, 200));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("cannot be read at byte 100: Input/output error."));
  EXPECT_THAT(said.out, HasSubstr("\"verdict\":\"unreadable\""));
}

TEST_F(ReadFailure, VerifyNeedsAPlayer) {
  const Said said = run(makeVerifyCommand(), unreadable(0, 0));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("the program zelvo-avi-player, which lies beside zelvo-avi, is missing"));
}

TEST_F(ReadFailure, VerifySaysWhenDecodersAreNotConfined) {
  filmPlayer_.films.push_back({});
  filmPlayer_.isConfined = false;
  const Said said = run(makeVerifyCommand(), unreadable(0, 0));

  EXPECT_THAT(said.err, HasSubstr("the decoders were not confined"));
  EXPECT_THAT(said.out, HasSubstr("\"confined\":false"));
}

TEST_F(ReadFailure, VerifyEndsWithAStop) {
  filmPlayer_.films.push_back({});
  stop_ = true;
  EXPECT_EQ(run(makeVerifyCommand(), unreadable(0, 0)).exit, Exit::stopped);
}

TEST_F(ReadFailure, InputThatShrinksMeanwhileIsAFailureWithoutOutput) {
  const Said said = run(makeRepairCommand(), [this] { return std::make_unique<ShrinkingFile>(bytes_); });

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("became shorter while it was read"));
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
}

TEST_F(ReadFailure, InputThatVanishesMeanwhileIsStillRead) {
  const Said said = run(makeRepairCommand(), [this] {
    auto file = std::make_unique<MemoryReadable>(bytes_);
    EXPECT_EQ(std::remove(input_.c_str()), 0);
    return file;
  });

  EXPECT_EQ(said.exit, Exit::done) << said.err;
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"in-repaired.avi"});
}

TEST_F(ReadFailure, OutputThatBecomesTheInputMeanwhileIsNotReplaced) {
  force_ = true;
  const std::string output = folder_ / "in-repaired.avi";
  const Said said = run(makeRepairCommand(), [&] {
    return std::make_unique<NotifyingFile>(bytes_, [&] { std::filesystem::create_hard_link(input_, output); });
  });

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr(output + " leads to " + input_ + " by now"));
  EXPECT_TRUE(std::filesystem::equivalent(input_, output));
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"in-repaired.avi", "in.avi"}));
}

TEST_F(ReadFailure, FolderIsFlushedAfterTheRename) {
  const Said said = run(makeRepairCommand(), unreadable(0, 0));

  EXPECT_EQ(said.exit, Exit::done);
  EXPECT_EQ(newFiles_.steps,
            (std::vector<std::string>{"rename to " + (folder_ / "in-repaired.avi"), "flush " + folder_.path()}));
}

TEST_F(ReadFailure, FolderThatCannotBeFlushedIsWarnedOf) {
  newFiles_.flushError = std::make_error_code(std::errc::io_error);
  const Said said = run(makeRepairCommand(), unreadable(0, 0));

  EXPECT_EQ(said.exit, Exit::done);
  EXPECT_THAT(said.out, HasSubstr("\"outcome\":\"repaired\""));
  EXPECT_THAT(said.err, HasSubstr("a power cut could still take its name from it: Input/output error."));
}

// ---- No thread, no memory ----

TEST_F(ReadFailure, AnyThreadThatIsRefusedIsAFailureWithoutOutput) {
  // The run and the helper of the copy; a small input is scanned without a helper.
  for (refused_ = 1; refused_ <= 2; ++refused_) {
    SCOPED_TRACE(refused_);
    const Said said = run(makeRepairCommand(), unreadable(0, 0));

    EXPECT_EQ(said.exit, Exit::ioFailed);
    EXPECT_THAT(said.err, HasSubstr("the system gives no thread (Resource temporarily unavailable) for " + input_));
    EXPECT_THAT(said.out, HasSubstr("\"outcome\":\"failed\""));
    EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
  }
}

TEST_F(ReadFailure, CheckWithoutAThreadIsAFailureToo) {
  refused_ = 1;
  const Said said = run(makeCheckCommand(), unreadable(0, 0));

  EXPECT_EQ(said.exit, Exit::ioFailed);
  EXPECT_THAT(said.err, HasSubstr("the system gives no thread"));
}

TEST_F(ReadFailure, MemoryThatLacksIsAFailureWithoutOutput) {
  for (auto* const command : {&makeRepairCommand, &makeCheckCommand}) {
    const Said said =
        run(command(), [this] { return std::make_unique<NotifyingFile>(bytes_, [] { throw std::bad_alloc(); }); });

    EXPECT_EQ(said.exit, Exit::ioFailed);
    EXPECT_THAT(said.err, HasSubstr("there is not enough memory for " + input_));
    EXPECT_THAT(said.err, testing::Not(HasSubstr("warning")));
    EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.avi"});
  }
}

}  // namespace
}  // namespace zelvo::tests
