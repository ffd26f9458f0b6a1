// 1. A window of the file is read; it begins on a page and shares its last bytes with the next one.
// 2. The places where a code may begin were found in all of it at once.
// 3. Each is taken in order: a candidate is noted, a standard index is stepped over, a table is walked over entry by
//    entry, through as many windows as it takes.
// 4. The scan goes on after what was taken, which may lie in front of the window's end: a table that ended in
//    unreadable entries is left at its last readable one.
#include "salvage/scan/media_scan.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/crowded_codes.h"
#include "salvage/scan/searched_windows.h"

namespace zelvo::salvage {

namespace {

using avi::FourCC;

constexpr std::size_t kPage = SearchedWindows::kPage;
/// A window of one page could end before it had moved on.
constexpr std::size_t kFewestPages = 2;

class Scan {
 public:
  Scan(avi::InputFile& input, std::uint64_t begin, const StreamCodes& codes, const ScanLimits& limits,
       platform::Workers* workers)
      : input_(input),
        codes_(codes),
        limits_(limits),
        windows_(input, std::max(limits.windowSize / kPage, kFewestPages) * kPage, workers),
        at_(begin) {}

  void readOn();
  [[nodiscard]] bool hasMore() const { return at_ < limit_; }
  void begin() {
    limit_ = std::min(input_.size(), Candidate::kOffsetLimit);
    mostCandidates_ = limits_.candidatesOf(limit_ - std::min(limit_, at_));
    found_.candidates.reserve(mostCandidates_);
  }
  MediaScan takeFound(bool isComplete) {
    endRegion();
    found_.candidates.makeDirectory();
    found_.isComplete = isComplete;
    found_.end = std::min(at_, limit_);
    return std::move(found_);
  }

 private:
  [[nodiscard]] std::span<const std::byte> held(std::uint64_t from) const {
    return std::span<const std::byte>(window_->bytes)
        .subspan(static_cast<std::size_t>(from - start_), static_cast<std::size_t>(heldEnd_ - from));
  }
  void scanWindow();
  void noteZeros();
  bool walkTable();
  void beginTable(std::uint64_t offset);
  void endTable();
  void visit(std::uint64_t offset);
  void visitStreamCode(std::uint64_t offset, std::span<const std::byte> bytes);
  void visitStandardIndex(std::uint64_t offset, std::span<const std::byte> bytes);
  void visitIndexHeader(std::uint64_t offset, std::uint32_t size);
  void add(const Candidate& candidate);
  void makeRoom(std::uint64_t offset);
  void endRegion();
  void dropFrom(std::uint64_t offset);
  void skipUnreadable(std::uint64_t from, std::error_code cause);

