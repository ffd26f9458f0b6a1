#include "salvage/batch_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sstream>

#include "platform/linux/file_manager.h"
#include "platform/linux/locked_files.h"
#include "tests/support/temp_folder.h"

namespace zelvo::salvage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kHidden = ".zelvo-avi-0123456789abcdef01234567.part";

/// Locks are the system's own; texts take so many lines, and then there is no room.
class ShortTexts final : public platform::LockedFiles {
 public:
  class Text final : public platform::LockedText {
   public:
    Text(ShortTexts& all, std::unique_ptr<platform::LockedText> text) : all_(all), text_(std::move(text)) {}
    std::uint64_t size() override { return text_->size(); }
    platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
      return text_->readAt(offset, into);
    }
    std::error_code append(std::string_view text) override {
      if (all_.room-- <= 0) return std::make_error_code(std::errc::no_space_on_device);
      return text_->append(text);
    }
    std::error_code cutTo(std::uint64_t size) override { return text_->cutTo(size); }
    const platform::FileLock& lock() const override { return text_->lock(); }

   private:
    ShortTexts& all_;
    std::unique_ptr<platform::LockedText> text_;
  };

  OpenedText openText(const std::string& path, std::chrono::milliseconds most,
                      const std::function<bool()>& goesOn) override {
    auto opened = files_.openText(path, most, goesOn);
    if (opened.text) opened.text = std::make_unique<Text>(*this, std::move(opened.text));
    return opened;
  }
  std::unique_ptr<platform::FileLock> lockFile(const std::string& path) override { return files_.lockFile(path); }

  int room = 1000;

 private:
  platform::linux_::LinuxLockedFiles files_;
};

class NotingListener final : public BatchListener {
 public:
  void tell(const ToldFilm& film) override { told.push_back(film.as); }
  void progress(const BatchProgress& /*progress*/) override {}
  void journalFailed(std::error_code error) override { failures.push_back(error); }
  std::string reasonOf(ToldAs /*as*/, const FilmResult* /*result*/, std::error_code /*error*/) override {
    return "a reason";
  }

  std::vector<ToldAs> told;
  std::vector<std::error_code> failures;
};

/// A batch of two films whose outputs go to a folder, with a journal.
class BatchRunTest : public testing::Test {
 protected:
  BatchRunTest() {
    for (const char* name : {"a", "b"})
      order_.films.push_back({folder_.put(name, "film"), folder_ / ("out/" + std::string(name)), {}});
    std::filesystem::create_directory(folder_ / "out");
    open();
  }
  void open() {
    run_.reset();
    journal_.reset();
    journal_ = std::move(std::get<0>(
        BatchJournal::open(files_, folder_ / "journal", std::chrono::milliseconds(0), [] { return true; })));
    run_ = std::make_unique<BatchRun>(order_, journal_.get(), listener_,
                                      BatchRun::Services{.fileManager = fileManager_,
                                                         .lockedFiles = files_,
                                                         .checksum = [](const std::string&) { return std::string(); },
                                                         .isStopped = [this] { return isStopped_; }});
  }
  /// What a film's program tells of its output, which lies at `path` now.
  [[nodiscard]] BatchLine lineAbout(std::size_t film, const std::string& path) {
    BatchLine line;
    line.outcome = "repaired";
    const auto there = fileManager_.attributes(path);
    line.output =
        BatchOutput{order_.films[film].output, there->size, there->device, there->identity, there->modified, ""};
    return line;
  }
  /// The film's program writes its output, and asks for its name. \return whether it may
  bool writes(std::size_t film) {
    const std::string hidden = folder_.put("out/" + std::string(kHidden), "whole");
    EXPECT_TRUE(run_->begin(film));
    naming_ = lineAbout(film, folder_.put("out/" + std::string(kHidden), "whole"));
    return run_->mayName(film, naming_);
  }
  void names(std::size_t film) const {
    std::filesystem::rename(folder_ / ("out/" + std::string(kHidden)), order_.films[film].output);
  }
  /// Its program is killed after it has asked.
  void isKilled(std::size_t film, int signal = SIGKILL) {
    FilmResult result;
    result.end = platform::ProgramEnd{.exit = -1, .signal = signal};
    result.line = naming_;
    run_->end(film, result);
    run_->tell(film, &result);
  }
  void ends(std::size_t film, int exit, int signal = 0) {
    FilmResult result;
    result.end = platform::ProgramEnd{.exit = signal == 0 ? exit : -1, .signal = signal};
    result.line = naming_;
    result.line->exit = exit;
    result.isLast = true;
    run_->end(film, result);
    run_->tell(film, &result);
  }
  [[nodiscard]] std::vector<std::string> journal() const {
    std::vector<std::string> lines;
    std::istringstream text(folder_.content("journal"));
    for (std::string line; std::getline(text, line);) {
      const auto read = readJournalLine(line);
      if (!read) return {"no line: " + line};
      lines.push_back(std::string(read->state == LineState::naming ? "naming"
                                  : read->state == LineState::done ? "done"
                                                                   : "failed") +
                      " " + std::filesystem::path(read->input).filename().string() +
                      (read->isAdopted ? " adopted" : ""));
    }
    return lines;
  }

