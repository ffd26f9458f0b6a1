#include "cli/avi_outline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "cli/avi_codes.h"
#include "cli/shown_text.h"
#include "tests/cli/memory_readable.h"
#include "tests/cli/small_avi.h"

namespace zelvo::cli {
namespace {

using test::chunk;
using test::le32;
using test::list;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What is told, one line each, as "id type offset+size", "end id", "! sentence", "id x chunks".
class Lines final : public OutlineSink {
 public:
  void beginList(const OutlineItem& list) override {
    ++open_;
    deepest_ = std::max(deepest_, open_);
    add(shownCode(list.id) + " " + (list.type ? shownCode(*list.type) : "?"), list);
  }
  void endList(const OutlineItem& list, const DataSums& sums) override {
    --open_;
    addSums(sums);
    lines.push_back("end " + shownCode(list.id));
  }
  void endFile(const DataSums& sums) override { addSums(sums); }
  void chunk(const OutlineItem& chunk, const std::vector<Field>&, const std::optional<IndexReport>&) override {
    add(shownCode(chunk.id), chunk);
  }
  void problem(std::uint64_t offset, std::size_t, const std::string& sentence) override {
    lines.push_back("! " + std::to_string(offset) + " " + sentence);
  }
  [[nodiscard]] int open() const { return open_; }
  [[nodiscard]] int deepest() const { return deepest_; }

  std::vector<std::string> lines;

 private:
  void add(const std::string& name, const OutlineItem& item) {
    EXPECT_LE(lines.size(), 10000000U);
    lines.push_back(name + " " + std::to_string(item.offset) + "+" + std::to_string(item.size));
  }
  void addSums(const DataSums& sums) {
    for (const auto& [value, sum] : sums) {
      engine::FourCC code;
      code.value = value;
      lines.push_back(shownCode(code) + " x " + std::to_string(sum.chunks) + ", " + std::to_string(sum.bytes));
      if (!sum.index) continue;
      lines.back() += "; " + std::to_string(sum.index->entries) + " entries, " + std::to_string(sum.index->checked) +
                      " checked, " + std::to_string(sum.index->matching) + " match, " +
                      std::to_string(sum.index->unreadable) + " unreadable";
    }
  }

  int open_ = 0;
  int deepest_ = 0;
};

const auto kNeverEnding = [] { return false; };

std::vector<std::string> outlineOf(const std::string& bytes, bool listsAll = false) {
  test::MemoryReadable file(bytes);
  Lines lines;
  AviOutline(file, lines, kNeverEnding, listsAll).walk();
  EXPECT_EQ(lines.open(), 0) << "every list that begins must end";
  return lines.lines;
}

TEST(AviOutline, ListsAndChunksComeInFileOrder) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", list("LIST", "hdrl", chunk("avih", "12345678")) + chunk("JUNK", "ab"))),
              ElementsAre("RIFF AVI  0+42", "LIST hdrl 12+20", "avih 24+8", "end LIST", "JUNK 40+2", "end RIFF"));
}

TEST(AviOutline, StreamDataIsSummedUp) {
  const std::string movi = list("LIST", "movi", chunk("00dc", "abcd") + chunk("01wb", "ef") + chunk("00dc", "gh"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi)),
              ElementsAre("RIFF AVI  0+48", "LIST movi 12+36", "01wb x 1, 2", "00dc x 2, 6", "end LIST", "end RIFF"));
}

TEST(AviOutline, StreamDataIsListedWhenAllIsWanted) {
  const std::string movi = list("LIST", "movi", chunk("00dc", "abcd"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi), true),
              ElementsAre("RIFF AVI  0+28", "LIST movi 12+16", "00dc 24+4", "end LIST", "end RIFF"));
}

TEST(AviOutline, RecordsInDataAreSummedUpWithTheRest) {
  const std::string movi = list("LIST", "movi", list("LIST", "rec ", chunk("00dc", "abcd")) + chunk("00dc", "ef"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi)),
              ElementsAre("RIFF AVI  0+50", "LIST movi 12+38", "00dc x 2, 6", "end LIST", "end RIFF"));
}

