// The walk: one step looks at one header and goes into a list or past a chunk. What is no header, or cannot be read, is
// skipped up to the next code that can only begin a chunk, or to the end of the list.
#include "avi/outline.h"

#include <algorithm>

#include "avi/chunk_codes.h"

namespace zelvo::avi {

namespace {

/// A code that a damaged stretch is taken to end at. The first byte alone rules out nearly every place.
bool isLandmark(std::span<const std::byte> bytes) {
  const auto first = std::to_integer<unsigned char>(bytes[0]);
  const bool mayBe = (first >= '0' && first <= '9') || first == 'i' || first == 'L' || first == 'R' || first == 'J';
  return mayBe && beginsChunkForSure(FourCC::at(bytes));
}

constexpr std::uint64_t kTypeSize = 4;
constexpr std::size_t kPieceSize = 4096;  // of what is searched at a time
constexpr std::uint64_t kPageSize = 4096;

std::uint64_t nextMultiple(std::uint64_t offset, std::uint64_t unit) { return (offset / unit + 1) * unit; }

bool isListId(FourCC id) { return id == kRiff || id == kList; }

}  // namespace

std::size_t Outline::depth() const {
  return static_cast<std::size_t>(
      std::count_if(open_.begin(), open_.end(), [](const OpenList& list) { return !list.isQuiet; }));
}

Outline::OpenList* Outline::toldList() {
  const auto found = std::find_if(open_.rbegin(), open_.rend(), [](const OpenList& list) { return !list.isQuiet; });
  return found == open_.rend() ? nullptr : &*found;
}

FourCC Outline::typeOfToldList() {
  const OpenList* list = toldList();
  return list == nullptr ? FourCC() : list->item.type.value_or(FourCC());
}

bool Outline::ends() {
  stopped_ = stopped_ || isEnding_();
  return stopped_;
}

void Outline::report(const Problem& problem) {
  ++problems_;
  sink_.problem(problem, depth());
}

ReadFailures Outline::failures() const {
  ReadFailures both = view_.failures();
  both.add(indexes_.failures());
  return both;
}

void Outline::beginFile() {
  fileSize_ = view_.fileSize();
  const auto first = view_.header(0);
  bool isUnreadable = view_.failedLast();
  const auto form = view_.code(kChunkHeader);
  isUnreadable = isUnreadable || view_.failedLast();
  isAvi_ = first && first->id == kRiff && form == kAvi;
  if (isUnreadable) {
    report({.kind = ProblemKind::beginningUnreadable});
  } else if (!isAvi_) {
    report({.kind = ProblemKind::noAviBeginning});
  }
}

void Outline::walk() {
  beginFile();
  while (position_ < fileSize_ && !ends()) {
    closeEnded();
    if (position_ >= fileSize_) break;
    if (chunks_ == kMaxChunks) {
      report({.kind = ProblemKind::tooManyChunks, .offset = position_, .held = kMaxChunks});
      break;
    }
    step();
  }
  closeEnded();
  if (stopped_ && position_ < fileSize_) {
    report({.kind = ProblemKind::stopped, .offset = position_, .claimed = fileSize_, .held = position_});
  }
  const std::uint64_t reached = position_;
  while (!open_.empty()) {  // after a stop, or past the limit
    open_.back().end = position_;
    closeEnded();
  }
  position_ = reached;
  sink_.endFile(sumsOutside_);
}

void Outline::closeEnded() {
  while (!open_.empty() && position_ >= open_.back().end) {
    const OpenList closed = std::move(open_.back());
    open_.pop_back();
    position_ = std::max(position_, nextChunkOffset(closed.end, closed.item.size));
    if (!closed.isQuiet) sink_.endList(closed.item, closed.sums);
  }
}

void Outline::step() {
  const std::uint64_t left = limit() - position_;
  const auto header = left < kChunkHeader ? std::nullopt : view_.header(position_);
  if (!header || !isPrintable(header->id)) {
    skipDamage();
    return;
  }
  ++chunks_;
  OutlineItem item{header->id, std::nullopt, position_, header->size, depth()};
  std::uint64_t end = position_ + kChunkHeader + header->size;
  if (end > limit()) {
    report({.kind = open_.empty() ? ProblemKind::chunkLongerThanFile : ProblemKind::chunkLongerThanList,
            .offset = position_,
            .claimed = item.size,
            .held = left - kChunkHeader,
            .id = item.id});
    end = limit();
  }
  const bool holdsType = end - position_ >= kChunkHeader + kTypeSize;
  if (isListId(item.id) && holdsType && open_.size() < kDeepest) {
    item.type = view_.code(position_ + kChunkHeader);
    enterList(item, end);
    return;
  }
  if (isListId(item.id)) {
    report({.kind = holdsType ? ProblemKind::listTooDeep : ProblemKind::listWithoutType, .offset = position_});
  }
  meetChunk(item, end);
}

void Outline::endHere() {
  report({.kind = ProblemKind::fileShrank, .offset = position_, .claimed = fileSize_, .held = position_});
  fileSize_ = position_;
  for (OpenList& list : open_) list.end = std::min(list.end, fileSize_);
}

/// Coarse steps first: a disk fails by whole pages, and each read that fails may take it seconds. Then the sectors
/// before the page that can be read are tried, since what fails there may be less than a page.
std::uint64_t Outline::nextReadable(std::uint64_t unreadable, std::uint64_t end) {
  while (!ends()) {
    const std::uint64_t page = std::min(end, nextMultiple(unreadable, kPageSize));
    if (page < end && view_.bytes(page, 1).empty() && view_.failedLast()) {
      unreadable = page;
      continue;
    }
    for (std::uint64_t sector = nextMultiple(unreadable, kSectorSize); sector < page; sector += kSectorSize) {
      if (!view_.bytes(sector, 1).empty()) return sector;
    }
    return page;
  }
  return unreadable;
}

bool Outline::searchOn(std::uint64_t start, std::uint64_t end, Damage& damage) {
  const std::span<const std::byte> bytes = view_.bytes(position_, kPieceSize);
  if (bytes.empty()) {
    if (!view_.failedLast()) {
      endHere();
      return false;
    }
    const std::uint64_t next = nextReadable(position_, end);
    damage.unreadable += next - position_;
    position_ = next;
    return false;
  }
  const bool isWhole = bytes.size() == kPieceSize;
  for (std::size_t i = 0; i < bytes.size() && position_ + i < end; ++i) {
    if (isWhole && i + 4 > bytes.size()) break;  // looked at with the next bytes
    const bool fits = i + 4 <= bytes.size() && position_ + i + kChunkHeader <= end;
    if (fits && position_ + i > start && isLandmark(bytes.subspan(i))) {
      position_ += i;
      return true;
    }
    damage.isZero = damage.isZero && bytes[i] == std::byte{0};
  }
  position_ = std::min(end, position_ + (isWhole ? kPieceSize - 3 : bytes.size()));
  return false;
}

void Outline::skipDamage() {
  const std::uint64_t start = position_;
  Damage damage;
  while (position_ < limit() && !ends() && !searchOn(start, limit(), damage)) {
  }
  const std::uint64_t skipped = position_ - start;
  if (skipped == 0) return;
  ProblemKind kind = damage.isZero ? ProblemKind::skippedZeros : ProblemKind::skippedBytes;
  if (damage.unreadable > 0) kind = ProblemKind::skippedPartlyUnreadable;
  if (damage.unreadable == skipped) kind = ProblemKind::skippedUnreadable;
  report({.kind = kind, .offset = start, .claimed = skipped, .held = skipped - damage.unreadable});
}

bool Outline::mayTell() {
  if (listsAll_) return true;
  if (told_ == kMaxListed) return false;
  ++told_;
  return true;
}

void Outline::enterList(const OutlineItem& item, std::uint64_t end) {
  OpenList list{item, end, false, {}};
  // A record is a part of the data around it.
  const bool isRecord = item.type == kRec && typeOfToldList() == kMovi && !listsAll_;
  list.isQuiet = isRecord || !mayTell();
  if (item.type == kStrl) streamType_ = {};
  if (item.type == kMovi && !moviType_) moviType_ = item.offset + kChunkHeader;
  if (!list.isQuiet) {
    sink_.beginList(item);
  } else if (!isRecord) {
    addToSums(item.id, kTypeSize);
  }
  open_.push_back(std::move(list));
  position_ = item.offset + kChunkHeader + kTypeSize;
}

bool Outline::isListed(const OutlineItem& item) {
  const bool isSummedData = isStreamData(item.id) && (open_.empty() || typeOfToldList() == kMovi);
  return (listsAll_ || !isSummedData) && mayTell();
}

DataSum& Outline::addToSums(FourCC id, std::uint64_t size) {
  OpenList* list = toldList();
  DataSums& sums = list == nullptr ? sumsOutside_ : list->sums;
  const bool known = sums.contains(id.value) || sums.size() < kMaxSums;
  DataSum& sum = sums[known ? id.value : 0];
  ++sum.chunks;
  sum.bytes += size;
  return sum;
}

std::optional<IndexReport> Outline::checkIndex(const OutlineItem& item, std::uint64_t end) {
  const std::uint64_t payload = item.offset + kChunkHeader;
  if (item.id == kIdx1) return indexes_.oldIndex(payload, end - payload, moviType_);
  if (item.id == kIndx || isStandardIndex(item.id)) return indexes_.openDmlIndex(payload, end - payload);
  return std::nullopt;
}

void Outline::reportChunk(const OutlineItem& item, std::uint64_t end) {
  const std::uint64_t payload = item.offset + kChunkHeader;
  const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(end - payload, kLargestDecoded));
  const std::span<const std::byte> bytes = view_.bytes(payload, wanted);
  const std::uint64_t readable = bytes.size();
  const bool isCut = view_.failedLast();
  if (item.id == kStrh && bytes.size() >= kTypeSize) streamType_ = FourCC::at(bytes);
  const auto fields = decodeFields(item.id, typeOfToldList(), streamType_, bytes);
  const auto index = checkIndex(item, end);
  sink_.chunk(item, fields, index);
  if (isCut) {
    report({.kind = ProblemKind::payloadUnreadable, .offset = item.offset, .claimed = end - payload, .held = readable});
  }
  if (index) reportWrong(item, *index);
}

