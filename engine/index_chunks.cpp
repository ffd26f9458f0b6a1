#include "engine/index_chunks.h"

#include <array>

namespace zelvo::engine {

namespace {

/// dwOffset and dwSize.
constexpr std::size_t kEntrySize = 8;
constexpr std::byte kIndexOfIndexes{0};
constexpr std::byte kIndexOfChunks{1};

/// wLongsPerEntry, bIndexSubType, bIndexType.
void writeIndexKind(StagedOutput& out, std::byte longsPerEntry, std::byte indexType) {
  out.append(std::array{longsPerEntry, std::byte{0}, std::byte{0}, indexType});
}

}  // namespace

void writeSuperIndex(StagedOutput& out, const SuperIndex& index) {
  out.code(kIndx);
  out.number(index.chunkSize);
  writeIndexKind(out, std::byte{4}, kIndexOfIndexes);
  out.number(1);  // nEntriesInUse
  out.code(index.chunkId);
  out.zeros(12);  // dwReserved
  out.wideNumber(index.offset);
  out.number(index.size);
  out.wideNumber(index.duration);
}

void writeStandardIndex(StagedOutput& out, const StandardIndex& index) {
  out.code(index.code);
  out.number(index.chunkSize);
  writeIndexKind(out, std::byte{2}, kIndexOfChunks);
  out.number(index.count);
  out.code(index.chunkId);
  out.wideNumber(index.baseOffset);
  out.number(0);  // dwReserved
  // Up to a million entries: gathered by the hundred, since appending each of their numbers takes five times as long.
  std::array<std::byte, 256 * kEntrySize> entries{};
  std::uint64_t offset = 0;
  for (std::uint64_t i = 1; i <= index.count;) {
    std::size_t used = 0;
    for (; i <= index.count && used < entries.size(); ++i, used += kEntrySize) {
      const std::uint32_t before = i == 1 ? 0 : low32(index.sizes[i - 1]);
      offset += before + std::uint32_t{8};  // added in 32 bits
      const auto entry = std::span(entries).subspan(used).first<kEntrySize>();
      storeLittleEndian32(entry.first<4>(), low32(offset));
      storeLittleEndian32(entry.last<4>(), low32(index.sizes[i]));
    }
    out.append(std::span(entries).first(used));
  }
}

}  // namespace zelvo::engine
