#include "cli/avi_index.h"

#include <algorithm>
#include <utility>

#include "avi/chunk_codes.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

constexpr std::uint64_t kOldEntrySize = 16;       // AVIINDEXENTRY
constexpr std::uint64_t kSuperEntrySize = 16;     // qwOffset, dwSize, dwDuration
constexpr std::uint64_t kStandardEntrySize = 8;   // dwOffset, dwSize
constexpr std::uint64_t kOpenDmlHeaderSize = 24;  // before the entries of both
constexpr std::uint64_t kKeyFrame = 0x10;         // AVIIF_KEYFRAME
constexpr std::uint64_t kDeltaFrame = 0x80000000;
constexpr std::uint64_t kChunkHeaderSize = 8;

/// What fails on a disk is a sector at least, so entries that begin in one that failed are not tried again.
constexpr std::uint64_t kSectorSize = 512;

std::string at(std::uint64_t offset) { return "at byte " + shownNumber(offset); }

/// The number of `width` bytes at `offset` of what was read.
std::uint64_t numberIn(std::span<const std::byte> bytes, std::size_t offset, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t i = width; i > 0; --i) value = value << 8U | std::to_integer<std::uint64_t>(bytes[offset + i - 1]);
  return value;
}

}  // namespace

avi::ReadFailures IndexCheck::failures() const { return avi::together(entries_.failures(), targets_.failures()); }

std::optional<std::span<const std::byte>> IndexCheck::entryAt(std::uint64_t start, std::size_t size) {
  if (start < unreadableUntil_) return std::span<const std::byte>();
  const std::span<const std::byte> found = entries_.bytes(start, size);
  if (found.size() == size) return found;
  if (!entries_.failedLast()) return std::nullopt;
  unreadableUntil_ = (start / kSectorSize + 1) * kSectorSize;
  return std::span<const std::byte>();
}

void IndexCheck::count(IndexReport& report, Judged judged) {
  ++lookedAtInAll_;
  if (judged.verdict == Verdict::unreadable) {
    ++report.unreadable;
    return;
  }
  ++report.checked;
  if (judged.verdict == Verdict::matches) {
    ++report.matching;
  } else if (!report.firstWrong) {
    report.firstWrong = report.checked + report.unreadable;
    report.whatIsWrong = std::move(judged.whatIsWrong);
  }
}

IndexCheck::Judged IndexCheck::missing(std::uint64_t offset) const {
  if (targets_.failedLast()) return {Verdict::unreadable};
  return {Verdict::wrong, at(offset) + " the file has ended"};
}

IndexCheck::Judged IndexCheck::judge(std::uint64_t headerOffset, avi::FourCC id, std::uint32_t size) {
  const auto header = targets_.header(headerOffset);
  if (!header) return missing(headerOffset);
  // An entry about a "rec " list points at the list's header, which begins with "LIST".
  const bool sameId = avi::namesSameData(header->id, id) || (id == avi::kRec && header->id == avi::kList);
  if (!sameId) {
    return {Verdict::wrong,
            at(headerOffset) + " lies \"" + shownCode(header->id) + "\", not \"" + shownCode(id) + "\""};
  }
  if (header->size != size) {
    return {Verdict::wrong, "the chunk " + at(headerOffset) + " is " + counted(header->size, "byte") + " long, not " +
                                shownNumber(size)};
  }
  return {};
}

std::uint64_t IndexCheck::baseOfOldIndex(std::uint64_t payload, std::uint64_t size,
                                         std::optional<std::uint64_t> moviType, std::string& note) {
  // The first entries that fit one reading and not the other decide.
  constexpr std::uint64_t kEntriesAsked = 16;
  if (!moviType) {
    note = "dwOffset counts from the beginning of the file, since there is no \"movi\" list before the index";
    return 0;
  }
  for (std::uint64_t entry = 0; entry < kEntriesAsked && (entry + 1) * kOldEntrySize <= size; ++entry) {
    const auto bytes = entryAt(payload + entry * kOldEntrySize, kOldEntrySize);
    if (!bytes) break;
    if (bytes->empty()) continue;
    const avi::FourCC id = avi::FourCC::at(*bytes);
    const std::uint64_t offset = numberIn(*bytes, 8, 4);
    const auto length = static_cast<std::uint32_t>(numberIn(*bytes, 12, 4));
    const bool fromList = judge(*moviType + offset, id, length).verdict == Verdict::matches;
    const bool fromStart = judge(offset, id, length).verdict == Verdict::matches;
    if (fromStart && !fromList) {
      note = "dwOffset counts from the beginning of the file";
      return 0;
    }
    if (fromList) break;
  }
  note = "dwOffset counts from the type of the \"movi\" list";
  return *moviType;
}