void Outline::reportWrong(const OutlineItem& item, const IndexReport& index) {
  if (!index.firstWrong) return;
  report({.kind = ProblemKind::wrongIndexEntries,
          .offset = item.offset,
          .claimed = index.checked,
          .held = index.matching,
          .entry = index.firstWrong});
}

void Outline::meetChunk(const OutlineItem& item, std::uint64_t end) {
  if (isListed(item)) {
    reportChunk(item, end);
  } else {
    DataSum& sum = addToSums(item.id, item.size);
    if (const auto index = checkIndex(item, end)) {
      if (!sum.index) sum.index.emplace();
      sum.index->entries += index->entries;
      sum.index->checked += index->checked;
      sum.index->matching += index->matching;
      sum.index->unreadable += index->unreadable;
      reportWrong(item, *index);
    }
  }
  position_ = nextChunkOffset(end, item.size);
}

/// Where the next chunk begins: a pad byte follows an odd payload, unless a chunk begins there already.
std::uint64_t Outline::nextChunkOffset(std::uint64_t end, std::uint64_t size) {
  if (size % 2 == 0 || end >= limit()) return end;
  const std::span<const std::byte> next = view_.bytes(end, 4);
  return next.size() == 4 && isLandmark(next) ? end : end + 1;
}

}  // namespace zelvo::avi
