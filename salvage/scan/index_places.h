/// Indexes as they are met in the media: tables of 16-byte entries as "idx1" holds them, recognised by themselves, and
/// standard indexes. They are full of codes, which are no chunks. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "avi/fourcc.h"
#include "salvage/scan/stream_codes.h"

namespace zelvo::salvage {

/// AVIOLDINDEX: ckid, dwFlags, dwChunkOffset, dwChunkLength.
inline constexpr std::size_t kTableEntry = 16;
/// dwFlags of an entry are not larger.
inline constexpr std::uint32_t kMaxTableFlags = 0xffff;

/// A table of entries, with or without its header "idx1".
struct IndexTable {
  std::uint64_t begin = 0;              ///< of its first readable entry
  std::uint64_t end = 0;                ///< after its last readable one; unreadable ones may lie between
  std::optional<std::uint64_t> header;  ///< where its "idx1" stands
};

/// A standard index whose header is whole.
struct StandardIndex {
  std::uint64_t offset = 0;      ///< of its code, "ix00" and the like
  std::uint64_t baseOffset = 0;  ///< qwBaseOffset
  avi::FourCC chunkId;           ///< dwChunkId
  std::uint32_t size = 0;        ///< ckSize
  std::uint32_t entries = 0;     ///< nEntriesInUse; they fit its size, but may reach beyond the end of the file
  std::uint8_t stream = 0;       ///< of its own code
  bool isOfFields = false;       ///< AVI_INDEX_SUB_2FIELD: three numbers an entry instead of two

  static constexpr std::size_t kHead = 32;  ///< from the code to the first entry
  [[nodiscard]] std::size_t entrySize() const { return isOfFields ? 12 : 8; }
  [[nodiscard]] std::uint64_t end() const { return offset + kHead + std::uint64_t{entries} * entrySize(); }
};

/// One entry of a table.
struct TableEntry {
  avi::FourCC code;
  std::uint32_t flags = 0;
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
};

/// The entry that `bytes` begin with, when it can be one: a code of some stream or "rec ", and flags of 16 bits.
[[nodiscard]] std::optional<TableEntry> tableEntry(std::span<const std::byte> bytes, const StreamCodes& codes);

/// Whether a table begins with `bytes`: three entries of rising offsets that are no chain of chunks instead.
[[nodiscard]] bool beginsTable(std::span<const std::byte> bytes, const StreamCodes& codes);

/// The standard index at `offset` whose chunk begins with `bytes`; nothing when its fields contradict one another.
[[nodiscard]] std::optional<StandardIndex> standardIndex(std::span<const std::byte> bytes, std::uint64_t offset);

/// Walks over a table entry by entry and finds its end. Unreadable entries are walked over, up to a number that grows
/// with what was read before, so that no table makes the walk much longer than itself.
/// Thread: one.
class TableWalk {
 public:
  /// More unreadable entries in a row than this end every table.
  static constexpr std::uint32_t kMaxUnreadable = 512;

  /// Of a table at `begin` which its header says ends at `declaredEnd`; 0 without a header.
  TableWalk(std::uint64_t begin, std::uint64_t declaredEnd) : next_(begin), end_(begin), declaredEnd_(declaredEnd) {}

  /// Offset of the entry that `take` wants next.
  [[nodiscard]] std::uint64_t next() const { return next_; }
  /// Takes the next entry: the 16 bytes there and the 16 after them, fewer where the data end. False once the table
  /// has ended.
  bool take(std::span<const std::byte> bytes, const StreamCodes& codes);
  /// Behind the last readable entry.
  [[nodiscard]] std::uint64_t end() const { return end_; }

 private:
  std::uint64_t next_;
  std::uint64_t end_;
  std::uint64_t declaredEnd_;
  std::uint32_t readable_ = 0;
  std::uint32_t unreadable_ = 0;  ///< in a row
};

}  // namespace zelvo::salvage