TEST(AviOutline, PadByteIsSteppedOver) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", chunk("JUNK", "abc") + chunk("JUNK", "d"))),
              ElementsAre("RIFF AVI  0+26", "JUNK 12+3", "JUNK 24+1", "end RIFF"));
}

TEST(AviOutline, MissingPadByteIsNoticed) {
  const std::string data = "00dc" + le32(3) + "abc" + "00dc" + le32(2) + "de";

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", list("LIST", "movi", data)), true), testing::Contains("00dc 35+2"));
}

TEST(AviOutline, ChunkLongerThanItsListIsTold) {
  const auto lines = outlineOf(list("RIFF", "AVI ", "JUNK" + le32(100) + "ab"));

  EXPECT_THAT(lines, ElementsAre("RIFF AVI  0+14", "! 12 \"JUNK\" claims 100 bytes, but only 2 are left in its list",
                                 "JUNK 12+100", "end RIFF"));
}

TEST(AviOutline, ListLongerThanTheFileIsTold) {
  EXPECT_THAT(
      outlineOf("RIFF" + le32(1000) + "AVI "),
      ElementsAre("! 0 \"RIFF\" claims 1,000 bytes, but only 4 are left in the file", "RIFF AVI  0+1000", "end RIFF"));
}

TEST(AviOutline, ZeroedStretchIsSkippedUpToTheNextChunk) {
  const std::string movi = list("LIST", "movi", chunk("00dc", "abcd") + std::string(10000, '\0') + chunk("01wb", "ef"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi), true),
              testing::IsSupersetOf({"! 36 10,000 bytes, all zero, are no chunks", "01wb 10036+2"}));
}

TEST(AviOutline, DamageIsSkippedWhereverTheNextChunkLies) {
  for (std::size_t length = 4080; length < 4110; ++length) {
    const std::string movi = list("LIST", "movi", std::string(length, '\1') + chunk("01wb", "ef"));
    EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi), true),
                testing::Contains("01wb " + std::to_string(24 + length) + "+2"))
        << length;
  }
}

TEST(AviOutline, FewBytesAtTheEndAreTold) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", "") + "abc"),
              ElementsAre("RIFF AVI  0+4", "end RIFF", "! 12 3 bytes are too few for a chunk"));
}

TEST(AviOutline, SecondFormIsShownToo) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", "") + list("RIFF", "AVIX", "")),
              ElementsAre("RIFF AVI  0+4", "end RIFF", "RIFF AVIX 12+4", "end RIFF"));
}

TEST(AviOutline, EmptyFileHasOneProblem) {
  EXPECT_THAT(outlineOf(""), ElementsAre(HasSubstr("does not begin as an AVI file does")));
}

TEST(AviOutline, ListWithoutATypeIsAProblem) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", "LIST" + le32(2) + "ab")),
              testing::Contains("! 12 a list without a type"));
}

TEST(AviOutline, DeepNestingIsNotEntered) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes = list("LIST", "deep", bytes);
  test::MemoryReadable file(list("RIFF", "AVI ", bytes));
  Lines lines;
  AviOutline(file, lines, kNeverEnding, false).walk();

  EXPECT_EQ(lines.deepest(), static_cast<int>(AviOutline::kDeepest));
  EXPECT_THAT(lines.lines, testing::Contains(HasSubstr("nested too deep")));
}

TEST(AviOutline, EndlessSmallChunksAreListedOnlyAtFirst) {
  std::string content;
  for (int i = 0; i < 5000; ++i) content += chunk("JUNK", "");
  const auto lines = outlineOf(list("RIFF", "AVI ", content));

  EXPECT_EQ(lines.size(), AviOutline::kMostListed + 2);  // with the form; and the sum, and the form's end
  EXPECT_THAT(lines, testing::Contains("JUNK x 4001, 0"));
}

TEST(AviOutline, LimitHoldsForTheFileAndNotForEachList) {
  std::string content;
  for (int i = 0; i < 300; ++i)
    content += list("LIST", "abcd", chunk("JUNK", "") + chunk("JUNK", "") + chunk("JUNK", ""));
  const auto lines = outlineOf(list("RIFF", "AVI ", content));

  const auto told =
      std::count_if(lines.begin(), lines.end(), [](const auto& line) { return line.find('+') != std::string::npos; });
  EXPECT_EQ(told, AviOutline::kMostListed);
  EXPECT_THAT(lines, testing::IsSupersetOf({"JUNK x 1, 0", "LIST x 50, 200", "JUNK x 150, 0"}));
}

