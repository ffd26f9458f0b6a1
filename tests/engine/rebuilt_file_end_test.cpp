// How the writing of the rebuilt file ends: stops, files that are there or come short, and errors.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "tests/engine/rebuilt_file_bench.h"

namespace zelvo::tests {
namespace {

// ---- Stops ----

TEST_F(RebuiltFile, StopBeforeTheCopyLeavesHeadersAndIndexesThatStillCountTheData) {
  addChunk("00dc", 1000);
  addChunk("00dc", 2000);
  addChunk("01wb", 300);
  engine::stopflag = true;

  const Bytes file = write();

  EXPECT_EQ(file.size(), 40U + 18 + 436 + 8 * 2 + 8 * 1);
  EXPECT_EQ(numberAt(file, 4), file.size() - 8 + 3300 + 3 * 8);
  EXPECT_EQ(bench.events.lines().back(), "log: Repair file completed");
  EXPECT_TRUE(happened("setMovieView(/out.avi)"));
}

TEST_F(RebuiltFile, StopDuringTheVideoCopyLetsItRunToItsEndAndSkipsTheAudio) {
  for (int i = 0; i < 20; ++i) {
    addChunk("00dc", 100000);
    addChunk("01wb", 100000);
  }
  bench.files.at("/in.avi").onRead = [](std::uint64_t, std::size_t) { engine::stopflag = true; };

  const Bytes file = write();

  EXPECT_EQ(file.size(), 40U + 18 + 436 + 8 * 40 + 20 * 100008);
}

TEST_F(RebuiltFile, StopDuringTheAudioCopyChangesNothing) {
  for (int i = 0; i < 20; ++i) {
    addChunk("00dc", 100000);
    addChunk("01wb", 100000);
  }
  // Reads of the audio copy, and only these, start in an audio chunk.
  const std::uint64_t start = bench.job->videosampleoffsetarray[1];
  bench.files.at("/in.avi").onRead = [start](std::uint64_t offset, std::size_t) {
    if ((offset - start) % (2 * 100008) >= 100008) engine::stopflag = true;
  };

  const Bytes file = write();

  EXPECT_TRUE(engine::stopflag);
  EXPECT_EQ(file.size(), 8 + bench.job->layout.RIFFLISTsize);
}

TEST_F(RebuiltFile, AbandonedRunCreatesNoFile) {
  bench.current->cancel->abandon();
  write();
  EXPECT_FALSE(bench.files.has("/out.avi"));
  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::abandoned);
  EXPECT_EQ(bench.events.lines(), std::vector<std::string>{"log: Construct RIFF file"});
}

TEST_F(RebuiltFile, AbandonedRunEndsInTheMiddleOfTheCopy) {
  for (int i = 0; i < 200; ++i) addChunk("00dc", 100000);
  const std::uint64_t fifth = bench.job->videosampleoffsetarray[5];
  bench.files.at("/in.avi").onRead = [&](std::uint64_t offset, std::size_t size) {
    if (offset + size > fifth) bench.current->cancel->abandon();
  };

  const Bytes file = write();

  EXPECT_LT(file.size(), 100U * 100008);
  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::abandoned);
  EXPECT_FALSE(happened("setMovieView(/out.avi)"));
  EXPECT_FALSE(happened("log: Repair file completed"));
}

TEST_F(RebuiltFile, RefusedRunCreatesNoFileAndIsTold) {
  addChunk("00dc", 1000);
  std::uint64_t asked = 0;
  bench.current->mayWrite = [&](std::uint64_t bytes) {
    asked = bytes;
    return false;
  };

  write();

  EXPECT_EQ(asked, 40U + 18 + 436 + 8 + 1008);
  EXPECT_FALSE(bench.files.has("/out.avi"));
  EXPECT_EQ(bench.job->runEnd, engine::RunEnd::refused);
  EXPECT_TRUE(bench.current->cancel->cancelled());
  EXPECT_FALSE(engine::stopflag);
  EXPECT_FALSE(happened("setMovieView(/out.avi)"));
}

TEST_F(RebuiltFile, BytesAskedForAfterAStopAreThoseOfHeadersAndIndexesAlone) {
  addChunk("00dc", 1000);
  addChunk("01wb", 300);
  std::uint64_t asked = 0;
  bench.current->mayWrite = [&](std::uint64_t bytes) {
    asked = bytes;
    return true;
  };
  engine::stopflag = true;

  const Bytes file = write();

  EXPECT_EQ(asked, 40U + 18 + 436 + 8 + 8);
  EXPECT_EQ(file.size(), asked);
}

