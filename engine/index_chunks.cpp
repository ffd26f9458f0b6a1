#include "engine/index_chunks.h"

#include <array>

namespace zelvo::engine {

namespace {

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
  std::uint64_t offset = 0;
  for (std::uint64_t i = 1; i <= index.count; ++i) {
    const std::uint32_t before = i == 1 ? 0 : low32(index.sizes[i - 1]);
    offset += before + std::uint32_t{8};  // added in 32 bits
    out.number(offset);
    out.number(index.sizes[i]);
  }
}

}  // namespace zelvo::engine
