// The walk: one step looks at one header and goes into a list or past a chunk. What is no header is skipped up to the
// next code that can only begin a chunk, or to the end of the list.
#include "cli/avi_outline.h"

#include <algorithm>

#include "cli/avi_codes.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

/// A code that a damaged stretch is taken to end at. The first byte alone rules out nearly every place.
bool isLandmark(std::span<const std::byte> bytes) {
  const auto first = std::to_integer<unsigned char>(bytes[0]);
  const bool mayBe = (first >= '0' && first <= '9') || first == 'i' || first == 'L' || first == 'R' || first == 'J';
  return mayBe && beginsChunkForSure(engine::FourCC::at(bytes));
}

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kTypeSize = 4;

bool isListId(engine::FourCC id) { return id == engine::kRiff || id == engine::kList; }

}  // namespace

std::size_t AviOutline::depth() const {
  return static_cast<std::size_t>(
      std::count_if(open_.begin(), open_.end(), [](const OpenList& list) { return !list.isQuiet; }));
}

AviOutline::OpenList& AviOutline::toldList() {
  return *std::find_if(open_.rbegin(), open_.rend(), [](const OpenList& list) { return !list.isQuiet; });
}

void AviOutline::problem(std::uint64_t offset, const std::string& sentence) {
  ++problems_;
  sink_.problem(offset, depth(), sentence);
}

void AviOutline::walk() {
  fileSize_ = view_.fileSize();
  const auto first = view_.header(0);
  const auto form = view_.code(kHeaderSize);
  isAvi_ = first && first->id == engine::kRiff && form == engine::kAvi;
  if (!isAvi_) problem(0, "the file does not begin as an AVI file does, with \"RIFF\", a size and \"AVI \"");
  while (position_ < fileSize_ && !isEnding_()) {
    closeEnded();
    if (position_ >= fileSize_) break;
    if (chunks_ == kMostChunks) {
      problem(position_, "there are more than " + shownNumber(kMostChunks) + " chunks; the rest is not looked at");
      break;
    }
    step();
  }
  position_ = fileSize_;
  closeEnded();
  while (!open_.empty()) {  // after a stop, or past the limit
    open_.back().end = position_;
    closeEnded();
  }
  sink_.endFile(sumsOutside_);
}

void AviOutline::closeEnded() {
  while (!open_.empty() && position_ >= open_.back().end) {
    const OpenList closed = std::move(open_.back());
    open_.pop_back();
    position_ = std::max(position_, behind(closed.end, closed.item.size));
    if (!closed.isQuiet) sink_.endList(closed.item, closed.sums);
  }
}

void AviOutline::step() {
  const std::uint64_t left = limit() - position_;
  const auto header = left < kHeaderSize ? std::nullopt : view_.header(position_);
  if (!header || !isPrintable(header->id)) {
    skipDamage();
    return;
  }
  ++chunks_;
  OutlineItem item{header->id, std::nullopt, position_, header->size, depth()};
  std::uint64_t end = position_ + kHeaderSize + header->size;
  if (end > limit()) {
    problem(position_, "\"" + shownCode(item.id) + "\" claims " + counted(item.size, "byte") + ", but only " +
                           shownNumber(left - kHeaderSize) + " are left " +
                           (open_.empty() ? "in the file" : "in its list"));
    end = limit();
  }
  const bool holdsType = end - position_ >= kHeaderSize + kTypeSize;
  if (isListId(item.id) && holdsType && open_.size() < kDeepest) {
    item.type = view_.code(position_ + kHeaderSize);
    enterList(item, end);
    return;
  }
  if (isListId(item.id)) problem(position_, holdsType ? "lists are nested too deep here" : "a list without a type");
  meetChunk(item, end);
}

