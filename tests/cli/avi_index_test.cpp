#include "cli/avi_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::cli {
namespace {

using test::chunk;
using test::le16;
using test::le32;
using testing::HasSubstr;

const auto kNeverEnding = [] { return false; };

/// Two chunks behind the type of a "movi" list, which lies at byte 100.
constexpr std::uint64_t kMovi = 100;
std::string data() { return std::string(kMovi, '.') + "movi" + chunk("00dc", "abcd") + chunk("01wb", "ef"); }
std::string entry(std::string_view id, std::uint64_t flags, std::uint64_t offset, std::uint64_t size) {
  return std::string(id) + le32(flags) + le32(offset) + le32(size);
}

IndexReport oldIndexOf(const std::string& entries, std::optional<std::uint64_t> movi = kMovi) {
  test::MemoryReadable file(data() + entries);
  return IndexCheck(file, kNeverEnding).oldIndex(data().size(), entries.size(), movi);
}

TEST(OldIndex, OffsetsCountFromTheListsType) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 16, 2));

  EXPECT_EQ(report.entries, 2U);
  EXPECT_EQ(report.checked, 2U);
  EXPECT_EQ(report.matching, 2U);
  EXPECT_EQ(report.keyFrames, 1U);
  EXPECT_FALSE(report.firstWrong);
}

TEST(OldIndex, OffsetsMayCountFromTheBeginningOfTheFile) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 104, 4) + entry("01wb", 0, 116, 2));

  EXPECT_EQ(report.matching, 2U);
  EXPECT_THAT(report.note, HasSubstr("beginning of the file"));
}

TEST(OldIndex, WrongPlaceIsTold) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 17, 2));

  EXPECT_EQ(report.matching, 1U);
  EXPECT_EQ(report.firstWrong, 2U);
  EXPECT_THAT(report.whatIsWrong, HasSubstr("at byte 117 lies \"1wb\\x02\", not \"01wb\""));
}

TEST(OldIndex, WrongSizeIsTold) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 4, 5));

  EXPECT_EQ(report.matching, 0U);
  EXPECT_THAT(report.whatIsWrong, HasSubstr("is 4 bytes long, not 5"));
}

TEST(OldIndex, EntryBeyondTheFileIsTold) {
  EXPECT_THAT(oldIndexOf(entry("00dc", 0x10, 0xfffffff0, 4)).whatIsWrong, HasSubstr("the file has ended"));
}

TEST(OldIndex, ListOfRecordsIsPointedAtByItsOwnCode) {
  const std::string entries = entry("rec ", 1, 4, 16);
  test::MemoryReadable file(std::string(kMovi, '.') + "movi" + test::list("LIST", "rec ", chunk("00dc", "abcd")) +
                            entries);
  const std::uint64_t start = kMovi + 4 + 24;

  EXPECT_EQ(IndexCheck(file, kNeverEnding).oldIndex(start, entries.size(), kMovi).matching, 1U);
}

TEST(OldIndex, EntriesThatCannotBeReadAreNotCalledWrong) {
  std::string entries;
  for (int i = 0; i < 200; ++i) entries += entry("00dc", 0x10, 4, 4);
  entries += entry("01wb", 0, 17, 2);
  test::MemoryReadable file(data() + entries);
  const std::uint64_t start = data().size();
  file.makeUnreadable(start + 160, start + 170);
  const IndexReport report = IndexCheck(file, kNeverEnding).oldIndex(start, entries.size(), kMovi);

  EXPECT_EQ(report.entries, 201U);
  EXPECT_GE(report.unreadable, 1U);
  EXPECT_LE(report.unreadable, 32U) << "of a sector";
  EXPECT_EQ(report.checked, 201 - report.unreadable);
  EXPECT_EQ(report.matching, report.checked - 1);
  EXPECT_EQ(report.firstWrong, 201U);
}

TEST(OldIndex, UnreadableEntriesOfOneIndexSayNothingAboutAnother) {
  const std::string entries = entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 16, 2);
  const std::string far = data() + entries + std::string(2000, '.');
  test::MemoryReadable file(far + entries);
  file.makeUnreadable(far.size(), far.size() + 1);
  IndexCheck check(file, kNeverEnding);

  EXPECT_GT(check.oldIndex(far.size(), entries.size(), kMovi).unreadable, 0U);
  EXPECT_EQ(check.oldIndex(data().size(), entries.size(), kMovi).matching, 2U);
}

TEST(OldIndex, ChunkThatCannotBeReadIsNotSaidToBeMissing) {
  const std::string entries = entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 16, 2);
  test::MemoryReadable file(data() + entries);
  file.makeUnreadable(kMovi + 8, kMovi + 9);
  IndexCheck check(file, kNeverEnding);
  const IndexReport report = check.oldIndex(data().size(), entries.size(), kMovi);

  EXPECT_EQ(report.unreadable, 1U);
  EXPECT_EQ(report.checked, 1U);
  EXPECT_EQ(report.matching, 1U);
  EXPECT_FALSE(report.firstWrong);
  EXPECT_GT(check.failures().count, 0U);
}

TEST(OldIndex, PartOfAnEntryDoesNotCount) { EXPECT_EQ(oldIndexOf(entry("00dc", 0, 4, 4) + "00dc").entries, 1U); }

TEST(OldIndex, WithoutDataListItIsReadAllTheSame) {
  EXPECT_EQ(oldIndexOf(entry("00dc", 0, 104, 4), std::nullopt).matching, 1U);
}

std::string standardIndex(std::uint64_t entries, std::string_view id, std::uint64_t base, const std::string& content) {
  return le16(2) + std::string("\0\1", 2) + le32(entries) + std::string(id) + le32(base) + le32(0) + le32(0) + content;
}

