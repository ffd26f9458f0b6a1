// 1. Each table and each standard index is read once, in its order in the file.
// 2. The base of the tables is decided, and they are judged by the witnesses that the headers left.
// 3. All entries are sorted by original offset; repeated and overlapping ones go.
#include "salvage/scan/index_template.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <span>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "platform/bytes.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

namespace {

using ByteView = std::span<const std::byte>;

constexpr std::uint32_t kNotKey = 0x80000000;  // in the size of a standard index's entry

/// Calls `take` with each whole record of `size` bytes between `begin` and `end` that can be read and that no byte of
/// `unrescued` is in, and the bytes after it that came with it.
template <class Take>
void eachRecord(avi::InputFile& input, const std::vector<ByteSpan>& unrescued, std::uint64_t begin, std::uint64_t end,
                std::size_t size, const Take& take) {
  constexpr std::size_t kRecords = 4096;
  constexpr std::uint64_t kPage = 4096;
  platform::Bytes window(
      static_cast<std::size_t>(std::min<std::uint64_t>(kRecords * size, end - std::min(begin, end))));
  std::uint64_t at = begin;
  while (at + size <= end) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(window.size(), end - at));
    const std::size_t count = input.read(at, std::span(window).first(wanted)) / size * size;
    for (std::size_t i = 0; i < count; i += size) {
      if (!touches(unrescued, at + i, at + i + size)) take(ByteView(window).subspan(i, count - i));
    }
    at += count;
    if (count > 0) continue;
    if (at >= input.size()) return;
    // On a page that can be read, records go on in step.
    const std::uint64_t next = (at / kPage + 1) * kPage;
    at += (next - at + size - 1) / size * size;
  }
}

class Reading {
 public:
  Reading(avi::InputFile& input, const SurvivingHeaders& headers, const StreamCodes& codes, const MediaScan& scan,
          std::size_t mostEntries)
      : input_(input),
        inputSize_(input.size()),
        headers_(headers),
        codes_(codes),
        scan_(scan),
        mostEntries_(mostEntries) {}

  IndexTemplate run();

 private:
  void readTables();
  void readTable(const IndexTable& table);
  [[nodiscard]] bool goesOn(std::size_t part) const;
  void endTables(std::size_t firstSource);
  void decideBase();
  [[nodiscard]] std::size_t headersAt(std::int64_t base) const;
  [[nodiscard]] std::optional<std::int64_t> votedBase() const;
  [[nodiscard]] std::uint64_t entriesCutOff(std::size_t first, std::size_t last) const;
  [[nodiscard]] Belonging belongingOfTables(std::uint64_t pictures, std::uint64_t unreadable, std::uint64_t cutOff,
                                            std::uint64_t lastEnd) const;
  void readStandard(const StandardIndex& index);
  [[nodiscard]] Belonging belongingOf(const StandardIndex& index) const;
  [[nodiscard]] bool isNextToOthersChunks(const StandardIndex& index, const SuperIndex& super) const;
  void add(const TemplateEntry& entry);
  void merge();
  [[nodiscard]] bool isExact(const TemplateEntry& entry) const;

  struct Part {
    std::size_t firstEntry = 0;
    std::optional<std::uint64_t> header;
    std::uint64_t pictures = 0;
    std::uint64_t unreadable = 0;
    std::uint64_t end = 0;  ///< of the table
  };

  avi::InputFile& input_;
  const std::uint64_t inputSize_;
  const SurvivingHeaders& headers_;
  const StreamCodes& codes_;
  const MediaScan& scan_;
  const std::size_t mostEntries_;
  IndexTemplate made_;
  std::vector<Part> parts_;                   ///< one for each of `made_.tables`
  std::optional<std::uint64_t> firstOffset_;  ///< of the first table's first entry, as it stands there
};

void Reading::add(const TemplateEntry& entry) {
  if (made_.entries.size() >= mostEntries_ || entry.offset >= Candidate::kOffsetLimit) {
    ++made_.leftOut;
    return;
  }
  made_.entries.push_back(entry);
}

