// Small chunks that lie close together (video with a little audio between, say) are read in one go and pieced together;
// a larger chunk is read straight into the output's buffer. Where reading in one go comes short, each chunk is read
// alone, so that the bytes are those of one read per chunk in every case.
#include "engine/chunk_copy.h"

#include <algorithm>
#include <cstddef>

#include "platform/bytes.h"

namespace zelvo::engine {

namespace {

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kSmallChunk = 65536;
constexpr std::uint64_t kLargestGap = 8192;
constexpr std::uint64_t kLargestBatch = 262144;

/// The chunks from `first` on that one read serves; at least `first` itself.
struct Batch {
  std::uint64_t first = 0;
  std::uint64_t last = 0;
  std::uint64_t start = 0;  ///< offset in the input
  std::uint64_t end = 0;
};

std::uint64_t wholeSize(const ChunkRun& chunks, std::uint64_t index) { return chunks.sizes[index] + kHeaderSize; }

Batch batchFrom(const ChunkRun& chunks, std::uint64_t first) {
  Batch batch{first, first, chunks.offsets[first], chunks.offsets[first] + wholeSize(chunks, first)};
  if (wholeSize(chunks, first) >= kSmallChunk) return batch;
  for (std::uint64_t next = first + 1; next <= chunks.count; ++next) {
    const std::uint64_t offset = chunks.offsets[next];
    const std::uint64_t size = wholeSize(chunks, next);
    // Chunks may overlap, and beyond 4 GiB their offsets start again.
    if (size >= kSmallChunk || offset < batch.start || offset > batch.end + kLargestGap) break;
    const std::uint64_t end = std::max(batch.end, offset + size);
    if (end - batch.start > kLargestBatch) break;
    batch.last = next;
    batch.end = end;
  }
  return batch;
}

}  // namespace

void copyRange(InputFile& input, StagedOutput& out, std::uint64_t offset, std::uint64_t size) {
  while (size > 0 && !out.failed()) {
    const std::span<std::byte> room = out.room();
    const std::span<std::byte> wanted =
        room.first(static_cast<std::size_t>(std::min<std::uint64_t>(size, room.size())));
    const std::size_t count = input.read(offset, wanted);
    out.commit(count);
    if (count < wanted.size()) return;
    offset += count;
    size -= count;
  }
}

void copyChunks(InputFile& input, StagedOutput& out, const ChunkRun& chunks, const platform::CancelMark& cancel) {
  platform::Bytes together;
  for (std::uint64_t index = 1; index <= chunks.count;) {
    if (out.failed() || cancel.abandoned()) return;
    const Batch batch = batchFrom(chunks, index);
    index = batch.last + 1;
    bool complete = false;
    if (batch.last > batch.first) {
      together.resize(kLargestBatch);
      const auto wanted = std::span(together).first(static_cast<std::size_t>(batch.end - batch.start));
      complete = input.tryRead(batch.start, wanted).count == wanted.size();
    }
    for (std::uint64_t i = batch.first; i <= batch.last; ++i) {
      if (complete) {
        out.append(std::span(together).subspan(static_cast<std::size_t>(chunks.offsets[i] - batch.start),
                                               static_cast<std::size_t>(wholeSize(chunks, i))));
      } else {
        copyRange(input, out, chunks.offsets[i], wholeSize(chunks, i));
      }
    }
  }
}

}  // namespace zelvo::engine
