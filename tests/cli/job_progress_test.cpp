#include "cli/job_progress.h"

#include <gtest/gtest.h>

#include "platform/headless/screen.h"

namespace zelvo::tests {
namespace {

using cli::ProgressLine;
using cli::RunProgress;
using cli::Stage;

using std::chrono::milliseconds;
using std::chrono::seconds;

class RunProgressTest : public testing::Test {
 protected:
  platform::headless::HeadlessLog log_{nullptr};
  RunProgress progress_{log_};
};

TEST_F(RunProgressTest, StagesOfTheRepairNameThoseOfTheLine) {
  EXPECT_EQ(progress_.stage(), Stage::none);
  progress_.stage(engine::RepairStage::readingHeaders);
  EXPECT_EQ(progress_.stage(), Stage::analysing);
  progress_.stage(engine::RepairStage::searching);
  EXPECT_EQ(progress_.stage(), Stage::scanning);
  progress_.stage(engine::RepairStage::writing);
  EXPECT_EQ(progress_.stage(), Stage::writing);
  progress_.stage(engine::RepairStage::recognising);
  EXPECT_EQ(progress_.stage(), Stage::none);
}

TEST_F(RunProgressTest, ShareIsThatOfTheBlocksBegun) {
  EXPECT_EQ(progress_.share(), 0.0);
  progress_.progress(1, 4);
  EXPECT_EQ(progress_.share(), 0.25);
  progress_.progress(5, 4);
  EXPECT_EQ(progress_.share(), 1.0);
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

}  // namespace
}  // namespace zelvo::tests
