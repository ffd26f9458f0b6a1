// Reads of a disk that fails.
#include "salvage/scan/retried_reads.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "tests/salvage/made_film.h"
#include "tests/salvage/salvage_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::RetriedReads;
using testing::Each;
using testing::IsEmpty;
using testing::Lt;
using testing::Pair;

constexpr std::uint64_t kPage = 4096;

/// A file of 64 pages, each full of its number, that fails where `isBad` says so; every read is written down.
class FailingFile final : public platform::ReadableFile {
 public:
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    reads.emplace_back(offset, into.size());
    platform::IoResult result;
    for (; result.count < into.size() && offset + result.count < size(); ++result.count) {
      const std::uint64_t page = (offset + result.count) / kPage;
      if (isBad && isBad(page, into.size())) {
        result.error = std::make_error_code(std::errc::io_error);
        break;
      }
      into[result.count] = static_cast<std::byte>(page);
    }
    return result;
  }
  std::uint64_t size() override { return 64 * kPage; }

  std::function<bool(std::uint64_t page, std::size_t size)> isBad;
  std::vector<std::pair<std::uint64_t, std::size_t>> reads;
};

TEST(RetriedReads, WhatComesInSmallPiecesIsRead) {
  for (const std::size_t works : {std::size_t{32'768}, std::size_t{4096}}) {
    FailingFile file;
    file.isBad = [&](std::uint64_t page, std::size_t size) { return page == 20 && size > works; };
    RetriedReads reads(file);
    Bytes bytes(64 * kPage);
    const platform::IoResult result = reads.readAt(0, bytes);
    EXPECT_EQ(result.count, bytes.size()) << works;
    EXPECT_FALSE(result.error);
    for (std::size_t page = 0; page < 64; ++page) EXPECT_EQ(bytes[page * kPage + 5], static_cast<std::byte>(page));
  }
}

TEST(RetriedReads, ThePageThatFailsAgainIsLeftOutAndTriedNoMore) {
  FailingFile file;
  file.isBad = [](std::uint64_t page, std::size_t) { return page == 20; };
  RetriedReads reads(file);
  Bytes bytes(64 * kPage);
  platform::IoResult result = reads.readAt(0, bytes);
  EXPECT_EQ(result.count, 20 * kPage);
  EXPECT_EQ(result.error, std::errc::io_error);
  const std::size_t tries = file.reads.size();
  EXPECT_EQ(tries, 3U) << "as asked for, in a small piece, as a page";

  result = reads.readAt(20 * kPage + 100, bytes);
  EXPECT_EQ(result.count, 0U);
  EXPECT_EQ(result.error, std::errc::io_error);
  EXPECT_EQ(file.reads.size(), tries);
  result = reads.readAt(10 * kPage, bytes);
  EXPECT_EQ(result.count, 10 * kPage);
  EXPECT_EQ(result.error, std::errc::io_error);
  result = reads.readAt(21 * kPage, bytes);
  EXPECT_EQ(result.count, 43 * kPage);
  EXPECT_FALSE(result.error) << "the end of the file is none";
  file.reads.erase(file.reads.begin(), file.reads.begin() + static_cast<std::ptrdiff_t>(tries));
  for (const auto& [offset, size] : file.reads) EXPECT_TRUE(offset + size <= 20 * kPage || offset >= 21 * kPage);
}

TEST(RetriedReads, NeighboursThatFailAreAllLeftOut) {
  FailingFile file;
  file.isBad = [](std::uint64_t page, std::size_t) { return page >= 20 && page < 30; };
  RetriedReads reads(file);
  Bytes bytes(kPage);
  for (std::uint64_t page = 29; page >= 20; --page) EXPECT_EQ(reads.readAt(page * kPage, bytes).count, 0U);
  for (std::uint64_t page = 20; page < 30; ++page) EXPECT_EQ(reads.readAt(page * kPage, bytes).count, 0U);
  const std::size_t tries = file.reads.size();
  EXPECT_EQ(reads.readAt(25 * kPage, bytes).error, std::errc::io_error);
  EXPECT_EQ(file.reads.size(), tries);
  EXPECT_EQ(reads.readAt(30 * kPage, bytes).count, kPage);
}

TEST(RetriedReads, AStopIsNoFailure) {
  class StoppedFile final : public platform::ReadableFile {
   public:
    platform::IoResult readAt(std::uint64_t, std::span<std::byte>) override {
      ++reads;
      return {0, std::make_error_code(std::errc::operation_canceled)};
    }
    std::uint64_t size() override { return 1; }
    int reads = 0;
  };
  StoppedFile file;
  RetriedReads reads(file);
  Bytes bytes(10);
  EXPECT_EQ(reads.readAt(0, bytes).error, std::errc::operation_canceled);
  EXPECT_EQ(reads.readAt(0, bytes).error, std::errc::operation_canceled);
  EXPECT_EQ(file.reads, 2);
}

TEST(RetriedReads, AFilmOnAFailingDiskIsReadAtEachBadPlaceThreeTimesAtMost) {
  const MadeFilm film(200);
  SalvageBench bench(film.bytes);
  const std::uint64_t bad = film.headers[200] / kPage * kPage;
  std::uint64_t touches = 0;
  bench.onInput = [&](MemoryFile& file) {
    file.badReadStart = bad;
    file.badReadEnd = bad + kPage;
    file.readError = std::make_error_code(std::errc::io_error);
    file.beforeBadRead = [&] { ++touches; };
  };
  const salvage::SalvageReport report = bench.perform();
  EXPECT_EQ(report.end, salvage::SalvageEnd::written);
  EXPECT_EQ(report.verdict, salvage::SalvageVerdict::partial);
  EXPECT_GT(report.readFailures.count, 0U);
  EXPECT_GE(touches, 2U);
  // Two threads may meet the place at the same time.
  EXPECT_LE(touches, 6U);
  bool isTold = false;
  for (const auto& span : report.spans) isTold = isTold || span.span.cause == salvage::LossCause::unreadable;
  EXPECT_TRUE(isTold);
}

}  // namespace
}  // namespace zelvo::tests
