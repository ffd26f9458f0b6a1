#include "salvage/batch_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "platform/linux/locked_files.h"
#include "tests/salvage/batch_lines.h"
#include "tests/support/temp_folder.h"

namespace zelvo::salvage {
namespace {

using Opened = std::variant<std::unique_ptr<BatchJournal>, JournalRefusal>;

class BatchJournalTest : public testing::Test {
 protected:
  [[nodiscard]] Opened open() {
    return BatchJournal::open(lockedFiles_, folder_ / "journal", std::chrono::milliseconds(0), [] { return true; });
  }
  [[nodiscard]] std::unique_ptr<BatchJournal> opened() { return std::move(std::get<0>(open())); }
  [[nodiscard]] ResumeStep step(const BatchLine& film, const std::string& checksum = "") {
    return opened()->stepFor(film, fileManager_, [&] { return checksum; });
  }
  /// A line about a film whose output lies in the folder.
  [[nodiscard]] BatchLine lineWithOutput(LineState state) {
    BatchLine line = tests::fullLine();
    line.state = state;
    line.isAdopted = false;
    const auto file = fileManager_.attributes(folder_.put("out.avi", "film"));
    line.output = BatchOutput{folder_ / "out.avi", file->size, file->device, file->identity, file->modified, ""};
    return line;
  }

