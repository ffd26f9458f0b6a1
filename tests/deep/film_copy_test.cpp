// Copies that fail on the way: nothing of them stays, and what was there stays as it was.
#include "deep/film_copy.h"

#include <limits>

#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

using deep::CopyEnd;

/// New files whose writes, last bytes or room fail, as on a disk that is full or pulled out.
class FailingNewFiles final : public platform::NewFiles {
 public:
  explicit FailingNewFiles(platform::NewFiles& files) : files_(files) {}
  std::uint64_t failsFrom = std::numeric_limits<std::uint64_t>::max();
  std::error_code writeError;
  std::error_code reserveError;
  std::error_code writeOutError;
  std::error_code flushError;
  std::error_code closeError;
  std::function<void(std::uint64_t offset)> onWrite;

  platform::Opened<platform::WritableFile> createNewFile(const std::string& path) override {
    auto opened = files_.createNewFile(path);
    if (opened.file) opened.file = std::make_unique<File>(std::move(opened.file), *this);
    return opened;
  }
  std::unique_ptr<platform::FileLock> lockNewFile(const std::string& path) override { return files_.lockNewFile(path); }
  std::error_code renameToNew(const std::string& from, const std::string& to) override {
    return files_.renameToNew(from, to);
  }
  std::error_code setPermissions(const std::string& path, std::uint32_t permissions) override {
    return files_.setPermissions(path, permissions);
  }
  std::error_code flushFolder(const std::string& folder) override { return files_.flushFolder(folder); }

 private:
  class File final : public platform::WritableFile {
   public:
    File(std::unique_ptr<platform::WritableFile> file, FailingNewFiles& files)
        : file_(std::move(file)), files_(files) {}
    platform::IoResult writeAt(std::uint64_t offset, std::span<const std::byte> from) override {
      if (files_.onWrite) files_.onWrite(offset);
      if (offset + from.size() > files_.failsFrom) return {0, files_.writeError};
      return file_->writeAt(offset, from);
    }
    std::error_code reserve(std::uint64_t size) override {
      return files_.reserveError ? files_.reserveError : file_->reserve(size);
    }
    std::error_code truncate(std::uint64_t size) override { return file_->truncate(size); }
    std::error_code writeOut(std::uint64_t, std::uint64_t) override { return files_.writeOutError; }
    std::error_code flush() override { return files_.flushError ? files_.flushError : file_->flush(); }
    std::error_code close() override {
      const std::error_code closed = file_->close();
      return files_.closeError ? files_.closeError : closed;
    }

   private:
    std::unique_ptr<platform::WritableFile> file_;
    FailingNewFiles& files_;
  };

  platform::NewFiles& files_;
};

class FilmCopy : public DeepTest {
 protected:
  FilmCopy() : from_(temp.put("film", std::string(kSize, 'f'))), damaged_(temp.put("damaged.avi", "damaged")) {}

  [[nodiscard]] CopyEnd copy(bool mayReplace = false) {
    return deep::copyFilm(servicesOf(queue, workers, failing, {}),
                          {.from = from_, .to = to, .mayReplace = mayReplace, .damaged = damaged_, .size = kSize},
                          progress, [this] { ++moves; });
  }
  /// Nothing is there but what was.
  void expectNothingLeft() const { EXPECT_EQ(temp.names(), (std::vector<std::string>{"damaged.avi", "film"})); }

  static constexpr std::size_t kSize = 9'500'000;
  static constexpr std::size_t kPiece = std::size_t{1} << 20U;
  FailingNewFiles failing{newFiles};
  std::string to = temp / "mine.avi";
  deep::CopyProgress progress;
  int moves = 0;

 private:
  std::string from_;
  std::string damaged_;
};

TEST_F(FilmCopy, IsWholeAndTellsEveryPiece) {
  EXPECT_EQ(copy().kind, CopyEnd::Kind::done);
  EXPECT_TRUE(readFile(to) == std::string(kSize, 'f'));
  EXPECT_EQ(progress.done, kSize);
  EXPECT_EQ(progress.all, kSize);
  EXPECT_EQ(moves, 11);  // ten pieces, and the wait for the disk
}

