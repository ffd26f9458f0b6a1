#include "cli/avi_outline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "cli/avi_codes.h"
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

  EXPECT_EQ(lines.size(), AviOutline::kMostListed + 3);
  EXPECT_THAT(lines, testing::Contains("JUNK x 4000, 0"));
}

TEST(AviOutline, ManyCodesAreSummedUpUnderFew) {
  std::string content;
  for (int i = 0; i < 3000; ++i) {
    const std::string digits = std::to_string(10000 + i);
    content += chunk(digits.substr(1, 4), "");
  }
  EXPECT_LE(outlineOf(list("RIFF", "AVI ", content)).size(), AviOutline::kMostListed + AviOutline::kMostSums + 3);
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
