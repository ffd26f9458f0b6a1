#include "avi/chunk_pass.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zelvo::avi {

namespace {

/// What lies between two chunks is read along up to this size.
constexpr std::uint64_t kLargestGap = 8192;
/// A smaller part of a chunk is sooner moved than read on its own.
constexpr std::size_t kSmallPart = 16384;

}  // namespace

void Batch::clear(std::uint64_t offset) {
  offset_ = offset;
  size_ = windowUsed_ = 0;
  places_.clear();
  moves_.clear();
  parts_.clear();
}

std::span<std::byte> Batch::window(std::size_t size) {
  windowUsed_ += size;
  return std::span(window_).subspan(windowUsed_ - size, size);
}

void Batch::read(std::span<std::byte> place) {
  size_ += place.size();
  if (!places_.empty() && places_.back().data() + places_.back().size() == place.data()) {
    places_.back() = {places_.back().data(), places_.back().size() + place.size()};
  } else {
    places_.push_back(place);
  }
}

void Batch::add(std::span<std::byte> place, Segment& segment) {
  const auto part =
      std::find_if(parts_.begin(), parts_.end(), [&](const Part& one) { return one.segment == &segment; });
  if (part != parts_.end()) {
    part->size += place.size();
  } else {
    parts_.push_back({&segment, place.size()});
  }
  if (place.size() >= kSmallPart) return read(place);
  const std::span<std::byte> first = window(place.size());
  moves_.push_back({first.data(), place});
  read(first);
}

void Batch::settle() const {
  for (const Move& move : moves_) std::memcpy(move.to.data(), move.from, move.to.size());
}

std::span<Segment> Segments::of(std::size_t runs) {
  const std::size_t count = std::max(kFewest, runs + kThreads);
  while (segments_.size() < count) segments_.emplace_back();
  for (Segment& segment : segments_) segment.inUse = false;
  return std::span(segments_).first(count);
}

ChunkPass::ChunkPass(std::uint64_t fileSize, std::uint64_t position, std::span<const ChunkRun> runs, Segments& segments,
                     std::function<bool()> stopped)
    : fileSize_(fileSize),
      stopped_(std::move(stopped)),
      segments_(segments.of(runs.size())),
      runs_(runs.size()),
      kept_(runs.size()) {
  for (std::size_t i = 0; i < runs.size(); ++i) {
    Run& run = runs_[i];
    run.chunks = runs[i];
    run.next.position = position;
    run.unwritten = run.chunks.heldBy(fileSize);
    position += run.unwritten;
    run.end = position;
    goToChunk(run);
  }
}

bool ChunkPass::take(Batch& batch) {
  std::unique_lock lock(mutex_);
  while (!failure_ && !short_) {
    askWhetherStopped();
    const Run* run = nextRun();
    if (run == nullptr) return false;
    batch.clear(run->offset);
    fill(batch);
    if (batch.size() > 0) return true;
    // Every segment is in use. This thread holds none, so the others will free one.
    freed_.wait(lock);
  }
  return false;
}

void ChunkPass::fill(Batch& batch) {
  while (!batch.full()) {
    Run* run = nextRun();
    if (run == nullptr || !hasSegment(*run)) return;
    const std::uint64_t reached = batch.offset() + batch.size();
    // Chunks may overlap, and beyond 4 GiB their offsets start again.
    if (run->offset < reached || run->offset - reached > kLargestGap) return;
    const auto gap = static_cast<std::size_t>(run->offset - reached);
    if (batch.size() + gap >= Batch::kSize) return;
    if (gap > 0) batch.addGap(gap);

    Segment& segment = *run->open;
    const auto inSegment = static_cast<std::size_t>(run->next.position - segment.start.position);
    const std::span<std::byte> room = segment.content().subspan(inSegment);
    const auto size = static_cast<std::size_t>(
        std::min<std::uint64_t>(run->left, std::min(room.size(), Batch::kSize - batch.size())));
    batch.add(room.first(size), segment);
    advance(*run, size);
  }
}

