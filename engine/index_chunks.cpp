#include "engine/index_chunks.h"

#include <array>

#include "avi/byte_order.h"
#include "engine/low32.h"

namespace zelvo::engine {

namespace {

/// dwOffset and dwSize.
constexpr std::size_t kEntrySize = 8;
constexpr std::byte kIndexOfIndexes{0};
constexpr std::byte kIndexOfChunks{1};

/// wLongsPerEntry, bIndexSubType, bIndexType.
void writeIndexKind(avi::StagedOutput& out, std::byte longsPerEntry, std::byte indexType) {
  out.append(std::array{longsPerEntry, std::byte{0}, std::byte{0}, indexType});
}

/// An 8-byte field.
/// Deliberate: the low 32 bits of `value`, then four zero bytes.
void wideNumber(avi::StagedOutput& out, std::uint64_t value) { out.number64(low32(value)); }

}  // namespace

void writeSuperIndex(avi::StagedOutput& out, const SuperIndex& index) {
  out.code(avi::kIndx);
  out.number32(low32(index.chunkSize));
  writeIndexKind(out, std::byte{4}, kIndexOfIndexes);
  out.number32(1);  // nEntriesInUse
  out.code(index.chunkId);
  out.zeros(12);  // dwReserved
  wideNumber(out, index.offset);
  out.number32(low32(index.size));
  wideNumber(out, index.duration);
}

void writeStandardIndex(avi::StagedOutput& out, const StandardIndex& index) {
  out.code(index.code);
  out.number32(low32(index.chunkSize));
  writeIndexKind(out, std::byte{2}, kIndexOfChunks);
  out.number32(low32(index.count));
  out.code(index.chunkId);
  wideNumber(out, index.baseOffset);
  out.number32(0);  // dwReserved
  // Up to a million entries: gathered by the hundred, since appending each of their numbers takes five times as long.
  std::array<std::byte, 256 * kEntrySize> entries{};
  std::uint64_t offset = 0;
  for (std::uint64_t i = 1; i <= index.count;) {
    std::size_t used = 0;
    for (; i <= index.count && used < entries.size(); ++i, used += kEntrySize) {
      const std::uint32_t before = i == 1 ? 0 : low32(index.sizes[i - 1]);
      offset += before + std::uint32_t{8};  // added in 32 bits
      const auto entry = std::span(entries).subspan(used).first<kEntrySize>();
      avi::storeLittleEndian32(entry.first<4>(), low32(offset));
      avi::storeLittleEndian32(entry.last<4>(), low32(index.sizes[i]));
    }
    out.append(std::span(entries).first(used));
  }
}

}  // namespace zelvo::engine
