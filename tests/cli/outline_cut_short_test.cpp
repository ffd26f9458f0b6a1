// A walk that is stopped, or that meets what cannot be read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "avi/outline.h"
#include "cli/shown_text.h"
#include "tests/cli/outline_lines.h"
#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using cli::counted;

using testing::ElementsAre;
using testing::HasSubstr;

TEST(OutlineCutShort, StopEndsTheWalkWithEveryListClosed) {
  std::string content;
  for (int i = 0; i < 100; ++i) content += chunk("JUNK", "");
  MemoryReadable file(list("RIFF", "AVI ", content));
  Lines lines;
  avi::Outline(
      file, lines, [&] { return lines.lines.size() > 10; }, true)
      .walk();

  EXPECT_EQ(lines.open(), 0);
  EXPECT_LT(lines.lines.size(), 15U);
}

TEST(OutlineCutShort, UnreadablePartIsRememberedAndWalkedPast) {
  MemoryReadable file(list("RIFF", "AVI ", chunk("JUNK", std::string(200000, '\0')) + chunk("JUNK", "a")));
  file.makeUnreadable(30000, 30512);
  Lines lines;
  avi::Outline outline(file, lines, kNeverEnding, true);
  outline.walk();

  EXPECT_THAT(lines.lines, testing::Contains("JUNK 200020+1"));
  EXPECT_EQ(outline.failures().count, 1U);
  EXPECT_EQ(outline.failures().firstOffset, 30000U);
}

/// A "movi" list whose type lies at byte 20: a chunk, damage of `length` bytes from byte 36 on, and another chunk.
std::string damaged(std::size_t length, char filling) {
  return list("RIFF", "AVI ",
              list("LIST", "movi", chunk("00dc", "abcd") + std::string(length, filling) + chunk("01wb", "ef")));
}

std::vector<std::string> outlineWithUnreadable(const std::string& bytes, std::uint64_t start, std::uint64_t end) {
  MemoryReadable file(bytes);
  file.makeUnreadable(start, end);
  Lines lines;
  avi::Outline outline(file, lines, kNeverEnding, true);
  outline.walk();
  EXPECT_EQ(lines.open(), 0);
  EXPECT_FALSE(outline.wasStopped());
  return lines.lines;
}

TEST(OutlineCutShort, SearchGoesOnBehindWhatCannotBeRead) {
  EXPECT_THAT(outlineWithUnreadable(damaged(20000, '\0'), 8192, 12288),
              ElementsAre("RIFF AVI  0+20038", "LIST movi 12+20026", "00dc 24+4",
                          "! 36 20,000 bytes, of which 4,096 cannot be read, are no chunks", "01wb 20036+2", "end LIST",
                          "end RIFF"));
}

TEST(OutlineCutShort, ChunkRightBehindAnUnreadableSectorIsFound) {
  for (const std::uint64_t sectors : {1U, 2U, 7U, 8U, 9U, 24U, 100U}) {
    const std::uint64_t chunkAt = 512 * (sectors + 1);
    EXPECT_THAT(outlineWithUnreadable(damaged(chunkAt - 36, '\0'), 36, chunkAt),
                testing::IsSupersetOf({"! 36 " + counted(chunkAt - 36, "byte") + " cannot be read",
                                       "01wb " + std::to_string(chunkAt) + "+2"}))
        << sectors;
  }
}

TEST(OutlineCutShort, UnreadableChunkHeaderIsNotSaidToBeZero) {
  const auto lines = outlineWithUnreadable(damaged(4060, '\0'), 24, 512);

  EXPECT_THAT(lines,
              testing::IsSupersetOf({"! 24 4,072 bytes, of which 488 cannot be read, are no chunks", "01wb 4096+2"}));
}

TEST(OutlineCutShort, UnreadableEndOfTheFileIsTold) {
  EXPECT_THAT(
      outlineWithUnreadable(list("RIFF", "AVI ", "") + std::string(100000, '\0'), 50000, 100012),
      ElementsAre("RIFF AVI  0+4", "end RIFF", "! 12 100,000 bytes, of which 50,012 cannot be read, are no chunks"));
}

TEST(OutlineCutShort, UnreadableHeaderPayloadIsTold) {
  EXPECT_THAT(outlineWithUnreadable(list("RIFF", "AVI ", chunk("avih", std::string(56, '\1'))), 30, 40),
              testing::IsSupersetOf({"avih 12+56", "! 12 what it holds cannot be read from byte 30 on"}));
}

TEST(OutlineCutShort, UnreadableBeginningIsNotSaidToBeWrong) {
  EXPECT_THAT(outlineWithUnreadable(list("RIFF", "AVI ", chunk("JUNK", "")), 6, 10).front(),
              "! 0 the first 12 bytes cannot be read");
}

