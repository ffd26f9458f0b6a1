/// One pass over the input that brings the chunks of some streams to their places in the rebuilt file. The output is
/// cut into aligned segments; what lies together in the input is read in one go, each part of it straight into the
/// segment where it belongs, and a segment that is complete is written. Sizes and offsets are in bytes.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

#include "avi/chunk_run.h"
#include "avi/write_failure.h"
#include "platform/files.h"
#include "platform/page_bytes.h"

namespace zelvo::avi {

/// A place in a run of chunks, and where in the output that is.
struct ChunkCursor {
  std::size_t chunk = 0;      ///< counted from 0
  std::uint64_t inChunk = 0;  ///< bytes of the chunk that lie before the cursor
  std::uint64_t position = 0;
};

/// A part of the output that is being gathered.
struct Segment {
  static constexpr std::size_t kSize = 524288;

  platform::PageBytes bytes{kSize};
  bool inUse = false;
  std::size_t run = 0;
  ChunkCursor start;
  std::uint64_t end = 0;      ///< in the output
  std::uint64_t missing = 0;  ///< bytes that have not been read yet

  [[nodiscard]] std::span<std::byte> content() {
    return std::span(bytes).first(static_cast<std::size_t>(end - start.position));
  }
};

/// Segments for one pass after the other, which makes as many as it takes: at most one of each run is in the middle of
/// being handed out, and two threads work on others.
class Segments {
 public:
  /// Sees to it that there are as many as a pass of `runs` runs takes, and none in use.
  [[nodiscard]] std::span<Segment> of(std::size_t runs);

 private:
  static constexpr std::size_t kFewest = 4;
  static constexpr std::size_t kThreads = 2;

  std::vector<Segment> segments_;
};

/// What one read brings. A large part goes straight to its segment; small ones, and what lies between chunks, come
/// together first, since the system takes longer over many small places than over one and a move within the cache.
/// Thread: one.
class Batch {
 public:
  /// What lies together is read in one go up to this size. Not larger than a segment, so that a batch needs two of each
  /// run at the most.
  static constexpr std::size_t kSize = 131072;
  static_assert(kSize <= Segment::kSize);

  [[nodiscard]] std::uint64_t offset() const { return offset_; }  ///< in the input
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::span<const std::span<std::byte>> places() const { return places_; }
  [[nodiscard]] bool full() const { return size_ == kSize || places_.size() == kMaxPlaces; }

  void clear(std::uint64_t offset);
  /// Goes on with bytes that nobody needs.
  void addGap(std::size_t size) { read(window(size)); }
  void add(std::span<std::byte> place, Segment& segment);
  /// Moves what came together to where it belongs; after the read.
  void settle() const;

  struct Part {
    Segment* segment = nullptr;
    std::size_t size = 0;
  };
  /// What the segments get of it.
  [[nodiscard]] std::span<const Part> parts() const { return parts_; }

 private:
  /// The system takes 1024 in one call.
  static constexpr std::size_t kMaxPlaces = 1023;
  struct Move {
    const std::byte* from = nullptr;
    std::span<std::byte> to;
  };

  [[nodiscard]] std::span<std::byte> window(std::size_t size);
  void read(std::span<std::byte> place);

  platform::PageBytes window_{kSize};
  std::size_t windowUsed_ = 0;
  std::uint64_t offset_ = 0;
  std::size_t size_ = 0;
  std::vector<std::span<std::byte>> places_;
  std::vector<Move> moves_;
  std::vector<Part> parts_;
};

/// Hands out what to read and what to write.
/// Thread: any, but for what is said to come after the pass.
class ChunkPass {
 public:
  /// So many runs share a pass at the most, which bounds its memory: with a segment for each and two more, 8 MiB.
  static constexpr std::size_t kMaxRuns = 14;

  /// Brings `runs`, at least one and at most `kMaxRuns`, one after the other, to `position` and on. `stopped` is asked
  /// now and then as long as there is a run after the first that is not written whole; once it says yes, all runs
  /// after that one are left out.
  ChunkPass(std::uint64_t fileSize, std::uint64_t position, std::span<const ChunkRun> runs, Segments& segments,
            std::function<bool()> stopped);

  /// What to read next; waits for a segment where none is free. False when there is nothing left, or the pass has
  /// failed. Report each batch before taking the next.
  [[nodiscard]] bool take(Batch& batch);
  /// Reports a batch that was read whole. The caller then writes what `startWriting` gives until it gives nothing.
  void arrived(const Batch& batch);
  /// Reports a batch that came short. Nothing is handed out any more.
  void cameShort();
  /// A thread that served the pass ran out of memory. Nothing is handed out any more, and the pass has failed.
  void breakOff(std::error_code shortage);
  /// A complete segment to be written, and told of by `written`. Nothing when there is none, or while another thread
  /// writes: file systems let one at a time write to a file, and a thread is of more use reading than waiting for that.
  [[nodiscard]] Segment* startWriting();
  void written(Segment& segment, const platform::IoResult& result);

  // After the pass.
  [[nodiscard]] const std::optional<WriteFailure>& failure() const { return failure_; }
  /// True when runs were left out.
  [[nodiscard]] bool leftOut() const { return kept_ < runs_.size(); }
  /// Behind the last byte of what the pass had to bring.
  [[nodiscard]] std::uint64_t end() const { return runs_[kept_ - 1].end; }
  struct Missing {
    std::size_t run = 0;
    ChunkCursor from;
  };
  /// The first place in the output that the pass did not bring; nothing when all is there.
  [[nodiscard]] std::optional<Missing> missing() const;

 private:
  /// One of the runs, and how far it is.
  struct Run {
    ChunkRun chunks;
    ChunkCursor next;             ///< what is handed out next
    std::uint64_t offset = 0;     ///< of that in the input
    std::uint64_t left = 0;       ///< bytes of its chunk that are not handed out
    std::uint64_t end = 0;        ///< in the output
    std::uint64_t unwritten = 0;  ///< bytes
    Segment* open = nullptr;      ///< where `next` belongs, once there is one
    [[nodiscard]] bool handedOut() const { return next.chunk == chunks.count(); }
  };

  /// The run whose next chunk lies first in the input.
  [[nodiscard]] Run* nextRun();
  [[nodiscard]] bool hasSegment(Run& run);
  void fill(Batch& batch);
  void advance(Run& run, std::uint64_t bytes) const;
  /// Goes on to the first chunk from `run.next.chunk` on of which the input holds something.
  void goToChunk(Run& run) const;
  void askWhetherStopped();

  const std::uint64_t fileSize_;
  const std::function<bool()> stopped_;
  const std::span<Segment> segments_;
  std::mutex mutex_;
  std::condition_variable freed_;
  std::vector<Run> runs_;
  std::size_t kept_;                ///< runs from the first on that are not left out
  std::size_t unwritten_ = 0;       ///< the first run that is not written whole
  std::vector<Segment*> complete_;  ///< to be written
  bool writing_ = false;
  bool short_ = false;
  std::optional<WriteFailure> failure_;
};

}  // namespace zelvo::avi
