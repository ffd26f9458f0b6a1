#include "avi/input_file.h"

#include <gtest/gtest.h>

#include <array>
#include <span>
#include <vector>

#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

class InputFile : public testing::Test {
 protected:
  avi::InputFile open() { return avi::InputFile(files.openForReading("/in").file); }
  MemoryFile& withBadBytes(std::uint64_t from, std::uint64_t to) {
    content.badReadStart = from;
    content.badReadEnd = to;
    content.readError = std::make_error_code(std::errc::io_error);
    return content;
  }

  MemoryFiles files;
  MemoryFile& content = files.put("/in", bytesOf("0123456789"));
};

TEST_F(InputFile, FillsTheFrontAndLeavesTheRest) {
  avi::InputFile input = open();
  platform::Bytes into = bytesOf("......");
  EXPECT_EQ(input.read(7, into), 3U);
  EXPECT_EQ(textAt(into, 0, 6), "789...");
}

TEST_F(InputFile, ReadBytesAnswersFewerAtTheEnd) {
  avi::InputFile input = open();
  EXPECT_EQ(textAt(input.readBytes(2, 4), 0, 9), "2345");
  EXPECT_EQ(textAt(input.readBytes(8, 4), 0, 9), "89");
  EXPECT_TRUE(input.readBytes(10, 4).empty());
  EXPECT_TRUE(input.readBytes(1000, 4).empty());
}

TEST_F(InputFile, ScatteredReadAnswersAFailureAndForgetsIt) {
  withBadBytes(5, 6);
  avi::InputFile input = open();
  platform::Bytes first = bytesOf("..");
  platform::Bytes second = bytesOf("....");
  const std::vector<std::span<std::byte>> pieces{first, second};
  const platform::IoResult result = input.tryReadScattered(2, pieces);
  EXPECT_EQ(result.count, 3U);
  EXPECT_EQ(result.error, std::errc::io_error);
  EXPECT_EQ(textAt(first, 0, 2) + textAt(second, 0, 4), "234...");
  EXPECT_EQ(input.failures().count, 0U);
}

TEST_F(InputFile, WithoutAFileAScatteredReadAnswersNothing) {
  platform::Bytes bytes = bytesOf("..");
  const std::vector<std::span<std::byte>> pieces{bytes};
  EXPECT_EQ(avi::InputFile(nullptr).tryReadScattered(0, pieces).count, 0U);
}

TEST_F(InputFile, EndOfTheFileIsNoFailure) {
  avi::InputFile input = open();
  static_cast<void>(input.readBytes(8, 4));
  EXPECT_EQ(input.failures().count, 0U);
}

TEST_F(InputFile, FailureIsAShortReadThatIsRemembered) {
  withBadBytes(5, 6);
  avi::InputFile input = open();
  EXPECT_EQ(textAt(input.readBytes(2, 8), 0, 9), "234");
  EXPECT_EQ(input.failures().count, 1U);
  EXPECT_EQ(input.failures().firstOffset, 5U);
  EXPECT_EQ(input.failures().firstCause, std::errc::io_error);
}

TEST_F(InputFile, KeepsTheFirstFailureAndCountsTheRest) {
  withBadBytes(5, 7);
  avi::InputFile input = open();
  static_cast<void>(input.readBytes(6, 1));
  static_cast<void>(input.readBytes(2, 8));
  static_cast<void>(input.readBytes(0, 3));
  EXPECT_EQ(input.failures().count, 2U);
  EXPECT_EQ(input.failures().firstOffset, 6U);
}

TEST_F(InputFile, TryReadAnswersAFailureInsteadOfRememberingIt) {
  withBadBytes(5, 6);
  avi::InputFile input = open();
  platform::Bytes into(8);
  const platform::IoResult result = input.tryRead(2, into);
  EXPECT_EQ(result.count, 3U);
  EXPECT_EQ(result.error, std::errc::io_error);
  EXPECT_EQ(input.failures().count, 0U);
}

TEST_F(InputFile, WithoutAFileAnswersNothing) {
  avi::InputFile input(nullptr);
  platform::Bytes into(4, std::byte{7});
  EXPECT_EQ(input.read(0, into), 0U);
  EXPECT_EQ(into, platform::Bytes(4, std::byte{7}));
  EXPECT_EQ(input.size(), 0U);
  EXPECT_EQ(input.failures().count, 0U);
}

TEST_F(InputFile, SizeIsThatOfTheFileNow) {
  const avi::InputFile input = open();
  EXPECT_EQ(input.size(), 10U);
  content.size = 25;
  EXPECT_EQ(input.size(), 25U);
}

// ---- Bytes that could not be read ----

TEST_F(InputFile, UnreadableAreTheBytesUpToTheEndOfTheBlock) {
  files.put("/in", platform::Bytes(5000));
  avi::InputFile input = open();
  const auto bytesAfter = [&](std::uint64_t offset) {
    input.remember({1, offset, std::make_error_code(std::errc::io_error)});
    return input.failures().bytes;
  };
  EXPECT_EQ(bytesAfter(1500), 548U);
  EXPECT_EQ(bytesAfter(1600), 548U) << "counted already";
  EXPECT_EQ(bytesAfter(1499), 549U);
  EXPECT_EQ(bytesAfter(3071), 550U);
  EXPECT_EQ(bytesAfter(3072), 1574U);
  EXPECT_EQ(bytesAfter(4990), 1584U) << "the file ends before its block";
  EXPECT_EQ(input.failures().count, 6U);
}

TEST_F(InputFile, NoFailureAddsNothing) {
  avi::InputFile input = open();
  input.remember({});
  EXPECT_EQ(input.failures().bytes, 0U);
  EXPECT_EQ(input.failures().count, 0U);
}

}  // namespace
}  // namespace zelvo::tests