bool isPicture(avi::FourCC code) {
  const std::uint32_t third = code.value >> 16U & 0xffU;
  const std::uint32_t fourth = code.value >> 24U;
  return third == 'd' && (fourth == 'b' || fourth == 'c');
}

void Reading::readTable(const IndexTable& table) {
  constexpr std::uint32_t kKeyFrame = 0x10;  // AVIIF_KEYFRAME
  constexpr std::uint32_t kHalf = 0x80000000;
  constexpr std::uint64_t kWrap = std::uint64_t{1} << 32U;
  Part part{made_.entries.size(), table.header, 0, (table.end - table.begin) / kTableEntry, table.end};
  TemplateSource source{table.begin, 0, Belonging::unknown};
  std::uint64_t wrapped = 0;
  std::uint32_t last = 0;
  eachRecord(input_, scan_.unrescued, table.begin, table.end, kTableEntry, [&](ByteView bytes) {
    const auto entry = tableEntry(bytes, codes_);
    if (!entry) return;
    --part.unreadable;
    if (!firstOffset_) firstOffset_ = entry->offset;
    // Beyond 4 GiB offsets begin at zero again. One that falls alone is damaged.
    const auto next = tableEntry(bytes.subspan(kTableEntry), codes_);
    const bool falls = last > entry->offset && last - entry->offset > kHalf;
    if (falls && inputSize_ > kWrap && next && next->offset < kHalf) {
      wrapped += kWrap;
      last = entry->offset;
    } else if (!falls) {
      last = entry->offset;
    }
    const auto code = codes_.findAnyStream(entry->code);
    if (!code) return;  // A list is no chunk.
    ++source.entries;
    if (isPicture(entry->code)) ++part.pictures;
    add({wrapped + entry->offset, entry->size, code->stream, code->suffix, (entry->flags & kKeyFrame) != 0, false});
  });
  made_.tables.push_back(source);
  parts_.push_back(part);
}

/// The base that most entries vote for whose stream and size are rare among the candidates.
std::optional<std::int64_t> Reading::votedBase() const {
  constexpr std::size_t kVoters = 4096;
  constexpr std::size_t kMaxPlaces = 8;
  constexpr std::uint64_t kWhole = 840;  // divides by every number of places
  const auto keyOf = [](std::uint8_t stream, std::uint32_t size) { return std::uint64_t{stream} << 32U | size; };
  std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> places;
  std::vector<TemplateEntry> voters;
  const std::size_t step = std::max<std::size_t>(1, made_.entries.size() / kVoters);
  for (std::size_t i = 0; i < made_.entries.size() && voters.size() < kVoters; i += step) {
    voters.push_back(made_.entries[i]);
    places[keyOf(made_.entries[i].stream, made_.entries[i].size)];
  }
  for (std::size_t i = 0; i < scan_.candidates.size(); ++i) {
    const Candidate& candidate = scan_.candidates[i];
    if (candidate.kind() != CandidateKind::data) continue;
    const auto found = places.find(keyOf(candidate.stream(), candidate.size()));
    if (found != places.end() && found->second.size() <= kMaxPlaces) found->second.push_back(candidate.offset());
  }
  std::unordered_map<std::int64_t, std::uint64_t> votes;
  for (const TemplateEntry& voter : voters) {
    const auto& found = places[keyOf(voter.stream, voter.size)];
    if (found.size() > kMaxPlaces) continue;
    for (const std::uint64_t place : found)
      votes[static_cast<std::int64_t>(place) - static_cast<std::int64_t>(voter.offset)] += kWhole / found.size();
  }
  std::optional<std::int64_t> best;
  for (const auto& [base, weight] : votes) {
    if (!best || weight > votes[*best] || (weight == votes[*best] && base < *best)) best = base;
  }
  return best;
}

/// Of some entries, how many headers stand just where they name them with such a base.
std::size_t Reading::headersAt(std::int64_t base) const {
  constexpr std::size_t kAsked = 1024;
  const std::size_t step = std::max<std::size_t>(1, made_.entries.size() / kAsked);
  std::size_t found = 0;
  std::uint64_t looks = 0;
  for (std::size_t i = 0; i < made_.entries.size(); i += step) {
    const TemplateEntry& entry = made_.entries[i];
    const auto place = static_cast<std::uint64_t>(static_cast<std::int64_t>(entry.offset) + base);
    const std::size_t at = scan_.candidates.firstAtOrAfter(place, 0, looks);
    if (at == scan_.candidates.size()) continue;
    const Candidate& there = scan_.candidates[at];
    if (there.offset() == place && there.stream() == entry.stream && there.size() == entry.size) ++found;
  }
  return found;
}

