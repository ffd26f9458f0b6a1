#include "avi/index_reader.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/memory_readable.h"
#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using avi::EntryTarget;
using avi::FourCC;
using avi::IndexEntry;
using avi::IndexReader;
using avi::IndexRemark;
using avi::IndexReport;

const auto kNeverEnding = [] { return false; };

/// Two chunks after the type of a "movi" list, which lies at byte 100.
constexpr std::uint64_t kMovi = 100;
std::string data() { return std::string(kMovi, '.') + "movi" + chunk("00dc", "abcd") + chunk("01wb", "ef"); }
std::string entry(std::string_view id, std::uint64_t flags, std::uint64_t offset, std::uint64_t size) {
  return std::string(id) + le32(flags) + le32(offset) + le32(size);
}

IndexReport oldIndexOf(const std::string& entries, std::optional<std::uint64_t> movi = kMovi) {
  MemoryReadable file(data() + entries);
  return IndexReader(file, kNeverEnding).oldIndex(data().size(), entries.size(), movi);
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
  EXPECT_EQ(report.remark, IndexRemark::countsFromFile);
}

TEST(OldIndex, WrongPlaceIsTold) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 17, 2));

  EXPECT_EQ(report.matching, 1U);
  ASSERT_TRUE(report.firstWrong);
  EXPECT_EQ(report.firstWrong->number, 2U);
  EXPECT_EQ(report.firstWrong->target, EntryTarget::otherCode);
  EXPECT_EQ(report.firstWrong->offset, 117U);
  EXPECT_EQ(report.firstWrong->id, FourCC("01wb"));
  EXPECT_EQ(report.firstWrong->found.id, FourCC("1wb\2"));
}

TEST(OldIndex, WrongSizeIsTold) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 4, 5));

  EXPECT_EQ(report.matching, 0U);
  ASSERT_TRUE(report.firstWrong);
  EXPECT_EQ(report.firstWrong->target, EntryTarget::otherSize);
  EXPECT_EQ(report.firstWrong->found.size, 4U);
  EXPECT_EQ(report.firstWrong->size, 5U);
}

TEST(OldIndex, EntryBeyondTheFileIsTold) {
  const IndexReport report = oldIndexOf(entry("00dc", 0x10, 0xfffffff0, 4));

  ASSERT_TRUE(report.firstWrong);
  EXPECT_EQ(report.firstWrong->target, EntryTarget::beyondEnd);
}

TEST(OldIndex, ListOfRecordsIsPointedAtByItsOwnCode) {
  const std::string entries = entry("rec ", 1, 4, 16);
  MemoryReadable file(std::string(kMovi, '.') + "movi" + list("LIST", "rec ", chunk("00dc", "abcd")) + entries);
  const std::uint64_t start = kMovi + 4 + 24;

  EXPECT_EQ(IndexReader(file, kNeverEnding).oldIndex(start, entries.size(), kMovi).matching, 1U);
}

TEST(OldIndex, EntriesThatCannotBeReadAreNotCalledWrong) {
  std::string entries;
  for (int i = 0; i < 200; ++i) entries += entry("00dc", 0x10, 4, 4);
  entries += entry("01wb", 0, 17, 2);
  MemoryReadable file(data() + entries);
  const std::uint64_t start = data().size();
  file.makeUnreadable(start + 160, start + 170);
  const IndexReport report = IndexReader(file, kNeverEnding).oldIndex(start, entries.size(), kMovi);

  EXPECT_EQ(report.entries, 201U);
  EXPECT_GE(report.unreadable, 1U);
  EXPECT_LE(report.unreadable, 32U) << "of a sector";
  EXPECT_EQ(report.checked, 201 - report.unreadable);
  EXPECT_EQ(report.matching, report.checked - 1);
  ASSERT_TRUE(report.firstWrong);
  EXPECT_EQ(report.firstWrong->number, 201U);
}

TEST(OldIndex, UnreadableEntriesOfOneIndexSayNothingAboutAnother) {
  const std::string entries = entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 16, 2);
  const std::string far = data() + entries + std::string(2000, '.');
  MemoryReadable file(far + entries);
  file.makeUnreadable(far.size(), far.size() + 1);
  IndexReader check(file, kNeverEnding);

  EXPECT_GT(check.oldIndex(far.size(), entries.size(), kMovi).unreadable, 0U);
  EXPECT_EQ(check.oldIndex(data().size(), entries.size(), kMovi).matching, 2U);
}

