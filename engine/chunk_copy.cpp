// 1. The input's length says how much of each chunk there is to copy, and so where each lies in the output.
// 2. Two threads take one aligned segment of the output after the other, gather its pieces and write it. Small pieces
//    that lie close together in the input are read in one go and then moved up; a large one is read straight to its
//    place.
// 3. A read that comes short all the same moves up everything behind it. Then the rest is copied one chunk after the
//    other, so that the bytes are those of one read per chunk in every case.
#include "engine/chunk_copy.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>

namespace zelvo::engine {

namespace {

constexpr std::uint64_t kHeaderSize = 8;
constexpr std::uint64_t kSegmentSize = 1048576;
/// A smaller piece is sooner moved within a buffer than read on its own.
constexpr std::uint64_t kSmallPiece = 16384;
constexpr std::uint64_t kLargestGap = 8192;
/// Read in one go, gaps included.
constexpr std::uint64_t kLargestBatch = 262144;
/// A batch whose first piece ends the segment still has its room.
constexpr std::size_t kBufferSize = kSegmentSize + kLargestBatch;

/// A place in the chunks and the place in the output where it goes.
struct Cursor {
  std::uint64_t chunk = 1;
  std::uint64_t inChunk = 0;  ///< bytes of the chunk that lie before the cursor
  std::uint64_t position = 0;
};

struct Segment {
  Cursor start;
  std::uint64_t size = 0;
};

/// Hands out the segments in order and keeps what went wrong.
/// Thread: any.
class Segments {
 public:
  Segments(const ChunkRun& chunks, std::uint64_t fileSize, std::uint64_t position)
      : chunks_(chunks), fileSize_(fileSize), next_{1, 0, position} {}

  /// Length in the output of a chunk.
  [[nodiscard]] std::uint64_t length(std::uint64_t chunk) const {
    return heldBy(fileSize_, chunks_.offsets[chunk], chunks_.sizes[chunk] + kHeaderSize);
  }

  [[nodiscard]] std::optional<Segment> take() {
    const std::lock_guard lock(mutex_);
    if (failure_ || shortAt_) return std::nullopt;
    Segment segment{next_, 0};
    const std::uint64_t wanted = kSegmentSize - next_.position % kSegmentSize;
    while (segment.size < wanted && next_.chunk <= chunks_.count) {
      const std::uint64_t left = length(next_.chunk) - next_.inChunk;
      const std::uint64_t step = std::min(left, wanted - segment.size);
      segment.size += step;
      next_.inChunk += step;
      if (step == left) next_ = {next_.chunk + 1, 0, next_.position};
    }
    next_.position += segment.size;
    if (segment.size == 0) return std::nullopt;
    return segment;
  }

  void fail(const WriteFailure& failure) {
    const std::lock_guard lock(mutex_);
    if (!failure_ || failure.offset < failure_->offset) failure_ = failure;
  }
  void comeShort(const Cursor& start) {
    const std::lock_guard lock(mutex_);
    if (!shortAt_ || start.position < shortAt_->position) shortAt_ = start;
  }

  // Once the threads have ended.
  [[nodiscard]] const std::optional<WriteFailure>& failure() const { return failure_; }
  [[nodiscard]] const std::optional<Cursor>& shortAt() const { return shortAt_; }
  [[nodiscard]] std::uint64_t end() const { return next_.position; }

 private:
  const ChunkRun& chunks_;
  const std::uint64_t fileSize_;
  std::mutex mutex_;
  Cursor next_;
  std::optional<WriteFailure> failure_;
  std::optional<Cursor> shortAt_;
};

/// Gathers the pieces of one segment after the other.
class Assembler {
 public:
  Assembler(InputFile& input, const ChunkRun& chunks, const Segments& segments, std::span<std::byte> buffer)
      : input_(input), chunks_(chunks), segments_(segments), buffer_(buffer) {}

  /// The segment's bytes; nothing when a read comes short.
  [[nodiscard]] std::optional<std::span<const std::byte>> assemble(const Segment& segment) {
    at_ = segment.start;
    used_ = 0;
    left_ = static_cast<std::size_t>(segment.size);
    while (left_ > 0) {
      const bool complete = pieceAt(at_, left_).size >= kSmallPiece ? readOne() : gather();
      if (!complete) return std::nullopt;
    }
    return buffer_.first(used_);
  }

 private:
  /// A part of a chunk, as it lies in the input.
  struct Piece {
    std::uint64_t offset = 0;
    std::size_t size = 0;
    [[nodiscard]] std::uint64_t end() const { return offset + size; }
  };

  [[nodiscard]] Piece pieceAt(const Cursor& at, std::size_t room) const {
    return {chunks_.offsets[at.chunk] + at.inChunk,
            static_cast<std::size_t>(std::min<std::uint64_t>(segments_.length(at.chunk) - at.inChunk, room))};
  }

  void advance(Cursor& at, const Piece& piece) const {
    at.inChunk += piece.size;
    if (at.inChunk == segments_.length(at.chunk)) at = {at.chunk + 1, 0, at.position};
  }