TEST_F(RebuiltFile, BytesAskedForCountWhatTheInputHoldsOfEachChunkOverlapsToo) {
  addChunk("00dc", 1000);
  engine::RepairFile& job = *bench.job;
  job.videosamplesizearray[2] = 1000;  // the same chunk once more
  job.videosampleoffsetarray[2] = job.videosampleoffsetarray[1];
  job.videosamplesizearray[3] = 5000;  // runs past the end
  job.videosampleoffsetarray[3] = job.videosampleoffsetarray[1] + 908;
  job.videosamplecount = 3;
  std::uint64_t asked = 0;
  bench.current->mayWrite = [&](std::uint64_t bytes) {
    asked = bytes;
    return true;
  };

  const Bytes file = write();

  EXPECT_EQ(asked, 40U + 18 + 436 + 3 * 8 + 1008 + 1008 + 100);
  EXPECT_EQ(file.size(), asked);
}

// ---- Files that are there, or come short ----

TEST_F(RebuiltFile, ExistingFileIsEmptiedAndOverwritten) {
  const Bytes file = write();
  bench.files.put("/out.avi", Bytes(5000, std::byte{0x77}));
  EXPECT_EQ(write(), file);
}

TEST_F(RebuiltFile, ChunkPastTheEndOfTheInputIsWrittenAsItCame) {
  addChunk("00dc", 1000);
  addChunk("01wb", 1000);
  bench.files.at("/in.avi").bytes.resize(bench.job->audiosampleoffsetarray[1] + 100);
  bench.files.at("/in.avi").size = bench.files.at("/in.avi").bytes.size();

  const Bytes file = write();

  EXPECT_EQ(file.size(), 8 + bench.job->layout.RIFFLISTsize - 908);
  EXPECT_FALSE(bench.job->writeFailure.get().has_value());
}

TEST_F(RebuiltFile, ShortFileIsTrimmedToWhatWasWrittenWhereRoomWasReserved) {
  bench.files.put("/out.avi", {}).reserveError = {};
  addChunk("00dc", 1000);
  bench.files.at("/in.avi").badReadStart = bench.job->videosampleoffsetarray[1] + 100;
  bench.files.at("/in.avi").badReadEnd = bench.job->videosampleoffsetarray[1] + 101;
  bench.files.at("/in.avi").readError = std::make_error_code(std::errc::io_error);

  const Bytes file = write();

  EXPECT_EQ(file.size(), 8 + bench.job->layout.RIFFLISTsize - 908);
}

class RebuiltFileWithUnreadableSpot : public RebuiltFile,
                                      public testing::WithParamInterface<std::tuple<std::size_t, bool>> {};

TEST_P(RebuiltFileWithUnreadableSpot, IsThatOfOneReadPerChunkAndNotLonger) {
  const auto [badChunk, reserves] = GetParam();
  for (int i = 0; i < 40; ++i) addChunk("00dc", 100000, static_cast<std::byte>(0x41 + i));
  MemoryFile& input = bench.files.at("/in.avi");
  input.badReadStart = bench.job->videosampleoffsetarray[badChunk] + 1000;
  input.badReadEnd = input.badReadStart + 1;
  input.readError = std::make_error_code(std::errc::io_error);
  // The chunk ends at the spot, and the rest moves up.
  Bytes expected;
  for (std::size_t i = 1; i <= 40; ++i) {
    const auto start = input.bytes.begin() + static_cast<std::ptrdiff_t>(bench.job->videosampleoffsetarray[i]);
    expected.insert(expected.end(), start, start + (i == badChunk ? 1000 : 100008));
  }
  const std::size_t headers = 40 + 18 + 436 + 8 * 40;
  MemoryFile& output = bench.files.put("/out.avi", {});
  if (reserves) output.reserveError = {};
  // Lets whoever writes after the spot go first, if anyone does.
  std::atomic<std::uint64_t> writtenTo = 0;
  output.onWrite = [&](std::uint64_t offset, std::size_t size) { writtenTo = offset + size; };
  input.onRead = [&](std::uint64_t offset, std::size_t size) {
    if (offset > input.badReadStart || offset + size <= input.badReadStart) return;
    for (int i = 0; i < 2000 && writtenTo <= headers + expected.size(); ++i) std::this_thread::yield();
  };

  const Bytes file = write();

  EXPECT_EQ(file.size(), headers + expected.size());
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), file.begin() + headers));
}

INSTANTIATE_TEST_SUITE_P(Spots, RebuiltFileWithUnreadableSpot,
                         testing::Combine(testing::Values(1, 3, 20, 36, 37, 38, 39, 40), testing::Bool()),
                         [](const auto& named) {
                           return "Chunk" + std::to_string(std::get<0>(named.param)) +
                                  (std::get<1>(named.param) ? "Reserved" : "NotReserved");
                         });

TEST_F(RebuiltFile, IsTheSameWhetherRoomCanBeReservedOrNot) {
  for (int i = 0; i < 30; ++i) {
    addChunk("00dc", 10001);
    addChunk("01wb", 555);
  }
  const Bytes without = write();
  bench.files.put("/out.avi", {}).reserveError = {};
  EXPECT_EQ(write(), without);
}

TEST_F(RebuiltFile, IsClosedBeforeItIsHandedOver) {
  addChunk("00dc", 1000);
  bool closed = false;
  bench.relay.onMovie = [&](const std::string&) { closed = bench.job->outputfile == nullptr; };
  write();
  EXPECT_TRUE(closed);
}