TEST(OldIndex, ChunkThatCannotBeReadIsNotSaidToBeMissing) {
  const std::string entries = entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 16, 2);
  MemoryReadable file(data() + entries);
  file.makeUnreadable(kMovi + 8, kMovi + 9);
  IndexReader check(file, kNeverEnding);
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
  MemoryReadable file(data() + payload);
  return IndexReader(file, kNeverEnding).openDmlIndex(data().size(), payload.size());
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
  EXPECT_EQ(report.remark, IndexRemark::claimsMoreThanItHasRoomFor);
}

TEST(StandardIndex, OffsetBeforeTheFileIsSurvived) {
  EXPECT_EQ(openDmlIndexOf(standardIndex(1, "00dc", 0, le32(0) + le32(4))).matching, 0U);
}

TEST(SuperIndex, EntriesPointAtStandardIndexes) {
  const std::string index = chunk("ix00", standardIndex(0, "00dc", 0, ""));
  const std::string super = le16(4) + std::string("\0\0", 2) + le32(2) + "00dc" + std::string(12, '\0') +
                            le32(data().size()) + le32(0) + le32(index.size()) + le32(0) +  //
                            le32(104) + le32(0) + le32(8) + le32(0);
  MemoryReadable file(data() + index + super);

  const IndexReport report = IndexReader(file, kNeverEnding).openDmlIndex(data().size() + index.size(), super.size());

  EXPECT_EQ(report.matching, 1U);
  ASSERT_TRUE(report.firstWrong);
  EXPECT_EQ(report.firstWrong->number, 2U);
  EXPECT_EQ(report.firstWrong->target, EntryTarget::noStandardIndex);
  EXPECT_EQ(report.firstWrong->found.id, FourCC("00dc"));
  EXPECT_FALSE(report.keyFrames);
}

TEST(StandardIndex, UnreadableEntriesOfOneIndexSayNothingAboutAnother) {
  const std::string index = standardIndex(1, "00dc", 104, le32(8) + le32(4));
  const std::string far = data() + index + std::string(2000, '.');
  MemoryReadable file(far + index);
  file.makeUnreadable(far.size() + 24, far.size() + 25);
  IndexReader check(file, kNeverEnding);

  EXPECT_EQ(check.openDmlIndex(far.size(), index.size()).unreadable, 1U);
  EXPECT_EQ(check.openDmlIndex(data().size(), index.size()).matching, 1U);
}

TEST(SuperIndex, IndexThatCannotBeReadIsNotSaidToBeMissing) {
  const std::string super = le16(4) + std::string("\0\0", 2) + le32(1) + "00dc" + std::string(12, '\0') + le32(50) +
                            le32(0) + le32(8) + le32(0);
  MemoryReadable file(data() + super);
  file.makeUnreadable(50, 51);
  const IndexReport report = IndexReader(file, kNeverEnding).openDmlIndex(data().size(), super.size());

  EXPECT_EQ(report.unreadable, 1U);
  EXPECT_EQ(report.checked, 0U);
  EXPECT_FALSE(report.firstWrong);
}

TEST(OpenDmlIndex, HeaderThatCannotBeReadIsToldAsSuch) {
  const std::string index = standardIndex(1, "00dc", 104, le32(8) + le32(4));
  MemoryReadable file(data() + index);
  file.makeUnreadable(data().size() + 4, data().size() + 5);
  const IndexReport report = IndexReader(file, kNeverEnding).openDmlIndex(data().size(), index.size());

  EXPECT_EQ(report.entries, 0U);
  EXPECT_EQ(report.remark, IndexRemark::unreadable);
}

TEST(OpenDmlIndex, OddEntrySizesAreSaidToBeUnknown) {
  const IndexReport report = openDmlIndexOf(le16(3) + std::string("\0\1", 2) + le32(1) + std::string(40, '\0'));

  EXPECT_EQ(report.checked, 0U);
  EXPECT_EQ(report.remark, IndexRemark::unknownEntries);
}

TEST(OpenDmlIndex, TooShortPayloadIsSurvived) {
  EXPECT_EQ(openDmlIndexOf("abc").entries, 0U);
  EXPECT_EQ(openDmlIndexOf("abc").remark, IndexRemark::tooShort);
}

// ---- One by one ----

/// An entry as "number id offset+size target", then "key" or "delta" where it says which.
std::string lineOf(const IndexEntry& entry) {
  std::string line = std::to_string(entry.number) + " ";
  if (entry.target == EntryTarget::entryUnreadable) return line + "unreadable";
  for (const std::byte byte : entry.id.bytes()) line += static_cast<char>(byte);
  line += " " + std::to_string(entry.offset) + "+" + std::to_string(entry.size);
  line += entry.target == EntryTarget::matches ? " matches" : " " + std::to_string(static_cast<int>(entry.target));
  if (entry.isKeyFrame) line += *entry.isKeyFrame ? " key" : " delta";
  return line;
}