TEST(OutlineCutShort, StopInDamageSaysWhatWasNotLookedAt) {
  MemoryReadable file(damaged(1000000, '\0'));
  Lines lines;
  int asked = 0;
  avi::Outline outline(
      file, lines, [&asked] { return ++asked > 30; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_EQ(lines.open(), 0);
  const std::uint64_t reached = outline.position();
  EXPECT_GT(reached, 36U);
  EXPECT_LT(reached, 1000000U);
  EXPECT_THAT(lines.lines, ElementsAre("RIFF AVI  0+1000038", "LIST movi 12+1000026", "00dc 24+4",
                                       "! 36 " + counted(reached - 36, "byte") + ", all zero, are no chunks",
                                       "! " + std::to_string(reached) + " stopped here; " +
                                           counted(1000046 - reached, "byte") + " were not looked at",
                                       "end LIST", "end RIFF"));
}

TEST(OutlineCutShort, StopAtTheFirstQuestionClaimsNothing) {
  MemoryReadable file(damaged(1000, '\0'));
  Lines lines;
  avi::Outline outline(
      file, lines, [] { return true; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_THAT(lines.lines, ElementsAre("! 0 stopped here; 1,046 bytes were not looked at"));
}

TEST(OutlineCutShort, StopInAListOfOddSizeEndsWhereItSays) {
  MemoryReadable file(list("RIFF", "AVI ", std::string(100001, '\0')) + std::string(100, '\0'));
  Lines lines;
  int asked = 0;
  avi::Outline outline(
      file, lines, [&asked] { return ++asked > 9; }, true);
  outline.walk();

  EXPECT_THAT(lines.lines, testing::Contains(HasSubstr(std::to_string(outline.position()) + " stopped here; ")));
}

TEST(OutlineCutShort, StopBeforeDamageWasLookedAtDoesNotTellOfIt) {
  const std::string bytes = list("RIFF", "AVI ", std::string(5000, '\0'));
  for (int questions = 0; questions < 6; ++questions) {
    MemoryReadable file(bytes);
    Lines lines;
    int asked = 0;
    avi::Outline outline(
        file, lines, [&] { return asked++ == questions; }, true);
    outline.walk();
    EXPECT_THAT(lines.lines, testing::Not(testing::Contains(HasSubstr(" 0 bytes")))) << questions;
  }
}

TEST(OutlineCutShort, StopAmongUnreadablePagesEndsTheSearch) {
  MemoryReadable file(damaged(10000000, '\0'));
  file.makeUnreadable(4096, 9000000);
  Lines lines;
  int asked = 0;
  avi::Outline outline(
      file, lines, [&asked] { return ++asked > 30; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_LT(outline.position(), 1000000U);
  EXPECT_LT(outline.failures().count, 40U);
  EXPECT_THAT(lines.lines, testing::Contains(HasSubstr("were not looked at")));
}

TEST(OutlineCutShort, StopAmongTheEntriesOfTheLastIndexIsAStopToo) {
  const std::string entry = "00dc" + le32(0x10) + le32(4) + le32(4);
  MemoryReadable file(
      list("RIFF", "AVI ", list("LIST", "movi", chunk("00dc", "abcd")) + chunk("idx1", entry + entry + entry)));
  Lines lines;
  int asked = 0;
  avi::Outline outline(
      file, lines, [&asked] { return ++asked > 5; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_THAT(lines.lines, testing::Not(testing::Contains(HasSubstr("looked at"))));
}

TEST(OutlineCutShort, StopAfterTheEndIsNone) {
  MemoryReadable file(list("RIFF", "AVI ", chunk("JUNK", "ab")));
  Lines lines;
  avi::Outline outline(
      file, lines, [&lines] { return lines.lines.size() >= 3; }, true);
  outline.walk();

  EXPECT_FALSE(outline.wasStopped());
}

TEST(OutlineCutShort, FileThatShrinksIsNotSaidToBeZeroWhereItWas) {
  MemoryReadable file(damaged(1000000, '\0'));
  Lines lines;
  int asked = 0;
  avi::Outline outline(
      file, lines,
      [&] {
        if (++asked == 20) file.cutTo(400000);
        return false;
      },
      true);
  outline.walk();

  EXPECT_EQ(lines.open(), 0);
  EXPECT_THAT(lines.lines, testing::IsSupersetOf({"! 400000 the file ends here by now; it was 1,000,046 bytes long",
                                                  "! 36 399,964 bytes, all zero, are no chunks"}));
}

TEST(OutlineCutShort, FileThatShrinksIsSurvived) {
  MemoryReadable file(SmallAvi{.frames = 20}.bytes());
  Lines lines;
  avi::Outline outline(
      file, lines,
      [&] {
        if (lines.lines.size() == 5) file.cutTo(3000);
        return false;
      },
      true);
  outline.walk();

  EXPECT_EQ(lines.open(), 0);
}

}  // namespace
}  // namespace zelvo::tests