ChunkPass::Run* ChunkPass::nextRun() {
  Run* first = nullptr;
  for (Run& run : std::span(runs_).first(kept_)) {
    if (!run.handedOut() && (first == nullptr || run.offset < first->offset)) first = &run;
  }
  return first;
}

bool ChunkPass::hasSegment(Run& run) {
  if (run.open != nullptr) return true;
  const auto free =
      std::find_if(segments_.begin(), segments_.end(), [](const Segment& segment) { return !segment.inUse; });
  if (free == segments_.end()) return false;
  const std::uint64_t position = run.next.position;
  free->inUse = true;
  free->run = static_cast<std::size_t>(&run - runs_.data());
  free->start = run.next;
  free->end = std::min(position - position % Segment::kSize + Segment::kSize, run.end);
  free->missing = free->end - position;
  run.open = &*free;
  return true;
}

void ChunkPass::advance(Run& run, std::uint64_t bytes) const {
  run.next.inChunk += bytes;
  run.next.position += bytes;
  run.offset += bytes;
  run.left -= bytes;
  if (run.next.position == run.open->end) run.open = nullptr;
  if (run.left > 0) return;
  run.next.inChunk = 0;
  ++run.next.chunk;
  goToChunk(run);
}

void ChunkPass::goToChunk(Run& run) const {
  for (; !run.handedOut(); ++run.next.chunk) {
    run.offset = run.chunks.offsets[run.next.chunk];
    run.left = run.chunks.heldBy(fileSize_, run.next.chunk);
    if (run.left > 0) return;
  }
}

void ChunkPass::askWhetherStopped() {
  while (unwritten_ < runs_.size() && runs_[unwritten_].unwritten == 0) ++unwritten_;
  if (!leftOut() && unwritten_ + 1 < runs_.size() && stopped_()) kept_ = unwritten_ + 1;
}

void ChunkPass::arrived(const Batch& batch) {
  const std::lock_guard lock(mutex_);
  for (const Batch::Part& part : batch.parts()) {
    part.segment->missing -= part.size;
    if (part.segment->missing == 0) complete_.push_back(part.segment);
  }
}

Segment* ChunkPass::startWriting() {
  const std::lock_guard lock(mutex_);
  if (writing_ || complete_.empty()) return nullptr;
  writing_ = true;
  Segment* segment = complete_.front();
  complete_.erase(complete_.begin());
  return segment;
}

void ChunkPass::cameShort() {
  {
    const std::lock_guard lock(mutex_);
    short_ = true;
  }
  freed_.notify_all();
}

void ChunkPass::breakOff(std::error_code shortage) {
  {
    const std::lock_guard lock(mutex_);
    if (!failure_) failure_ = WriteFailure{0, shortage};
  }
  freed_.notify_all();
}

void ChunkPass::written(Segment& segment, const platform::IoResult& result) {
  {
    const std::lock_guard lock(mutex_);
    writing_ = false;
    askWhetherStopped();
    const bool matters = segment.run < kept_;
    if (result.error && matters) {
      const WriteFailure failure{segment.start.position + result.count, result.error};
      if (!failure_ || failure.offset < failure_->offset) failure_ = failure;
    } else {
      runs_[segment.run].unwritten -= segment.content().size();
      segment.inUse = false;
    }
  }
  freed_.notify_all();
}

std::optional<ChunkPass::Missing> ChunkPass::missing() const {
  for (std::size_t i = 0; i < kept_; ++i) {
    std::optional<ChunkCursor> first;
    if (!runs_[i].handedOut()) first = runs_[i].next;
    for (const Segment& segment : segments_) {
      if (!segment.inUse || segment.run != i) continue;
      if (!first || segment.start.position < first->position) first = segment.start;
    }
    if (first) return Missing{i, *first};
  }
  return std::nullopt;
}

}  // namespace zelvo::avi