void Reading::decideBase() {
  if (!firstOffset_) return;
  const auto voted = votedBase();
  if (headers_.media) {
    const auto movi = static_cast<std::int64_t>(headers_.media->offset) + 8;
    made_.tableBase = *firstOffset_ >= static_cast<std::uint64_t>(movi) ? 0 : movi;
    // Of an index without its front the first entry is of some chunk in the middle.
    const std::int64_t other = made_.tableBase == 0 ? movi : 0;
    if (headersAt(other) > headersAt(made_.tableBase)) made_.tableBase = other;
    const std::int64_t apart = voted ? std::abs(*voted - made_.tableBase) : 0;
    if (apart == 4 || apart == 8) made_.tableBase = *voted;
  } else {
    // With the front of the file gone the base may be in front of it. Any other does as well, and drops no entry.
    made_.tableBase = std::max<std::int64_t>(0, voted.value_or(0));
  }
  for (TemplateEntry& entry : made_.entries) {
    const std::int64_t offset = static_cast<std::int64_t>(entry.offset) + made_.tableBase;
    // One in front of the file goes with those beyond all files.
    entry.offset = offset < 0 ? Candidate::kOffsetLimit : static_cast<std::uint64_t>(offset);
  }
}

/// How many entries of the tables from `first` to `last` their header claims that are not there: of an index that the
/// end of the file, or damage, cuts short.
std::uint64_t Reading::entriesCutOff(std::size_t first, std::size_t last) const {
  if (!parts_[first].header) return 0;
  std::array<std::byte, avi::kChunkHeader> header{};
  if (input_.read(*parts_[first].header, header) < header.size()) return 0;
  const std::uint64_t end = *parts_[first].header + avi::kChunkHeader + avi::littleEndian32At(header, 4);
  const std::uint64_t tableEnd = parts_[last - 1].end;
  return end > tableEnd ? (end - tableEnd) / kTableEntry : 0;
}

Belonging Reading::belongingOfTables(std::uint64_t pictures, std::uint64_t unreadable, std::uint64_t cutOff,
                                     std::uint64_t lastEnd) const {
  constexpr std::uint64_t kNearEnd = 64;
  bool hasWitness = false;
  const auto agrees = [&](std::uint64_t count) {
    if (count == 0) return false;
    hasWitness = true;
    return pictures <= count + 1 && pictures + unreadable + cutOff + 1 >= count;
  };
  if (headers_.main && agrees(headers_.main->totalFrames)) return Belonging::belongs;
  for (const SurvivingStream& stream : headers_.streams) {
    if (stream.type == avi::kVids && agrees(stream.length)) return Belonging::belongs;
  }
  if (headers_.media && headers_.media->size > 4) {
    const std::uint64_t listEnd = headers_.media->offset + 8 + headers_.media->size;
    if (lastEnd <= listEnd + kNearEnd && listEnd <= lastEnd + kNearEnd) return Belonging::belongs;
    // An index that is cut short may end anywhere before.
    if (cutOff == 0 || lastEnd > listEnd + kNearEnd) hasWitness = true;
  }
  return hasWitness ? Belonging::foreign : Belonging::unknown;
}

/// Whether a table is the rest of the one before it: behind the same header or, where that is lost, a whole number of
/// entries away, and of chunks that come later.
bool Reading::goesOn(std::size_t part) const {
  constexpr std::uint64_t kFarthest = 65'536 * kTableEntry;
  if (part == 0) return false;
  const Part& before = parts_[part - 1];
  const Part& after = parts_[part];
  if (before.header || after.header) return before.header == after.header;
  const std::uint64_t apart = made_.tables[part].offset - before.end;
  return apart <= kFarthest && apart % kTableEntry == 0 && after.firstEntry > before.firstEntry &&
         after.firstEntry < made_.entries.size() &&
         made_.entries[after.firstEntry - 1].offset < made_.entries[after.firstEntry].offset;
}