TEST(AviOutline, LimitHoldsForNestedLists) {
  std::string content;
  for (int i = 0; i < 5000; ++i) content += list("LIST", "abcd", list("LIST", "efgh", ""));
  const auto lines = outlineOf(list("RIFF", "AVI ", content));

  EXPECT_LE(lines.size(), 2 * AviOutline::kMostListed + 2);
  EXPECT_THAT(lines, testing::Contains("LIST x 9000, 36000"));
  EXPECT_EQ(outlineOf(list("RIFF", "AVI ", content), true).size(), 20002U);
}

TEST(AviOutline, LimitHoldsForForms) {
  std::string bytes = list("RIFF", "AVI ", "");
  for (int i = 0; i < 5000; ++i) bytes += list("RIFF", "AVIX", chunk("JUNK", "ab"));
  const auto lines = outlineOf(bytes);

  EXPECT_THAT(lines, testing::IsSupersetOf({"RIFF x 4500, 18000", "JUNK x 1, 2", "JUNK x 4500, 9000"}));
  EXPECT_LE(lines.size(), 2 * AviOutline::kMostListed);
}

/// A standard index without entries but one, about a chunk "00dc" of `size` bytes at `target`.
std::string indexOf(std::uint64_t target, std::uint64_t size) {
  return chunk("ix00", test::le16(2) + std::string("\0\1", 2) + le32(1) + "00dc" + le32(target) + le32(0) + le32(0) +
                           le32(8) + le32(size));
}

TEST(AviOutline, LimitHoldsForIndexesWhichAreCheckedAllTheSame) {
  std::string content = chunk("00dc", "abcd");  // at byte 24
  for (int i = 0; i < 3000; ++i) content += indexOf(24, 4);
  const std::uint64_t wrong = 24 + content.size();
  content += indexOf(24, 5);
  const std::string bytes = list("RIFF", "AVI ", list("LIST", "movi", content));
  const auto lines = outlineOf(bytes);

  EXPECT_EQ(lines.size(), AviOutline::kMostListed + 5);  // two sums, two ends, a problem
  EXPECT_THAT(lines, testing::Contains("ix00 x 2003, 64096; 2003 entries, 2003 checked, 2002 match, 0 unreadable"));
  EXPECT_THAT(lines, testing::Contains("! " + std::to_string(wrong) +
                                       " 1 of the 1 index entries do not match; in the first, number 1, the chunk at "
                                       "byte 24 is 4 bytes long, not 5"));
  EXPECT_THAT(outlineOf(bytes, true), testing::Contains("ix00 " + std::to_string(wrong) + "+32"));
}

TEST(AviOutline, OldIndexPastTheLimitIsCheckedToo) {
  std::string content = list("LIST", "movi", chunk("00dc", "abcd"));  // its type at byte 20
  for (int i = 0; i < 1000; ++i) content += chunk("JUNK", "");
  content += chunk("idx1", "00dc" + le32(0x10) + le32(4) + le32(4));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", content)),
              testing::Contains("idx1 x 1, 16; 1 entries, 1 checked, 1 match, 0 unreadable"));
}

TEST(AviOutline, ManyCodesAreSummedUpUnderFew) {
  std::string content;
  for (int i = 0; i < 3000; ++i) {
    const std::string digits = std::to_string(10000 + i);
    content += chunk(digits.substr(1, 4), "");
  }
  EXPECT_LE(outlineOf(list("RIFF", "AVI ", content)).size(), AviOutline::kMostListed + AviOutline::kMostSums + 2);
}

TEST(AviOutline, NoMoreThanAWindowIsReadAtATime) {
  test::MemoryReadable file(list("RIFF", "AVI ", "JUNK" + le32(0xffffffff)));
  Lines lines;
  AviOutline(file, lines, kNeverEnding, true).walk();

  EXPECT_LE(file.largestRead(), 65536U);
}

