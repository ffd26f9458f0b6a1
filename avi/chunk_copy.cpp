// 1. The input's length says how much of each chunk there is to copy, and so where each lies in the output.
// 2. Two threads read the input front to back, each chunk straight to its place in a segment of the output, and write
//    the segments that are complete.
// 3. A read that comes short all the same moves up everything after it. Then the rest of that run is copied one chunk
//    after the other, so that the bytes are those of one read per chunk in every case.
#include "avi/chunk_copy.h"

#include <algorithm>
#include <span>

#include "avi/chunk_pass.h"
#include "platform/ran_out.h"

namespace zelvo::avi {

namespace {

void serve(ChunkPass& pass, const ChunkCopy& copy) {
  Batch batch;
  while (!copy.cancel.abandoned() && pass.take(batch)) {
    if (copy.input.tryReadScattered(batch.offset(), batch.places()).count < batch.size()) {
      pass.cameShort();
      return;
    }
    batch.settle();
    pass.arrived(batch);
    while (Segment* segment = pass.startWriting()) {
      pass.written(*segment, copy.out.writeAt(segment->start.position, segment->content()));
    }
  }
}

/// Never throws: whoever waits for the other thread is told instead.
void serveOrBreakOff(ChunkPass& pass, const ChunkCopy& copy) {
  const std::error_code shortage = platform::ranOut([&] { serve(pass, copy); });
  if (shortage) pass.breakOff(shortage);
}

/// Copies the rest of `chunks` from the start of that one on where `from` lies.
CopyEnd copyOneByOne(const ChunkCopy& copy, const ChunkRun& chunks, const ChunkCursor& from) {
  StagedOutput out(copy.out, from.position - from.inChunk);
  for (std::size_t chunk = from.chunk; chunk < chunks.count(); ++chunk) {
    if (out.failed() || copy.cancel.abandoned()) break;
    copyRange(copy.input, out, chunks.offsets[chunk], chunks.wholeSize(chunk));
  }
  const std::optional<WriteFailure> failure = out.finish();
  return {out.position(), failure};
}

/// Where a copy of some runs has come.
struct Reached {
  std::size_t runs = 0;  ///< copied, as far as the input holds them
  CopyEnd end;
  bool leavesOut = false;  ///< what is not copied is left out
};

/// Brings `runs`, no more than share a pass, to `position` and on, up to and including the one that a short read
/// breaks.
Reached copyInOnePass(const ChunkCopy& copy, std::uint64_t position, std::span<const ChunkRun> runs,
                      Segments& segments) {
  ChunkPass pass(copy.input.size(), position, runs, segments, copy.stopped);
  const bool helped = copy.workers.processors() > 1 && pass.end() - position > Segment::kSize;
  const auto helper = helped ? copy.workers.startHelper([&] { serveOrBreakOff(pass, copy); }) : nullptr;
  if (helped && !helper) return {.end = {position, WriteFailure{position, platform::noThread()}}};
  serveOrBreakOff(pass, copy);
  if (helper) helper->join();

  const std::optional<ChunkPass::Missing> missing = pass.missing();
  if (!missing) return {runs.size(), {pass.end(), std::nullopt}, pass.leftOut()};
  if (pass.failure() || copy.cancel.abandoned()) return {runs.size(), {missing->from.position, pass.failure()}, true};
  return {missing->run + 1, copyOneByOne(copy, runs[missing->run], missing->from), pass.leftOut()};
}

}  // namespace

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

CopyEnd copyChunks(const ChunkCopy& copy) {
  Segments segments;
  const std::size_t together = copy.outHasItsLength ? ChunkPass::kMaxRuns : 1;
  Reached reached{.end = {copy.position, std::nullopt}};
  for (std::span<const ChunkRun> left = copy.runs; !left.empty();) {
    reached = copyInOnePass(copy, reached.end.position, left.first(std::min(together, left.size())), segments);
    left = left.subspan(reached.runs);
    if (left.empty() || reached.end.failure || reached.leavesOut || copy.stopped()) break;
  }
  return reached.end;
}

}  // namespace zelvo::avi
