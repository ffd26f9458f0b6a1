// The header harvest:
// 1. Reset the counters.
// 2. Search the first 50 blocks, position by position, for "avih", "vids" and "auds", and copy fixed ranges after each.
//    A later occurrence overwrites an earlier one.
// 3. Leave early once everything is found; decide after the last block.
#include <algorithm>
#include <array>

#include "avi/byte_order.h"
#include "avi/codec_text.h"
#include "avi/fourcc.h"
#include "engine/globals.h"
#include "engine/repair_file.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

constexpr std::uint32_t kBlocksHarvested = 50;
constexpr std::size_t kBlockSize = avi::InputFile::kBlockSize;
constexpr std::size_t kLookAhead = 2048;

bool anyByteSet(std::span<const std::byte> bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](std::byte byte) { return byte != std::byte{0}; });
}

/// The number in up to four bytes; those that the file no longer had count as zero. // Decision 0001
std::uint64_t numberIn(const platform::Bytes& bytes) {
  std::array<std::byte, 4> padded{};
  std::copy(bytes.begin(), bytes.end(), padded.begin());
  return RepairFile::fourByteRead(padded);
}

}  // namespace

bool RepairFile::allHeadersFound() const {
  return avihscaleratedatafound && audiocodecfound && videocodecfound && videostrfcodecfound && audiostrfcodecfound;
}

bool RepairFile::harvestHeaders() {
  logLine(services_.log, "Audio video samples called");
  videosamplesize = 0;
  videosamplecount = 0;
  audiosamplecount = 0;
  audiosamplesize = 0;
  samplesleftout = 0;
  videosampleoffset = 0;
  audiosampleoffset = 0;
  sector = 1;
  mod = 0;
  buffersize = kBlockSize;
  nextHeader = false;
  countBlocks();
  currentoffset = 0;

  const std::uint32_t lastBlock = stopRequested(*run_) ? 0 : kBlocksHarvested;
  for (std::uint32_t block = 1; block <= lastBlock; ++block) {
    sector = block;
    if (stopRequested(*run_)) continue;
    std::array<std::byte, kBlockSize + kLookAhead> buffer{};
    currentoffset = (block - 1) * std::uint64_t{kBlockSize};
    // Deliberate: the last block of the harvest, not that of the file, is read only as far as the file's last block
    // would be. The values behind a code found in it are read without that limit. // Decision 0004
    const std::size_t wanted = block == kBlocksHarvested ? mod : buffer.size();
    inputfilehandle->read(currentoffset, std::span(buffer).first(wanted));
    outlets.textfield.setStringValue("Analyzing the file..");
    for (std::uint32_t i = 0; i < kBlockSize; ++i) {
      controll->setProgressBarValue(static_cast<double>(block) * 100.0 / kBlocksHarvested);
      updateProgressBar_.request();
      harvestPosition(std::span(buffer).subspan(i, 4), (block - 1) * std::uint32_t{kBlockSize} + i);
    }
    if (allHeadersFound() && run_->inputfilesize > kLargestUnsupported) {
      controll->setProgressBarValue(100.0);
      logLine(services_.log, "Break");
      break;
    }
  }
  return allHeadersFound() && run_->inputfilesize > kLargestUnsupported;
}

void RepairFile::harvestPosition(std::span<const std::byte> code, std::uint32_t position) {
  const avi::FourCC found = avi::FourCC::at(code);
  if (found == avi::kAvih) {
    harvestMainHeader(position);
  } else if (found == avi::kVids) {
    harvestVideoHeader(position);
  } else if (found == avi::kAuds) {
    harvestAudioHeader(position);
  }
}

void RepairFile::harvestMainHeader(std::uint32_t position) {
  avihdata1 = inputfilehandle->readBytes(position + 4, 20);
  // Only the low 16 bits of the size field are looked at.
  avihscaleratedatafound = anyByteSet(std::span(avihdata1).first(std::min<std::size_t>(2, avihdata1.size())));
  if (!avihscaleratedatafound) logLine(services_.log, "NOT FOUND");
  avihdata2 = inputfilehandle->readBytes(position + 28, 36);
}

void RepairFile::harvestVideoHeader(std::uint32_t position) {
  videocodec = inputfilehandle->readBytes(position + 4, 4);
  videocodecstring.set(avi::codecText(videocodec));
  outlets.videocodecfield.setStringValue(*videocodecstring.get());
  logLine(services_.log, "videocodecstring=%@", videocodecstring.get());
  videocodecfound = anyByteSet(videocodec);
  if (videocodecfound) logLine(services_.log, "Video codec =S");
  videoscaleratedata = inputfilehandle->readBytes(position + 20, 8);
  videoscaledata = inputfilehandle->readBytes(position + 28, 4);
  videostrfsize = numberIn(inputfilehandle->readBytes(position + 60, 4));
  videostrfdata = readFormat(position + 64, videostrfsize);
  videostrfcodecdata = inputfilehandle->readBytes(position + 80, 4);
  videostrfcodecfound = anyByteSet(videostrfcodecdata);
}

void RepairFile::harvestAudioHeader(std::uint32_t position) {
  audiocodec = inputfilehandle->readBytes(position + 4, 4);
  // Deliberate: unlike the video handler, an audio handler of four zero bytes counts as found.
  audiocodecfound = true;
  logLine(services_.log, "Audio codec =S");
  audioscaleratedata = inputfilehandle->readBytes(position + 20, 8);
  audioscaledata = inputfilehandle->readBytes(position + 28, 4);
  audiostrfsize = numberIn(inputfilehandle->readBytes(position + 60, 4));
  audiostrfdata = readFormat(position + 64, audiostrfsize);
  audiostrfcodecdata = inputfilehandle->readBytes(position + 80, 4);
  audiostrfcodecfound = anyByteSet(audiostrfcodecdata);
}

FormatPayload RepairFile::readFormat(std::uint32_t position, std::uint64_t size) {
  if (size > FormatPayload::kLargestHeld) return {.held = {}, .rangeOffset = position, .rangeSize = size};
  return {.held = inputfilehandle->readBytes(position, static_cast<std::size_t>(size))};
}

}  // namespace zelvo::engine
