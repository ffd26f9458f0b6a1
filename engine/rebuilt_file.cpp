// The rebuilt file, written in one forward pass:
// 1. Compute every size and position.
// 2. Have the file made, ask for room.
// 3. Header lists with their super indexes; in the middle of the audio header its codec is shown.
// 4. The "movi" list: both standard indexes, then all video chunks, then all audio chunks.
// 5. Have the file closed.
#include <algorithm>
#include <array>

#include "avi/chunk_copy.h"
#include "avi/codec_text.h"
#include "avi/staged_output.h"
#include "engine/index_chunks.h"
#include "engine/low32.h"
#include "engine/repair_stages.h"
#include "platform/ran_out.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

constexpr std::uint64_t kSuggestedBufferSize = 0x00ffffff;
constexpr std::uint64_t kStreamHeaderSize = 56;
/// Header lists, super indexes and empty standard indexes, without the stream formats.
constexpr std::uint64_t kSmallestFile = 436;

std::uint64_t formatHeldBy(std::uint64_t fileSize, const FormatPayload& format) {
  return format.held.size() + avi::heldBy(fileSize, format.rangeOffset, format.rangeSize);
}

void reportAudioCodec(RepairState& state, const RepairContext& run) {
  if (state.audiocodecfound) {
    const std::string text = audioCodecText(state.audiocodec);
    state.audiocodecstring.set(text);
    run.observer.audioCodec(text);
  }
  logLine(run.observer.log(), "audiocodecstring=%@", state.audiocodecstring.get());
}

/// Writes the rebuilt file into one that has been made.
class Writer {
 public:
  Writer(RepairState& state, const RepairContext& run, platform::WritableFile& file, OutputMaker& maker)
      : state_(state), run_(run), file_(file), maker_(maker) {}

  [[nodiscard]] std::optional<avi::WriteFailure> write();

 private:
  void writeHeaderLists(avi::StagedOutput& out);
  void writeFormat(avi::StagedOutput& out, const FormatPayload& format);
  [[nodiscard]] avi::CopyEnd writeMovi(avi::StagedOutput& out, bool hasItsLength);

  RepairState& state_;
  const RepairContext& run_;
  platform::WritableFile& file_;
  OutputMaker& maker_;
};

std::optional<avi::WriteFailure> Writer::write() {
  const std::uint64_t expected = bytesToWrite(state_, run_);
  // Knowing the length ahead spares the file system most of its work. One that cannot do it writes all the same; one
  // that has no room for it would only fail later. // Decision: writer, No room ahead is a write error
  const std::error_code reserving = file_.reserve(expected);
  if (platform::isNoRoom(reserving)) {
    static_cast<void>(file_.truncate(0));  // part of the room may be taken
    static_cast<void>(maker_.close());
    reportAudioCodec(state_, run_);
    return avi::WriteFailure{0, reserving};
  }
  avi::StagedOutput out(file_);
  writeHeaderLists(out);
  avi::CopyEnd end = writeMovi(out, !reserving);

  if (end.failure) {
    // What was written so far is of no use; the cause is what counts.
    static_cast<void>(file_.truncate(end.failure->offset));
  } else if (end.position != expected) {
    // Room that was not needed, or bytes that moved up after they were written.
    if (const std::error_code error = file_.truncate(end.position)) end.failure = {end.position, error};
  }
  // Closed here, so that whoever is handed its path finds it complete.
  // Decision: writer, The output is closed before hand-over
  const std::error_code closing = maker_.close();
  if (closing && !end.failure) end.failure = {end.position, closing};
  return end.failure;
}

avi::CopyEnd Writer::writeMovi(avi::StagedOutput& out, bool hasItsLength) {
  const RebuiltLayout& layout = state_.layout;
  out.code(avi::kList);
  out.number32(low32(layout.movisize));
  out.code(avi::kMovi);
  writeStandardIndex(out, {avi::kIx00, layout.ix00size, state_.db ? avi::k00db : avi::k00dc, layout.baseoffsetforvideo,
                           state_.videosamplesizearray, state_.videosamplecount});
  writeStandardIndex(out, {avi::kIx01, layout.ix01size, avi::k01wb, layout.baseoffsetforaudio,
                           state_.audiosamplesizearray, state_.audiosamplecount});
  const avi::CopyEnd headers{.position = out.position(), .failure = out.finish()};

  // Deliberate: a stop before the copy leaves out all chunks, one during the video copy the audio only, and a later one
  // nothing. No pad byte follows an odd chunk; the indexes count on chunks lying back to back.
  const auto stopped = [this] { return run_.stopRequested(); };
  if (headers.failure || stopped()) return headers;
  const std::array runs{state_.videoChunks(), state_.audioChunks()};
  return avi::copyChunks({.input = run_.input,
                          .out = file_,
                          .position = headers.position,
                          .runs = runs,
                          .outHasItsLength = hasItsLength,
                          .stopped = stopped,
                          .workers = run_.workers,
                          .cancel = run_.cancel});
}