  const tests::TempFolder folder_;
  platform::linux_::LinuxFileManager fileManager_;
  platform::linux_::LinuxLockedFiles lockedFiles_;
};

TEST_F(BatchJournalTest, KnowsNothingWhenItIsNew) {
  EXPECT_EQ(step(tests::fullLine()), ResumeStep::work);
  EXPECT_EQ(folder_.content("journal"), "");
}

TEST_F(BatchJournalTest, OneRunAtATimeHoldsIt) {
  const auto first = opened();
  EXPECT_EQ(std::get<JournalRefusal>(open()).error, std::errc::timed_out);
}

TEST_F(BatchJournalTest, FinishedFilmIsSkippedWhileNothingChanges) {
  const BatchLine line = lineWithOutput(LineState::done);
  EXPECT_FALSE(opened()->append(line));
  EXPECT_EQ(step(line), ResumeStep::skip);

  BatchLine changed = line;
  changed.options = "--gaps fill";
  EXPECT_EQ(step(changed), ResumeStep::work);
  changed = line;
  changed.command = "repair";
  EXPECT_EQ(step(changed), ResumeStep::work);
  changed = line;
  ++changed.inputSize;
  EXPECT_EQ(step(changed), ResumeStep::work);
}

TEST_F(BatchJournalTest, ChecksumTellsThatOnlyTheTimeHasChanged) {
  const BatchLine line = lineWithOutput(LineState::done);
  EXPECT_FALSE(opened()->append(line));
  BatchLine touched = line;
  ++touched.inputModified;
  EXPECT_EQ(step(touched), ResumeStep::work);
  EXPECT_EQ(step(touched, line.inputSha256), ResumeStep::skip);
}

TEST_F(BatchJournalTest, FilmWhoseOutputIsGoneOrOfAnotherSizeIsDoneAgain) {
  const BatchLine line = lineWithOutput(LineState::done);
  EXPECT_FALSE(opened()->append(line));
  folder_.put("out.avi", "longer film");
  EXPECT_EQ(step(line), ResumeStep::work);
  std::filesystem::remove(folder_ / "out.avi");
  EXPECT_EQ(step(line), ResumeStep::work);
}

TEST_F(BatchJournalTest, HopelessFilmIsSkippedWithoutAnOutput) {
  BatchLine line = tests::fullLine();
  line.output.reset();
  line.exit = 1;
  EXPECT_FALSE(opened()->append(line));
  EXPECT_EQ(step(line), ResumeStep::skip);
}

TEST_F(BatchJournalTest, FailedFilmIsDoneAgain) {
  BatchLine line = lineWithOutput(LineState::done);
  EXPECT_FALSE(opened()->append(line));
  line.state = LineState::failed;
  EXPECT_FALSE(opened()->append(line));
  EXPECT_EQ(step(line), ResumeStep::work);
}

TEST_F(BatchJournalTest, OutputWhoseSecondLineIsMissingIsAdopted) {
  const BatchLine line = lineWithOutput(LineState::naming);
  EXPECT_FALSE(opened()->append(line));
  EXPECT_EQ(step(line), ResumeStep::adopt);
  EXPECT_EQ(opened()->lineOf(line), line);
}

TEST_F(BatchJournalTest, AnotherFileOfThatNameIsNotAdopted) {
  const BatchLine line = lineWithOutput(LineState::naming);
  EXPECT_FALSE(opened()->append(line));
  std::filesystem::rename(folder_ / "out.avi", folder_ / "mine");
  EXPECT_EQ(step(line), ResumeStep::work);
  // Of the same size and age, it is not that very file.
  folder_.put("out.avi", "film");
  std::filesystem::last_write_time(folder_ / "out.avi", std::filesystem::last_write_time(folder_ / "mine"));
  EXPECT_EQ(step(line), ResumeStep::work);
}

TEST_F(BatchJournalTest, OutputIsAdoptedOnlyWhenAllOfItIsAsItWas) {
  const BatchLine line = lineWithOutput(LineState::naming);
  const auto withOutput = [&](const auto& change) {
    BatchLine changed = line;
    change(*changed.output);
    EXPECT_FALSE(opened()->append(changed));
    return step(line);
  };
  EXPECT_EQ(withOutput([](BatchOutput& output) { ++output.device; }), ResumeStep::work);
  EXPECT_EQ(withOutput([](BatchOutput& output) { ++output.inode; }), ResumeStep::work);
  EXPECT_EQ(withOutput([](BatchOutput& output) { ++output.size; }), ResumeStep::work);
  EXPECT_EQ(withOutput([](BatchOutput& output) { ++output.modified; }), ResumeStep::work);
  EXPECT_EQ(withOutput([](BatchOutput&) {}), ResumeStep::adopt);
}

TEST_F(BatchJournalTest, TornLastLineIsCutOffAndForgotten) {
  const std::string whole = journalLine(lineWithOutput(LineState::done));
  for (std::size_t length = 1; length < whole.size(); length += 7) {
    folder_.put("journal", whole + whole.substr(0, length));
    EXPECT_FALSE(opened()->append(tests::fullLine("/b")));
    EXPECT_EQ(folder_.content("journal"), whole + journalLine(tests::fullLine("/b")));
  }
}

TEST_F(BatchJournalTest, ForeignLinesAreRefusedWithTheirNumberAndLeftAlone) {
  const std::string good = journalLine(tests::fullLine());
  for (const std::string& bad :
       {std::string("{}\n"), std::string("\n"), std::string("RIFF....AVI "), std::string(300'000, '{')}) {
    folder_.put("journal", good + good + bad);
    EXPECT_EQ(std::get<JournalRefusal>(open()).foreignLine, 3U) << bad.substr(0, 20);
    EXPECT_EQ(folder_.content("journal"), good + good + bad);
  }
}

TEST_F(BatchJournalTest, LinesAcrossReadsAreWhole) {
  std::string text;
  for (int i = 0; i < 2000; ++i) text += journalLine(tests::fullLine("/films/" + std::to_string(i)));
  std::size_t taken = 0;
  const JournalReading reading = readJournal(
      [&](std::uint64_t offset, std::span<std::byte> into) {
        const std::string_view part = std::string_view(text).substr(offset, into.size());
        std::ranges::copy(std::as_bytes(std::span(part)), into.begin());
        return platform::IoResult{part.size(), {}};
      },
      [&](const BatchLine& line) { EXPECT_EQ(line.input, "/films/" + std::to_string(taken++)); });
  EXPECT_EQ(taken, 2000U);
  EXPECT_EQ(reading.end, text.size());
  EXPECT_EQ(reading.tornBytes, 0U);
}

TEST_F(BatchJournalTest, LineThatIsTooLongIsNotWritten) {
  BatchLine line = tests::fullLine();
  line.reason = std::string(kMaxJournalLine, 'x');
  EXPECT_EQ(opened()->append(line), std::errc::message_size);
  EXPECT_EQ(folder_.content("journal"), "");
}

}  // namespace
}  // namespace zelvo::salvage