std::string wrong(EntryTarget target) { return std::to_string(static_cast<int>(target)); }

/// What `read` makes a reader of `bytes` tell.
std::vector<std::string> told(const std::string& bytes, const std::function<void(IndexReader&)>& read,
                              std::optional<std::uint64_t> unreadable = {}) {
  MemoryReadable file(bytes);
  if (unreadable) file.makeUnreadable(*unreadable, *unreadable + 1);
  std::vector<std::string> lines;
  IndexReader reader(file, kNeverEnding, [&](const IndexEntry& entry) { lines.push_back(lineOf(entry)); });
  read(reader);
  return lines;
}

TEST(IndexEntries, OfAnOldIndexComeWithTheirPlaceInTheFile) {
  const std::string entries = entry("00dc", 0x10, 4, 4) + entry("01wb", 0, 16, 3) + entry("00dc", 0, 900000, 4);

  EXPECT_EQ(
      told(data() + entries,
           [&](IndexReader& reader) { static_cast<void>(reader.oldIndex(data().size(), entries.size(), kMovi)); }),
      (std::vector<std::string>{"1 00dc 104+4 matches key", "2 01wb 116+3 " + wrong(EntryTarget::otherSize) + " delta",
                                "3 00dc 900100+4 " + wrong(EntryTarget::beyondEnd) + " delta"}));
}

TEST(IndexEntries, OfAStandardIndexPointAtChunkHeaders) {
  const std::string payload = standardIndex(2, "00dc", 104, le32(8) + le32(0x80000004) + le32(20) + le32(2));

  EXPECT_EQ(told(data() + payload,
                 [&](IndexReader& reader) { static_cast<void>(reader.openDmlIndex(data().size(), payload.size())); }),
            (std::vector<std::string>{"1 00dc 104+4 matches delta",
                                      "2 00dc 116+2 " + wrong(EntryTarget::otherCode) + " key"}));
}

TEST(IndexEntries, OfASuperIndexSayNothingOfKeyFrames) {
  const std::string index = chunk("ix00", standardIndex(0, "00dc", 0, ""));
  const std::string super = le16(4) + std::string("\0\0", 2) + le32(1) + "00dc" + std::string(12, '\0') +
                            le32(data().size()) + le32(1) + le32(7) + le32(0);

  EXPECT_EQ(told(data() + index + super,
                 [&](IndexReader& reader) {
                   static_cast<void>(reader.openDmlIndex(data().size() + index.size(), super.size()));
                 }),
            (std::vector<std::string>{"1 00dc " + std::to_string((1ULL << 32U) + data().size()) + "+7 " +
                                      wrong(EntryTarget::beyondEnd)}))
      << "qwOffset is 64 bits wide";
}

TEST(IndexEntries, ThatCannotBeReadAreCountedAmongTheRest) {
  std::string entries;
  for (int i = 0; i < 40; ++i) entries += entry("00dc", 0x10, 4, 4);
  const std::string before = data() + std::string(512 - data().size(), '.');  // so that they begin with a sector
  const auto lines = told(
      before + entries, [&](IndexReader& reader) { static_cast<void>(reader.oldIndex(512, entries.size(), kMovi)); },
      512 + 33);

  ASSERT_EQ(lines.size(), 40U);
  EXPECT_EQ(lines[1], "2 00dc 104+4 matches key");
  EXPECT_EQ(lines[2], "3 unreadable");
  EXPECT_EQ(lines[31], "32 unreadable");
  EXPECT_EQ(lines[32], "33 00dc 104+4 matches key");
}

TEST(StandardIndex, NoMoreThan4194304EntriesOfAllIndexesAreLookedAt) {
  constexpr std::uint32_t kMax = 4194304;
  const std::string entry = le32(8) + le32(4);
  std::string entries(8 * kMax, '\0');
  for (std::size_t at = 0; at < entries.size(); at += 8) entries.replace(at, 8, entry);
  const std::string index = standardIndex(kMax, "00dc", 104, entries);
  MemoryReadable file(data() + index);
  IndexReader check(file, kNeverEnding);

  EXPECT_EQ(check.openDmlIndex(data().size(), index.size()).matching, kMax);
  EXPECT_EQ(check.openDmlIndex(data().size(), index.size()).checked, 0U);
}

}  // namespace
}  // namespace zelvo::tests
