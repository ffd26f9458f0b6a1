#include "avi/index_reader.h"

#include <algorithm>
#include <utility>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"

namespace zelvo::avi {

namespace {

constexpr std::uint64_t kOldEntrySize = 16;       // AVIINDEXENTRY
constexpr std::uint64_t kSuperEntrySize = 16;     // qwOffset, dwSize, dwDuration
constexpr std::uint64_t kStandardEntrySize = 8;   // dwOffset, dwSize
constexpr std::uint64_t kOpenDmlHeaderSize = 24;  // before the entries of both
constexpr std::uint32_t kKeyFrame = 0x10;         // AVIIF_KEYFRAME
constexpr std::uint32_t kDeltaFrame = 0x80000000;

/// An entry of an old index whose offsets count from `base`.
IndexEntry oldEntry(std::span<const std::byte> bytes, std::uint64_t base) {
  return {.id = FourCC::at(bytes),
          .offset = base + littleEndian32At(bytes, 8),
          .size = littleEndian32At(bytes, 12),
          .isKeyFrame = (littleEndian32At(bytes, 4) & kKeyFrame) != 0};
}

}  // namespace

ReadFailures IndexReader::failures() const {
  ReadFailures both = entries_.failures();
  both.add(targets_.failures());
  return both;
}

std::optional<std::span<const std::byte>> IndexReader::entryAt(std::uint64_t start, std::size_t size) {
  if (start < unreadableUntil_) return std::span<const std::byte>();
  const std::span<const std::byte> found = entries_.bytes(start, size);
  if (found.size() == size) return found;
  if (!entries_.failedLast()) return std::nullopt;
  unreadableUntil_ = (start / kSectorSize + 1) * kSectorSize;
  return std::span<const std::byte>();
}

void IndexReader::count(IndexReport& report, IndexEntry entry) {
  ++lookedAtInAll_;
  entry.number = report.checked + report.unreadable + 1;
  if (!entry.isChecked()) {
    ++report.unreadable;
  } else {
    ++report.checked;
    if (entry.target == EntryTarget::matches) {
      ++report.matching;
    } else if (!report.firstWrong) {
      report.firstWrong = entry;
    }
  }
  if (entry.isKeyFrame.value_or(false)) ++*report.keyFrames;
  if (takeEntry_) takeEntry_(entry);
}

void IndexReader::countUnreadable(IndexReport& report) { count(report, {.target = EntryTarget::entryUnreadable}); }

EntryTarget IndexReader::missing() const {
  return targets_.failedLast() ? EntryTarget::unreadable : EntryTarget::beyondEnd;
}

void IndexReader::judge(IndexEntry& entry) {
  const auto header = targets_.header(entry.offset);
  if (!header) {
    entry.target = missing();
    return;
  }
  entry.found = *header;
  // An entry about a "rec " list points at the list's header, which begins with "LIST".
  const bool sameId = namesSameData(header->id, entry.id) || (entry.id == kRec && header->id == kList);
  if (!sameId) {
    entry.target = EntryTarget::otherCode;
  } else if (header->size != entry.size) {
    entry.target = EntryTarget::otherSize;
  } else {
    entry.target = EntryTarget::matches;
  }
}

IndexRemark IndexReader::originOfOldIndex(std::uint64_t payload, std::uint64_t size,
                                          std::optional<std::uint64_t> moviType) {
  // The first entries that fit one reading and not the other decide.
  constexpr std::uint64_t kEntriesAsked = 16;
  if (!moviType) return IndexRemark::countsFromFileForNoMovi;
  for (std::uint64_t at = 0; at < kEntriesAsked && (at + 1) * kOldEntrySize <= size; ++at) {
    const auto bytes = entryAt(payload + at * kOldEntrySize, kOldEntrySize);
    if (!bytes) break;
    if (bytes->empty()) continue;
    IndexEntry fromList = oldEntry(*bytes, *moviType);
    IndexEntry fromStart = oldEntry(*bytes, 0);
    judge(fromList);
    judge(fromStart);
    if (fromList.target == EntryTarget::matches) break;
    if (fromStart.target == EntryTarget::matches) return IndexRemark::countsFromFile;
  }
  return IndexRemark::countsFromMovi;
}

IndexReport IndexReader::oldIndex(std::uint64_t payload, std::uint64_t size, std::optional<std::uint64_t> moviType) {
  IndexReport report;
  report.entries = size / kOldEntrySize;
  report.keyFrames = 0;
  unreadableUntil_ = 0;
  report.remark = originOfOldIndex(payload, size, moviType);
  const std::uint64_t base = report.remark == IndexRemark::countsFromMovi ? *moviType : 0;
  for (std::uint64_t at = 0; at < report.entries && mayGoOn(); ++at) {
    const auto bytes = entryAt(payload + at * kOldEntrySize, kOldEntrySize);
    if (!bytes) break;
    if (bytes->empty()) {
      countUnreadable(report);
      continue;
    }
    IndexEntry entry = oldEntry(*bytes, base);
    judge(entry);
    count(report, entry);
  }
  return report;
}

void IndexReader::judgeSuper(IndexEntry& entry) {
  const auto header = targets_.header(entry.offset);
  if (!header) {
    entry.target = missing();
    return;
  }
  entry.found = *header;
  if (!isStandardIndex(header->id)) {
    entry.target = EntryTarget::noStandardIndex;
  } else if (entry.size > std::uint64_t{header->size} + kChunkHeader) {
    entry.target = EntryTarget::shorterThanIndex;
  }
}

void IndexReader::superEntries(IndexReport& report, std::uint64_t payload, FourCC id) {
  for (std::uint64_t at = 0; at < report.entries && mayGoOn(); ++at) {
    const auto bytes = entryAt(payload + kOpenDmlHeaderSize + at * kSuperEntrySize, kSuperEntrySize);
    if (!bytes) break;
    if (bytes->empty()) {
      countUnreadable(report);
      continue;
    }
    IndexEntry entry{.id = id, .offset = loadLittleEndian64(bytes->first<8>()), .size = littleEndian32At(*bytes, 8)};
    judgeSuper(entry);
    count(report, entry);
  }
}

void IndexReader::standardEntries(IndexReport& report, std::uint64_t payload, FourCC id, std::uint64_t base) {
  report.keyFrames = 0;
  for (std::uint64_t at = 0; at < report.entries && mayGoOn(); ++at) {
    const auto bytes = entryAt(payload + kOpenDmlHeaderSize + at * kStandardEntrySize, kStandardEntrySize);
    if (!bytes) break;
    if (bytes->empty()) {
      countUnreadable(report);
      continue;
    }
    // dwOffset points after the chunk's header.
    const std::uint32_t length = littleEndian32At(*bytes, 4);
    IndexEntry entry{.id = id,
                     .offset = base + littleEndian32At(*bytes, 0) - kChunkHeader,
                     .size = length & (kDeltaFrame - 1),
                     .isKeyFrame = (length & kDeltaFrame) == 0};
    judge(entry);
    count(report, entry);
  }
}

IndexReport IndexReader::openDmlIndex(std::uint64_t payload, std::uint64_t size) {
  IndexReport report;
  unreadableUntil_ = 0;
  if (size < kOpenDmlHeaderSize) {
    report.remark = IndexRemark::tooShort;
    return report;
  }
  const std::span<const std::byte> header = entries_.bytes(payload, kOpenDmlHeaderSize);
  if (header.size() < kOpenDmlHeaderSize) {
    report.remark = entries_.failedLast() ? IndexRemark::unreadable : IndexRemark::cutByEnd;
    return report;
  }
  const std::size_t longsPerEntry = loadLittleEndian16(header.first<2>());
  const bool standard = header[3] == std::byte{1};
  const std::uint64_t entrySize = standard ? kStandardEntrySize : kSuperEntrySize;
  const FourCC id = FourCC::at(header.subspan(8));
  const std::uint64_t base = loadLittleEndian64(header.subspan<12, 8>());
  report.entries = littleEndian32At(header, 4);
  const std::uint64_t room = (size - kOpenDmlHeaderSize) / entrySize;
  if (longsPerEntry * 4 != entrySize) {
    report.remark = IndexRemark::unknownEntries;
    return report;
  }
  if (report.entries > room) {
    report.remark = IndexRemark::claimsMoreThanItHasRoomFor;
    report.entries = room;
  }
  if (standard) {
    standardEntries(report, payload, id, base);
  } else {
    superEntries(report, payload, id);
  }
  return report;
}

}  // namespace zelvo::avi
