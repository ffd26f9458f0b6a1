#include "engine/padded_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

constexpr std::size_t kBlock = 32768;

platform::Bytes randomBytes(std::size_t size) {
  std::mt19937 random(static_cast<unsigned>(size));
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

/// The copy as it is meant, block by block: `held` is what can be read, `size` what the copy was told.
platform::Bytes literalCopy(const platform::Bytes& held, std::size_t size) {
  platform::Bytes out;
  platform::Bytes block(kBlock);
  const std::size_t rest = size % kBlock;
  std::size_t position = 0;
  for (std::size_t start = 0; start < size; start += kBlock) {
    std::fill(block.begin(), block.end(), std::byte{0});
    const std::size_t count = start < held.size() ? std::min(kBlock, held.size() - start) : 0;
    std::copy_n(held.begin() + static_cast<std::ptrdiff_t>(start < held.size() ? start : 0), count, block.begin());
    position = start + count;
    out.insert(out.end(), block.begin(), block.end());
  }
  if (rest == 0) return out;
  const std::size_t more = position < held.size() ? std::min(rest, held.size() - position) : 0;
  if (more > 0) std::copy_n(held.begin() + static_cast<std::ptrdiff_t>(position), more, block.begin());
  out.insert(out.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(rest));
  return out;
}

class PaddedCopy : public testing::Test {
 protected:
  platform::Bytes copy(std::uint64_t size) {
    MemoryFile& output = files.put("/out", {});
    static_cast<void>(output);
    const auto from = files.openForReading("/in");
    const auto to = files.openForWriting("/out");
    end = engine::paddedCopy(from.file.get(), *to.file, size);
    return files.content("/out");
  }

  MemoryFiles files;
  engine::PaddedCopyEnd end;
};

TEST_F(PaddedCopy, FileOf100000BytesBecomes132768) {
  const platform::Bytes bytes = randomBytes(100000);
  files.put("/in", bytes);

  const platform::Bytes out = copy(100000);

  ASSERT_EQ(out.size(), 132768U);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), out.begin()));
  EXPECT_TRUE(std::all_of(out.begin() + 100000, out.begin() + 131072, [](std::byte b) { return b == std::byte{0}; }));
  EXPECT_TRUE(std::equal(out.begin() + 98304, out.begin() + 98304 + 1696, out.begin() + 131072));
}

TEST_F(PaddedCopy, FileOf65536BytesIsCopiedExactly) {
  const platform::Bytes bytes = randomBytes(65536);
  files.put("/in", bytes);
  EXPECT_EQ(copy(65536), bytes);
}

class PaddedCopyOfSize : public PaddedCopy, public testing::WithParamInterface<std::size_t> {};

TEST_P(PaddedCopyOfSize, IsTheLiteralCopyAndAsLongAsForetold) {
  const platform::Bytes bytes = randomBytes(GetParam());
  files.put("/in", bytes);
  const platform::Bytes out = copy(bytes.size());
  EXPECT_EQ(out, literalCopy(bytes, bytes.size()));
  EXPECT_EQ(end.missing, 0U);
  EXPECT_EQ(end.readFailures.count, 0U);
  EXPECT_EQ(out.size(), engine::paddedCopySize(bytes.size()));
}

INSTANTIATE_TEST_SUITE_P(Sizes, PaddedCopyOfSize,
                         testing::Values(0, 1, 2, 32767, 32768, 32769, 65535, 65537, 8 * 32768 - 1, 8 * 32768,
                                         8 * 32768 + 1, 9 * 32768, 1000000),
                         testing::PrintToStringParamName());

TEST_F(PaddedCopy, MissingInputIsCopiedAsZerosAndToldToBeMissing) {
  EXPECT_EQ(copy(40000), platform::Bytes(2 * kBlock + 7232));
  EXPECT_EQ(end.missing, 40000U);
  EXPECT_EQ(end.readFailures.count, 0U);
}

TEST_F(PaddedCopy, EmptyFileStaysEmpty) {
  files.put("/in", {});
  EXPECT_TRUE(copy(0).empty());
}

TEST_F(PaddedCopy, InputThatIsShorterThanToldIsPadded) {
  const platform::Bytes bytes = randomBytes(50000);
  files.put("/in", bytes);
  EXPECT_EQ(copy(400000), literalCopy(bytes, 400000));
  EXPECT_EQ(end.missing, 350000U);
  EXPECT_EQ(end.readFailures.count, 0U);
}

