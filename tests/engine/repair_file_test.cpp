// The job itself: byte helpers, tables, what a run takes with it and what one run leaves for the next.
#include "engine/repair_file.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>

#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

using engine::RepairFile;

std::uint64_t fourBytes(std::string_view text) {
  const platform::Bytes bytes = bytesOf(text);
  return RepairFile::fourByteRead(std::span(bytes).first<4>());
}

platform::Bytes repairable() { return AviBuilder().interleaved(200, 3000, 101).build(); }

TEST(ByteHelpers, FourBytesOfAllOnesAre4294967295) { EXPECT_EQ(fourBytes("\xff\xff\xff\xff"), 4294967295U); }

TEST(ByteHelpers, FourByteReadTakesTheFirstByteAsTheLowest) {
  EXPECT_EQ(fourBytes({"\x10\x00\x00\x00", 4}), 16U);
  EXPECT_EQ(fourBytes("\x01\x02\x03\x04"), 0x04030201U);
}

TEST(ByteHelpers, FourByteDataHoldsTheLow32BitsOnly) {
  EXPECT_EQ(hexOf(RepairFile::convertIntToData(4294967312U)), "10 00 00 00");
  EXPECT_EQ(hexOf(RepairFile::convertIntToData(0x04030201U)), "01 02 03 04");
}

TEST(ByteHelpers, EightByteDataIsCutTo32BitsBeforeItIsWidened) {
  const platform::Bytes bytes = RepairFile::convertIntTo8byteData(5000000000U);
  ASSERT_EQ(bytes.size(), 8U);
  EXPECT_EQ(numberAt(bytes, 0), 705032704U);
  EXPECT_EQ(numberAt(bytes, 4), 0U);
}

TEST(RepairFile, IsNeitherCopiedNorMoved) {
  EXPECT_FALSE(std::is_copy_constructible_v<RepairFile>);
  EXPECT_FALSE(std::is_move_constructible_v<RepairFile>);
}

TEST(RepairFile, EveryFieldStartsAsZeroFalseOrNothing) {
  const EngineBench bench;
  const RepairFile& job = *bench.job;

  EXPECT_EQ(job.sector + job.mod + job.buffersize + job.numberofsectors + job.numberofsectors2, 0U);
  EXPECT_EQ(job.currentoffset + job.videosamplecount + job.audiosamplecount + job.videosamplesize, 0U);
  EXPECT_EQ(job.videosampleoffset + job.audiosampleoffset + job.audiosamplesize, 0U);
  EXPECT_EQ(job.videostrfsize + job.audiostrfsize, 0U);
  EXPECT_FALSE(job.validitycheck || job.db || job.nextHeader || job.isfile || job.modelcheckflag);
  EXPECT_FALSE(job.avihscaleratedatafound || job.videocodecfound || job.videostrfcodecfound || job.audiocodecfound ||
               job.audiostrfcodecfound);
  EXPECT_TRUE(job.avihdata1.empty() && job.avihdata2.empty() && job.avihscaleratedata.empty());
  EXPECT_TRUE(job.videocodec.empty() && job.audiocodec.empty());
  EXPECT_FALSE(job.videocodecstring.get().has_value());
  EXPECT_FALSE(job.audiocodecstring.get().has_value());
  EXPECT_EQ(job.video1, nullptr);
  EXPECT_EQ(job.outputfile, nullptr);
  EXPECT_EQ(job.runEnd, engine::RunEnd::none);
}

TEST(RepairFile, TablesHold1048575ChunksBesidesAnEntryThatIsNeverFilled) {
  EXPECT_EQ(engine::kSampleTableEntries, 1048576U);
  EXPECT_EQ(engine::kLargestSampleCount, 1048575U);
  EXPECT_EQ(sizeof(engine::SampleTables), 32U * 1024 * 1024);
}

TEST(RepairFile, EntryZeroOfEveryTableIsZeroBeforeAndAfterARun) {
  EngineBench bench;
  const RepairFile& job = *bench.job;
  const auto entriesZero = [&] {
    return std::array{job.videosamplesizearray[0], job.videosampleoffsetarray[0], job.audiosamplesizearray[0],
                      job.audiosampleoffsetarray[0]};
  };
  const std::array<std::uint64_t, 4> zeros{};
  EXPECT_EQ(entriesZero(), zeros);

  bench.choose(repairable());
  bench.run();

  EXPECT_GT(job.videosamplecount, 0U);
  EXPECT_EQ(entriesZero(), zeros);
}

TEST(RepairFile, WholeRunRebuildsEveryChunkButTheLast) {
  EngineBench bench;
  bench.choose(repairable());

  bench.run();

  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::rebuilt);
  EXPECT_EQ(bench.job->videosamplecount, 200U);
  EXPECT_EQ(bench.job->audiosamplecount, 199U);
  EXPECT_EQ(bench.output().size(), 8 + bench.job->layout.RIFFLISTsize);
}

TEST(RepairFile, SecondRunOfTheSameJobGivesTheSameFile) {
  EngineBench bench;
  bench.choose(repairable());
  bench.run();
  const platform::Bytes first = bench.output();

  bench.run();

  EXPECT_EQ(bench.output(), first);
}

TEST(RepairFile, LaterRunStartsWithEmptyTables) {
  EngineBench bench;
  bench.choose(repairable());
  bench.run();
  AviBuilder smaller;
  smaller.interleaved(100, 7000, 50);
  bench.choose(smaller.build());

  bench.run();

  EXPECT_EQ(bench.job->videosamplecount, 100U);
  EXPECT_EQ(bench.job->audiosamplecount, 99U);
}

