#include "engine/scan_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>

#include "engine/code_finder.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

constexpr std::size_t kBlock = engine::ScanWindow::kBlockSize;
constexpr std::size_t kRead = kBlock + engine::ScanWindow::kReadAhead;

platform::Bytes randomBytes(std::size_t size) {
  std::mt19937 random(static_cast<unsigned>(size));
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

/// What separate reads at the same offsets give.
class ScanWindow : public testing::Test {
 protected:
  void open(platform::Bytes bytes) {
    content = &files.put("/in", std::move(bytes));
    input = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
    direct = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
    window = std::make_unique<engine::ScanWindow>(*input);
    last = static_cast<std::uint32_t>((content->size + kBlock - 1) / kBlock);
  }
  void withBadBytes(std::uint64_t from, std::uint64_t to) {
    content->badReadStart = from;
    content->badReadEnd = to;
    content->readError = std::make_error_code(std::errc::io_error);
  }

  std::string blockText(std::uint32_t number) {
    const auto bytes = window->block(number, last, kRead);
    EXPECT_GE(bytes.size(), kBlock + engine::CodeFinder::kMargin);
    // What a block's codes can reach.
    return textAt(bytes, 0, kBlock + 3);
  }
  std::string directBlockText(std::uint32_t number) {
    platform::Bytes bytes(kRead);
    direct->read((number - 1) * std::uint64_t{kBlock}, bytes);
    return textAt(bytes, 0, kBlock + 3);
  }

  std::string lookAhead(std::uint32_t offset) {
    platform::Bytes six = bytesOf("stale!");
    lookAheadCount = window->readLookAhead(offset, std::span(six).first<6>());
    return textAt(six, 0, 6);
  }
  std::string directLookAhead(std::uint32_t offset) {
    platform::Bytes six = bytesOf("stale!");
    direct->read(offset, six);
    return textAt(six, 0, 6);
  }
  std::uint32_t directNumber(std::uint32_t offset) {
    platform::Bytes four(4);
    direct->read(offset, four);
    return numberAt(four, 0);
  }

  MemoryFiles files;
  MemoryFile* content = nullptr;
  std::unique_ptr<avi::InputFile> input;
  std::unique_ptr<avi::InputFile> direct;
  std::unique_ptr<engine::ScanWindow> window;
  std::uint32_t last = 0;
  std::size_t lookAheadCount = 0;
};

TEST_F(ScanWindow, BlocksInOrderAreThoseOfSeparateReads) {
  open(randomBytes(700 * kBlock + 77));
  for (std::uint32_t number = 1; number < last; ++number) ASSERT_EQ(blockText(number), directBlockText(number));
}

TEST_F(ScanWindow, SkippedBlocksMoveItOn) {
  open(randomBytes(3000 * kBlock));
  for (std::uint32_t number = 1; number < last; number += 317) ASSERT_EQ(blockText(number), directBlockText(number));
}

TEST_F(ScanWindow, ReadsManyBlocksInOneGo) {
  open(randomBytes(700 * kBlock));
  for (std::uint32_t number = 1; number < last; ++number) static_cast<void>(blockText(number));
  EXPECT_LE(content->reads, 700 / engine::ScanWindow::kBlocks + 1);
}

TEST_F(ScanWindow, BytesPastTheEndAreZero) {
  open(randomBytes(5 * kBlock + 10));
  last = 9;  // the file was longer when it was measured
  for (std::uint32_t number = 1; number < last; ++number) ASSERT_EQ(blockText(number), directBlockText(number));
}

TEST_F(ScanWindow, NumbersAreThoseOfSeparateReadsInsideAndBeyondTheWindow) {
  open(randomBytes(700 * kBlock + 77));
  static_cast<void>(blockText(300));
  std::mt19937 random(9);
  for (int i = 0; i < 3000; ++i) {
    const auto offset = static_cast<std::uint32_t>(random() % (702 * kBlock));
    ASSERT_EQ(window->numberAt(offset), directNumber(offset)) << offset;
  }
}

TEST_F(ScanWindow, NumberCutShortByTheEndCountsItsMissingBytesAsZero) {
  open(bytesOf(std::string(2000, ' ') + "\x01\x02\x03"));
  static_cast<void>(blockText(1));
  EXPECT_EQ(window->numberAt(2000), 0x00030201U);
  EXPECT_EQ(window->numberAt(2002), 0x00000003U);
  EXPECT_EQ(window->numberAt(2003), 0U);
}

TEST_F(ScanWindow, LookAheadsAreThoseOfSeparateReads) {
  open(randomBytes(2000 * kBlock + 77));
  std::mt19937 random(10);
  for (std::uint32_t number = 1; number < last; number += 3) {
    static_cast<void>(blockText(number));
    for (int i = 0; i < 8; ++i) {
      const auto offset = static_cast<std::uint32_t>((number - 1) * kBlock + random() % (500 * kBlock));
      ASSERT_EQ(lookAhead(offset), directLookAhead(offset)) << offset;
    }
  }
}

TEST_F(ScanWindow, LookAheadAtTheEndOverwritesOnlyTheFront) {
  open(bytesOf(std::string(3000, ' ') + "ABC"));
  static_cast<void>(blockText(1));
  EXPECT_EQ(lookAhead(2997), "   ABC");
  EXPECT_EQ(lookAheadCount, 6U);
  EXPECT_EQ(lookAhead(3000), "ABCle!");
  EXPECT_EQ(lookAheadCount, 3U);
  EXPECT_EQ(lookAhead(3003), "stale!");
  EXPECT_EQ(lookAheadCount, 0U);
  EXPECT_EQ(lookAhead(4000000000U), "stale!");
}

TEST_F(ScanWindow, DenseInputKnowsWhatIsFoundBeyondTheWindow) {
  platform::Bytes bytes(13000 * kBlock + 5, std::byte{0x20});
  for (std::size_t at = 1; at + 4 < bytes.size(); at += 977) overwrite(bytes, at, at % 2 == 0 ? "JUNK" : "01wb");
  open(std::move(bytes));
  std::uint64_t asked = 0;
  std::uint64_t found = 0;
  for (std::uint32_t number = 1; number < 1500; ++number) {
    static_cast<void>(blockText(number));
    for (std::uint32_t at = 0; at < kBlock; at += 16) {
      const auto offset = static_cast<std::uint32_t>((number - 1) * kBlock + at + 8 + 9999999);
      const std::optional<engine::LookAheadFind> known = window->foundBeyond(offset);
      if (!known) {
        ASSERT_EQ(lookAhead(offset), directLookAhead(offset)) << offset;
        continue;
      }
      ++asked;
      // The first of the codes that starts at or after the place.
      const std::size_t code = (offset + 975) / 977 * 977 + 1;
      const auto expected = code > offset + 2 ? engine::LookAheadFind::nothing
                            : code % 2 == 0   ? engine::LookAheadFind::padding
                                              : engine::LookAheadFind::chunk;
      ASSERT_EQ(*known, expected) << offset;
      if (*known != engine::LookAheadFind::nothing) ++found;
    }
  }
  EXPECT_GT(asked, 70000U);
  EXPECT_GT(found, 100U);
  EXPECT_LT(content->reads, 2U * 256 * 64 + 300) << "only the first window's are read one by one, and so are ours";
}

TEST_F(ScanWindow, WhatLiesInTheWindowIsNeverFoundBeyondIt) {
  open(randomBytes(1200 * kBlock));
  static_cast<void>(blockText(1));
  EXPECT_FALSE(window->foundBeyond(600 * kBlock)) << "not dense yet";
  for (int i = 0; i < 65; ++i) static_cast<void>(lookAhead(600 * kBlock));
  static_cast<void>(blockText(257));
  EXPECT_FALSE(window->foundBeyond(257 * kBlock)) << "it can be looked at";
  EXPECT_TRUE(window->foundBeyond(1000 * kBlock));
  EXPECT_FALSE(window->foundBeyond(100 * kBlock)) << "before the window";
}

TEST_F(ScanWindow, LooksFoundBeyondTheWindowKeepAnInputDense) {
  open(randomBytes(1200 * kBlock));
  static_cast<void>(blockText(1));
  for (int i = 0; i < 65; ++i) static_cast<void>(lookAhead(600 * kBlock));
  static_cast<void>(blockText(257));
  for (int i = 0; i < 65; ++i) static_cast<void>(window->foundBeyond(1000 * kBlock));
  static_cast<void>(blockText(513));
  EXPECT_TRUE(window->foundBeyond(1100 * kBlock));
}

TEST_F(ScanWindow, DenseInputIsNotReadBeyondItsEnd) {
  open(randomBytes(1200 * kBlock));
  static_cast<void>(blockText(1));
  for (int i = 0; i < 65; ++i) static_cast<void>(lookAhead(5000 * kBlock));
  static_cast<void>(blockText(257));
  const std::uint64_t reads = content->reads;
  EXPECT_EQ(lookAhead(1200 * kBlock), "stale!");
  EXPECT_EQ(lookAhead(5000 * kBlock), "stale!");
  EXPECT_EQ(content->reads, reads);
  EXPECT_EQ(lookAhead(1200 * kBlock - 3), directLookAhead(1200 * kBlock - 3));
}

TEST_F(ScanWindow, BlocksAroundABadByteAreThoseOfSeparateReads) {
  open(randomBytes(700 * kBlock));
  withBadBytes(300 * kBlock + 500, 300 * kBlock + 501);
  for (std::uint32_t number = 1; number < last; ++number) ASSERT_EQ(blockText(number), directBlockText(number));
  const avi::ReadFailures failures = window->takeFailures();
  EXPECT_EQ(failures.count, direct->failures().count);
  EXPECT_EQ(failures.firstOffset, direct->failures().firstOffset);
  EXPECT_EQ(window->takeFailures().count, 0U);
  EXPECT_EQ(input->failures().count, 0U);  // whoever reads decides which of them count
}

TEST_F(ScanWindow, NumbersAndLookAheadsAroundABadByteAreThoseOfSeparateReads) {
  open(randomBytes(700 * kBlock));
  withBadBytes(300 * kBlock + 500, 300 * kBlock + 501);
  static_cast<void>(blockText(300));
  for (std::uint32_t offset = 300 * kBlock + 480; offset < 300 * kBlock + 520; ++offset) {
    ASSERT_EQ(window->numberAt(offset), directNumber(offset));
    ASSERT_EQ(lookAhead(offset), directLookAhead(offset));
  }
}

TEST_F(ScanWindow, LastBlockAloneIsReadOnlyAsFarAsItsOwnRead) {
  open(randomBytes(10 * kBlock));
  withBadBytes(5 * kBlock, 5 * kBlock + 1);
  std::size_t size = 0;
  content->onRead = [&](std::uint64_t offset, std::size_t wanted) {
    if (offset == 9 * kBlock) size = wanted;
  };
  static_cast<void>(window->block(1, last, kRead));
  static_cast<void>(window->block(10, last, 200));
  EXPECT_EQ(size, 200U);
}

TEST_F(ScanWindow, WithoutAFileEverythingIsZero) {
  input = std::make_unique<avi::InputFile>(nullptr);
  window = std::make_unique<engine::ScanWindow>(*input);
  EXPECT_EQ(textAt(window->block(1, 5, kRead), 0, 8), std::string(8, '\0'));
  EXPECT_EQ(window->numberAt(0), 0U);
  EXPECT_EQ(lookAhead(0), "stale!");
}

TEST(ScanWindowStart, BlocksBeyond4GiBAreTheFirstOnesAgain) {
  EXPECT_EQ(engine::ScanWindow::startOf(1), 0U);
  EXPECT_EQ(engine::ScanWindow::startOf(2), 1024U);
  EXPECT_EQ(engine::ScanWindow::startOf(4194304), 4294966272U);
  EXPECT_EQ(engine::ScanWindow::startOf(4194305), 0U);
  EXPECT_EQ(engine::ScanWindow::startOf(4194306), 1024U);
}

TEST_F(ScanWindow, BlockBeyond4GiBIsReadFromTheFront) {
  open(randomBytes(20 * kBlock));
  last = 4194304 + 20;
  EXPECT_EQ(textAt(window->block(4194304 + 3, last, kRead), 0, kBlock), directBlockText(3).substr(0, kBlock));
}

TEST_F(ScanWindow, WindowEndsWhereBlockOffsetsWrap) {
  content = &files.putSparse("/in", (std::uint64_t{1} << 32U) + 20 * kBlock);
  content->bytes = randomBytes(20 * kBlock);
  content->islands[(std::uint64_t{1} << 32U) - 2 * kBlock] = randomBytes(10 * kBlock);
  input = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
  direct = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
  window = std::make_unique<engine::ScanWindow>(*input);
  last = 4194304 + 20;
  for (const std::uint32_t number : {4194302U, 4194303U, 4194304U}) {
    ASSERT_EQ(blockText(number), directBlockText(number)) << number;
  }
  for (const std::uint32_t number : {4194305U, 4194306U, 4194310U}) {
    ASSERT_EQ(blockText(number), directBlockText(number - 4194304)) << number;
  }
}

// ---- Zeros ----

TEST_F(ScanWindow, ZerosAreSeenWithinTheWindowAcrossItsEndAndBeyond) {
  constexpr std::size_t kWindow = 256 * kBlock + 2048;  // blocks and what is read after them
  for (const std::size_t start : {std::size_t{100}, kWindow - 1, kWindow, kWindow + 5000}) {
    for (const std::size_t size : {1UL, 2UL, 4096UL, 4097UL, 20000UL}) {
      platform::Bytes bytes(700 * kBlock, std::byte{1});
      std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), size, std::byte{0});
      open(std::move(bytes));
      static_cast<void>(blockText(1));
      EXPECT_TRUE(window->isAllZero(start, size)) << start << "+" << size;
      EXPECT_FALSE(window->isAllZero(start, size + 1)) << start << "+" << size;
      EXPECT_FALSE(window->isAllZero(start - 1, size)) << start << "+" << size;
      EXPECT_TRUE(window->isAllZero(start - 1, 0));
    }
  }
}

