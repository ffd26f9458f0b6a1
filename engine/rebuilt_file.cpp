// The rebuilt file, written in one forward pass:
// 1. Compute every size and position.
// 2. Create or empty the file, open it, ask for room.
// 3. Header lists with their super indexes; in the middle of the audio header its codec is shown.
// 4. The "movi" list: both standard indexes, then all video chunks, then all audio chunks.
// 5. Close the file and hand it to the controller.
#include <algorithm>
#include <array>
#include <span>

#include "avi/chunk_copy.h"
#include "avi/codec_text.h"
#include "avi/staged_output.h"
#include "engine/index_chunks.h"
#include "engine/low32.h"
#include "engine/repair_file.h"
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

/// Entries 1 to `count` of two tables.
avi::ChunkRun filledPart(const SampleTable& offsets, const SampleTable& sizes, std::uint64_t count) {
  return {std::span(offsets).subspan(1, count), std::span(sizes).subspan(1, count)};
}

}  // namespace

void RepairFile::constructRIFFList() {
  const Run& run = *run_;
  layout = RebuiltLayout::of({.videosamplecount = videosamplecount,
                              .audiosamplecount = audiosamplecount,
                              .videostrfsize = videostrfsize,
                              .audiostrfsize = audiostrfsize,
                              .videosamplesizearray = videosamplesizearray,
                              .audiosamplesizearray = audiosamplesizearray});
  logLine(services_.log, "Construct RIFF file");
  if (run.cancel->abandoned()) {
    runEnd = RunEnd::abandoned;
    return;
  }
  std::optional<avi::WriteFailure> failure = writeFailure.get();  // a run that has failed before creates no file
  if (!failure && run.mayWrite && !run.mayWrite(bytesToWrite())) {
    run.cancel->cancel();
    runEnd = RunEnd::refused;
    return;
  }
  if (!failure) failure = openOutput();
  if (failure) {
    showAudioCodec();
  } else {
    const std::error_code shortage = platform::ranOut([&] { failure = writeRebuiltFile(); });
    if (shortage) failure = avi::WriteFailure{0, shortage};
  }
  outputfile.reset();
  if (failure) failRun(*failure);  // Decision 0013
  if (run.cancel->abandoned()) {
    runEnd = RunEnd::abandoned;
    return;
  }
  runEnd = RunEnd::rebuilt;
  controll->setMovieView(run.internalpath);
  logLine(services_.log, "Repair file completed");
}

avi::ChunkRun RepairFile::videoChunks() const {
  return filledPart(videosampleoffsetarray, videosamplesizearray, videosamplecount);
}
avi::ChunkRun RepairFile::audioChunks() const {
  return filledPart(audiosampleoffsetarray, audiosamplesizearray, audiosamplecount);
}

std::uint64_t RepairFile::bytesToWrite() const {
  const std::uint64_t fileSize = inputfilehandle->size();
  const std::uint64_t headers = kSmallestFile + 8 * videosamplecount + 8 * audiosamplecount +
                                formatHeldBy(fileSize, videostrfdata) + formatHeldBy(fileSize, audiostrfdata);
  if (stopRequested(*run_)) return headers;
  return headers + videoChunks().heldBy(fileSize) + audioChunks().heldBy(fileSize);
}

std::optional<avi::WriteFailure> RepairFile::openOutput() {
  outputfilemanager = &services_.fileManager;
  if (const std::error_code error = outputfilemanager->createFile(run_->internalpath))
    return avi::WriteFailure{0, error};
  auto opened = services_.files.openForWriting(run_->internalpath);
  outputfile = std::move(opened.file);
  if (!outputfile) return avi::WriteFailure{0, opened.error};
  return std::nullopt;
}