TEST(AviOutline, StopEndsTheWalkWithEveryListClosed) {
  std::string content;
  for (int i = 0; i < 100; ++i) content += chunk("JUNK", "");
  test::MemoryReadable file(list("RIFF", "AVI ", content));
  Lines lines;
  AviOutline(
      file, lines, [&] { return lines.lines.size() > 10; }, true)
      .walk();

  EXPECT_EQ(lines.open(), 0);
  EXPECT_LT(lines.lines.size(), 15U);
}

TEST(AviOutline, UnreadablePartIsRememberedAndWalkedPast) {
  test::MemoryReadable file(list("RIFF", "AVI ", chunk("JUNK", std::string(200000, '\0')) + chunk("JUNK", "a")));
  file.makeUnreadable(30000, 30512);
  Lines lines;
  AviOutline outline(file, lines, kNeverEnding, true);
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
  test::MemoryReadable file(bytes);
  file.makeUnreadable(start, end);
  Lines lines;
  AviOutline outline(file, lines, kNeverEnding, true);
  outline.walk();
  EXPECT_EQ(lines.open(), 0);
  EXPECT_FALSE(outline.wasStopped());
  return lines.lines;
}

TEST(AviOutline, SearchGoesOnBehindWhatCannotBeRead) {
  EXPECT_THAT(outlineWithUnreadable(damaged(20000, '\0'), 8192, 12288),
              ElementsAre("RIFF AVI  0+20038", "LIST movi 12+20026", "00dc 24+4",
                          "! 36 20,000 bytes, of which 4,096 cannot be read, are no chunks", "01wb 20036+2", "end LIST",
                          "end RIFF"));
}

TEST(AviOutline, ChunkRightBehindAnUnreadableSectorIsFound) {
  for (const std::uint64_t sectors : {1U, 2U, 7U, 8U, 9U, 24U, 100U}) {
    const std::uint64_t chunkAt = 512 * (sectors + 1);
    EXPECT_THAT(outlineWithUnreadable(damaged(chunkAt - 36, '\0'), 36, chunkAt),
                testing::IsSupersetOf({"! 36 " + counted(chunkAt - 36, "byte") + " cannot be read",
                                       "01wb " + std::to_string(chunkAt) + "+2"}))
        << sectors;
  }
}

TEST(AviOutline, UnreadableChunkHeaderIsNotSaidToBeZero) {
  const auto lines = outlineWithUnreadable(damaged(4060, '\0'), 24, 512);

  EXPECT_THAT(lines,
              testing::IsSupersetOf({"! 24 4,072 bytes, of which 488 cannot be read, are no chunks", "01wb 4096+2"}));
}

TEST(AviOutline, UnreadableEndOfTheFileIsTold) {
  EXPECT_THAT(
      outlineWithUnreadable(list("RIFF", "AVI ", "") + std::string(100000, '\0'), 50000, 100012),
      ElementsAre("RIFF AVI  0+4", "end RIFF", "! 12 100,000 bytes, of which 50,012 cannot be read, are no chunks"));
}

TEST(AviOutline, UnreadableHeaderPayloadIsTold) {
  EXPECT_THAT(outlineWithUnreadable(list("RIFF", "AVI ", chunk("avih", std::string(56, '\1'))), 30, 40),
              testing::IsSupersetOf({"avih 12+56", "! 12 what it holds cannot be read from byte 30 on"}));
}

TEST(AviOutline, UnreadableBeginningIsNotSaidToBeWrong) {
  EXPECT_THAT(outlineWithUnreadable(list("RIFF", "AVI ", chunk("JUNK", "")), 6, 10).front(),
              "! 0 the first 12 bytes cannot be read");
}

