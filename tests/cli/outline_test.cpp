#include "avi/outline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/cli/outline_lines.h"
#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> outlineOf(const std::string& bytes, bool listsAll = false) {
  MemoryReadable file(bytes);
  Lines lines;
  avi::Outline(file, lines, kNeverEnding, listsAll).walk();
  EXPECT_EQ(lines.open(), 0) << "every list that begins must end";
  return lines.lines;
}

TEST(Outline, ListsAndChunksComeInFileOrder) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", list("LIST", "hdrl", chunk("avih", "12345678")) + chunk("JUNK", "ab"))),
              ElementsAre("RIFF AVI  0+42", "LIST hdrl 12+20", "avih 24+8", "end LIST", "JUNK 40+2", "end RIFF"));
}

TEST(Outline, StreamDataIsSummedUp) {
  const std::string movi = list("LIST", "movi", chunk("00dc", "abcd") + chunk("01wb", "ef") + chunk("00dc", "gh"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi)),
              ElementsAre("RIFF AVI  0+48", "LIST movi 12+36", "01wb x 1, 2", "00dc x 2, 6", "end LIST", "end RIFF"));
}

TEST(Outline, StreamDataIsListedWhenAllIsWanted) {
  const std::string movi = list("LIST", "movi", chunk("00dc", "abcd"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi), true),
              ElementsAre("RIFF AVI  0+28", "LIST movi 12+16", "00dc 24+4", "end LIST", "end RIFF"));
}

TEST(Outline, RecordsInDataAreSummedUpWithTheRest) {
  const std::string movi = list("LIST", "movi", list("LIST", "rec ", chunk("00dc", "abcd")) + chunk("00dc", "ef"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi)),
              ElementsAre("RIFF AVI  0+50", "LIST movi 12+38", "00dc x 2, 6", "end LIST", "end RIFF"));
}

TEST(Outline, PadByteIsSteppedOver) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", chunk("JUNK", "abc") + chunk("JUNK", "d"))),
              ElementsAre("RIFF AVI  0+26", "JUNK 12+3", "JUNK 24+1", "end RIFF"));
}

TEST(Outline, MissingPadByteIsNoticed) {
  const std::string data = "00dc" + le32(3) + "abc" + "00dc" + le32(2) + "de";

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", list("LIST", "movi", data)), true), testing::Contains("00dc 35+2"));
}

TEST(Outline, ChunkLongerThanItsListIsTold) {
  const auto lines = outlineOf(list("RIFF", "AVI ", "JUNK" + le32(100) + "ab"));

  EXPECT_THAT(lines, ElementsAre("RIFF AVI  0+14", "! 12 \"JUNK\" claims 100 bytes, but only 2 are left in its list",
                                 "JUNK 12+100", "end RIFF"));
}

TEST(Outline, ListLongerThanTheFileIsTold) {
  EXPECT_THAT(
      outlineOf("RIFF" + le32(1000) + "AVI "),
      ElementsAre("! 0 \"RIFF\" claims 1,000 bytes, but only 4 are left in the file", "RIFF AVI  0+1000", "end RIFF"));
}

TEST(Outline, ZeroedStretchIsSkippedUpToTheNextChunk) {
  const std::string movi = list("LIST", "movi", chunk("00dc", "abcd") + std::string(10000, '\0') + chunk("01wb", "ef"));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi), true),
              testing::IsSupersetOf({"! 36 10,000 bytes, all zero, are no chunks", "01wb 10036+2"}));
}

TEST(Outline, DamageIsSkippedWhereverTheNextChunkLies) {
  for (std::size_t length = 4080; length < 4110; ++length) {
    const std::string movi = list("LIST", "movi", std::string(length, '\1') + chunk("01wb", "ef"));
    EXPECT_THAT(outlineOf(list("RIFF", "AVI ", movi), true),
                testing::Contains("01wb " + std::to_string(24 + length) + "+2"))
        << length;
  }
}

