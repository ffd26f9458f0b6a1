/// A whole deep repair of one damaged AVI file: finds all that is left of it, weighs headers, indexes and the chain of
/// chunks against each other, plans the film as it was, and writes it. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/files.h"
#include "platform/trial_decoder.h"
#include "platform/workers.h"
#include "salvage/headers/header_synthesis.h"
#include "salvage/salvage_report.h"
#include "salvage/scan/rescue_map.h"

namespace zelvo::salvage {

enum class SalvageStage : std::uint8_t {
  readingHeaders,
  searching,  ///< the input is read from front to back
  weighing,   ///< the plan is made
  writing,
};

/// Hears of a run while it works. Thread: the one that repairs.
class SalvageObserver {
 public:
  virtual ~SalvageObserver() = default;
  virtual void stage(SalvageStage stage) = 0;
  /// So many bytes of the input were read since the stage began. Not told of while writing.
  virtual void read(std::uint64_t bytes) = 0;
};

/// What the user may choose.
struct SalvageChoices {
  bool emptiesDamaged = false;  ///< empty chunks stand for pictures that are damaged; otherwise they are kept
  bool closesGaps = false;      ///< lost time is closed up; otherwise it is filled
  bool allowsGrowth = false;    ///< the output may be larger than the input plus 5 % and 16 MiB
  KnownRates rates;
};

/// One run. Several may run at once, each with values of its own.
struct SalvageRun {
  platform::ReadableFile& input;
  std::uint64_t inputSize = 0;              ///< as found when the input was chosen
  const FilmRescue* rescue = nullptr;       ///< what the map of its rescue says; null without one
  platform::ReadableFile* donor = nullptr;  ///< a film whose headers stand in for lost ones; null without one
  SalvageObserver& observer;
  const platform::CancelMark& cancel;
  platform::Workers& workers;
  platform::TrialDecoder* decoder = nullptr;  ///< what compressed payloads are tried with; null without one
  SalvageChoices choices;
  /// The same files as `input` and `donor`, for reads that hang and outlive the run after a stop; where they are null,
  /// a stop waits for reads.
  std::shared_ptr<platform::ReadableFile> sharedInput = nullptr;
  std::shared_ptr<platform::ReadableFile> sharedDonor = nullptr;
  /// Asked once, before anything is written, for an empty file that is to become so long; null when there is none. Not
  /// set for a dry run.
  std::function<platform::WritableFile*(std::uint64_t size)> makeOutput;
};

/// Thread: any; it takes as long as the file is large. Throws std::bad_alloc alone.
[[nodiscard]] SalvageReport salvage(const SalvageRun& run);

}  // namespace zelvo::salvage
