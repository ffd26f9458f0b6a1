// The validity check: which files look like AVI files at all.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

/// `size` bytes that no code occurs in, with `text` at `offset`.
platform::Bytes withTextAt(std::size_t size, std::size_t offset, std::string_view text) {
  platform::Bytes bytes(size, std::byte{0x20});
  overwrite(bytes, offset, text);
  return bytes;
}

class ValidityCheck : public testing::Test {
 protected:
  bool check(platform::Bytes bytes) {
    bench.choose(std::move(bytes));
    bench.begin();
    return bench.job->fileValidityCheck();
  }
  std::size_t eventCount(const std::string& event) {
    const auto lines = bench.events.lines();
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), event));
  }

  EngineBench bench;
};

TEST_F(ValidityCheck, FileOf1023BytesIsInvalidWithoutBeingRead) {
  EXPECT_FALSE(check(withTextAt(1023, 0, "RIFF")));
  EXPECT_EQ(bench.files.at("/in.avi").reads, 0U);
}

TEST_F(ValidityCheck, FileOf1024BytesIsReadAsOneBlock) {
  EXPECT_TRUE(check(withTextAt(1024, 1000, "RIFF")));
  EXPECT_EQ(bench.files.at("/in.avi").reads, 1U);
  EXPECT_EQ(bench.job->numberofsectors, 1U);
}

TEST_F(ValidityCheck, CodeAtByte10240OrLaterIsNotFound) {
  EXPECT_FALSE(check(withTextAt(20000, 10240, "RIFF")));
  EXPECT_FALSE(check(withTextAt(20000, 15000, "movi")));
}

TEST_F(ValidityCheck, CodeThatEndsAtByte10239IsFound) { EXPECT_TRUE(check(withTextAt(20000, 10236, "RIFF"))); }

class ValidityCheckAtBlockEnd : public ValidityCheck, public testing::WithParamInterface<std::size_t> {};

TEST_P(ValidityCheckAtBlockEnd, CodeThatRunsIntoTheNextBlockIsNotFound) {
  EXPECT_FALSE(check(withTextAt(20000, GetParam(), "RIFF")));
  EXPECT_FALSE(check(withTextAt(20000, 1024 + GetParam(), "RIFF")));
}

INSTANTIATE_TEST_SUITE_P(Positions, ValidityCheckAtBlockEnd, testing::Values(1021, 1022, 1023),
                         testing::PrintToStringParamName());

TEST_F(ValidityCheck, CodeThatFillsTheBlocksLastFourBytesIsFound) {
  EXPECT_TRUE(check(withTextAt(20000, 1020, "RIFF")));
}

TEST_F(ValidityCheck, FirstCode00dbSetsDb) {
  EXPECT_TRUE(check(withTextAt(20000, 500, "00db")));
  EXPECT_TRUE(bench.job->db);
}

TEST_F(ValidityCheck, RiffBefore00dbLeavesDbClear) {
  platform::Bytes bytes = withTextAt(20000, 500, "00db");
  overwrite(bytes, 100, "RIFF");
  EXPECT_TRUE(check(std::move(bytes)));
  EXPECT_FALSE(bench.job->db);
}

TEST_F(ValidityCheck, RiffBehind00dbLeavesDbSet) {
  platform::Bytes bytes = withTextAt(20000, 500, "00db");
  overwrite(bytes, 600, "RIFF");
  EXPECT_TRUE(check(std::move(bytes)));
  EXPECT_TRUE(bench.job->db);
}

class ValidityCheckCode : public ValidityCheck, public testing::WithParamInterface<const char*> {};