std::optional<avi::WriteFailure> RepairFile::writeRebuiltFile() {
  const Run& run = *run_;
  const std::uint64_t expected = bytesToWrite();
  // Knowing the length ahead spares the file system most of its work. One that cannot do it writes all the same; one
  // that has no room for it would only fail later. // Decision 0019
  const std::error_code reserving = outputfile->reserve(expected);
  if (platform::isNoRoom(reserving)) {
    static_cast<void>(outputfile->truncate(0));  // part of the room may be taken
    static_cast<void>(outputfile->close());
    showAudioCodec();
    return avi::WriteFailure{0, reserving};
  }
  const bool reserved = !reserving;
  avi::StagedOutput out(*outputfile);
  writeHeaderLists(out);
  out.code(avi::kList);
  out.number32(low32(layout.movisize));
  out.code(avi::kMovi);
  writeStandardIndex(out, {avi::kIx00, layout.ix00size, db ? avi::k00db : avi::k00dc, layout.baseoffsetforvideo,
                           videosamplesizearray, videosamplecount});
  writeStandardIndex(out, {avi::kIx01, layout.ix01size, avi::k01wb, layout.baseoffsetforaudio, audiosamplesizearray,
                           audiosamplecount});
  avi::CopyEnd end{.position = out.position(), .failure = out.finish()};

  // Deliberate: a stop before the copy leaves out all chunks, one during the video copy the audio only, and a later one
  // nothing. No pad byte follows an odd chunk; the indexes count on chunks lying back to back.
  const auto stopped = [&run] { return stopRequested(run); };
  if (!end.failure && !stopped()) {
    const std::array runs{videoChunks(), audioChunks()};
    end = avi::copyChunks({.input = *inputfilehandle,
                           .out = *outputfile,
                           .position = end.position,
                           .runs = runs,
                           .outHasItsLength = reserved,
                           .stopped = stopped,
                           .workers = services_.workers,
                           .cancel = *run.cancel});
  }

  if (end.failure) {
    // What was written so far is of no use; the cause is what counts.
    static_cast<void>(outputfile->truncate(end.failure->offset));
  } else if (end.position != expected) {
    // Room that was not needed, or bytes that moved up after they were written.
    if (const std::error_code error = outputfile->truncate(end.position)) end.failure = {end.position, error};
  }
  // Closed here, so that whoever is handed its path finds it complete. // Decision 0010
  const std::error_code closing = outputfile->close();
  if (closing && !end.failure) end.failure = {end.position, closing};
  return end.failure;
}

void RepairFile::writeHeaderLists(avi::StagedOutput& out) {
  out.code(avi::kRiff);
  out.number32(low32(layout.RIFFLISTsize));
  out.code(avi::kAvi);
  out.code(avi::kList);
  out.number32(low32(layout.AVILISTsize));
  out.code(avi::kHdrl);

  // Main header (AVIMAINHEADER). Deliberate: its size field is the damaged file's own.
  out.code(avi::kAvih);
  out.append(avihdata1);
  out.number32(low32(videosamplecount));  // dwTotalFrames
  out.append(avihdata2);

  // Video stream header (AVISTREAMHEADER).
  out.code(avi::kList);
  out.number32(low32(layout.videostrlListsize));
  out.code(avi::kStrl);
  out.code(avi::kStrh);
  out.number32(kStreamHeaderSize);
  out.code(avi::kVids);
  out.append(videocodec);
  out.zeros(12);  // dwFlags, wPriority, wLanguage, dwInitialFrames
  out.append(videoscaleratedata);
  out.number32(0);                        // dwStart
  out.number32(low32(videosamplecount));  // dwLength
  out.number32(kSuggestedBufferSize);
  out.number32(0);             // dwQuality
  out.append(videoscaledata);  // Deliberate: dwSampleSize receives the damaged file's dwStart
  out.zeros(8);                // rcFrame
  out.code(avi::kStrf);
  out.number32(low32(videostrfsize));
  writeFormat(out, videostrfdata);
  // Deliberate: the super index says "00db" whatever the standard index says.
  writeSuperIndex(out,
                  {layout.videoindxsize, avi::k00db, layout.ix00location - 8, layout.ix00size + 4, videosamplecount});

  // Audio stream header.
  out.code(avi::kList);
  out.number32(low32(layout.audiostrlListsize));
  out.code(avi::kStrl);
  out.code(avi::kStrh);
  out.number32(kStreamHeaderSize);
  out.code(avi::kAuds);
  out.append(audiocodec);
  showAudioCodec();
  out.zeros(12);
  out.append(audioscaleratedata);
  out.number32(0);
  out.number32(low32(audiosamplecount));
  out.number32(kSuggestedBufferSize);
  out.number32(0);
  out.append(audioscaledata);
  out.zeros(8);
  out.code(avi::kStrf);
  out.number32(low32(audiostrfsize));
  writeFormat(out, audiostrfdata);
  writeSuperIndex(out, {layout.audioindxsize, avi::k01wb, layout.ix01location, layout.ix01size + 4, audiosamplecount});
}

void RepairFile::writeFormat(avi::StagedOutput& out, const FormatPayload& format) {
  out.append(format.held);
  avi::copyRange(*inputfilehandle, out, format.rangeOffset, format.rangeSize);
}

void RepairFile::showAudioCodec() {
  if (audiocodecfound) {
    const bool allZero =
        std::all_of(audiocodec.begin(), audiocodec.end(), [](std::byte byte) { return byte == std::byte{0}; });
    const std::string text = allZero ? "Unknown" : avi::codecText(audiocodec);
    audiocodecstring.set(text);
    outlets.audiocodecfield.setStringValue(text);
  }
  logLine(services_.log, "audiocodecstring=%@", audiocodecstring.get());
}

}  // namespace zelvo::engine