TEST_F(FilmCopy, IsHiddenUntilItIsWhole) {
  failing.onWrite = [&](std::uint64_t) { EXPECT_FALSE(fileManager.exists(to)); };
  EXPECT_EQ(copy().kind, CopyEnd::Kind::done);
}

TEST_F(FilmCopy, ADiskThatFillsUpIsToldWithItsFigures) {
  failing.failsFrom = 5 * kPiece;
  failing.writeError = std::make_error_code(std::errc::no_space_on_device);
  const CopyEnd end = copy();
  EXPECT_EQ(end.kind, CopyEnd::Kind::noRoom);
  EXPECT_EQ(end.needed, kSize);
  EXPECT_GT(end.free, 0U);
  expectNothingLeft();
}

TEST_F(FilmCopy, RoomThatIsMissingIsFoundBeforeTheFirstByte) {
  failing.reserveError = std::make_error_code(std::errc::no_space_on_device);
  EXPECT_EQ(copy().kind, CopyEnd::Kind::noRoom);
  EXPECT_EQ(moves, 0);
  expectNothingLeft();
}

TEST_F(FilmCopy, AFileSystemThatReservesNothingIsNoFailure) {
  failing.reserveError = std::make_error_code(std::errc::operation_not_supported);
  EXPECT_EQ(copy().kind, CopyEnd::Kind::done);
}

TEST_F(FilmCopy, AStickThatIsPulledOutIsTold) {
  const auto gone = std::make_error_code(std::errc::no_such_device);
  for (std::error_code* const where : {&failing.writeOutError, &failing.flushError, &failing.closeError}) {
    *where = gone;
    const CopyEnd end = copy();
    EXPECT_EQ(end.kind, CopyEnd::Kind::writeFailed);
    EXPECT_EQ(end.cause, gone);
    expectNothingLeft();
    *where = {};
  }
}

TEST_F(FilmCopy, AStopInTheMiddleLeavesNothing) {
  failing.onWrite = [&](std::uint64_t offset) {
    if (offset == 3 * kPiece) progress.isStopped = true;
  };
  EXPECT_EQ(copy().kind, CopyEnd::Kind::stopped);
  EXPECT_EQ(progress.done, 4 * kPiece);
  expectNothingLeft();
}

TEST_F(FilmCopy, AStopWhileTheDiskTakesTheLastBytesLeavesNothing) {
  failing.onWrite = [&](std::uint64_t offset) {
    if (offset == 9 * kPiece) progress.isStopped = true;
  };
  EXPECT_EQ(copy().kind, CopyEnd::Kind::stopped);
  EXPECT_EQ(progress.done, kSize);
  expectNothingLeft();
}

TEST_F(FilmCopy, AFileThatCameMeanwhileIsNotReplacedWithoutAQuestion) {
  failing.onWrite = [&](std::uint64_t offset) {
    if (offset == 0) temp.put("mine.avi", "somebody's");
  };
  EXPECT_EQ(copy().kind, CopyEnd::Kind::nameTaken);
  EXPECT_EQ(readFile(to), "somebody's");
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"damaged.avi", "film", "mine.avi"}));
}

TEST_F(FilmCopy, WhatFailsLeavesTheFileThatItWasToReplace) {
  temp.put("mine.avi", "an older film");
  failing.flushError = std::make_error_code(std::errc::io_error);
  EXPECT_EQ(copy(true).kind, CopyEnd::Kind::writeFailed);
  EXPECT_EQ(readFile(to), "an older film");
  failing.flushError = {};
  EXPECT_EQ(copy(true).kind, CopyEnd::Kind::done);
  EXPECT_EQ(readFile(to).size(), kSize);
}

TEST_F(FilmCopy, AReplacedFileLeavesItsPermissions) {
  temp.put("mine.avi", "an older film");
  ASSERT_FALSE(newFiles.setPermissions(to, 0640));
  EXPECT_EQ(copy(true).kind, CopyEnd::Kind::done);
  EXPECT_EQ(fileManager.attributes(to)->permissions, 0640U);
}

TEST_F(FilmCopy, TheDamagedFilmIsNotReplacedThroughALinkEither) {
  to = temp / "damaged.avi";
  EXPECT_EQ(copy(true).kind, CopyEnd::Kind::isDamaged);
  EXPECT_EQ(readFile(to), "damaged");
}

}  // namespace zelvo::tests
