// What a whole run tells of the film: the verdict and its figures, and why a film is not supported.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "tests/support/avi_builder.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

using platform::FilmReport;
using platform::FilmVerdict;
using platform::Rejection;

constexpr int kPictures = 200;
constexpr std::uint32_t kVideo = 3000;
constexpr std::uint32_t kAudio = 800;
constexpr std::uint64_t kPair = kVideo + 8 + kAudio + 8;

AviBuilder film() { return AviBuilder().interleaved(kPictures, kVideo, kAudio); }
std::uint64_t firstChunk() { return film().headers().size() + 12; }

class FilmReportOf : public testing::Test {
 protected:
  FilmReport reportOf(platform::Bytes bytes) {
    bench.choose(std::move(bytes));
    return runIt();
  }
  FilmReport runIt() {
    auto run = engine::RepairFile::newRun();
    run->found = [this](const FilmReport& report) {
      told.push_back(report);
      bench.events.add("found");
    };
    run->rejected = [this](Rejection reason) {
      rejected = reason;
      bench.events.add("rejected");
    };
    bench.job->retrieveAudioVideoSamples(std::move(run));
    bench.queue.pump();
    return bench.job->filmReport.get();
  }
  std::optional<Rejection> rejectionOf(platform::Bytes bytes) {
    reportOf(std::move(bytes));
    return rejected;
  }

  EngineBench bench;
  std::vector<FilmReport> told;
  std::optional<Rejection> rejected;
};

TEST_F(FilmReportOf, AWholeFilmIsGood) {
  const FilmReport report = reportOf(film().build());
  EXPECT_EQ(report.verdict, FilmVerdict::good);
  EXPECT_EQ(report.pictures, 200U);
  EXPECT_EQ(report.soundChunks, 199U) << "the last one stands before the index and is never found";
  EXPECT_GE(report.share, 0.99);
  EXPECT_DOUBLE_EQ(report.pictureSeconds.value_or(0), 200 / 25.0);
  EXPECT_DOUBLE_EQ(report.soundSeconds.value_or(0), 199 * 800 / 8000.0);
  EXPECT_EQ(report.failedReads, 0U);
  EXPECT_EQ(report.videoCodec, "MPEG-4 (Xvid)");
  EXPECT_EQ(report.audioCodec, "MP3");
}

TEST_F(FilmReportOf, WholeHeadersOverZeroedDataKeepNothing) {
  platform::Bytes bytes = film().build();
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(firstChunk()), bytes.end(), std::byte{0});
  const FilmReport report = reportOf(std::move(bytes));
  EXPECT_EQ(report.verdict, FilmVerdict::nothing);
  EXPECT_EQ(report.pictures, 0U);
  EXPECT_EQ(report.share, 0.0);
  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::rebuilt) << "the run itself goes its given way";
}

TEST_F(FilmReportOf, WholeChunkHeadersOverZeroedPicturesKeepNothing) {
  AviBuilder zeroed = film();
  for (AviChunk& chunk : zeroed.chunks) {
    if (chunk.code == "00dc") chunk.fill = std::byte{0};
  }
  const FilmReport report = reportOf(zeroed.build());
  EXPECT_EQ(bench.job->videosamplecount, 200U);
  EXPECT_EQ(report.verdict, FilmVerdict::nothing);
  EXPECT_EQ(report.pictures, 0U);
  EXPECT_EQ(report.blankPictures, 200U);
  EXPECT_EQ(report.soundChunks, 199U);
}

TEST_F(FilmReportOf, SomeZeroedPicturesAreTold) {
  AviBuilder zeroed = film();
  for (std::size_t i = 0; i < 20; i += 2) zeroed.chunks[i].fill = std::byte{0};
  const FilmReport report = reportOf(zeroed.build());
  EXPECT_EQ(report.verdict, FilmVerdict::partly);
  EXPECT_EQ(report.blankPictures, 10U);
  EXPECT_EQ(report.pictures, 190U);
  EXPECT_NEAR(report.share, 0.96, 0.01);
}

TEST_F(FilmReportOf, SilenceIsSound) {
  AviBuilder silent = film();
  for (AviChunk& chunk : silent.chunks) {
    if (chunk.code == "01wb") chunk.fill = std::byte{0};
  }
  EXPECT_EQ(reportOf(silent.build()).verdict, FilmVerdict::good);
}