TEST_F(ScanWindow, ZerosUpToTheEndOfTheFileAreAllThereIs) {
  for (const std::size_t blocks : {10UL, 700UL}) {
    open(platform::Bytes(blocks * kBlock));
    static_cast<void>(blockText(1));
    EXPECT_TRUE(window->isAllZero(5000, 9000000));
    content->bytes.back() = std::byte{1};
    open(std::move(content->bytes));
    static_cast<void>(blockText(1));
    EXPECT_FALSE(window->isAllZero(5000, 9000000));
  }
}

TEST_F(ScanWindow, NoZerosAreClaimedWhereReadsFail) {
  open(platform::Bytes(700 * kBlock));
  withBadBytes(500 * kBlock, 500 * kBlock + 1);
  static_cast<void>(blockText(1));
  EXPECT_TRUE(window->isAllZero(100, 499 * kBlock));
  EXPECT_FALSE(window->isAllZero(100, 501 * kBlock));
  EXPECT_EQ(window->takeFailures().count, 0U) << "a look at zeros is no read of the scan";

  open(platform::Bytes(700 * kBlock));
  withBadBytes(5 * kBlock, 5 * kBlock + 1);
  static_cast<void>(blockText(1));
  EXPECT_FALSE(window->isAllZero(100, 1));
}

TEST_F(ScanWindow, InputIsDenseAfter65LookAheadsBeyondAWindow) {
  for (const std::uint32_t lookAheads : {64U, 65U}) {
    open(randomBytes(700 * kBlock));
    static_cast<void>(blockText(1));
    for (std::uint32_t i = 0; i < lookAheads; ++i) static_cast<void>(lookAhead(600 * kBlock));
    EXPECT_FALSE(window->isDense());
    static_cast<void>(blockText(257));
    EXPECT_EQ(window->isDense(), lookAheads == 65);
  }
}

TEST_F(ScanWindow, LookAheadsOfEachWindowAreCountedAnew) {
  open(randomBytes(1200 * kBlock));
  for (const std::uint32_t number : {1U, 257U, 513U}) {
    static_cast<void>(blockText(number));
    for (int i = 0; i < 40; ++i) static_cast<void>(lookAhead(1100 * kBlock));
  }
  EXPECT_FALSE(window->isDense());
}

}  // namespace
}  // namespace zelvo::tests
