/// How far a deep repair is, for the progress line. Sizes and offsets are in bytes.
#pragma once

#include <cstdint>

#include "cli/job_progress.h"
#include "platform/relaxed.h"
#include "salvage/deep_repair.h"

namespace zelvo::cli {

/// Keeps what a run tells last. Thread: any.
class SalvageProgress final : public salvage::SalvageObserver {
 public:
  void stage(salvage::SalvageStage stage) override {
    read_ = 0;
    stage_ = stage;
  }
  void read(std::uint64_t bytes) override { read_.add(bytes); }
  void beginFlushing() { isFlushing_ = true; }
  void beginPlaying() { isPlaying_ = true; }
  void played(std::uint64_t offset) { played_ = offset; }
  [[nodiscard]] std::uint64_t playedUpTo() const { return played_; }

  [[nodiscard]] Stage shown() const {
    if (isFlushing_) return Stage::flushing;
    if (isPlaying_) return Stage::playing;
    switch (stage_) {
      case salvage::SalvageStage::readingHeaders:
        return Stage::analysing;
      case salvage::SalvageStage::searching:
        return Stage::scanning;
      case salvage::SalvageStage::weighing:
        return Stage::weighing;
      case salvage::SalvageStage::writing:
        break;
    }
    return Stage::writing;
  }
  [[nodiscard]] std::uint64_t bytesRead() const { return read_; }

 private:
  platform::Relaxed<salvage::SalvageStage> stage_;
  platform::Relaxed<std::uint64_t> read_;
  platform::Relaxed<bool> isPlaying_;
  platform::Relaxed<std::uint64_t> played_;
  platform::Relaxed<bool> isFlushing_;
};

}  // namespace zelvo::cli
