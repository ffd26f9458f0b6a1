// Windows that are read ahead hold what those hold that are not.
#include "salvage/scan/searched_windows.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/headless/workers.h"
#include "tests/salvage/salvage_bench.h"
#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::SearchedWindow;
using salvage::SearchedWindows;

constexpr std::size_t kWindow = 3 * SearchedWindows::kPage;

/// Noise with a code every 500 bytes.
Bytes noiseWithCodes(std::size_t size) {
  std::mt19937 random(17);
  Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  for (std::size_t at = 0; at + 4 < size; at += 500) overwrite(bytes, at, "00dc");
  return bytes;
}

struct WindowedFile {
  explicit WindowedFile(const Bytes& bytes) : content(files.put("/in.avi", bytes)) {
    input = std::make_unique<avi::InputFile>(files.openForReading("/in.avi").file);
  }

  MemoryFiles files;
  MemoryFile& content;
  std::unique_ptr<avi::InputFile> input;
  platform::headless::HeadlessWorkers workers;
};

void expectAlike(const SearchedWindow& one, const SearchedWindow& other) {
  ASSERT_EQ(one.start, other.start);
  ASSERT_EQ(one.wanted, other.wanted);
  ASSERT_EQ(one.count, other.count);
  ASSERT_EQ(one.error, other.error);
  ASSERT_EQ(one.isLast, other.isLast);
  ASSERT_EQ(one.beginnings, other.beginnings);
  ASSERT_TRUE(std::equal(one.bytes.begin(), one.bytes.begin() + one.count, other.bytes.begin()));
}

TEST(SearchedWindows, HoldTheSameWithAHelperAndWithout) {
  const Bytes bytes = noiseWithCodes(2'000'123);
  WindowedFile file(bytes);
  SearchedWindows shared(*file.input, kWindow, &file.workers);
  SearchedWindows alone(*file.input, kWindow, nullptr);
  for (std::uint64_t start = 0; start < bytes.size(); start += kWindow - SearchedWindows::kPage)
    expectAlike(shared.at(start, bytes.size()), alone.at(start, bytes.size()));
}

TEST(SearchedWindows, RowMayBeginAgainAnywhere) {
  const Bytes bytes = noiseWithCodes(1'000'000);
  WindowedFile file(bytes);
  SearchedWindows shared(*file.input, kWindow, &file.workers);
  SearchedWindows alone(*file.input, kWindow, nullptr);
  std::mt19937 random(23);
  for (int i = 0; i < 300; ++i) {
    std::uint64_t start = random() % (bytes.size() / SearchedWindows::kPage) * SearchedWindows::kPage;
    const std::uint64_t limit = i % 7 == 0 ? bytes.size() - 30'000 : bytes.size();
    for (auto row = random() % 6; start < limit && row > 0; --row, start += kWindow - SearchedWindows::kPage)
      expectAlike(shared.at(start, limit), alone.at(start, limit));
  }
}

TEST(SearchedWindows, FailureIsToldAndNothingIsReadAheadAfterIt) {
  WindowedFile file(noiseWithCodes(1'000'000));
  file.content.badReadStart = 20'000;
  file.content.badReadEnd = 20'001;
  file.content.readError = std::make_error_code(std::errc::io_error);
  SearchedWindows windows(*file.input, kWindow, &file.workers);
  EXPECT_EQ(windows.at(0, 1'000'000).count, kWindow);
  const SearchedWindow& short_ = windows.at(kWindow - SearchedWindows::kPage, 1'000'000);
  EXPECT_EQ(short_.error, std::errc::io_error);
  EXPECT_EQ(short_.start + short_.count, 20'000U);
  EXPECT_TRUE(short_.isLast);
  // Behind it one window costs one read.
  static_cast<void>(windows.at(500'000 / SearchedWindows::kPage * SearchedWindows::kPage, 1'000'000));
  const std::uint64_t before = file.content.reads;
  static_cast<void>(windows.at(20'480, 1'000'000));
  EXPECT_EQ(file.content.reads, before + 1);
}

TEST(SearchedWindows, WholeRepairGivesTheSameBytesOnAnyNumberOfProcessors) {
  AviBuilder film;
  film.interleaved(3000, 900, 100);
  Bytes damaged = film.build();
  damaged.resize(damaged.size() - 70'000);
  for (std::size_t at = 300'000; at < 300'700; ++at) damaged[at] = std::byte{0};
  Bytes expected;
  for (const unsigned processors : {1U, 2U, 7U}) {
    SalvageBench bench(damaged);
    bench.workers.setProcessors(processors);
    EXPECT_EQ(bench.perform().end, salvage::SalvageEnd::written);
    const Bytes made = bench.files.content("/out.avi");
    ASSERT_GT(made.size(), 1'000'000U);
    if (expected.empty()) expected = made;
    EXPECT_TRUE(made == expected) << processors;
  }
}

}  // namespace
}  // namespace zelvo::tests