TEST_F(FilmReportOf, AHoleMakesItPartly) {
  platform::Bytes bytes = film().build();
  const auto begin = static_cast<std::ptrdiff_t>(firstChunk() + 50 * kPair);
  std::fill_n(bytes.begin() + begin, 20 * kPair, std::byte{0});
  const FilmReport report = reportOf(std::move(bytes));
  EXPECT_EQ(report.verdict, FilmVerdict::partly);
  EXPECT_NEAR(report.share, 0.9, 0.01);
}

TEST_F(FilmReportOf, ALostSoundMakesItPartly) {
  AviBuilder silent = film();
  std::erase_if(silent.chunks, [](const AviChunk& chunk) { return chunk.code == "01wb"; });
  const FilmReport report = reportOf(silent.build());
  EXPECT_EQ(report.soundChunks, 0U);
  EXPECT_EQ(report.verdict, FilmVerdict::partly);
}

TEST_F(FilmReportOf, AFilmOfAlignedChunksIsGood) {
  AviBuilder aligned = AviBuilder();
  for (int i = 0; i < 60; ++i) {
    aligned.chunks.push_back({"00dc", 6000});
    aligned.chunks.push_back({"JUNK", 2000, std::byte{0}});
    aligned.chunks.push_back({"01wb", 1000});
    aligned.chunks.push_back({"JUNK", 1000, std::byte{0}});
  }
  EXPECT_EQ(reportOf(aligned.build()).verdict, FilmVerdict::good);
}

TEST_F(FilmReportOf, AnUnfinishedRecordingIsJudgedByWhatIsThere) {
  AviBuilder unfinished = film();
  unfinished.withIndex = false;
  platform::Bytes bytes = unfinished.build();
  overwrite(bytes, firstChunk() - 8, std::string_view("\0\0\0\0", 4));
  bytes.resize(firstChunk() + 190 * kPair);
  EXPECT_EQ(reportOf(std::move(bytes)).verdict, FilmVerdict::good);
}

TEST_F(FilmReportOf, FailedReadsAreCountedInBytesAndMakeItPartly) {
  MemoryFile& input = bench.choose(film().build());
  const std::uint64_t bad = firstChunk() + 60 * kPair + 100;
  input.badReadStart = bad / 1024 * 1024;
  input.badReadEnd = input.badReadStart + 4096;
  input.readError = std::make_error_code(std::errc::io_error);
  const FilmReport report = runIt();
  EXPECT_EQ(report.verdict, FilmVerdict::partly);
  EXPECT_GT(report.failedReads, 0U);
  EXPECT_EQ(report.unreadableBytes, 4096U);
  EXPECT_EQ(report.firstUnreadable, input.badReadStart);
}

TEST_F(FilmReportOf, IsToldBeforeTheSheetAndAgainOnceItIsWritten) {
  reportOf(film().build());
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0], told[1]);
  const auto lines = bench.events.lines();
  const auto found = std::find(lines.begin(), lines.end(), "found");
  const auto sheet = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
    return line.starts_with("beginSheet(repaircompletedwindow");
  });
  ASSERT_NE(sheet, lines.end());
  EXPECT_LT(found, sheet);
}

TEST_F(FilmReportOf, ANextRunBeginsWithNothing) {
  reportOf(film().build());
  const FilmReport report = reportOf(platform::Bytes(600000));
  EXPECT_EQ(report, FilmReport{});
}

TEST_F(FilmReportOf, UnusableScalesLeaveTheMainHeaderToSayHowLongAPictureIsShown) {
  AviBuilder wild = film();
  wild.videoRate = 0;
  EXPECT_DOUBLE_EQ(reportOf(wild.build()).pictureSeconds.value_or(0), 200 * 0.04);
  wild.microSecPerFrame = 0;
  EXPECT_EQ(reportOf(wild.build()).pictureSeconds, std::nullopt);
}

TEST_F(FilmReportOf, ARejectionNamesItsReason) {
  EXPECT_EQ(rejectionOf(AviBuilder().interleaved(10, kVideo, kAudio).build()), Rejection::tooSmall);

  AviBuilder mute = film();
  mute.withAudioStream = false;
  EXPECT_EQ(rejectionOf(mute.build()), Rejection::noSound);

  AviBuilder raw = film();
  raw.videoCompression = std::string_view("\0\0\0\0", 4);
  EXPECT_EQ(rejectionOf(raw.build()), Rejection::uncompressed);

  AviBuilder blind = film();
  blind.withVideoStream = false;
  EXPECT_EQ(rejectionOf(blind.build()), Rejection::headerLost);
}

TEST_F(FilmReportOf, ARejectionAfterFailedReadsSaysSo) {
  MemoryFile& input = bench.choose(film().build());
  input.badReadStart = 1024;
  input.badReadEnd = 2048;
  input.readError = std::make_error_code(std::errc::io_error);
  std::fill_n(input.bytes.begin() + 12, 500, std::byte{0});
  overwrite(input.bytes, 0, "RIFF");
  runIt();
  EXPECT_EQ(rejected, Rejection::unreadable);
}