IndexReport IndexCheck::oldIndex(std::uint64_t payload, std::uint64_t size, std::optional<std::uint64_t> moviType) {
  IndexReport report;
  report.entries = size / kOldEntrySize;
  report.keyFrames = 0;
  unreadableUntil_ = 0;
  const std::uint64_t base = baseOfOldIndex(payload, size, moviType, report.note);
  for (std::uint64_t entry = 0; entry < report.entries && mayGoOn(); ++entry) {
    const auto bytes = entryAt(payload + entry * kOldEntrySize, kOldEntrySize);
    if (!bytes) break;
    if (bytes->empty()) {
      count(report, {Verdict::unreadable});
      continue;
    }
    if ((numberIn(*bytes, 4, 4) & kKeyFrame) != 0) ++*report.keyFrames;
    count(report, judge(base + numberIn(*bytes, 8, 4), avi::FourCC::at(*bytes),
                        static_cast<std::uint32_t>(numberIn(*bytes, 12, 4))));
  }
  return report;
}

IndexCheck::Judged IndexCheck::judgeSuper(std::uint64_t offset, std::uint64_t length) {
  const auto header = targets_.header(offset);
  if (!header) return missing(offset);
  if (!avi::isStandardIndex(header->id)) {
    return {Verdict::wrong, at(offset) + " lies \"" + shownCode(header->id) + "\", not a standard index"};
  }
  if (length > std::uint64_t{header->size} + kChunkHeaderSize) {
    return {Verdict::wrong, "the index " + at(offset) + " is shorter than dwSize, " + counted(length, "byte")};
  }
  return {};
}

void IndexCheck::superEntries(IndexReport& report, std::uint64_t payload) {
  for (std::uint64_t entry = 0; entry < report.entries && mayGoOn(); ++entry) {
    const auto bytes = entryAt(payload + kOpenDmlHeaderSize + entry * kSuperEntrySize, kSuperEntrySize);
    if (!bytes) break;
    count(report,
          bytes->empty() ? Judged{Verdict::unreadable} : judgeSuper(numberIn(*bytes, 0, 8), numberIn(*bytes, 8, 4)));
  }
}

void IndexCheck::standardEntries(IndexReport& report, std::uint64_t payload, avi::FourCC id, std::uint64_t base) {
  report.keyFrames = 0;
  for (std::uint64_t entry = 0; entry < report.entries && mayGoOn(); ++entry) {
    const auto bytes = entryAt(payload + kOpenDmlHeaderSize + entry * kStandardEntrySize, kStandardEntrySize);
    if (!bytes) break;
    if (bytes->empty()) {
      count(report, {Verdict::unreadable});
      continue;
    }
    // dwOffset points behind the chunk's header.
    const std::uint64_t offset = base + numberIn(*bytes, 0, 4) - kChunkHeaderSize;
    const std::uint64_t length = numberIn(*bytes, 4, 4);
    if ((length & kDeltaFrame) == 0) ++*report.keyFrames;
    count(report, judge(offset, id, static_cast<std::uint32_t>(length & (kDeltaFrame - 1))));
  }
}

IndexReport IndexCheck::openDmlIndex(std::uint64_t payload, std::uint64_t size) {
  IndexReport report;
  unreadableUntil_ = 0;
  if (size < kOpenDmlHeaderSize) {
    report.note = "too short to hold an index";
    return report;
  }
  const std::span<const std::byte> header = entries_.bytes(payload, kOpenDmlHeaderSize);
  if (header.size() < kOpenDmlHeaderSize) {
    report.note = entries_.failedLast() ? "it could not be read" : "the file has ended in it";
    return report;
  }
  const std::uint64_t longsPerEntry = numberIn(header, 0, 2);
  const bool standard = header[3] == std::byte{1};
  const std::uint64_t entrySize = standard ? kStandardEntrySize : kSuperEntrySize;
  const avi::FourCC id = avi::FourCC::at(header.subspan(8));
  const std::uint64_t base = numberIn(header, 12, 8);
  report.entries = numberIn(header, 4, 4);
  const std::uint64_t room = (size - kOpenDmlHeaderSize) / entrySize;
  if (longsPerEntry * 4 != entrySize) {
    report.note = "its entries are of a kind that is not known here";
    return report;
  }
  if (report.entries > room) {
    report.note = "it has room for " + shownNumber(room) + " of these";
    report.entries = room;
  }
  if (standard) {
    standardEntries(report, payload, id, base);
  } else {
    superEntries(report, payload);
  }
  return report;
}

}  // namespace zelvo::cli