AviOutline::Damage AviOutline::damageFrom(std::uint64_t start) {
  const std::uint64_t end = limit();
  Damage damage{end, true};
  std::uint64_t at = start;
  while (at < end && !isEnding_()) {
    const std::span<const std::byte> bytes = view_.bytes(at, 4096);
    if (bytes.empty()) break;
    for (std::size_t i = 0; i < bytes.size() && at + i < end; ++i) {
      if (i + 4 > bytes.size() && i > 0 && bytes.size() == 4096) break;  // looked at with the next bytes
      const bool fits = i + 4 <= bytes.size() && at + i + kHeaderSize <= end;
      if (fits && at + i > start && isLandmark(bytes.subspan(i))) return {at + i, damage.isZero};
      damage.isZero = damage.isZero && bytes[i] == std::byte{0};
    }
    at += bytes.size() == 4096 ? 4093 : bytes.size();
  }
  return damage;
}

void AviOutline::skipDamage() {
  const std::uint64_t start = position_;
  const Damage damage = damageFrom(start);
  position_ = damage.end;
  const std::uint64_t skipped = damage.end - start;
  problem(start, counted(skipped, "byte") + (damage.isZero ? ", all zero," : "") +
                     (skipped < kHeaderSize ? " are too few for a chunk" : " are no chunks"));
}

void AviOutline::enterList(const OutlineItem& item, std::uint64_t end) {
  OpenList list{item, end, false, 0, {}};
  const bool inMovi = !open_.empty() && toldList().item.type == engine::kMovi;
  list.isQuiet = item.type == kRec && inMovi && !listsAll_;
  if (item.type == engine::kStrl) streamType_ = {};
  if (item.type == engine::kMovi && !moviType_) moviType_ = item.offset + kHeaderSize;
  if (!list.isQuiet) sink_.beginList(item);
  open_.push_back(std::move(list));
  position_ = item.offset + kHeaderSize + kTypeSize;
}

bool AviOutline::isListed(const OutlineItem& item) {
  if (listsAll_) return true;
  if (isStandardIndex(item.id)) return true;
  if (open_.empty()) return !isStreamData(item.id) && listedOutside_++ < kMostListed;
  OpenList& list = toldList();
  if (list.item.type == engine::kMovi && isStreamData(item.id)) return false;
  return list.listed++ < kMostListed;
}

void AviOutline::addToSums(const OutlineItem& item) {
  DataSums& sums = open_.empty() ? sumsOutside_ : toldList().sums;
  const bool known = sums.contains(item.id.value) || sums.size() < kMostSums;
  DataSum& sum = sums[known ? item.id.value : 0];
  ++sum.chunks;
  sum.bytes += item.size;
}

void AviOutline::meetChunk(const OutlineItem& item, std::uint64_t end) {
  const std::uint64_t payload = item.offset + kHeaderSize;
  if (isListed(item)) {
    const auto listType = open_.empty() ? engine::FourCC() : toldList().item.type.value_or(engine::FourCC());
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(end - payload, kLargestDecoded));
    const std::span<const std::byte> bytes = view_.bytes(payload, wanted);
    if (item.id == engine::kStrh && bytes.size() >= kTypeSize) streamType_ = engine::FourCC::at(bytes);
    const auto fields = decodeFields(item.id, listType, streamType_, bytes);
    std::optional<IndexReport> index;
    if (item.id == kIdx1) index = indexes_.oldIndex(payload, end - payload, moviType_);
    if (item.id == engine::kIndx || isStandardIndex(item.id)) index = indexes_.openDmlIndex(payload, end - payload);
    sink_.chunk(item, fields, index);
    if (index && index->firstWrong) {
      problem(item.offset, shownNumber(index->checked - index->matching) + " of the " + shownNumber(index->checked) +
                               " index entries do not match; in the first, number " + shownNumber(*index->firstWrong) +
                               ", " + index->whatIsWrong);
    }
  } else {
    addToSums(item);
  }
  position_ = behind(end, item.size);
}

/// Where the next chunk begins: a pad byte follows an odd payload, unless a chunk begins there already.
std::uint64_t AviOutline::behind(std::uint64_t end, std::uint64_t size) {
  if (size % 2 == 0 || end >= limit()) return end;
  const std::span<const std::byte> next = view_.bytes(end, 4);
  return next.size() == 4 && isLandmark(next) ? end : end + 1;
}

}  // namespace zelvo::cli
