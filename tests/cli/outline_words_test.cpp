#include "cli/outline_words.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using cli::codeOrNumber;
using cli::inWords;
using cli::noteOn;
using cli::remarkInWords;

using avi::EntryTarget;
using avi::Problem;
using avi::ProblemKind;

TEST(OutlineWords, ProblemsSayWhatIsThereAndWhatIsNot) {
  EXPECT_EQ(inWords({.kind = ProblemKind::chunkLongerThanList, .claimed = 1000, .held = 2, .id = avi::kJunk}),
            "\"JUNK\" claims 1,000 bytes, but only 2 are left in its list");
  EXPECT_EQ(inWords({.kind = ProblemKind::chunkLongerThanFile, .claimed = 1, .held = 0, .id = avi::FourCC("a\1\"c")}),
            "\"a\\x01\"c\" claims 1 byte, but only 0 are left in the file");
  EXPECT_EQ(inWords({.kind = ProblemKind::skippedPartlyUnreadable, .claimed = 20000, .held = 15904}),
            "20,000 bytes, of which 4,096 cannot be read, are no chunks");
  EXPECT_EQ(inWords({.kind = ProblemKind::skippedUnreadable, .claimed = 4096}), "4,096 bytes cannot be read");
  EXPECT_EQ(inWords({.kind = ProblemKind::payloadUnreadable, .offset = 12, .claimed = 56, .held = 10}),
            "what it holds cannot be read from byte 30 on");
  EXPECT_EQ(inWords({.kind = ProblemKind::tooManyChunks, .held = 16U << 20U}),
            "there are more than 16,777,216 chunks; the rest is not looked at");
  EXPECT_EQ(inWords({.kind = ProblemKind::stopped, .claimed = 1046, .held = 46}),
            "stopped here; 1,000 bytes were not looked at");
  EXPECT_EQ(inWords({.kind = ProblemKind::fileShrank, .claimed = 2000, .held = 4}),
            "the file ends here by now; it was 2,000 bytes long");
}

TEST(OutlineWords, LessThanAHeaderIsTooFewForAChunk) {
  EXPECT_EQ(inWords({.kind = ProblemKind::skippedBytes, .claimed = 7}), "7 bytes are too few for a chunk");
  EXPECT_EQ(inWords({.kind = ProblemKind::skippedBytes, .claimed = 8}), "8 bytes are no chunks");
  EXPECT_EQ(inWords({.kind = ProblemKind::skippedZeros, .claimed = 1}), "1 byte, all zero, are too few for a chunk");
  EXPECT_EQ(inWords({.kind = ProblemKind::skippedZeros, .claimed = 8}), "8 bytes, all zero, are no chunks");
}

TEST(OutlineWords, WrongIndexEntriesNameTheFirst) {
  Problem problem{.kind = ProblemKind::wrongIndexEntries, .claimed = 1200, .held = 100};
  problem.entry = {.number = 1001, .id = avi::k01wb, .offset = 5000, .size = 7, .target = EntryTarget::otherCode};
  problem.entry->found.id = avi::FourCC("1wb\2");
  const std::string start = "1,100 of the 1,200 index entries do not match; in the first, number 1,001, ";
  EXPECT_EQ(inWords(problem), start + "at byte 5,000 lies \"1wb\\x02\", not \"01wb\"");
  problem.entry->target = EntryTarget::otherSize;
  problem.entry->found.size = 1;
  EXPECT_EQ(inWords(problem), start + "the chunk at byte 5,000 is 1 byte long, not 7");
  problem.entry->target = EntryTarget::beyondEnd;
  EXPECT_EQ(inWords(problem), start + "at byte 5,000 the file has ended");
  problem.entry->target = EntryTarget::noStandardIndex;
  EXPECT_EQ(inWords(problem), start + "at byte 5,000 lies \"1wb\\x02\", not a standard index");
  problem.entry->target = EntryTarget::shorterThanIndex;
  EXPECT_EQ(inWords(problem), start + "the index at byte 5,000 is shorter than dwSize, 7 bytes");
}

TEST(OutlineWords, RemarksOnAnIndex) {
  const auto words = [](avi::IndexRemark remark) {
    avi::IndexReport report;
    report.entries = 1234;
    report.remark = remark;
    return remarkInWords(report);
  };
  EXPECT_EQ(words(avi::IndexRemark::none), "");
  EXPECT_EQ(words(avi::IndexRemark::countsFromFile), "dwOffset counts from the beginning of the file");
  EXPECT_EQ(words(avi::IndexRemark::countsFromFileForNoMovi),
            "dwOffset counts from the beginning of the file, since there is no \"movi\" list before the index");
  EXPECT_EQ(words(avi::IndexRemark::countsFromMovi), "dwOffset counts from the type of the \"movi\" list");
  EXPECT_EQ(words(avi::IndexRemark::tooShort), "too short to hold an index");
  EXPECT_EQ(words(avi::IndexRemark::unreadable), "it could not be read");
  EXPECT_EQ(words(avi::IndexRemark::cutByEnd), "the file has ended in it");
  EXPECT_EQ(words(avi::IndexRemark::unknownEntries), "its entries are of a kind that is not known here");
  EXPECT_EQ(words(avi::IndexRemark::claimsMoreThanItHasRoomFor), "it has room for 1,234 of these");
}

TEST(OutlineWords, NotesOnFields) {
  EXPECT_EQ(noteOn({"dwScale", std::uint64_t{1}}), "");
  EXPECT_EQ(noteOn({"dwMicroSecPerFrame", std::uint64_t{40000}, avi::Unit::microseconds, avi::FramesPerSecond{25}}),
            "25.000 frames per second");
  EXPECT_EQ(noteOn({"dwRate", std::uint64_t{30000}, avi::Unit::none, avi::UnitsPerSecond{30000.0 / 1001}}),
            "29.970 units per second");
  EXPECT_EQ(noteOn({"dwFlags", std::uint64_t{0x110}, avi::Unit::none, avi::SetFlags{"AVIF_HASINDEX", "AVIF_X"}}),
            "AVIF_HASINDEX | AVIF_X");
  EXPECT_EQ(noteOn({"dwFlags", std::uint64_t{0}, avi::Unit::none, avi::SetFlags{}}), "");
  EXPECT_EQ(noteOn({"wFormatTag", std::uint64_t{0x55}, avi::Unit::none, avi::AudioFormatTag{"MP3"}}), "0x0055, MP3");
  EXPECT_EQ(noteOn({"wFormatTag", std::uint64_t{0x1234}, avi::Unit::none, avi::AudioFormatTag{""}}), "0x1234");
}

TEST(OutlineWords, SmallCodesAreNumbers) {
  avi::FourCC small;
  EXPECT_EQ(codeOrNumber(small), "0");
  small.value = 0xff;
  EXPECT_EQ(codeOrNumber(small), "255");
  small.value = 0x100;
  EXPECT_EQ(codeOrNumber(small), "\\x00\\x01\\x00\\x00");
  EXPECT_EQ(codeOrNumber(avi::FourCC("XVID")), "XVID");
}

TEST(OutlineWords, Units) {
  EXPECT_EQ(inWords(avi::Unit::none), "");
  EXPECT_EQ(inWords(avi::Unit::hertz), "Hz");
  EXPECT_EQ(inWords(avi::Unit::streamUnits), "units of dwScale / dwRate seconds");
}

}  // namespace
}  // namespace zelvo::tests