TEST(AviOutline, StopInDamageSaysWhatWasNotLookedAt) {
  test::MemoryReadable file(damaged(1000000, '\0'));
  Lines lines;
  int asked = 0;
  AviOutline outline(
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

TEST(AviOutline, StopAtTheFirstQuestionClaimsNothing) {
  test::MemoryReadable file(damaged(1000, '\0'));
  Lines lines;
  AviOutline outline(
      file, lines, [] { return true; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_THAT(lines.lines, ElementsAre("! 0 stopped here; 1,046 bytes were not looked at"));
}

TEST(AviOutline, StopInAListOfOddSizeEndsWhereItSays) {
  test::MemoryReadable file(list("RIFF", "AVI ", std::string(100001, '\0')) + std::string(100, '\0'));
  Lines lines;
  int asked = 0;
  AviOutline outline(
      file, lines, [&asked] { return ++asked > 9; }, true);
  outline.walk();

  EXPECT_THAT(lines.lines, testing::Contains(HasSubstr(std::to_string(outline.position()) + " stopped here; ")));
}

TEST(AviOutline, StopBeforeDamageWasLookedAtDoesNotTellOfIt) {
  const std::string bytes = list("RIFF", "AVI ", std::string(5000, '\0'));
  for (int questions = 0; questions < 6; ++questions) {
    test::MemoryReadable file(bytes);
    Lines lines;
    int asked = 0;
    AviOutline outline(
        file, lines, [&] { return asked++ == questions; }, true);
    outline.walk();
    EXPECT_THAT(lines.lines, testing::Not(testing::Contains(HasSubstr(" 0 bytes")))) << questions;
  }
}

TEST(AviOutline, StopAmongUnreadablePagesEndsTheSearch) {
  test::MemoryReadable file(damaged(10000000, '\0'));
  file.makeUnreadable(4096, 9000000);
  Lines lines;
  int asked = 0;
  AviOutline outline(
      file, lines, [&asked] { return ++asked > 30; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_LT(outline.position(), 1000000U);
  EXPECT_LT(outline.failures().count, 40U);
  EXPECT_THAT(lines.lines, testing::Contains(HasSubstr("were not looked at")));
}

TEST(AviOutline, StopAmongTheEntriesOfTheLastIndexIsAStopToo) {
  const std::string entry = "00dc" + le32(0x10) + le32(4) + le32(4);
  test::MemoryReadable file(
      list("RIFF", "AVI ", list("LIST", "movi", chunk("00dc", "abcd")) + chunk("idx1", entry + entry + entry)));
  Lines lines;
  int asked = 0;
  AviOutline outline(
      file, lines, [&asked] { return ++asked > 5; }, true);
  outline.walk();

  EXPECT_TRUE(outline.wasStopped());
  EXPECT_THAT(lines.lines, testing::Not(testing::Contains(HasSubstr("looked at"))));
}

TEST(AviOutline, StopAfterTheEndIsNone) {
  test::MemoryReadable file(list("RIFF", "AVI ", chunk("JUNK", "ab")));
  Lines lines;
  AviOutline outline(
      file, lines, [&lines] { return lines.lines.size() >= 3; }, true);
  outline.walk();

  EXPECT_FALSE(outline.wasStopped());
}

TEST(AviOutline, FileThatShrinksIsNotSaidToBeZeroWhereItWas) {
  test::MemoryReadable file(damaged(1000000, '\0'));
  Lines lines;
  int asked = 0;
  AviOutline outline(
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

TEST(AviOutline, FileThatShrinksIsSurvived) {
  test::MemoryReadable file(test::SmallAvi{.frames = 20}.bytes());
  Lines lines;
  AviOutline outline(
      file, lines,
      [&] {
        if (lines.lines.size() == 5) file.cutTo(3000);
        return false;
      },
      true);
  outline.walk();

  EXPECT_EQ(lines.open(), 0);
}

TEST(AviOutline, AnyBytesAreSurvived) {
  std::mt19937 random(3);
  const std::string good = test::SmallAvi{.frames = 5, .frameSize = 50, .soundSize = 10}.bytes();
  for (unsigned round = 0; round < 3000; ++round) {
    std::string bytes = good;
    for (unsigned i = 0; i <= round % 50; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
    if (round % 3 == 0) bytes.resize(random() % bytes.size());
    if (round % 5 == 0) bytes.insert(random() % (bytes.size() + 1), bytes.substr(0, random() % 100));
    static_cast<void>(outlineOf(bytes, round % 2 == 0));
  }
}

}  // namespace
}  // namespace zelvo::cli