TEST(RepairFile, HarvestedDataOfAnEarlierRunStaysWhereTheNextFindsNoSuchSection) {
  EngineBench bench;
  bench.choose(repairable());
  bench.run();
  const platform::Bytes codec = bench.job->audiocodec;
  AviBuilder videoOnly;
  videoOnly.withAudioStream = false;
  bench.choose(videoOnly.atLeast(600000).build());

  bench.run();

  EXPECT_EQ(bench.job->audiocodec, codec);
  EXPECT_FALSE(bench.job->audiocodecfound);
  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::notSupported);
}

TEST(RepairFile, RunUsesItsOwnCopiesOfWhatWasChosen) {
  EngineBench bench;
  bench.choose(repairable());
  const auto run = RepairFile::newRun();
  engine::path.set("/other.avi");
  engine::inputfilesize = 5;
  engine::internalpath.set("/other-out.avi");

  bench.job->retrieveAudioVideoSamples(run);

  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::rebuilt);
  EXPECT_TRUE(bench.files.has("/out.avi"));
  EXPECT_FALSE(bench.files.has("/other-out.avi"));
}

TEST(RepairFile, SizeIsTheOneThatWasGivenNotTheFilesOwn) {
  EngineBench bench;
  bench.choose(repairable());
  bench.chooseClaiming(524288);  // as for a link whose own size is taken

  bench.run();

  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::notSupported);
}

TEST(RepairFile, RunCancelledBeforeItsTurnDoesNothing) {
  EngineBench bench;
  bench.choose(repairable());
  const auto run = RepairFile::newRun();
  run->cancel->cancel();

  bench.job->retrieveAudioVideoSamples(run);

  EXPECT_TRUE(bench.events.lines().empty());
  EXPECT_FALSE(bench.files.has("/out.avi"));
}

TEST(RepairFile, InputIsClosedAndNeverWrittenTo) {
  EngineBench bench;
  const platform::Bytes before = repairable();
  MemoryFile& input = bench.choose(before);
  bool written = false;
  input.onWrite = [&](std::uint64_t, std::size_t) { written = true; };

  bench.run();

  EXPECT_EQ(bench.job->inputfilehandle, nullptr);
  EXPECT_FALSE(written);
  EXPECT_EQ(input.bytes, before);
}

TEST(RepairFile, ReadErrorsAreCountedWithTheFirstOffsetAndLoggedAtTheEnd) {
  EngineBench bench;
  MemoryFile& input = bench.choose(repairable());
  input.badReadStart = 300000;
  input.badReadEnd = 300512;
  input.readError = std::make_error_code(std::errc::io_error);

  bench.run();

  const avi::ReadFailures failures = bench.job->readFailures.get();
  EXPECT_GT(failures.count, 0U);
  EXPECT_EQ(failures.firstOffset, 300000U);
  EXPECT_EQ(failures.firstCause, std::errc::io_error);
  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::rebuilt);
  EXPECT_EQ(bench.events.lines().back(), "log: Reads failed=" + std::to_string(failures.count) +
                                             ", the first at 300000: " + input.readError.message());
}

TEST(RepairFile, OneReadErrorIsLoggedToo) {
  EngineBench bench;
  MemoryFile& input = bench.choose(platform::Bytes(9000, std::byte{0x20}));  // no AVI file: each block is read once
  input.badReadStart = 3000;
  input.badReadEnd = 3001;
  input.readError = std::make_error_code(std::errc::io_error);

  bench.run();

  EXPECT_EQ(bench.events.lines().back(), "log: Reads failed=1, the first at 3000: " + input.readError.message());
}

TEST(RepairFile, UnreadableByteCostsOnlyTheCodesBehindItInItsBlock) {
  EngineBench bench;
  MemoryFile& input = bench.choose(repairable());
  constexpr std::uint64_t kHeader = 338 + 96 * 3118;  // of a video chunk, in the middle of block 293
  ASSERT_EQ(textAt(input.bytes, kHeader, 4), "00dc");
  input.badReadStart = kHeader - 10;
  input.badReadEnd = kHeader - 9;
  input.readError = std::make_error_code(std::errc::io_error);

  bench.run();

  EXPECT_EQ(bench.job->videosamplecount, 199U);
  EXPECT_EQ(bench.job->audiosamplecount, 199U);
}

TEST(RepairFile, EndOfTheFileIsNoReadError) {
  EngineBench bench;
  platform::Bytes bytes = repairable();
  bytes.resize(bytes.size() - 1500);
  bench.choose(std::move(bytes));

  bench.run();

  EXPECT_EQ(bench.job->readFailures.get().count, 0U);
}

TEST(RepairFile, FailuresOfAnEarlierRunAreForgotten) {
  EngineBench bench;
  MemoryFile& input = bench.choose(repairable());
  input.badReadStart = 300000;
  input.badReadEnd = 300512;
  input.readError = std::make_error_code(std::errc::io_error);
  bench.files.refuse("/out.avi", std::make_error_code(std::errc::permission_denied));
  bench.run();
  ASSERT_TRUE(bench.job->writeFailure.get().has_value());
  bench.choose(repairable());
  bench.files.refuse("/out.avi", {});

  bench.run();

  EXPECT_EQ(bench.job->readFailures.get().count, 0U);
  EXPECT_FALSE(bench.job->writeFailure.get().has_value());
}

}  // namespace
}  // namespace zelvo::tests