void Writer::writeHeaderLists(avi::StagedOutput& out) {
  const RebuiltLayout& layout = state_.layout;
  out.code(avi::kRiff);
  out.number32(low32(layout.RIFFLISTsize));
  out.code(avi::kAvi);
  out.code(avi::kList);
  out.number32(low32(layout.AVILISTsize));
  out.code(avi::kHdrl);

  // Main header (AVIMAINHEADER). Deliberate: its size field is the damaged file's own.
  out.code(avi::kAvih);
  out.append(state_.avihdata1);
  out.number32(low32(state_.videosamplecount));  // dwTotalFrames
  out.append(state_.avihdata2);

  // Video stream header (AVISTREAMHEADER).
  out.code(avi::kList);
  out.number32(low32(layout.videostrlListsize));
  out.code(avi::kStrl);
  out.code(avi::kStrh);
  out.number32(kStreamHeaderSize);
  out.code(avi::kVids);
  out.append(state_.videocodec);
  out.zeros(12);  // dwFlags, wPriority, wLanguage, dwInitialFrames
  out.append(state_.videoscaleratedata);
  out.number32(0);                               // dwStart
  out.number32(low32(state_.videosamplecount));  // dwLength
  out.number32(kSuggestedBufferSize);
  out.number32(0);                    // dwQuality
  out.append(state_.videoscaledata);  // Deliberate: dwSampleSize receives the damaged file's dwStart
  out.zeros(8);                       // rcFrame
  out.code(avi::kStrf);
  out.number32(low32(state_.videostrfsize));
  writeFormat(out, state_.videostrfdata);
  // Deliberate: the super index says "00db" whatever the standard index says.
  writeSuperIndex(
      out, {layout.videoindxsize, avi::k00db, layout.ix00location - 8, layout.ix00size + 4, state_.videosamplecount});

  // Audio stream header.
  out.code(avi::kList);
  out.number32(low32(layout.audiostrlListsize));
  out.code(avi::kStrl);
  out.code(avi::kStrh);
  out.number32(kStreamHeaderSize);
  out.code(avi::kAuds);
  out.append(state_.audiocodec);
  reportAudioCodec(state_, run_);
  out.zeros(12);
  out.append(state_.audioscaleratedata);
  out.number32(0);
  out.number32(low32(state_.audiosamplecount));
  out.number32(kSuggestedBufferSize);
  out.number32(0);
  out.append(state_.audioscaledata);
  out.zeros(8);
  out.code(avi::kStrf);
  out.number32(low32(state_.audiostrfsize));
  writeFormat(out, state_.audiostrfdata);
  writeSuperIndex(
      out, {layout.audioindxsize, avi::k01wb, layout.ix01location, layout.ix01size + 4, state_.audiosamplecount});
}

void Writer::writeFormat(avi::StagedOutput& out, const FormatPayload& format) {
  out.append(format.held);
  avi::copyRange(run_.input, out, format.rangeOffset, format.rangeSize);
}

}  // namespace

std::string audioCodecText(std::span<const std::byte> handler) {
  const bool allZero = std::all_of(handler.begin(), handler.end(), [](std::byte byte) { return byte == std::byte{0}; });
  return allZero ? "Unknown" : avi::codecText(handler);
}

std::uint64_t bytesToWrite(const RepairState& state, const RepairContext& run) {
  const std::uint64_t fileSize = run.input.size();
  const std::uint64_t headers = kSmallestFile + 8 * state.videosamplecount + 8 * state.audiosamplecount +
                                formatHeldBy(fileSize, state.videostrfdata) +
                                formatHeldBy(fileSize, state.audiostrfdata);
  if (run.stopRequested()) return headers;
  return headers + state.videoChunks().heldBy(fileSize) + state.audioChunks().heldBy(fileSize);
}

void keepFailure(RepairState& state, platform::Log& log, platform::CancelMark& cancel,
                 const avi::WriteFailure& failure) {
  if (!state.writeFailure.get()) {
    state.writeFailure.set(failure);
    // A line that memory is lacking for is not worth another failure.
    static_cast<void>(
        platform::ranOut([&] { logLine(log, "Write failed at %llu: %@", failure.offset, failure.cause.message()); }));
  }
  cancel.cancel();
}

RunEnd constructRebuiltFile(RepairState& state, const RepairContext& run, OutputMaker& output) {
  state.layout = RebuiltLayout::of({.videosamplecount = state.videosamplecount,
                                    .audiosamplecount = state.audiosamplecount,
                                    .videostrfsize = state.videostrfsize,
                                    .audiostrfsize = state.audiostrfsize,
                                    .videosamplesizearray = state.videosamplesizearray,
                                    .audiosamplesizearray = state.audiosamplesizearray});
  run.observer.stage(RepairStage::writing);
  logLine(run.observer.log(), "Construct RIFF file");
  if (run.cancel.abandoned()) return RunEnd::abandoned;
  std::optional<avi::WriteFailure> failure = state.writeFailure.get();  // a run that has failed before creates no file
  OutputMaker::Made made;
  if (!failure) {
    state.outputsize = bytesToWrite(state, run);
    made = output.make(state.outputsize);
    if (made.refused) {
      run.cancel.cancel();
      return RunEnd::refused;
    }
    if (made.file == nullptr) failure = avi::WriteFailure{0, made.error};
  }
  if (failure) {
    reportAudioCodec(state, run);
  } else {
    const std::error_code shortage =
        platform::ranOut([&] { failure = Writer(state, run, *made.file, output).write(); });
    if (shortage) failure = avi::WriteFailure{0, shortage};
  }
  if (failure)
    keepFailure(state, run.observer.log(), run.cancel,
                *failure);  // Decision: writer, A write error cancels its own run
  if (run.cancel.abandoned()) return RunEnd::abandoned;
  run.observer.written();
  logLine(run.observer.log(), "Repair file completed");
  return RunEnd::rebuilt;
}

}  // namespace zelvo::engine