TEST(Outline, FewBytesAtTheEndAreTold) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", "") + "abc"),
              ElementsAre("RIFF AVI  0+4", "end RIFF", "! 12 3 bytes are too few for a chunk"));
}

TEST(Outline, SecondFormIsShownToo) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", "") + list("RIFF", "AVIX", "")),
              ElementsAre("RIFF AVI  0+4", "end RIFF", "RIFF AVIX 12+4", "end RIFF"));
}

TEST(Outline, EmptyFileHasOneProblem) {
  EXPECT_THAT(outlineOf(""), ElementsAre(HasSubstr("does not begin as an AVI file does")));
}

TEST(Outline, ListWithoutATypeIsAProblem) {
  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", "LIST" + le32(2) + "ab")),
              testing::Contains("! 12 a list without a type"));
}

TEST(Outline, DeepNestingIsNotEntered) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes = list("LIST", "deep", bytes);
  MemoryReadable file(list("RIFF", "AVI ", bytes));
  Lines lines;
  avi::Outline(file, lines, kNeverEnding, false).walk();

  EXPECT_EQ(lines.deepest(), 16);
  EXPECT_THAT(lines.lines, testing::Contains(HasSubstr("nested too deep")));
}

TEST(Outline, EndlessSmallChunksAreListedOnlyAtFirst) {
  std::string content;
  for (int i = 0; i < 5000; ++i) content += chunk("JUNK", "");
  const auto lines = outlineOf(list("RIFF", "AVI ", content));

  EXPECT_EQ(lines.size(), 1000U + 2);  // with the form; and the sum, and the form's end
  EXPECT_THAT(lines, testing::Contains("JUNK x 4001, 0"));
}

TEST(Outline, LimitHoldsForTheFileAndNotForEachList) {
  std::string content;
  for (int i = 0; i < 300; ++i)
    content += list("LIST", "abcd", chunk("JUNK", "") + chunk("JUNK", "") + chunk("JUNK", ""));
  const auto lines = outlineOf(list("RIFF", "AVI ", content));

  const auto told =
      std::count_if(lines.begin(), lines.end(), [](const auto& line) { return line.find('+') != std::string::npos; });
  EXPECT_EQ(told, 1000);
  EXPECT_THAT(lines, testing::IsSupersetOf({"JUNK x 1, 0", "LIST x 50, 200", "JUNK x 150, 0"}));
}

TEST(Outline, LimitHoldsForNestedLists) {
  std::string content;
  for (int i = 0; i < 5000; ++i) content += list("LIST", "abcd", list("LIST", "efgh", ""));
  const auto lines = outlineOf(list("RIFF", "AVI ", content));

  EXPECT_LE(lines.size(), 2002U);
  EXPECT_THAT(lines, testing::Contains("LIST x 9000, 36000"));
  EXPECT_EQ(outlineOf(list("RIFF", "AVI ", content), true).size(), 20002U);
}

TEST(Outline, LimitHoldsForForms) {
  std::string bytes = list("RIFF", "AVI ", "");
  for (int i = 0; i < 5000; ++i) bytes += list("RIFF", "AVIX", chunk("JUNK", "ab"));
  const auto lines = outlineOf(bytes);

  EXPECT_THAT(lines, testing::IsSupersetOf({"RIFF x 4500, 18000", "JUNK x 1, 2", "JUNK x 4500, 9000"}));
  EXPECT_LE(lines.size(), 2000U);
}

/// A standard index without entries but one, about a chunk "00dc" of `size` bytes at `target`.
std::string indexOf(std::uint64_t target, std::uint64_t size) {
  return chunk("ix00", le16(2) + std::string("\0\1", 2) + le32(1) + "00dc" + le32(target) + le32(0) + le32(0) +
                           le32(8) + le32(size));
}