  avi::InputFile& input_;
  const StreamCodes& codes_;
  const ScanLimits& limits_;
  SearchedWindows windows_;
  const SearchedWindow* window_ = nullptr;  ///< the one at hand
  MediaScan found_;
  std::uint64_t zerosAt_ = 0;  ///< sectors before it have been looked at
  std::uint64_t at_;           ///< everything before it has been taken
  std::uint64_t limit_ = 0;    ///< the end of the file
  std::uint64_t start_ = 0;    ///< of the window
  std::uint64_t heldEnd_ = 0;  ///< of what the window holds
  bool endsHere_ = false;      ///< no readable byte follows the window
  std::optional<TableWalk> walk_;
  IndexTable table_;                          ///< what `walk_` walks over, or walked over last
  std::optional<std::uint64_t> indexHeader_;  ///< the last "idx1"
  std::uint64_t indexHeaderEnd_ = 0;          ///< where it says that it ends
  std::size_t mostCandidates_ = 0;
  std::uint64_t thinnedAt_ = 0;  ///< thinned out no more until so many were left out
  CrowdedCodes crowds_;
  std::uint64_t regionEnd_ = 0;    ///< of the region at hand of `crowds_`
  std::size_t firstOfRegion_ = 0;  ///< number of its first candidate
};

void Scan::skipUnreadable(std::uint64_t from, std::error_code cause) {
  const std::uint64_t end = std::min(limit_, (from / kPage + 1) * kPage);
  input_.remember({1, from, cause});
  found_.unreadableBytes += end - from;
  if (!found_.unreadable.empty() && found_.unreadable.back().end == from) {
    found_.unreadable.back().end = end;
  } else if (found_.unreadable.size() < limits_.unreadable) {
    found_.unreadable.push_back({from, end});
  }
  at_ = end;
}

void Scan::noteZeros() {
  const auto isZero = [](std::byte byte) { return byte == std::byte{0}; };
  for (zerosAt_ = std::max(zerosAt_, start_); zerosAt_ + kSector <= heldEnd_; zerosAt_ += kSector) {
    const auto sector = held(zerosAt_).first(kSector);
    if (!isZero(sector.front()) || !std::ranges::all_of(sector, isZero)) continue;
    if (!found_.zeroed.empty() && found_.zeroed.back().end == zerosAt_) {
      found_.zeroed.back().end = zerosAt_ + kSector;
    } else if (found_.zeroed.size() < limits_.zeroed) {
      found_.zeroed.push_back({zerosAt_, zerosAt_ + kSector});
    }
  }
}

void Scan::readOn() {
  start_ = at_ / kPage * kPage;
  window_ = &windows_.at(start_, limit_);
  heldEnd_ = start_ + window_->count;
  endsHere_ = window_->isLast;
  noteZeros();
  if (heldEnd_ > at_) scanWindow();
  if (!endsHere_ || at_ < heldEnd_) return;
  if (walk_) endTable();
  if (at_ < heldEnd_) return;
  if (window_->error) {
    // An index may have led beyond what cannot be read.
    if (at_ < (heldEnd_ / kPage + 1) * kPage) skipUnreadable(std::max(at_, heldEnd_), window_->error);
  } else if (window_->count < window_->wanted) {
    limit_ = heldEnd_;  // The file has become shorter.
  }
}

void Scan::scanWindow() {
  if (walk_ && walkTable()) return;
  if (at_ < start_) return;  // A table ended before this window.
  for (const std::uint32_t beginning : window_->beginnings) {
    if (start_ + beginning < at_) continue;
    visit(start_ + beginning);
    if (walk_ && walkTable()) return;
  }
  at_ = std::max(at_, endsHere_ ? heldEnd_ : heldEnd_ - SearchedWindows::kLookAhead);
}

/// True while the table goes on beyond the window.
bool Scan::walkTable() {
  while (true) {
    const std::uint64_t next = walk_->next();
    if (next + 2 * kTableEntry > heldEnd_) {
      if (!endsHere_) {
        at_ = next;
        return true;
      }
      if (next + kTableEntry > heldEnd_) break;
    }
    if (!walk_->take(held(next), codes_)) break;
  }
  endTable();
  return false;
}

void Scan::endTable() {
  table_.end = walk_->end();
  at_ = table_.end;
  walk_.reset();
  if (found_.tables.size() < limits_.indexes) {
    found_.tables.push_back(table_);
  } else {
    ++found_.leftOut;
  }
}

void Scan::visit(std::uint64_t offset) {
  const auto bytes = held(offset);
  if (bytes.size() < avi::kChunkHeader) return;
  if (bytes[0] <= std::byte{'9'}) {
    visitStreamCode(offset, bytes);
    return;
  }
  const FourCC code = FourCC::at(bytes);
  const std::uint32_t size = avi::loadLittleEndian32(bytes.subspan<4, 4>());
  const bool isList = code == avi::kList;
  if (isList || code == avi::kRiff) {
    if (bytes.size() < avi::kChunkHeader + 4) return;
    const FourCC type = FourCC::at(bytes.subspan(avi::kChunkHeader));
    const CandidateKind kind = !isList                                   ? CandidateKind::form
                               : type == avi::kMovi || type == avi::kRec ? CandidateKind::list
                                                                         : CandidateKind::skipped;
    if (avi::isPrintable(type)) add({offset, kind, 0, 0, size, type.value});
  } else if (code == avi::kJunk) {
    add({offset, CandidateKind::skipped, 0, 0, size, 0});
  } else if (code == avi::kIdx1) {
    visitIndexHeader(offset, size);
  } else if (avi::isStandardIndex(code)) {
    visitStandardIndex(offset, bytes);
  }
}

void Scan::visitIndexHeader(std::uint64_t offset, std::uint32_t size) {
  add({offset, CandidateKind::skipped, 0, 0, size, 0});
  indexHeader_ = offset;
  indexHeaderEnd_ = offset + avi::kChunkHeader + size;
}

void Scan::visitStandardIndex(std::uint64_t offset, std::span<const std::byte> bytes) {
  const auto stream =
      static_cast<std::uint8_t>((static_cast<unsigned>(bytes[2]) - '0') * 10 + (static_cast<unsigned>(bytes[3]) - '0'));
  const std::uint32_t size = avi::loadLittleEndian32(bytes.subspan<4, 4>());
  add({offset, CandidateKind::index, stream, 0, size, 0});
  const auto index = standardIndex(bytes, offset);
  if (!index) return;
  if (found_.standardIndexes.size() < limits_.indexes) {
    found_.standardIndexes.push_back(*index);
  } else {
    ++found_.leftOut;
  }
  at_ = std::min(limit_, index->end());
}

void Scan::beginTable(std::uint64_t offset) {
  const IndexTable before = std::exchange(table_, {offset, offset, std::nullopt});
  const bool isWithin = indexHeader_ && offset < indexHeaderEnd_;
  // Bytes missing from an entry, or added to it, end a table and begin the next.
  const bool continuesTable = before.end != 0 && offset - before.end < 2 * kTableEntry;
  // Entries in front of this one that stand alone are no candidates, either.
  if (continuesTable) {
    table_.header = before.header;
    dropFrom(before.end);
  } else if (isWithin && (offset - *indexHeader_ - avi::kChunkHeader) % kTableEntry == 0) {
    table_.header = indexHeader_;
    if (offset - *indexHeader_ <= avi::kChunkHeader + TableWalk::kMaxUnreadable * kTableEntry)
      dropFrom(*indexHeader_ + 1);
  }
  walk_.emplace(offset, isWithin && table_.header ? indexHeaderEnd_ : 0);
}

void Scan::visitStreamCode(std::uint64_t offset, std::span<const std::byte> bytes) {
  const auto code = codes_.findAnyStream(FourCC::at(bytes));
  if (!code) return;
  const std::uint32_t size = avi::loadLittleEndian32(bytes.subspan<4, 4>());
  if (size <= kMaxTableFlags && beginsTable(bytes, codes_)) {
    beginTable(offset);
    return;
  }
  if (!codes_.has(*code)) return;
  std::uint32_t head = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(4, bytes.size() - avi::kChunkHeader); ++i)
    head |= static_cast<std::uint32_t>(bytes[avi::kChunkHeader + i]) << 8U * i;
  add({offset, CandidateKind::data, code->stream, code->suffix, size, head});
}

void Scan::dropFrom(std::uint64_t offset) {
  found_.candidates.dropFrom(offset);
  firstOfRegion_ = std::min(firstOfRegion_, found_.candidates.size());
}

void Scan::endRegion() {
  if (firstOfRegion_ < found_.candidates.size()) found_.dropped += crowds_.thin(found_.candidates, firstOfRegion_);
  firstOfRegion_ = found_.candidates.size();
}

/// Drops what nothing speaks for. What is expected from `offset` on has not been seen yet, so only what ends before can
/// be judged.
void Scan::makeRoom(std::uint64_t offset) {
  CandidateList& candidates = found_.candidates;
  candidates.makeDirectory();
  const ChunkChain chain = linkChunks(candidates, found_.chunkEnds(), limit_);
  const std::size_t before = candidates.size();
  candidates.thin([&](std::size_t i) {
    const std::uint64_t next = candidates[i].next();
    return chain.closes(i) || chain.is(i, ChainFact::isClosedOn) || (next >= offset && next <= limit_);
  });
  firstOfRegion_ = std::min(firstOfRegion_, candidates.size());
  found_.dropped += before - candidates.size();
  // Doing it again and again for little would be slow.
  if (mostCandidates_ - candidates.size() < mostCandidates_ / 4) thinnedAt_ = 2 * found_.leftOut + mostCandidates_ / 4;
}

void Scan::add(const Candidate& candidate) {
  if (candidate.offset() >= regionEnd_) {
    endRegion();
    regionEnd_ = (candidate.offset() / CrowdedCodes::kRegion + 1) * CrowdedCodes::kRegion;
  }
  if (found_.candidates.size() >= mostCandidates_ && found_.leftOut >= thinnedAt_) makeRoom(candidate.offset());
  if (found_.candidates.size() >= mostCandidates_) {
    ++found_.leftOut;
    return;
  }
  found_.candidates.add(candidate);
}

}  // namespace

std::size_t ScanLimits::candidatesOf(std::uint64_t bytes) const {
  constexpr std::uint64_t kAnyway = 65'536;
  return static_cast<std::size_t>(std::min<std::uint64_t>(candidates, kAnyway + bytes / 128));
}

std::vector<std::uint64_t> MediaScan::chunkEnds() const {
  std::vector<std::uint64_t> ends;
  ends.reserve(tables.size());
  for (const IndexTable& table : tables) {
    if (table.begin >= avi::kChunkHeader) ends.push_back(table.begin - avi::kChunkHeader);
  }
  return ends;
}

MediaScan scanMedia(avi::InputFile& input, std::uint64_t begin, const StreamCodes& codes,
                    const std::function<bool()>& isEnding, const ScanLimits& limits, platform::Workers* workers) {
  Scan scan(input, begin, codes, limits, workers);
  scan.begin();
  while (scan.hasMore()) {
    if (isEnding()) return scan.takeFound(false);
    scan.readOn();
  }
  return scan.takeFound(true);
}

}  // namespace zelvo::salvage
