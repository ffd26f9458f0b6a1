#include "avi/staged_output.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

constexpr std::size_t kBuffer = avi::StagedOutput::kBufferSize;

platform::Bytes randomBytes(std::size_t size) {
  std::mt19937 random(static_cast<unsigned>(size));
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

class StagedOutput : public testing::Test {
 protected:
  StagedOutput() : content(files.put("/out", {})), opened(files.openForWriting("/out")) {}
  void failFrom(std::uint64_t offset) {
    content.badWriteFrom = offset;
    content.writeError = std::make_error_code(std::errc::no_space_on_device);
  }
  platform::Bytes written() { return files.content("/out"); }

  MemoryFiles files;
  MemoryFile& content;
  platform::Opened<platform::WritableFile> opened;
};

class StagedOutputOfSize : public StagedOutput, public testing::WithParamInterface<std::size_t> {};

TEST_P(StagedOutputOfSize, WritesExactlyWhatWasAppendedInOneGo) {
  const platform::Bytes bytes = randomBytes(GetParam());
  avi::StagedOutput out(*opened.file);
  out.append(bytes);
  EXPECT_EQ(out.position(), bytes.size());
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(written(), bytes);
}

TEST_P(StagedOutputOfSize, WritesExactlyWhatWasAppendedInPieces) {
  const platform::Bytes bytes = randomBytes(GetParam());
  std::mt19937 random(3);
  avi::StagedOutput out(*opened.file);
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t step = std::min<std::size_t>(random() % 5000, bytes.size() - at);
    out.append(std::span(bytes).subspan(at, step));
    at += step;
    ASSERT_EQ(out.position(), at);
  }
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(written(), bytes);
}

TEST_P(StagedOutputOfSize, WritesExactlyWhatWasPutIntoItsRoom) {
  const platform::Bytes bytes = randomBytes(GetParam());
  avi::StagedOutput out(*opened.file);
  for (std::size_t at = 0; at < bytes.size();) {
    const std::span<std::byte> room = out.room();
    ASSERT_FALSE(room.empty());
    const std::size_t step = std::min({room.size(), bytes.size() - at, std::size_t{70001}});
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), step, room.begin());
    out.commit(step);
    at += step;
  }
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(written(), bytes);
}

INSTANTIATE_TEST_SUITE_P(Sizes, StagedOutputOfSize,
                         testing::Values(0, 1, 8, kBuffer - 1, kBuffer, kBuffer + 1, 2 * kBuffer, 5 * kBuffer + 7,
                                         20 * kBuffer),
                         testing::PrintToStringParamName());

TEST_F(StagedOutput, WritesInLargePiecesAtAlignedPositions) {
  std::vector<std::pair<std::uint64_t, std::size_t>> writes;
  content.onWrite = [&](std::uint64_t offset, std::size_t size) { writes.emplace_back(offset, size); };
  avi::StagedOutput out(*opened.file);
  for (int i = 0; i < 100000; ++i) out.number32(7);
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(writes.size(), 400000 / kBuffer + 1);  // hardly more writes than buffers
  for (const auto& [offset, size] : writes) EXPECT_EQ(offset % kBuffer, 0U);
}

TEST_F(StagedOutput, FieldsAreLittleEndian) {
  avi::StagedOutput out(*opened.file);
  out.code(avi::kRiff);
  out.number32(0x05060708U);
  out.number64(0x0102030405060708U);
  out.zeros(3);
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(hexOf(written()), "52 49 46 46 08 07 06 05 08 07 06 05 04 03 02 01 00 00 00");
}

TEST_F(StagedOutput, ZerosOfAnyCount) {
  for (const std::size_t count : {0UL, 1UL, 63UL, 64UL, 65UL, 1000UL, kBuffer + 5}) {
    files.put("/out", {});
    const auto file = files.openForWriting("/out");
    avi::StagedOutput out(*file.file);
    out.zeros(count);
    EXPECT_FALSE(out.finish());
    EXPECT_EQ(written(), platform::Bytes(count));
  }
}

TEST_F(StagedOutput, FailureIsAnsweredWithWhereAndWhy) {
  failFrom(3 * kBuffer + 1000);
  avi::StagedOutput out(*opened.file);
  out.append(randomBytes(10 * kBuffer));

  const auto failure = out.finish();

  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->offset, 3 * kBuffer + 1000);
  EXPECT_EQ(failure->cause, std::errc::no_space_on_device);
  EXPECT_TRUE(out.failed());
  EXPECT_EQ(written().size(), 3 * kBuffer + 1000);
}

TEST_F(StagedOutput, NothingIsWrittenBehindAFailure) {
  failFrom(kBuffer);
  int writes = 0;
  content.onWrite = [&](std::uint64_t, std::size_t) { ++writes; };
  avi::StagedOutput out(*opened.file);
  for (int i = 0; i < 50; ++i) out.append(platform::Bytes(kBuffer));
  EXPECT_TRUE(out.finish().has_value());
  EXPECT_EQ(writes, 2);
}

TEST_F(StagedOutput, FailureInTheLastPieceIsAnswered) {
  failFrom(5);
  avi::StagedOutput out(*opened.file);
  out.append(bytesOf("0123456789"));
  EXPECT_FALSE(out.failed());  // nothing was handed over yet
  const auto failure = out.finish();
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->offset, 5U);
}

TEST_F(StagedOutput, FinishAnswersTheSameAgain) {
  failFrom(5);
  avi::StagedOutput out(*opened.file);
  out.append(bytesOf("0123456789"));
  EXPECT_TRUE(out.finish().has_value());
  EXPECT_TRUE(out.finish().has_value());
}

TEST_F(StagedOutput, StartsWhereItIsTold) {
  content.bytes = bytesOf("0123456789");
  avi::StagedOutput out(*opened.file, 4);
  EXPECT_EQ(out.position(), 4U);
  out.append(bytesOf("abc"));
  EXPECT_EQ(out.position(), 7U);
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(textAt(written(), 0, 20), "0123abc789");
}

TEST_F(StagedOutput, ReachesAlignedPositionsFromAnyStart) {
  for (const std::uint64_t start : {std::uint64_t{1}, std::uint64_t{kBuffer - 1}, std::uint64_t{3 * kBuffer + 77}}) {
    std::vector<std::uint64_t> offsets;
    content.onWrite = [&](std::uint64_t offset, std::size_t) { offsets.push_back(offset); };
    const platform::Bytes bytes = randomBytes(3 * kBuffer);
    avi::StagedOutput out(*opened.file, start);
    out.append(bytes);
    EXPECT_FALSE(out.finish());
    ASSERT_GE(offsets.size(), 3U);
    EXPECT_EQ(offsets[0], start);
    for (std::size_t i = 1; i < offsets.size(); ++i) EXPECT_EQ(offsets[i] % kBuffer, 0U);
    const platform::Bytes all = written();
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), all.begin() + static_cast<std::ptrdiff_t>(start)));
  }
}

TEST_F(StagedOutput, FinishWithoutAnythingWritesNothing) {
  int writes = 0;
  content.onWrite = [&](std::uint64_t, std::size_t) { ++writes; };
  avi::StagedOutput out(*opened.file);
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(writes, 0);
}

}  // namespace
}  // namespace zelvo::tests
