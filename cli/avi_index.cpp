#include "cli/avi_index.h"

#include <algorithm>
#include <utility>

#include "cli/avi_codes.h"
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

std::string at(std::uint64_t offset) { return "at byte " + shownNumber(offset); }

}  // namespace

engine::ReadFailures IndexCheck::failures() const { return together(entries_.failures(), targets_.failures()); }

std::uint64_t IndexCheck::number(std::uint64_t offset, std::size_t width) {
  const std::span<const std::byte> found = entries_.bytes(offset, width);
  std::uint64_t value = 0;
  for (std::size_t i = found.size(); i > 0; --i) value = value << 8U | std::to_integer<std::uint64_t>(found[i - 1]);
  return value;
}

void IndexCheck::count(IndexReport& report, Judged judged) {
  ++report.checked;
  ++checkedInAll_;
  if (judged.matches) {
    ++report.matching;
  } else if (!report.firstWrong) {
    report.firstWrong = report.checked;
    report.whatIsWrong = std::move(judged.whatIsWrong);
  }
}

IndexCheck::Judged IndexCheck::judge(std::uint64_t headerOffset, engine::FourCC id, std::uint32_t size) {
  const auto header = targets_.header(headerOffset);
  if (!header) return {false, at(headerOffset) + " the file has ended"};
  // An entry about a "rec " list points at the list's header, which begins with "LIST".
  const bool sameId = namesSameData(header->id, id) || (id == kRec && header->id == engine::kList);
  if (!sameId)
    return {false, at(headerOffset) + " lies \"" + shownCode(header->id) + "\", not \"" + shownCode(id) + "\""};
  if (header->size != size) {
    return {false, "the chunk " + at(headerOffset) + " is " + counted(header->size, "byte") + " long, not " +
                       shownNumber(size)};
  }
  return {true, {}};
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
    const std::uint64_t start = payload + entry * kOldEntrySize;
    const auto id = entries_.code(start);
    if (!id) break;
    const std::uint64_t offset = number(start + 8, 4);
    const auto length = static_cast<std::uint32_t>(number(start + 12, 4));
    const bool fromList = judge(*moviType + offset, *id, length).matches;
    const bool fromStart = judge(offset, *id, length).matches;
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
  const std::uint64_t base = baseOfOldIndex(payload, size, moviType, report.note);
  for (std::uint64_t entry = 0; entry < report.entries && mayGoOn(); ++entry) {
    const std::uint64_t start = payload + entry * kOldEntrySize;
    const auto id = entries_.code(start);
    if (!id) break;
    if ((number(start + 4, 4) & kKeyFrame) != 0) ++*report.keyFrames;
    count(report, judge(base + number(start + 8, 4), *id, static_cast<std::uint32_t>(number(start + 12, 4))));
  }
  return report;
}

void IndexCheck::superEntries(IndexReport& report, std::uint64_t payload) {
  for (std::uint64_t entry = 0; entry < report.entries && mayGoOn(); ++entry) {
    const std::uint64_t start = payload + kOpenDmlHeaderSize + entry * kSuperEntrySize;
    const std::uint64_t offset = number(start, 8);
    const std::uint64_t length = number(start + 8, 4);
    Judged judged{true, {}};
    const auto header = targets_.header(offset);
    if (!header) {
      judged = {false, at(offset) + " the file has ended"};
    } else if (!isStandardIndex(header->id)) {
      judged = {false, at(offset) + " lies \"" + shownCode(header->id) + "\", not a standard index"};
    } else if (length > std::uint64_t{header->size} + kChunkHeaderSize) {
      judged = {false, "the index " + at(offset) + " is shorter than dwSize, " + counted(length, "byte")};
    }
    count(report, std::move(judged));
  }
}

void IndexCheck::standardEntries(IndexReport& report, std::uint64_t payload, engine::FourCC id, std::uint64_t base) {
  report.keyFrames = 0;
  for (std::uint64_t entry = 0; entry < report.entries && mayGoOn(); ++entry) {
    const std::uint64_t start = payload + kOpenDmlHeaderSize + entry * kStandardEntrySize;
    // dwOffset points behind the chunk's header.
    const std::uint64_t offset = base + number(start, 4) - kChunkHeaderSize;
    const std::uint64_t length = number(start + 4, 4);
    if ((length & kDeltaFrame) == 0) ++*report.keyFrames;
    count(report, judge(offset, id, static_cast<std::uint32_t>(length & (kDeltaFrame - 1))));
  }
}

IndexReport IndexCheck::openDmlIndex(std::uint64_t payload, std::uint64_t size) {
  IndexReport report;
  if (size < kOpenDmlHeaderSize) {
    report.note = "too short to hold an index";
    return report;
  }
  const std::uint64_t longsPerEntry = number(payload, 2);
  const bool standard = number(payload + 3, 1) == 1;
  const std::uint64_t entrySize = standard ? kStandardEntrySize : kSuperEntrySize;
  report.entries = number(payload + 4, 4);
  const std::uint64_t room = (size - kOpenDmlHeaderSize) / entrySize;
  if (longsPerEntry * 4 != entrySize) {
    report.note = "its entries are of a kind that is not known here";
    return report;
  }
  if (report.entries > room) {
    report.note = "it has room for " + shownNumber(room) + " of these";
    report.entries = room;
  }
  if (!standard) {
    superEntries(report, payload);
    return report;
  }
  if (const auto id = entries_.code(payload + 8)) standardEntries(report, payload, *id, number(payload + 12, 8));
  return report;
}

}  // namespace zelvo::cli