TEST(Outline, LimitHoldsForIndexesWhichAreCheckedAllTheSame) {
  std::string content = chunk("00dc", "abcd");  // at byte 24
  for (int i = 0; i < 3000; ++i) content += indexOf(24, 4);
  const std::uint64_t wrong = 24 + content.size();
  content += indexOf(24, 5);
  const std::string bytes = list("RIFF", "AVI ", list("LIST", "movi", content));
  const auto lines = outlineOf(bytes);

  EXPECT_EQ(lines.size(), 1000U + 5);  // two sums, two ends, a problem
  EXPECT_THAT(lines, testing::Contains("ix00 x 2003, 64096; 2003 entries, 2003 checked, 2002 match, 0 unreadable"));
  EXPECT_THAT(lines, testing::Contains("! " + std::to_string(wrong) +
                                       " 1 of the 1 index entries do not match; in the first, number 1, the chunk at "
                                       "byte 24 is 4 bytes long, not 5"));
  EXPECT_THAT(outlineOf(bytes, true), testing::Contains("ix00 " + std::to_string(wrong) + "+32"));
}

TEST(Outline, OldIndexPastTheLimitIsCheckedToo) {
  std::string content = list("LIST", "movi", chunk("00dc", "abcd"));  // its type at byte 20
  for (int i = 0; i < 1000; ++i) content += chunk("JUNK", "");
  content += chunk("idx1", "00dc" + le32(0x10) + le32(4) + le32(4));

  EXPECT_THAT(outlineOf(list("RIFF", "AVI ", content)),
              testing::Contains("idx1 x 1, 16; 1 entries, 1 checked, 1 match, 0 unreadable"));
}

TEST(Outline, ManyCodesAreSummedUpUnderFew) {
  std::string content;
  for (int i = 0; i < 3000; ++i) {
    const std::string digits = std::to_string(10000 + i);
    content += chunk(digits.substr(1, 4), "");
  }
  // A thousand lines, the form among them; 64 codes and the rest; the form's end.
  EXPECT_EQ(outlineOf(list("RIFF", "AVI ", content)).size(), 1000U + 64 + 1 + 1);
}

/// Empty chunks, one after the other, of which no byte is kept.
class EmptyChunks final : public platform::ReadableFile {
 public:
  explicit EmptyChunks(std::uint64_t count) : size_(8 * count) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    constexpr std::string_view kChunk{"JUNK\0\0\0\0", 8};
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), size_ - std::min(size_, offset)));
    for (std::size_t i = 0; i < count; ++i) into[i] = static_cast<std::byte>(kChunk[(offset + i) % 8]);
    return {count, {}};
  }
  std::uint64_t size() override { return size_; }

 private:
  std::uint64_t size_;
};

TEST(Outline, WalkEndsAfter16777216Chunks) {
  constexpr std::uint64_t kMax = 16777216;
  EmptyChunks chunks(kMax + 1);
  Lines lines;
  avi::Outline outline(chunks, lines, kNeverEnding, false);
  outline.walk();

  EXPECT_THAT(lines.lines,
              testing::Contains("! 134217728 there are more than 16,777,216 chunks; the rest is not looked "
                                "at"));
  EXPECT_THAT(lines.lines, testing::Contains("JUNK x 16776216, 0"));
  EXPECT_EQ(outline.position(), 8 * kMax);
}

TEST(Outline, NoMoreThanAWindowIsReadAtATime) {
  MemoryReadable file(list("RIFF", "AVI ", "JUNK" + le32(0xffffffff)));
  Lines lines;
  avi::Outline(file, lines, kNeverEnding, true).walk();

  EXPECT_LE(file.largestRead(), 65536U);
}

TEST(Outline, AnyBytesAreSurvived) {
  std::mt19937 random(3);
  const std::string good = SmallAvi{.frames = 5, .frameSize = 50, .soundSize = 10}.bytes();
  for (unsigned round = 0; round < 3000; ++round) {
    std::string bytes = good;
    for (unsigned i = 0; i <= round % 50; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
    if (round % 3 == 0) bytes.resize(random() % bytes.size());
    if (round % 5 == 0) bytes.insert(random() % (bytes.size() + 1), bytes.substr(0, random() % 100));
    static_cast<void>(outlineOf(bytes, round % 2 == 0));
  }
}

}  // namespace
}  // namespace zelvo::tests