  const tests::TempFolder folder_;
  platform::linux_::LinuxFileManager fileManager_;
  ShortTexts files_;
  NotingListener listener_;
  BatchOrder order_{.command = "salvage", .options = {}, .arguments = {"salvage"}, .films = {}, .outputFolder = {}};
  bool isStopped_ = false;
  BatchLine naming_;
  std::unique_ptr<BatchJournal> journal_;
  std::unique_ptr<BatchRun> run_;
};

TEST_F(BatchRunTest, OutputIsWrittenDownBeforeItsNameAndAfterIt) {
  EXPECT_TRUE(writes(0));
  EXPECT_THAT(journal(), ElementsAre("naming a"));
  names(0);
  ends(0, 0);
  EXPECT_THAT(journal(), ElementsAre("naming a", "done a"));
  EXPECT_THAT(listener_.told, ElementsAre(ToldAs::worked));
}

TEST_F(BatchRunTest, ProgramThatIsKilledAfterItsOutputHasItsNameHasDoneItsWork) {
  EXPECT_TRUE(writes(0));
  names(0);
  isKilled(0);
  EXPECT_THAT(journal(), ElementsAre("naming a", "done a adopted"));
  EXPECT_THAT(listener_.told, ElementsAre(ToldAs::adopted));
  EXPECT_EQ(folder_.content("out/a"), "whole");
}

TEST_F(BatchRunTest, ProgramThatIsKilledBeforeThatHasFailedAndLeavesNothing) {
  EXPECT_TRUE(writes(0));
  isKilled(0);
  EXPECT_THAT(journal(), ElementsAre("naming a", "failed a"));
  EXPECT_THAT(listener_.told, ElementsAre(ToldAs::died));
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "out"));
}

TEST_F(BatchRunTest, ProgramThatIsKilledAfterItHasToldItsEndHasDoneItsWork) {
  EXPECT_TRUE(writes(0));
  names(0);
  ends(0, 0, SIGKILL);
  EXPECT_THAT(journal(), ElementsAre("naming a", "done a"));
}

TEST_F(BatchRunTest, EndsThatAreNoneAreFailures) {
  EXPECT_TRUE(writes(0));
  names(0);
  ends(0, 3);
  EXPECT_TRUE(writes(1));
  names(1);
  ends(1, 1);
  EXPECT_THAT(journal(), ElementsAre("naming a", "failed a", "naming b", "done b"));
}

TEST_F(BatchRunTest, FilmThatAStopEndsIsNotWrittenDown) {
  EXPECT_TRUE(writes(0));
  isStopped_ = true;
  isKilled(0, SIGTERM);
  EXPECT_THAT(journal(), ElementsAre("naming a"));
}

TEST_F(BatchRunTest, WithoutRoomInTheJournalNothingGetsItsNameAndNothingIsBegun) {
  files_.room = 0;
  EXPECT_FALSE(writes(0));
  EXPECT_THAT(listener_.failures, ElementsAre(std::errc::no_space_on_device));
  EXPECT_TRUE(run_->isStopped());
  files_.room = 1000;
  isKilled(0);
  EXPECT_THAT(journal(), IsEmpty()) << "a journal that has failed once is left alone";
  EXPECT_EQ(listener_.failures.size(), 1U);
}

TEST_F(BatchRunTest, ResumedRunAdoptsAndWritesItDown) {
  order_.resumes = true;
  EXPECT_TRUE(writes(0));
  names(0);
  open();
  EXPECT_FALSE(run_->begin(0));
  EXPECT_THAT(journal(), ElementsAre("naming a", "done a adopted"));
  open();
  EXPECT_FALSE(run_->begin(0));
  EXPECT_THAT(journal(), ElementsAre("naming a", "done a adopted")) << "it is done, and stays so";
}

TEST_F(BatchRunTest, DeadFilesAreRemovedBeforeAFolderIsWrittenTo) {
  folder_.put("out/" + std::string(kHidden), "dead");
  folder_.put("out/mine", "mine");
  EXPECT_TRUE(run_->begin(0));
  EXPECT_FALSE(std::filesystem::exists(folder_ / ("out/" + std::string(kHidden))));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "out/mine"));
}

TEST_F(BatchRunTest, WhatAProgramStillWritesIsNotDead) {
  const std::string path = folder_.put("out/" + std::string(kHidden), "written");
  const auto lock = files_.lockFile(path);
  removeDeadFiles(folder_ / "out", fileManager_, files_);
  EXPECT_TRUE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace zelvo::salvage