  /// The next piece lies where it belongs.
  void take(const Piece& piece) {
    used_ += piece.size;
    left_ -= piece.size;
    advance(at_, piece);
  }

  [[nodiscard]] bool readOne() {
    const Piece piece = pieceAt(at_, left_);
    if (input_.tryRead(piece.offset, buffer_.subspan(used_, piece.size)).count < piece.size) return false;
    take(piece);
    return true;
  }

  /// Reads the small pieces that one read serves, at least one, and moves each up to where it belongs.
  [[nodiscard]] bool gather() {
    const std::uint64_t start = pieceAt(at_, left_).offset;
    std::uint64_t end = start;
    std::uint64_t pieces = 0;
    Cursor at = at_;
    for (std::size_t room = left_; room > 0; ++pieces) {
      const Piece piece = pieceAt(at, room);
      // Chunks may overlap, and beyond 4 GiB their offsets start again.
      const bool near = piece.offset >= end && piece.offset <= end + kLargestGap && piece.size < kSmallPiece;
      if (pieces > 0 && (!near || piece.end() - start > kLargestBatch)) break;
      end = piece.end();
      room -= piece.size;
      advance(at, piece);
    }
    const auto batch = buffer_.subspan(used_, static_cast<std::size_t>(end - start));
    if (input_.tryRead(start, batch).count < batch.size()) return false;
    for (; pieces > 0; --pieces) {
      const Piece piece = pieceAt(at_, left_);
      const std::byte* from = batch.data() + (piece.offset - start);
      std::byte* to = buffer_.data() + used_;
      if (from != to) std::memmove(to, from, piece.size);
      take(piece);
    }
    return true;
  }

  InputFile& input_;
  const ChunkRun& chunks_;
  const Segments& segments_;
  const std::span<std::byte> buffer_;
  Cursor at_;
  std::size_t used_ = 0;  ///< bytes of the segment that are in the buffer
  std::size_t left_ = 0;  ///< bytes of it that are not
};

void copyOneByOne(InputFile& input, StagedOutput& out, const ChunkRun& chunks, std::uint64_t first,
                  const platform::CancelMark& cancel) {
  for (std::uint64_t chunk = first; chunk <= chunks.count; ++chunk) {
    if (out.failed() || cancel.abandoned()) return;
    copyRange(input, out, chunks.offsets[chunk], chunks.sizes[chunk] + kHeaderSize);
  }
}

}  // namespace

std::span<std::byte> CopyBuffers::of(std::size_t number) {
  auto& bytes = bytes_[number];
  if (!bytes) bytes = std::make_unique_for_overwrite<std::byte[]>(kBufferSize);
  return {bytes.get(), kBufferSize};
}

std::uint64_t heldBy(std::uint64_t fileSize, std::uint64_t offset, std::uint64_t size) {
  return offset >= fileSize ? 0 : std::min(size, fileSize - offset);
}

std::uint64_t heldBy(std::uint64_t fileSize, const ChunkRun& chunks) {
  std::uint64_t sum = 0;
  for (std::uint64_t i = 1; i <= chunks.count; ++i) {
    sum += heldBy(fileSize, chunks.offsets[i], chunks.sizes[i] + kHeaderSize);
  }
  return sum;
}

void copyRange(InputFile& input, StagedOutput& out, std::uint64_t offset, std::uint64_t size) {
  while (size > 0 && !out.failed()) {
    const std::span<std::byte> room = out.room();
    const auto wanted = room.first(static_cast<std::size_t>(std::min<std::uint64_t>(size, room.size())));
    const std::size_t count = input.read(offset, wanted);
    out.commit(count);
    if (count < wanted.size()) return;
    offset += count;
    size -= count;
  }
}

CopyEnd copyChunks(InputFile& input, platform::WritableFile& out, std::uint64_t position, const ChunkRun& chunks,
                   CopyBuffers& buffers, platform::Workers& workers, const platform::CancelMark& cancel) {
  Segments segments(chunks, input.size(), position);
  const auto work = [&](std::size_t thread) {
    Assembler assembler(input, chunks, segments, buffers.of(thread));
    while (!cancel.abandoned()) {
      const std::optional<Segment> segment = segments.take();
      if (!segment) return;
      const auto bytes = assembler.assemble(*segment);
      if (!bytes) {
        segments.comeShort(segment->start);
        return;
      }
      const platform::IoResult result = out.writeAt(segment->start.position, *bytes);
      if (result.error) segments.fail({segment->start.position + result.count, result.error});
    }
  };
  const bool helped = workers.processors() > 1 && chunks.count > 1;
  const auto helper = helped ? workers.startHelper([&] { work(1); }) : nullptr;
  work(0);
  if (helper) helper->join();

  CopyEnd end{segments.end(), segments.failure()};
  if (end.failure || !segments.shortAt() || cancel.abandoned()) return end;
  const Cursor& from = *segments.shortAt();
  StagedOutput rest(out, from.position - from.inChunk);
  copyOneByOne(input, rest, chunks, from.chunk, cancel);
  end.failure = rest.finish();
  end.position = rest.position();
  return end;
}

}  // namespace zelvo::engine
