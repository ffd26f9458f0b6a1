// What is appended reaches the file, whoever writes it.
#include "salvage/writing/film_output.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/headless/workers.h"
#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"
#include "tests/support/refusing_workers.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

constexpr std::size_t kMuch = 2'500'000;  // several times what its buffers hold

Bytes much() {
  Bytes bytes(kMuch);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(i * 11 % 253);
  return bytes;
}

Bytes writtenBy(platform::Workers& workers) {
  MemoryFiles files;
  files.put("/out", {});
  const auto out = files.openForWriting("/out");
  salvage::FilmOutput output(*out.file, workers);
  output.append(much());
  output.zeros(5);
  output.number32(0x01020304);
  EXPECT_FALSE(output.finish().has_value());
  return files.content("/out");
}

TEST(FilmOutput, BytesFieldsAndZerosFollowOneAnother) {
  platform::headless::HeadlessWorkers workers;
  const Bytes bytes = writtenBy(workers);
  ASSERT_EQ(bytes.size(), kMuch + 9);
  EXPECT_TRUE(std::equal(bytes.begin(), bytes.begin() + kMuch, much().begin()));
  EXPECT_EQ(hexAt(bytes, kMuch, 9), "00 00 00 00 00 04 03 02 01");
}

TEST(FilmOutput, IsTheSameWithoutAThreadOfItsOwn) {
  platform::headless::HeadlessWorkers workers;
  const Bytes bytes = writtenBy(workers);
  workers.setProcessors(1);
  EXPECT_EQ(writtenBy(workers), bytes);
  RefusingWorkers refusing(workers, 1);
  EXPECT_EQ(writtenBy(refusing), bytes);
}

TEST(FilmOutput, TheFirstFailureIsToldAndEndsTheWriting) {
  for (const unsigned processors : {1U, 2U}) {
    platform::headless::HeadlessWorkers workers;
    workers.setProcessors(processors);
    MemoryFiles files;
    MemoryFile& file = files.put("/out", {});
    file.badWriteFrom = 600'000;
    file.writeError = std::make_error_code(std::errc::io_error);
    const auto out = files.openForWriting("/out");
    salvage::FilmOutput output(*out.file, workers);
    output.append(much());
    const auto failure = output.finish();
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(output.failed());
    EXPECT_EQ(failure->offset, 600'000U);
    EXPECT_EQ(failure->cause, std::errc::io_error);
  }
}

TEST(FilmOutput, WhatIsWrittenIsSentToTheMediumMeanwhile) {
  platform::headless::HeadlessWorkers workers;
  workers.setProcessors(2);
  MemoryFiles files;
  MemoryFile& file = files.put("/out", {});
  const auto out = files.openForWriting("/out");
  salvage::FilmOutput output(*out.file, workers);
  constexpr std::uint64_t kLarge = 30'000'000;
  output.zeros(kLarge);
  for (int tries = 0; tries < 20'000; ++tries) {
    {
      const std::lock_guard lock(file.mutex);
      if (file.sentUpTo > 0) break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_FALSE(output.finish().has_value());
  EXPECT_GT(file.sentUpTo, 0U);
  EXPECT_EQ(file.sentUpTo % (1U << 19U), 0U) << "buffers that are not full are left to the flush";
}

TEST(FilmOutput, AFailedSendingIsAFailure) {
  platform::headless::HeadlessWorkers workers;
  workers.setProcessors(2);
  MemoryFiles files;
  files.put("/out", {}).sendError = std::make_error_code(std::errc::io_error);
  const auto out = files.openForWriting("/out");
  salvage::FilmOutput output(*out.file, workers);
  output.zeros(30'000'000);
  for (int tries = 0; tries < 20'000 && !output.failed(); ++tries)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  const auto failure = output.finish();
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->offset, 0U);
  EXPECT_EQ(failure->cause, std::errc::io_error);
}

TEST(FilmOutput, NothingAppendedWritesNothing) {
  platform::headless::HeadlessWorkers workers;
  MemoryFiles files;
  bool isTouched = false;
  files.put("/out", {}).onWrite = [&](std::uint64_t, std::size_t) { isTouched = true; };
  const auto out = files.openForWriting("/out");
  salvage::FilmOutput output(*out.file, workers);
  EXPECT_FALSE(output.finish().has_value());
  EXPECT_FALSE(isTouched);
}

}  // namespace
}  // namespace zelvo::tests