TEST_F(FilmReportOf, ARejectionIsToldBeforeItsSheet) {
  rejectionOf(AviBuilder().interleaved(10, kVideo, kAudio).build());
  const auto lines = bench.events.lines();
  const auto sheet = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
    return line.starts_with("beginSheet(filenotsupportedwindow");
  });
  ASSERT_NE(sheet, lines.end());
  EXPECT_LT(std::find(lines.begin(), lines.end(), "rejected"), sheet);
}

TEST_F(FilmReportOf, PictureIsShownFromAThousandthToTenSeconds) {
  AviBuilder wild = film();
  wild.videoRate = 0;  // so that the main header counts
  for (const auto& [microseconds, counts] :
       {std::pair{999U, false}, std::pair{1000U, true}, std::pair{10000000U, true}, std::pair{10000001U, false}}) {
    wild.microSecPerFrame = microseconds;
    EXPECT_EQ(reportOf(wild.build()).pictureSeconds.has_value(), counts) << microseconds;
  }
  wild.microSecPerFrame = 40000;
  wild.videoRate = 1;
  wild.videoScale = 10;
  EXPECT_DOUBLE_EQ(reportOf(wild.build()).pictureSeconds.value_or(0), 2000.0);
  wild.videoScale = 11;
  EXPECT_DOUBLE_EQ(reportOf(wild.build()).pictureSeconds.value_or(0), 200 * 0.04);
}

TEST_F(FilmReportOf, CodecOfTheFormatIsNamedWhereTheHandlerIsNotKnown) {
  AviBuilder other = film();
  other.videoHandler = "zzzz";
  other.videoCompression = "MJPG";
  const std::string ofTheFormat = reportOf(other.build()).videoCodec;
  other.videoHandler = "MJPG";
  other.videoCompression = "zzzz";
  EXPECT_EQ(ofTheFormat, reportOf(other.build()).videoCodec);
  EXPECT_FALSE(ofTheFormat.empty());
  other.videoHandler = "zzzz";
  EXPECT_EQ(reportOf(other.build()).videoCodec, "");
}

TEST_F(FilmReportOf, SoundWithoutASpeedHasNoLength) {
  AviBuilder mute = film();
  mute.audioRate = 0;
  EXPECT_EQ(reportOf(mute.build()).soundSeconds, std::nullopt);
}

TEST_F(FilmReportOf, AStopDuringTheScanTellsNothing) {
  bench.choose(film().build());
  bench.relay.onValue = [this](double) {
    if (bench.job->videosamplecount == 30) engine::stopflag = true;
  };
  runIt();
  EXPECT_TRUE(told.empty());
}

TEST_F(FilmReportOf, AStopBeforeTheBeginningIsReadIsARejectionOfItsOwn) {
  bench.choose(film().build());
  engine::stopflag = true;
  runIt();
  EXPECT_EQ(rejected, Rejection::stopped);
}

TEST_F(FilmReportOf, ARejectionLooksForTheMainHeaderFirst) {
  AviBuilder headless = film();
  headless.avihSize = 65536;
  headless.withAudioStream = false;
  EXPECT_EQ(rejectionOf(headless.build()), Rejection::headerLost);
  AviBuilder nameless = film();
  nameless.videoHandler = {"\0\0\0\0", 4};
  nameless.withAudioStream = false;
  EXPECT_EQ(rejectionOf(nameless.build()), Rejection::headerLost);
}

TEST_F(FilmReportOf, PicturesAreUncompressedOnlyWhereBothDescriptionsAreWhole) {
  AviBuilder raw = film();
  raw.videoCompression = {"\0\0\0\0", 4};
  const platform::Bytes whole = raw.build();
  constexpr std::size_t kVideoFormat = 168;  // its size field; biSize stands after it
  for (const std::size_t field : {kVideoFormat, kVideoFormat + 4}) {
    platform::Bytes shorter = whole;
    ASSERT_EQ(shorter[field], std::byte{40});
    shorter[field] = std::byte{39};
    EXPECT_EQ(rejectionOf(std::move(shorter)), Rejection::headerLost);
  }
  EXPECT_EQ(rejectionOf(whole), Rejection::uncompressed);
  raw.withAudioStream = false;
  EXPECT_EQ(rejectionOf(raw.build()), Rejection::headerLost);
}

}  // namespace
}  // namespace zelvo::tests