/// Judges the tables from `first` up to the last that goes on with it together.
void Reading::endTables(std::size_t first) {
  std::size_t last = first + 1;
  while (last < parts_.size() && goesOn(last)) ++last;
  std::uint64_t pictures = 0;
  std::uint64_t unreadable = 0;
  for (std::size_t i = first; i < last; ++i) {
    pictures += parts_[i].pictures;
    unreadable += parts_[i].unreadable;
    // What nobody can read may be too much to be passed over.
    if (i > first) unreadable += (made_.tables[i].offset - parts_[i - 1].end) / kTableEntry;
  }
  const std::size_t endEntry = last < parts_.size() ? parts_[last].firstEntry : made_.entries.size();
  std::uint64_t lastEnd = 0;
  for (std::size_t i = parts_[first].firstEntry; i < endEntry; ++i) lastEnd = std::max(lastEnd, made_.entries[i].end());
  const Belonging belonging = belongingOfTables(pictures, unreadable, entriesCutOff(first, last), lastEnd);
  for (std::size_t i = parts_[first].firstEntry; i < endEntry; ++i)
    made_.entries[i].isForeign = belonging == Belonging::foreign;
  for (std::size_t i = first; i < last; ++i) made_.tables[i].belonging = belonging;
}

void Reading::readTables() {
  for (const IndexTable& table : scan_.tables) readTable(table);
  decideBase();
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    if (!goesOn(i)) endTables(i);
  }
}

Belonging Reading::belongingOf(const StandardIndex& index) const {
  if (!headers_.areComplete() || index.stream >= headers_.streams.size()) return Belonging::unknown;
  const auto& super = headers_.streams[index.stream].superIndex;
  if (!super || super->entries.empty()) return Belonging::unknown;
  // Most writers count the chunk's header in.
  const bool isNamed = std::ranges::any_of(super->entries, [&](const SuperIndexEntry& entry) {
    return entry.size == index.size || entry.size == std::uint64_t{index.size} + 8;
  });
  return isNamed && !isNextToOthersChunks(index, *super) ? Belonging::belongs : Belonging::foreign;
}

/// Whether the chunks that an index names last stand in front of it, but elsewhere than the super index, which tells
/// where the index itself was, would have them: another film's index may have the size of this film's.
bool Reading::isNextToOthersChunks(const StandardIndex& index, const SuperIndex& super) const {
  constexpr std::uint32_t kLast = 8;
  constexpr std::size_t kMaxBack = 64;
  constexpr std::size_t kFewest = 4;
  const std::uint32_t count = std::min(index.entries, kLast);
  const std::uint64_t first = index.offset + StandardIndex::kHead + (index.entries - count) * index.entrySize();
  std::uint64_t looks = 0;
  const std::size_t behind = scan_.candidates.firstAtOrAfter(index.offset, 0, looks);
  std::map<std::int64_t, std::size_t> votes;  // for displacements
  eachRecord(input_, scan_.unrescued, first, first + count * index.entrySize(), index.entrySize(), [&](ByteView bytes) {
    const std::uint64_t header = index.baseOffset + avi::littleEndian32At(bytes, 0) - avi::kChunkHeader;
    for (std::size_t i = behind; i > 0 && behind - i < kMaxBack; --i) {
      const Candidate& chunk = scan_.candidates[i - 1];
      const bool isAlike = chunk.kind() == CandidateKind::data && chunk.stream() == index.stream &&
                           chunk.size() == (avi::littleEndian32At(bytes, 4) & ~kNotKey);
      if (isAlike) ++votes[static_cast<std::int64_t>(chunk.offset()) - static_cast<std::int64_t>(header)];
    }
  });
  const bool isWhereItWas = std::ranges::any_of(super.entries, [&](const SuperIndexEntry& entry) {
    return votes.contains(static_cast<std::int64_t>(index.offset) - static_cast<std::int64_t>(entry.offset));
  });
  return !isWhereItWas && std::ranges::any_of(votes, [](const auto& vote) { return vote.second >= kFewest; });
}