IndexReport openDmlIndexOf(const std::string& payload) {
  test::MemoryReadable file(data() + payload);
  return IndexCheck(file, kNeverEnding).openDmlIndex(data().size(), payload.size());
}

TEST(StandardIndex, OffsetsPointBehindTheChunkHeaders) {
  const IndexReport report = openDmlIndexOf(standardIndex(1, "00dc", 104, le32(8) + le32(4)));

  EXPECT_EQ(report.matching, 1U);
  EXPECT_EQ(report.keyFrames, 1U);
}

TEST(StandardIndex, HighestBitMarksADeltaFrame) {
  const IndexReport report = openDmlIndexOf(standardIndex(1, "00dc", 104, le32(8) + le32(0x80000004)));

  EXPECT_EQ(report.matching, 1U);
  EXPECT_EQ(report.keyFrames, 0U);
}

TEST(StandardIndex, BothVideoCodesOfAStreamAreOne) {
  EXPECT_EQ(openDmlIndexOf(standardIndex(1, "00db", 104, le32(8) + le32(4))).matching, 1U);
  EXPECT_EQ(openDmlIndexOf(standardIndex(1, "02db", 104, le32(8) + le32(4))).matching, 0U);
}

TEST(StandardIndex, ClaimOfMoreEntriesThanFitIsTold) {
  const IndexReport report = openDmlIndexOf(standardIndex(0xffffffff, "00dc", 104, le32(8) + le32(4)));

  EXPECT_EQ(report.entries, 1U);
  EXPECT_THAT(report.note, HasSubstr("room for 1"));
}

TEST(StandardIndex, OffsetBeforeTheFileIsSurvived) {
  EXPECT_EQ(openDmlIndexOf(standardIndex(1, "00dc", 0, le32(0) + le32(4))).matching, 0U);
}

TEST(SuperIndex, EntriesPointAtStandardIndexes) {
  const std::string index = chunk("ix00", standardIndex(0, "00dc", 0, ""));
  const std::string super = le16(4) + std::string("\0\0", 2) + le32(2) + "00dc" + std::string(12, '\0') +
                            le32(data().size()) + le32(0) + le32(index.size()) + le32(0) +  //
                            le32(104) + le32(0) + le32(8) + le32(0);
  test::MemoryReadable file(data() + index + super);

  const IndexReport report = IndexCheck(file, kNeverEnding).openDmlIndex(data().size() + index.size(), super.size());

  EXPECT_EQ(report.matching, 1U);
  EXPECT_EQ(report.firstWrong, 2U);
  EXPECT_THAT(report.whatIsWrong, HasSubstr("lies \"00dc\", not a standard index"));
  EXPECT_FALSE(report.keyFrames);
}

TEST(StandardIndex, UnreadableEntriesOfOneIndexSayNothingAboutAnother) {
  const std::string index = standardIndex(1, "00dc", 104, le32(8) + le32(4));
  const std::string far = data() + index + std::string(2000, '.');
  test::MemoryReadable file(far + index);
  file.makeUnreadable(far.size() + 24, far.size() + 25);
  IndexCheck check(file, kNeverEnding);

  EXPECT_EQ(check.openDmlIndex(far.size(), index.size()).unreadable, 1U);
  EXPECT_EQ(check.openDmlIndex(data().size(), index.size()).matching, 1U);
}

TEST(SuperIndex, IndexThatCannotBeReadIsNotSaidToBeMissing) {
  const std::string super = le16(4) + std::string("\0\0", 2) + le32(1) + "00dc" + std::string(12, '\0') + le32(50) +
                            le32(0) + le32(8) + le32(0);
  test::MemoryReadable file(data() + super);
  file.makeUnreadable(50, 51);
  const IndexReport report = IndexCheck(file, kNeverEnding).openDmlIndex(data().size(), super.size());

  EXPECT_EQ(report.unreadable, 1U);
  EXPECT_EQ(report.checked, 0U);
  EXPECT_FALSE(report.firstWrong);
}

TEST(OpenDmlIndex, HeaderThatCannotBeReadIsToldAsSuch) {
  const std::string index = standardIndex(1, "00dc", 104, le32(8) + le32(4));
  test::MemoryReadable file(data() + index);
  file.makeUnreadable(data().size() + 4, data().size() + 5);
  const IndexReport report = IndexCheck(file, kNeverEnding).openDmlIndex(data().size(), index.size());

  EXPECT_EQ(report.entries, 0U);
  EXPECT_EQ(report.note, "it could not be read");
}

TEST(OpenDmlIndex, OddEntrySizesAreSaidToBeUnknown) {
  const IndexReport report = openDmlIndexOf(le16(3) + std::string("\0\1", 2) + le32(1) + std::string(40, '\0'));

  EXPECT_EQ(report.checked, 0U);
  EXPECT_THAT(report.note, HasSubstr("not known here"));
}

TEST(OpenDmlIndex, TooShortPayloadIsSurvived) { EXPECT_EQ(openDmlIndexOf("abc").entries, 0U); }

TEST(StandardIndex, NoMoreThan4194304EntriesOfAllIndexesAreLookedAt) {
  constexpr std::uint32_t kMost = 4194304;
  const std::string entry = le32(8) + le32(4);
  std::string entries(8 * kMost, '\0');
  for (std::size_t at = 0; at < entries.size(); at += 8) entries.replace(at, 8, entry);
  const std::string index = standardIndex(kMost, "00dc", 104, entries);
  test::MemoryReadable file(data() + index);
  IndexCheck check(file, kNeverEnding);

  EXPECT_EQ(check.openDmlIndex(data().size(), index.size()).matching, kMost);
  EXPECT_EQ(check.openDmlIndex(data().size(), index.size()).checked, 0U);
}

}  // namespace
}  // namespace zelvo::cli
