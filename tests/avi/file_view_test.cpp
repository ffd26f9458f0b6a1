#include "avi/file_view.h"

#include <gtest/gtest.h>

#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using avi::FileView;

std::string textOf(std::span<const std::byte> bytes) {
  std::string text;
  for (const std::byte byte : bytes) text += static_cast<char>(byte);
  return text;
}

TEST(FileView, AnswersAreThoseOfReadsAtTheSameOffsets) {
  MemoryReadable file("0123456789abcdef");
  FileView view(file, 6);
  for (const std::uint64_t offset : {0U, 3U, 4U, 1U, 15U, 9U, 14U, 16U, 400U, 0U}) {
    const std::string whole = "0123456789abcdef";
    EXPECT_EQ(textOf(view.bytes(offset, 4)), offset < 16 ? whole.substr(offset, 4) : "") << offset;
  }
}

TEST(FileView, NoMoreThanAWindowIsAnswered) {
  MemoryReadable file("0123456789");
  FileView view(file, 4);
  EXPECT_EQ(textOf(view.bytes(2, 100)), "2345");
}

TEST(FileView, HeaderNeedsEightBytes) {
  MemoryReadable file("xx" + chunk("00dc", "ab"));
  FileView view(file, 64);
  ASSERT_TRUE(view.header(2));
  EXPECT_EQ(view.header(2)->size, 2U);
  EXPECT_FALSE(view.header(5));
  EXPECT_TRUE(view.code(8));
  EXPECT_FALSE(view.code(9));
}

TEST(FileView, FailedReadsAreRemembered) {
  MemoryReadable file("0123456789");
  file.makeUnreadable(4, 6);
  FileView view(file, 8);
  EXPECT_EQ(textOf(view.bytes(0, 8)), "0123");
  EXPECT_EQ(view.failures().count, 1U);
  EXPECT_EQ(view.failures().firstOffset, 4U);
}

TEST(FileView, ShortAnswersSayWhetherAReadFailed) {
  MemoryReadable file("0123456789");
  file.makeUnreadable(4, 6);
  FileView view(file, 8);
  EXPECT_EQ(textOf(view.bytes(0, 4)), "0123");
  EXPECT_FALSE(view.failedLast()) << "all that was wanted is there";
  EXPECT_EQ(textOf(view.bytes(2, 4)), "23");
  EXPECT_TRUE(view.failedLast());
  EXPECT_EQ(textOf(view.bytes(4, 1)), "");
  EXPECT_TRUE(view.failedLast());
  EXPECT_EQ(textOf(view.bytes(8, 4)), "89");
  EXPECT_FALSE(view.failedLast()) << "the file ends";
}

}  // namespace
}  // namespace zelvo::tests
