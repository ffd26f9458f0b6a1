#include "salvage/scan/index_places.h"

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

using ByteView = std::span<const std::byte>;

std::uint8_t lowByte(std::uint32_t value) { return static_cast<std::uint8_t>(value & 0xffU); }

}  // namespace

std::optional<TableEntry> tableEntry(ByteView bytes, const StreamCodes& codes) {
  if (bytes.size() < kTableEntry) return std::nullopt;
  const TableEntry entry{avi::FourCC::at(bytes), avi::littleEndian32At(bytes, 4), avi::littleEndian32At(bytes, 8),
                         avi::littleEndian32At(bytes, 12)};
  if (entry.flags > kMaxTableFlags || (entry.code != avi::kRec && !codes.findAnyStream(entry.code)))
    return std::nullopt;
  return entry;
}

bool beginsTable(ByteView bytes, const StreamCodes& codes) {
  constexpr std::size_t kEnough = 3;
  // Chunks of eight bytes stand 16 bytes apart, too; no entry has this as its only flag.
  constexpr std::uint32_t kChunkOfEight = 8;
  if (bytes.size() < kEnough * kTableEntry) return false;
  // Most codes of chunks are told apart by numbers alone.
  bool areFlagsOfChunks = true;
  std::uint64_t offsetBefore = 0;
  for (std::size_t i = 0; i < kEnough; ++i) {
    const std::uint32_t flags = avi::littleEndian32At(bytes, i * kTableEntry + 4);
    const std::uint64_t offset = avi::littleEndian32At(bytes, i * kTableEntry + 8);
    if (flags > kMaxTableFlags || (i > 0 && offset <= offsetBefore)) return false;
    areFlagsOfChunks = areFlagsOfChunks && flags == kChunkOfEight;
    offsetBefore = offset;
  }
  if (areFlagsOfChunks) return false;
  for (std::size_t i = 0; i < kEnough; ++i) {
    if (!tableEntry(bytes.subspan(i * kTableEntry), codes)) return false;
  }
  return true;
}

std::optional<StandardIndex> standardIndex(ByteView bytes, std::uint64_t offset) {
  constexpr std::uint64_t kHeadInPayload = StandardIndex::kHead - 8;
  constexpr std::uint32_t kOfChunks = 1;
  if (bytes.size() < StandardIndex::kHead) return std::nullopt;
  const std::uint32_t code = avi::littleEndian32At(bytes, 0);
  if (!avi::isStandardIndex(avi::FourCC::at(bytes))) return std::nullopt;
  const std::uint32_t shape = avi::littleEndian32At(bytes, 8);  // wLongsPerEntry, bIndexSubType, bIndexType
  const std::uint32_t longs = shape & 0xffffU;
  const std::uint32_t subType = shape >> 16U & 0xffU;
  if (shape >> 24U != kOfChunks || !((longs == 2 && subType == 0) || (longs == 3 && subType == 1))) return std::nullopt;
  StandardIndex index;
  index.offset = offset;
  index.stream = lowByte((lowByte(code >> 16U) - std::uint32_t{'0'}) * 10 + (code >> 24U) - '0');
  index.isOfFields = longs == 3;
  index.size = avi::littleEndian32At(bytes, 4);
  index.entries = avi::littleEndian32At(bytes, 12);
  index.chunkId = avi::FourCC::at(bytes.subspan(16));
  index.baseOffset = avi::littleEndian32At(bytes, 20) | std::uint64_t{avi::littleEndian32At(bytes, 24)} << 32U;
  if (kHeadInPayload + std::uint64_t{index.entries} * index.entrySize() > index.size) return std::nullopt;
  return index;
}

bool TableWalk::take(ByteView bytes, const StreamCodes& codes) {
  const bool isReadable = tableEntry(bytes, codes).has_value();
  // Behind unreadable entries one that is readable may be a chunk; two in a row are not.
  const bool continuesTable =
      isReadable &&
      (unreadable_ == 0 || (bytes.size() >= kTableEntry && tableEntry(bytes.subspan(kTableEntry), codes).has_value()));
  if (!continuesTable) {
    ++unreadable_;
    const bool isBeyond = declaredEnd_ != 0 && next_ >= declaredEnd_;
    if (isBeyond || unreadable_ > std::min<std::uint64_t>(kMaxUnreadable, 16 + 4 * std::uint64_t{readable_}))
      return false;
  } else {
    unreadable_ = 0;
    ++readable_;
    end_ = next_ + kTableEntry;
  }
  next_ += kTableEntry;
  return true;
}

}  // namespace zelvo::salvage