void Reading::readStandard(const StandardIndex& index) {
  const auto code = codes_.findAnyStream(index.chunkId);
  TemplateSource source{index.offset + StandardIndex::kHead, 0, belongingOf(index),
                        static_cast<std::uint32_t>(index.entrySize())};
  const std::uint64_t end = std::min(index.end(), inputSize_);
  if (code) {
    eachRecord(input_, scan_.unrescued, source.offset, end, index.entrySize(), [&](ByteView bytes) {
      ++source.entries;
      const std::uint64_t payload = index.baseOffset + avi::littleEndian32At(bytes, 0);
      if (payload < 8 || payload < index.baseOffset) {
        ++made_.leftOut;
        return;
      }
      const std::uint32_t size = avi::littleEndian32At(bytes, 4);
      add({payload - 8, size & ~kNotKey, code->stream, code->suffix, (size & kNotKey) == 0,
           source.belonging == Belonging::foreign});
    });
  }
  made_.standard.push_back(source);
}

bool Reading::isExact(const TemplateEntry& entry) const {
  std::uint64_t looks = 0;
  const std::size_t found = scan_.candidates.firstAtOrAfter(entry.offset, 0, looks);
  if (found == scan_.candidates.size()) return false;
  const Candidate& candidate = scan_.candidates[found];
  return candidate.offset() == entry.offset && candidate.kind() == CandidateKind::data &&
         candidate.stream() == entry.stream && candidate.size() == entry.size;
}

void Reading::merge() {
  std::vector<TemplateEntry>& entries = made_.entries;
  const auto isBefore = [](const TemplateEntry& one, const TemplateEntry& other) {
    if (one.offset != other.offset) return one.offset < other.offset;
    return std::tuple(one.stream, one.size, one.suffix, one.isForeign, one.isKey) <
           std::tuple(other.stream, other.size, other.suffix, other.isForeign, other.isKey);
  };
  if (!std::ranges::is_sorted(entries, isBefore)) std::ranges::sort(entries, isBefore);
  while (!entries.empty() && entries.back().offset >= Candidate::kOffsetLimit) {
    entries.pop_back();
    ++made_.leftOut;
  }
  std::size_t kept = 0;
  for (const TemplateEntry& entry : entries) {
    if (kept == 0 || entry.offset >= entries[kept - 1].end()) {
      entries[kept++] = entry;
      continue;
    }
    TemplateEntry& before = entries[kept - 1];
    if (before.offset == entry.offset && before.stream == entry.stream && before.size == entry.size) {
      before.isKey = before.isKey || entry.isKey;
      before.isForeign = before.isForeign && entry.isForeign;
      ++made_.repeated;
      continue;
    }
    ++made_.overlapping;
    const bool isBetter = isExact(entry);
    const bool wasGood = isExact(before);
    if (isBetter != wasGood ? isBetter : entry.end() < before.end()) before = entry;
  }
  entries.resize(kept);
}

IndexTemplate Reading::run() {
  std::uint64_t slots = 0;
  for (const IndexTable& table : scan_.tables) slots += (table.end - table.begin) / kTableEntry;
  for (const StandardIndex& index : scan_.standardIndexes)
    slots += (std::min(std::max(index.end(), index.offset), std::max(inputSize_, index.offset)) - index.offset) / 8;
  made_.entries.reserve(static_cast<std::size_t>(std::min<std::uint64_t>(slots, mostEntries_)));
  readTables();
  for (const StandardIndex& index : scan_.standardIndexes) readStandard(index);
  merge();
  return std::move(made_);
}

}  // namespace

IndexTemplate indexTemplate(avi::InputFile& input, const SurvivingHeaders& headers, const StreamCodes& codes,
                            const MediaScan& scan, std::size_t mostEntries) {
  constexpr std::uint64_t kAnyway = 131'072;
  const std::uint64_t most = std::min<std::uint64_t>(mostEntries, kAnyway + input.size() / 96);
  return Reading(input, headers, codes, scan, static_cast<std::size_t>(most)).run();
}

}  // namespace zelvo::salvage