TEST_F(RebuiltFile, EndIsKnownBeforeItIsHandedOver) {
  engine::RunEnd known = engine::RunEnd::none;
  bench.relay.onMovie = [&](const std::string&) { known = bench.job->runEnd; };
  write();
  EXPECT_EQ(known, engine::RunEnd::rebuilt);
}

TEST_F(RebuiltFile, FileManagerIsKeptOnTheJob) {
  write();
  EXPECT_EQ(bench.job->outputfilemanager, &bench.files);
}

// ---- Write errors ----

class RebuiltFileWriteError : public RebuiltFile {
 protected:
  /// What holds after every write error.
  template <class Cause>
  void expectReported(std::uint64_t offset, const Cause& cause) {
    const auto failure = bench.job->writeFailure.get();
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->offset, offset);
    EXPECT_EQ(failure->cause, cause);
    EXPECT_TRUE(bench.current->cancel->cancelled());
    EXPECT_FALSE(engine::stopflag);
    const std::vector<std::string> lines = bench.events.lines();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines[lines.size() - 3],
              "log: Write failed at " + std::to_string(offset) + ": " + failure->cause.message());
    EXPECT_EQ(lines[lines.size() - 2], "setMovieView(/out.avi)");
    EXPECT_EQ(lines[lines.size() - 1], "log: Repair file completed");
    EXPECT_TRUE(happened("log: audiocodecstring=mp3 "));
  }
  void expectNoRoom(int cause) {
    addChunk("00dc", 100000);
    MemoryFile& output = bench.files.put("/out.avi", {});
    output.reserveError = std::error_code(cause, std::system_category());
    bool wasWritten = false;
    output.onWrite = [&](std::uint64_t, std::size_t) { wasWritten = true; };

    const Bytes file = write();

    expectReported(0, output.reserveError);
    EXPECT_FALSE(wasWritten);
    EXPECT_TRUE(file.empty());
  }
};

TEST_F(RebuiltFileWriteError, FileThatCannotBeCreatedIsReported) {
  bench.files.refuse("/out.avi", std::make_error_code(std::errc::permission_denied));
  write();
  expectReported(0, std::errc::permission_denied);
}

TEST_F(RebuiltFileWriteError, FileThatCannotBeOpenedIsReported) {
  bench.files.onTouch = [this](const std::string& what) {
    if (what.starts_with("openForWriting")) {
      bench.files.refuse("/out.avi", std::make_error_code(std::errc::too_many_files_open));
    }
  };
  write();
  expectReported(0, std::errc::too_many_files_open);
}

TEST_F(RebuiltFileWriteError, FullDiskIsReportedWithWhereItHappened) {
  for (int i = 0; i < 20; ++i) addChunk("00dc", 100000);
  MemoryFile& output = bench.files.put("/out.avi", {});
  output.badWriteFrom = 777777;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);

  const Bytes file = write();

  expectReported(777777, std::errc::no_space_on_device);
  EXPECT_EQ(file.size(), 777777U);
}

TEST_F(RebuiltFileWriteError, FullDiskLeavesNoReservedRoomBehind) {
  for (int i = 0; i < 20; ++i) addChunk("00dc", 100000);
  MemoryFile& output = bench.files.put("/out.avi", {});
  output.reserveError = {};
  output.badWriteFrom = 777777;
  output.writeError = std::make_error_code(std::errc::io_error);
  EXPECT_EQ(write().size(), 777777U);
}

TEST_F(RebuiltFileWriteError, RoomThatIsNotThereIsReportedBeforeAnythingIsWritten) { expectNoRoom(ENOSPC); }

TEST_F(RebuiltFileWriteError, ShareOfTheDiskThatIsUsedUpIsReportedTheSame) { expectNoRoom(EDQUOT); }

TEST_F(RebuiltFileWriteError, AnyOtherRefusalOfRoomIsNone) {
  for (const int cause : {EOPNOTSUPP, EINVAL, EIO, EFBIG, EPERM}) {
    bench.files.put("/out.avi", {}).reserveError = std::error_code(cause, std::system_category());
    EXPECT_EQ(write().size(), 40U + 18 + 436);
    EXPECT_FALSE(bench.job->writeFailure.get()) << cause;
  }
}

TEST_F(RebuiltFileWriteError, ErrorAtClosingIsReported) {
  bench.files.put("/out.avi", {}).closeError = std::make_error_code(std::errc::io_error);
  write();
  expectReported(40 + 18 + 436, std::errc::io_error);
}

TEST_F(RebuiltFileWriteError, ReadingEndsSoonAfterIt) {
  for (int i = 0; i < 400; ++i) addChunk("00dc", 100000);
  MemoryFile& output = bench.files.put("/out.avi", {});
  output.badWriteFrom = 0;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  write();
  // What may still be read fills the buffers that wait, not the whole input.
  EXPECT_LT(bench.files.at("/in.avi").reads, 100U);
}

}  // namespace
}  // namespace zelvo::tests
