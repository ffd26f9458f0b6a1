#include "cli/job_progress.h"

#include <gtest/gtest.h>

#include "cli/job_files.h"
#include "platform/linux/linux_files.h"
#include "tests/cli/temp_folder.h"

namespace zelvo::cli {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(StageField, EngineTextsNameTheStages) {
  StageField field;
  EXPECT_EQ(field.stage(), Stage::none);
  field.setStringValue("Analyzing the file..");
  EXPECT_EQ(field.stage(), Stage::analysing);
  field.setStringValue("Retrieving audio/ video data forks..");
  EXPECT_EQ(field.stage(), Stage::scanning);
  field.setStringValue("Repairing the file..");
  EXPECT_EQ(field.stage(), Stage::writing);
  field.setStringValue("");
  EXPECT_EQ(field.stage(), Stage::writing);
}

TEST(ProgressLine, TellsStageShareAmountAndSpeed) {
  ProgressLine line("clip.avi");
  const ProgressLine::Clock::time_point start{seconds(100)};
  EXPECT_EQ(line.text(start, Stage::scanning, 0, 400000000), "clip.avi: searching, 0 %, 0.0 of 400.0 MB");
  EXPECT_EQ(line.text(start + seconds(2), Stage::scanning, 100000000, 400000000),
            "clip.avi: searching, 25 %, 100.0 of 400.0 MB, 50 MB/s");
}

TEST(ProgressLine, EachStageHasItsName) {
  const auto lineOf = [](Stage stage) { return ProgressLine("a").text({}, stage, 1000000, 2000000); };
  EXPECT_EQ(lineOf(Stage::none), "a: opening, 50 %, 1.0 of 2.0 MB");
  EXPECT_EQ(lineOf(Stage::analysing), "a: reading headers, 50 %, 1.0 of 2.0 MB");
  EXPECT_EQ(lineOf(Stage::scanning), "a: searching, 50 %, 1.0 of 2.0 MB");
  EXPECT_EQ(lineOf(Stage::writing), "a: writing, 50 %, 1.0 of 2.0 MB");
  EXPECT_EQ(lineOf(Stage::copying), "a: copying, 50 %, 1.0 of 2.0 MB");
  EXPECT_EQ(lineOf(Stage::flushing), "a: waiting for the disk");
  EXPECT_EQ(lineOf(Stage::inspecting), "a: reading, 50 %, 1.0 of 2.0 MB");
}

TEST(ProgressLine, SpeedIsToldOnceItMeansSomething) {
  ProgressLine line("a");
  const ProgressLine::Clock::time_point start{seconds(100)};
  static_cast<void>(line.text(start, Stage::writing, 0, 2000000));
  EXPECT_EQ(line.text(start + milliseconds(200), Stage::writing, 1000000, 2000000), "a: writing, 50 %, 1.0 of 2.0 MB");
  EXPECT_EQ(line.text(start + milliseconds(250), Stage::writing, 1000000, 2000000),
            "a: writing, 50 %, 1.0 of 2.0 MB, 4 MB/s");
}

TEST(StageField, ShortTextsChangeNothing) {
  StageField field;
  for (const char* text : {"", "a", "at"}) field.setStringValue(text);
  EXPECT_EQ(field.stage(), Stage::none);
  field.setStringValue("--a");
  EXPECT_EQ(field.stage(), Stage::analysing);
}

TEST(ProgressLine, SpeedStartsAnewWithEachStage) {
  ProgressLine line("clip.avi");
  const ProgressLine::Clock::time_point start{seconds(100)};
  EXPECT_EQ(line.text(start, Stage::scanning, 0, 1000000), "clip.avi: searching, 0 %, 0.0 of 1.0 MB");
  EXPECT_EQ(line.text(start + seconds(9), Stage::writing, 500000, 1000000), "clip.avi: writing, 50 %, 0.5 of 1.0 MB");
}

TEST(ProgressLine, NeverTellsMoreThanAll) {
  ProgressLine line("clip.avi");
  EXPECT_EQ(line.text({}, Stage::copying, 3000000, 2000000), "clip.avi: copying, 100 %, 2.0 of 2.0 MB");
}

TEST(ProgressLine, IsDueTenTimesASecond) {
  ProgressLine line("clip.avi");
  const ProgressLine::Clock::time_point start{seconds(100)};
  EXPECT_TRUE(line.isDue(start));
  static_cast<void>(line.text(start, Stage::scanning, 0, 1));
  EXPECT_FALSE(line.isDue(start + milliseconds(99)));
  EXPECT_TRUE(line.isDue(start + milliseconds(100)));
}

TEST(ProgressLine, LongAndOddNamesStayOnTheLine) {
  ProgressLine line("a very long name of a holiday film\n.avi");
  EXPECT_EQ(line.text({}, Stage::none, 0, 0), "a very long name of a hol...: opening");
}

TEST(JobFiles, InputIsTheFileThatWasHandedOver) {
  const test::TempFolder folder;
  test::writeFile(folder / "in", "old");
  platform::linux_::LinuxFiles files;
  JobFiles job(files);
  job.handOver(folder / "in", files.openForReading(folder / "in").file);
  test::writeFile(folder / "other", "new!");
  ASSERT_EQ(std::rename((folder / "other").c_str(), (folder / "in").c_str()), 0);

  EXPECT_EQ(job.openForReading(folder / "in").file->size(), 3U);
}

TEST(JobFiles, WrittenBytesAreCounted) {
  const test::TempFolder folder;
  test::writeFile(folder / "out", "");
  platform::linux_::LinuxFiles files;
  JobFiles job(files);
  const auto out = job.openForWriting(folder / "out");
  const std::array<std::byte, 10> bytes{};
  EXPECT_EQ(out.file->writeAt(0, bytes).count, 10U);
  EXPECT_EQ(out.file->writeAt(10, bytes).count, 10U);

  EXPECT_EQ(job.written(), 20U);
  job.resetWritten();
  EXPECT_EQ(job.written(), 0U);
}

}  // namespace
}  // namespace zelvo::cli
