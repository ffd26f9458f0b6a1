// The sample scan. For every block, unless the run is stopped:
// 1. Tell the progress.
// 2. Judge the codes "00db", "00dc" and "01wb" that start at its 1024 positions, in file order: a size below ten
//    million, and a chunk code after the payload.
// 3. Record what is accepted.
#include <algorithm>
#include <array>
#include <optional>

#include "avi/fourcc.h"
#include "engine/candidate_reader.h"
#include "engine/data_codes.h"
#include "engine/repair_stages.h"
#include "engine/stretch_queue.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

/// The six bytes after a candidate's payload, of which the first three positions are searched: an odd payload is
/// followed by a pad byte.
/// Deliberate: the buffer is not cleared between candidates, so what the end of the file leaves unread is stale.
/// It starts as six zero bytes in every run. // Decision: scan, The look-ahead buffer stays stale
class LookAheadBuffer {
 public:
  explicit LookAheadBuffer(avi::InputFile& input) : input_(input) {}

  /// Takes the look-ahead of a candidate whose size is accepted and answers what it holds then.
  [[nodiscard]] LookAheadFind take(const Candidate& candidate) {
    if (candidate.found) {
      // All six bytes are new, and are looked at again only if the next candidate leaves some of them.
      unread_ = candidate.payloadEnd();
      return *candidate.found;
    }
    if (candidate.lookAheadCount == bytes_.size()) {
      bytes_ = candidate.lookAhead;
    } else {
      if (unread_) static_cast<void>(input_.tryRead(*unread_, bytes_));
      std::copy_n(candidate.lookAhead.begin(), candidate.lookAheadCount, bytes_.begin());
    }
    unread_.reset();
    return held();
  }

 private:
  [[nodiscard]] LookAheadFind held() const {
    for (std::size_t at = 0; at <= 2; ++at) {
      const avi::FourCC code = avi::FourCC::at(std::span(bytes_).subspan(at));
      if (code == avi::kJunk) return LookAheadFind::padding;
      if (isDataCode(code)) return LookAheadFind::chunk;
    }
    return LookAheadFind::nothing;
  }

  avi::InputFile& input_;
  std::array<std::byte, kLookAheadSize> bytes_{};
  std::optional<std::uint32_t> unread_;  ///< where the bytes stand, when they are not in `bytes_`
};

/// Judges candidates, which must come in file order, and records what it accepts.
class SampleScan {
 public:
  SampleScan(RepairState& state, const RepairContext& run)
      : state_(state), log_(run.observer.log()), lookAhead_(run.input) {}

  void judge(const Candidate& candidate) {
    state_.videosamplesize = candidate.size;
    if (candidate.sizeIsRefused()) return;
    const LookAheadFind found = lookAhead_.take(candidate);
    if (found == LookAheadFind::nothing) return;
    const bool isPadded = found == LookAheadFind::padding;
    if (isSoundCode(candidate.code)) {
      record(candidate, isPadded, state_.audiosamplecount, state_.audiosamplesizearray, state_.audiosampleoffsetarray,
             audioFullTold_);
    } else {
      record(candidate, isPadded, state_.videosamplecount, state_.videosamplesizearray, state_.videosampleoffsetarray,
             videoFullTold_);
    }
  }

 private:
  void record(const Candidate& candidate, bool isPadded, std::uint64_t& count, SampleTable& sizes, SampleTable& offsets,
              bool& fullTold) {
    if (count == kLargestSampleCount) {  // Decision: scan, A full table ends its kind only
      if (!fullTold) {
        logLine(log_, "Table full, no more %@ chunks are recorded", isSoundCode(candidate.code) ? "audio" : "video");
      }
      fullTold = true;
      ++state_.samplesleftout;
      return;
    }
    ++count;
    sizes[count] = candidate.size;
    offsets[count] = candidate.position();
    state_.tally.add({.position = candidate.position(),
                      .size = candidate.size,
                      .isSound = isSoundCode(candidate.code),
                      .isBlank = candidate.isBlank,
                      .isPaddedBehind = isPadded});
  }

  RepairState& state_;
  platform::Log& log_;
  LookAheadBuffer lookAhead_;
  bool videoFullTold_ = false;
  bool audioFullTold_ = false;
};

}  // namespace

void scanSamples(RepairState& state, const RepairContext& run) {
  if (run.stopRequested()) return;
  SampleScan scan(state, run);
  const std::uint32_t last = state.numberofsectors;
  StretchQueue stretches(run.input, last, state.mod, run.workers);
  std::span<const Candidate> candidates;
  std::span<const BlockFailures> failures;
  for (std::uint32_t left = last, block = 1; left != 0; --left, ++block) {
    state.sector = block;
    if (run.cancel.cancelled()) return;  // it stays stopped, so the other blocks would be skipped too
    if (block % Stretch::kBlocks == 1) {
      const StretchContent& content = stretches.next();
      candidates = content.candidates;
      failures = content.failures;
    }
    const bool skipped = run.stopRequested();
    if (!skipped) {
      state.currentoffset = ScanWindow::startOf(block);
      run.observer.progress(block, last);
      run.observer.stage(RepairStage::searching);
    }
    // What belongs to a skipped block goes by: without the threads that read ahead it would not have been read.
    for (; !failures.empty() && failures.front().block == block; failures = failures.subspan(1)) {
      if (!skipped) run.input.remember(failures.front().failures);
    }
    std::size_t own = 0;
    for (; own < candidates.size() && candidates[own].block == block; ++own) {
      if (!skipped) scan.judge(candidates[own]);
    }
    candidates = candidates.subspan(own);
  }
}

}  // namespace zelvo::engine
