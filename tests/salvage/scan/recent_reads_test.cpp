// Small reads that are answered from memory.
#include "salvage/scan/recent_reads.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::RecentReads;

Bytes noise(std::size_t size) {
  std::mt19937 random(11);
  Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

struct ReadFile {
  explicit ReadFile(const Bytes& bytes) { files.put("/in.avi", bytes); }
  [[nodiscard]] MemoryFile& content() { return files.at("/in.avi"); }

  MemoryFiles files;
  std::unique_ptr<platform::ReadableFile> open() { return files.openForReading("/in.avi").file; }
};

TEST(RecentReads, AnswerWhatTheFileAnswers) {
  ReadFile in(noise(1'500'000));
  const auto file = in.open();
  RecentReads recent(*file);
  std::mt19937 random(3);
  for (int i = 0; i < 3000; ++i) {
    const std::uint64_t offset = random() % 1'600'000;
    Bytes expected(random() % (i % 10 == 0 ? 30'000 : 40));
    Bytes found = expected;
    const auto wanted = file->readAt(offset, expected);
    const auto result = recent.readAt(offset, found);
    ASSERT_EQ(result.count, wanted.count) << offset;
    ASSERT_EQ(found, expected) << offset;
    ASSERT_FALSE(result.error);
  }
  EXPECT_EQ(recent.size(), 1'500'000U);
}

TEST(RecentReads, NeighboursCostOneRead) {
  ReadFile in(noise(100'000));
  const auto file = in.open();
  RecentReads recent(*file);
  Bytes bytes(12);
  for (std::uint64_t at = 0; at < 4'000; at += 8) EXPECT_EQ(recent.readAt(at, bytes).count, 12U);
  EXPECT_EQ(in.content().reads, 1U);
}

TEST(RecentReads, LargeReadsGoToTheFile) {
  ReadFile in(noise(100'000));
  const auto file = in.open();
  RecentReads recent(*file);
  Bytes bytes(8192);
  EXPECT_EQ(recent.readAt(5, bytes).count, 8192U);
  EXPECT_EQ(in.content().largestRead, 8192U);
}

TEST(RecentReads, FailureComesWithWhatCouldBeRead) {
  ReadFile in(noise(100'000));
  in.content().badReadStart = 20'000;
  in.content().badReadEnd = 21'000;
  in.content().readError = std::make_error_code(std::errc::io_error);
  const auto file = in.open();
  RecentReads recent(*file);
  Bytes bytes(100);
  const auto touched = recent.readAt(19'950, bytes);
  EXPECT_EQ(touched.count, 50U);
  EXPECT_EQ(touched.error, std::errc::io_error);
  // Beside it in the same block all is there.
  const auto beside = recent.readAt(19'000, bytes);
  EXPECT_EQ(beside.count, 100U);
  EXPECT_FALSE(beside.error);
}

}  // namespace
}  // namespace zelvo::tests
