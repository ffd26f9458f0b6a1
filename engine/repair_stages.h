/// The stages of a repair, as functions on values. Each reads the input, fills its part of the state, and tells the
/// observer what it does; none knows who watches, and none keeps anything of its own. Sizes and offsets are in bytes.
///
/// Each stage has a source of its own: validity_check.cpp, header_harvest.cpp, sample_scan.cpp, film_judgement.cpp,
/// rebuilt_file.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "avi/input_file.h"
#include "engine/output_maker.h"
#include "engine/repair_observer.h"
#include "engine/repair_report.h"
#include "engine/repair_state.h"
#include "platform/film_report.h"
#include "platform/rejection.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// What every stage of one run works with.
struct RepairContext {
  avi::InputFile& input;
  std::uint64_t inputfilesize =
      0;  ///< as found when the input was chosen // Decision: scan, The size is what the chooser says
  RepairObserver& observer;
  platform::CancelMark& cancel;
  platform::Workers& workers;

  /// Asked per block and per step, so it costs little.
  [[nodiscard]] bool stopRequested() const { return cancel.cancelled() || observer.stopIsAsked(); }
};

/// Judges whether the input looks like an AVI file: searches its first ten 1024-byte blocks for twelve codes. Bytes
/// past a short read count as zero, and so do those past the end of a block.
/// \param testsCodes false: every position is passed by, and the answer is no
/// \post   the five harvest flags are false; `db` is true when the first code met is "00db"
/// \return true when a code starts in those blocks; also left in `validitycheck`
/// Failure: none is reported; an unreadable file answers false.
[[nodiscard]] bool checkValidity(RepairState& state, const RepairContext& run, bool testsCodes = true);

/// Gathers the main header, the stream headers and the stream formats from the first 50 blocks.
/// \return whether the film can be repaired: all five harvest flags are true and it is larger than 524,288 bytes
[[nodiscard]] bool harvestHeaders(RepairState& state, const RepairContext& run);

/// Why the harvest's answer was no.
[[nodiscard]] platform::Rejection rejectionOf(const RepairState& state, const RepairContext& run);

/// Walks the whole input for data chunks and fills the sample tables. Throws std::system_error or std::bad_alloc when
/// there is no thread or memory for it.
/// \pre    `numberofsectors` and `mod` are those of the input
void scanSamples(RepairState& state, const RepairContext& run);

/// Finds where the film's data lies in the input (`filmRange`), by what the scan has found.
void findFilmRange(RepairState& state, const RepairContext& run);

/// What is kept of the film as far as it is known now: reads may still fail.
[[nodiscard]] platform::FilmReport filmReportOf(const RepairState& state, const RepairContext& run);

/// Length of the file that would be written now: what the size fields and chunks claim, as far as the input holds it.
/// Once a stop is asked for, that of the headers and indexes alone.
/// \pre    the scan is done
[[nodiscard]] std::uint64_t bytesToWrite(const RepairState& state, const RepairContext& run);

/// Computes `layout`, has the output made, unless the run has failed already, writes it and has it closed.
/// Failure: a write error, or a lack of memory or threads, is kept (`keepFailure`) and ends the writing.
/// \return `rebuilt`, also after a failure; `refused` or `abandoned`
[[nodiscard]] RunEnd constructRebuiltFile(RepairState& state, const RepairContext& run, OutputMaker& output);

/// The codec of an audio stream header (fccHandler) as a person reads it; "Unknown" for zero bytes.
[[nodiscard]] std::string audioCodecText(std::span<const std::byte> handler);

/// Keeps the first failure of a run, logs it, and cancels the run.
/// Thread: the one that repairs.
void keepFailure(RepairState& state, platform::Log& log, platform::CancelMark& cancel,
                 const avi::WriteFailure& failure);

/// Logs that reads failed, when any did.
void logReadFailures(platform::Log& log, const avi::ReadFailures& failures);

/// `numberofsectors` and `mod` of an input of that size.
void countBlocks(RepairState& state, std::uint64_t inputfilesize);

}  // namespace zelvo::engine