TEST_F(PaddedCopy, InputThatHasGrownSinceItWasMeasuredIsReadOverTheLastBlocksFront) {
  // Of the last block all 32768 bytes can now be read, and the second read goes on after them.
  for (const std::size_t grown : {98304U + 5000, 131072U, 131072U + 500, 131072U + 1696, 300000U}) {
    const platform::Bytes bytes = randomBytes(grown);
    files.put("/in", bytes);
    EXPECT_EQ(copy(100000), literalCopy(bytes, 100000)) << grown;
  }
}

TEST_F(PaddedCopy, UnreadableBlockIsZeroFromTheBadByteOnAndLaterOnesAreCopied) {
  const platform::Bytes bytes = randomBytes(5 * kBlock);
  MemoryFile& input = files.put("/in", bytes);
  input.badReadStart = 2 * kBlock + 100;
  input.badReadEnd = 2 * kBlock + 101;
  input.readError = std::make_error_code(std::errc::io_error);

  const platform::Bytes out = copy(5 * kBlock);

  platform::Bytes expected = bytes;
  std::fill(expected.begin() + 2 * kBlock + 100, expected.begin() + 3 * kBlock, std::byte{0});
  EXPECT_EQ(out, expected);
  EXPECT_FALSE(end.writeFailure);
  EXPECT_EQ(end.missing, kBlock - 100);
  EXPECT_EQ(end.readFailures.count, 1U);
  EXPECT_EQ(end.readFailures.firstOffset, 2 * kBlock + 100);
  EXPECT_EQ(end.readFailures.firstCause, std::errc::io_error);
}

TEST_F(PaddedCopy, WriteFailureEndsTheCopyAndIsAnswered) {
  files.put("/in", randomBytes(100000));
  MemoryFile& output = files.put("/out", {});
  output.badWriteFrom = 70000;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  const auto from = files.openForReading("/in");
  const auto to = files.openForWriting("/out");

  const auto failed = engine::paddedCopy(from.file.get(), *to.file, 100000).writeFailure;

  ASSERT_TRUE(failed.has_value());
  EXPECT_EQ(failed->offset, 70000U);
  EXPECT_EQ(failed->cause, std::errc::no_space_on_device);
  EXPECT_EQ(files.content("/out").size(), 70000U);
}

TEST_F(PaddedCopy, WriteFailureInTheRepeatedFrontIsAnswered) {
  files.put("/in", randomBytes(100000));
  MemoryFile& output = files.put("/out", {});
  output.badWriteFrom = 131072 + 10;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  const auto from = files.openForReading("/in");
  const auto to = files.openForWriting("/out");

  const auto failed = engine::paddedCopy(from.file.get(), *to.file, 100000).writeFailure;

  ASSERT_TRUE(failed.has_value());
  EXPECT_EQ(failed->offset, 131082U);
}

TEST_F(PaddedCopy, TellsHowFarItIsAndEndsOnNo) {
  files.put("/in", randomBytes(1000000));
  files.put("/out", {});
  const auto from = files.openForReading("/in");
  const auto to = files.openForWriting("/out");
  std::vector<std::uint64_t> told;

  const auto ended = engine::paddedCopy(from.file.get(), *to.file, 1000000, [&](std::uint64_t done) {
    told.push_back(done);
    return told.size() < 2;
  });

  EXPECT_FALSE(ended.writeFailure);
  EXPECT_EQ(ended.missing, 0U);
  ASSERT_EQ(told.size(), 2U);
  EXPECT_LT(told[0], told[1]);
  EXPECT_EQ(files.content("/out").size(), told[1]);
}

TEST_F(PaddedCopy, LastValueToldIsTheWholeSize) {
  files.put("/in", randomBytes(1000000));
  files.put("/out", {});
  const auto from = files.openForReading("/in");
  const auto to = files.openForWriting("/out");
  std::uint64_t last = 0;
  const auto ended = engine::paddedCopy(from.file.get(), *to.file, 1000000, [&](std::uint64_t done) {
    last = done;
    return true;
  });
  EXPECT_FALSE(ended.writeFailure);
  EXPECT_EQ(last, 1000000U);
}

TEST(PaddedCopySize, FollowsTheBlocksAndTheRest) {
  EXPECT_EQ(engine::paddedCopySize(0), 0U);
  EXPECT_EQ(engine::paddedCopySize(1), 32769U);
  EXPECT_EQ(engine::paddedCopySize(32768), 32768U);
  EXPECT_EQ(engine::paddedCopySize(100000), 132768U);
  EXPECT_EQ(engine::paddedCopySize((std::uint64_t{1} << 32U) + 5), (std::uint64_t{1} << 32U) + 32768 + 5);
}

}  // namespace
}  // namespace zelvo::tests