TEST_P(ValidityCheckCode, IsEnoughAnywhereInTheFirstTenBlocks) {
  EXPECT_TRUE(check(withTextAt(1024, 0, GetParam())));
  EXPECT_TRUE(check(withTextAt(20000, 5000, GetParam())));
  EXPECT_TRUE(check(withTextAt(20000, 10236, GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Codes, ValidityCheckCode,
                         testing::Values("RIFF", "AVI ", "LIST", "hdrl", "avih", "strl", "strh", "indx", "00db", "00dc",
                                         "00wb", "movi"),
                         [](const auto& named) {
                           std::string name = named.param;
                           std::replace(name.begin(), name.end(), ' ', '_');
                           return name;
                         });

class ValidityCheckOtherCode : public ValidityCheck, public testing::WithParamInterface<const char*> {};

TEST_P(ValidityCheckOtherCode, IsNotEnough) { EXPECT_FALSE(check(withTextAt(20000, 0, GetParam()))); }

INSTANTIATE_TEST_SUITE_P(Codes, ValidityCheckOtherCode,
                         testing::Values("riff", "RIFX", "AVIX", "list", "01wb", "01dc", "strf", "vids", "auds", "JUNK",
                                         "idx1", "Movi"),
                         [](const auto& named) { return std::string(named.param); });

TEST_F(ValidityCheck, SuccessStoresProgress100WithoutARedraw) {
  EXPECT_TRUE(check(withTextAt(20000, 0, "RIFF")));
  EXPECT_EQ(bench.relay.values, std::vector{100.0});
  EXPECT_TRUE(bench.relay.shown.empty());
}

TEST_F(ValidityCheck, FailureStoresNoProgress) {
  EXPECT_FALSE(check(withTextAt(20000, 0, "none")));
  EXPECT_TRUE(bench.relay.values.empty());
}

TEST_F(ValidityCheck, ResultIsKeptOnTheJobAndForTheProgram) {
  EXPECT_TRUE(check(withTextAt(20000, 0, "RIFF")));
  EXPECT_TRUE(bench.job->validitycheck);
  EXPECT_TRUE(engine::validitycheck1);

  EXPECT_FALSE(check(withTextAt(20000, 0, "none")));
  EXPECT_FALSE(bench.job->validitycheck);
  EXPECT_FALSE(engine::validitycheck1);
}

TEST_F(ValidityCheck, LogsEachBlockUntilTheCodeIsFound) {
  check(withTextAt(20000, 2100, "RIFF"));
  const std::vector<std::string> expected = {"movieWithFile(/in.avi)", "log: Sector=1", "log: Sector=2",
                                             "log: Sector=3", "log: Valid AVI file"};
  EXPECT_EQ(bench.events.lines(), expected);
  EXPECT_EQ(bench.job->sector, 3U);
}

TEST_F(ValidityCheck, ReadsTenBlocksAtMost) {
  check(withTextAt(200000, 0, "none"));
  EXPECT_EQ(bench.files.at("/in.avi").reads, 10U);
  EXPECT_EQ(eventCount("log: Sector=10"), 1U);
  EXPECT_EQ(eventCount("log: Sector=11"), 0U);
}

TEST_F(ValidityCheck, ReadsTenBlocksOfAFileThatHasFewer) {
  check(withTextAt(1500, 0, "none"));
  EXPECT_EQ(bench.files.at("/in.avi").reads, 10U);
}

TEST_F(ValidityCheck, PositionsAreLoggedOneByOneWhenTheyAreTraced) {
  platform::headless::HeadlessLog tracing(&bench.events, true);
  bench.job = std::make_unique<engine::RepairFile>(
      engine::RepairServices{bench.files, bench.files, bench.movies, bench.workers, bench.queue, bench.sheets, tracing},
      bench.screen.job);
  bench.job->controll = &bench.relay;

  check(withTextAt(20000, 1026, "RIFF"));

  EXPECT_EQ(eventCount("log: i=0"), 2U);  // one in each block
  EXPECT_EQ(eventCount("log: i=1"), 2U);
  EXPECT_EQ(eventCount("log: i=2"), 2U);
  EXPECT_EQ(eventCount("log: i=3"), 1U);  // the search ended at position 2 of the second block
  EXPECT_EQ(eventCount("log: i=1023"), 1U);
  EXPECT_EQ(bench.events.lines().back(), "log: Valid AVI file");
}

TEST_F(ValidityCheck, PositionsAreLoggedWhereNoCodeIsTestedToo) {
  platform::headless::HeadlessLog tracing(&bench.events, true);
  bench.job = std::make_unique<engine::RepairFile>(
      engine::RepairServices{bench.files, bench.files, bench.movies, bench.workers, bench.queue, bench.sheets, tracing},
      bench.screen.job);
  bench.job->controll = &bench.relay;
  engine::flag = true;

  check(withTextAt(20000, 1026, "RIFF"));

  EXPECT_EQ(eventCount("log: i=1023"), 10U);
}

TEST_F(ValidityCheck, PositionsAreNotLoggedOtherwise) {
  check(withTextAt(20000, 0, "none"));
  EXPECT_EQ(eventCount("log: i=0"), 0U);
}

TEST_F(ValidityCheck, FlagMakesItTestNoCode) {
  engine::flag = true;
  EXPECT_FALSE(check(withTextAt(20000, 0, "RIFF")));
  EXPECT_EQ(eventCount("log: Sector=10"), 1U);
}

TEST_F(ValidityCheck, MissingFileIsInvalid) {
  bench.chooseClaiming(20000);
  bench.begin();
  EXPECT_FALSE(bench.job->fileValidityCheck());
}

TEST_F(ValidityCheck, NoChosenFileIsInvalid) {
  engine::inputfilesize = 20000;
  bench.begin();
  EXPECT_FALSE(bench.job->fileValidityCheck());
}

TEST_F(ValidityCheck, UnreadableFileIsInvalidAndItsReadErrorsAreRemembered) {
  MemoryFile& input = bench.choose(withTextAt(20000, 0, "RIFF"));
  input.badReadStart = 0;
  input.badReadEnd = 20000;
  input.readError = std::make_error_code(std::errc::io_error);
  bench.begin();

  EXPECT_FALSE(bench.job->fileValidityCheck());
  EXPECT_EQ(bench.job->inputfilehandle->failures().count, 10U);
  EXPECT_EQ(bench.job->inputfilehandle->failures().firstOffset, 0U);
}

TEST_F(ValidityCheck, MovieThatCannotBeOpenedChangesNothing) {
  bench.movies.fail("/in.avi", "no movie");
  EXPECT_TRUE(check(withTextAt(20000, 0, "RIFF")));
  EXPECT_EQ(bench.job->video1, nullptr);
}

TEST_F(ValidityCheck, OpensTheInputAsAMovieFirst) {
  EXPECT_FALSE(check(withTextAt(10, 0, "RIFF")));  // too small to be read, yet opened
  EXPECT_EQ(bench.events.lines(), std::vector<std::string>{"movieWithFile(/in.avi)"});
  EXPECT_NE(bench.job->video1, nullptr);
  EXPECT_NE(bench.job->inputfilehandle, nullptr);
}

TEST_F(ValidityCheck, ClearsWhatAnEarlierRunFound) {
  bench.job->audiocodecfound = bench.job->videocodecfound = bench.job->audiostrfcodecfound = true;
  bench.job->videostrfcodecfound = bench.job->avihscaleratedatafound = bench.job->db = true;
  bench.job->validitycheck = true;

  check(withTextAt(1023, 0, "RIFF"));

  EXPECT_FALSE(bench.job->audiocodecfound || bench.job->videocodecfound || bench.job->audiostrfcodecfound ||
               bench.job->videostrfcodecfound || bench.job->avihscaleratedatafound || bench.job->db ||
               bench.job->validitycheck);
}

struct BlockCount {
  std::uint64_t size;
  std::uint32_t blocks;
  std::uint32_t mod;
};

class BlockCountOf : public testing::TestWithParam<BlockCount> {};

TEST_P(BlockCountOf, SizeRoundsUp) {
  EngineBench bench;
  bench.files.putSparse("/in.avi", GetParam().size);
  bench.chooseClaiming(GetParam().size);
  bench.begin();

  static_cast<void>(bench.job->fileValidityCheck());

  EXPECT_EQ(bench.job->numberofsectors, GetParam().blocks);
  EXPECT_EQ(bench.job->mod, GetParam().mod);
}

INSTANTIATE_TEST_SUITE_P(Sizes, BlockCountOf,
                         testing::Values(BlockCount{1024, 1, 0}, BlockCount{1025, 2, 1}, BlockCount{2047, 2, 1023},
                                         BlockCount{2048, 2, 0}, BlockCount{524288, 512, 0}, BlockCount{524289, 513, 1},
                                         BlockCount{std::uint64_t{5} << 30U, 5U << 20U, 0}),
                         [](const auto& named) { return std::to_string(named.param.size); });

}  // namespace
}  // namespace zelvo::tests
