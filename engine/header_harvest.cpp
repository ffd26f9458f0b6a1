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
#include "engine/repair_stages.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

constexpr std::uint32_t kBlocksHarvested = 50;
constexpr std::size_t kBlockSize = avi::InputFile::kBlockSize;
constexpr std::size_t kLookAhead = 2048;

bool anyByteSet(std::span<const std::byte> bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](std::byte byte) { return byte != std::byte{0}; });
}

/// The number in up to four bytes; those that the file no longer had count as zero.
/// Decision: scan, Missing size bytes count as zero
std::uint64_t numberIn(const platform::Bytes& bytes) {
  std::array<std::byte, 4> padded{};
  std::copy(bytes.begin(), bytes.end(), padded.begin());
  return avi::loadLittleEndian32(padded);
}

/// Copies what stands after each code into the state.
class Harvest {
 public:
  Harvest(RepairState& state, const RepairContext& run) : state_(state), run_(run) {}

  /// `code`: the four bytes at `position`.
  void take(std::span<const std::byte> code, std::uint32_t position) {
    const auto found = avi::FourCC::at(code);
    if (found == avi::kAvih) {
      takeMainHeader(position);
    } else if (found == avi::kVids) {
      takeVideoHeader(position);
    } else if (found == avi::kAuds) {
      takeAudioHeader(position);
    }
  }

 private:
  void takeMainHeader(std::uint32_t position);
  void takeVideoHeader(std::uint32_t position);
  void takeAudioHeader(std::uint32_t position);
  [[nodiscard]] FormatPayload formatAt(std::uint32_t position, std::uint64_t size) {
    if (size > FormatPayload::kLargestHeld) return {.held = {}, .rangeOffset = position, .rangeSize = size};
    return {.held = run_.input.readBytes(position, static_cast<std::size_t>(size))};
  }
  [[nodiscard]] platform::Log& log() const { return run_.observer.log(); }

  RepairState& state_;
  const RepairContext& run_;
};

void Harvest::takeMainHeader(std::uint32_t position) {
  state_.avihdata1 = run_.input.readBytes(position + 4, 20);
  // Only the low 16 bits of the size field are looked at.
  state_.avihscaleratedatafound =
      anyByteSet(std::span(state_.avihdata1).first(std::min<std::size_t>(2, state_.avihdata1.size())));
  if (!state_.avihscaleratedatafound) logLine(log(), "NOT FOUND");
  state_.avihdata2 = run_.input.readBytes(position + 28, 36);
}

void Harvest::takeVideoHeader(std::uint32_t position) {
  state_.videocodec = run_.input.readBytes(position + 4, 4);
  const std::string text = avi::codecText(state_.videocodec);
  state_.videocodecstring.set(text);
  run_.observer.videoCodec(text);
  logLine(log(), "videocodecstring=%@", state_.videocodecstring.get());
  state_.videocodecfound = anyByteSet(state_.videocodec);
  if (state_.videocodecfound) logLine(log(), "Video codec =S");
  state_.videoscaleratedata = run_.input.readBytes(position + 20, 8);
  state_.videoscaledata = run_.input.readBytes(position + 28, 4);
  state_.videostrfsize = numberIn(run_.input.readBytes(position + 60, 4));
  state_.videostrfdata = formatAt(position + 64, state_.videostrfsize);
  state_.videostrfcodecdata = run_.input.readBytes(position + 80, 4);
  state_.videostrfcodecfound = anyByteSet(state_.videostrfcodecdata);
}

void Harvest::takeAudioHeader(std::uint32_t position) {
  state_.audiocodec = run_.input.readBytes(position + 4, 4);
  // Deliberate: unlike the video handler, an audio handler of four zero bytes counts as found.
  state_.audiocodecfound = true;
  logLine(log(), "Audio codec =S");
  state_.audioscaleratedata = run_.input.readBytes(position + 20, 8);
  state_.audioscaledata = run_.input.readBytes(position + 28, 4);
  state_.audiostrfsize = numberIn(run_.input.readBytes(position + 60, 4));
  state_.audiostrfdata = formatAt(position + 64, state_.audiostrfsize);
  state_.audiostrfcodecdata = run_.input.readBytes(position + 80, 4);
  state_.audiostrfcodecfound = anyByteSet(state_.audiostrfcodecdata);
}

}  // namespace

bool harvestHeaders(RepairState& state, const RepairContext& run) {
  platform::Log& log = run.observer.log();
  logLine(log, "Audio video samples called");
  state.videosamplesize = 0;
  state.videosamplecount = 0;
  state.audiosamplecount = 0;
  state.audiosamplesize = 0;
  state.samplesleftout = 0;
  state.videosampleoffset = 0;
  state.audiosampleoffset = 0;
  state.sector = 1;
  countBlocks(state, run.inputfilesize);
  state.currentoffset = 0;

  Harvest harvest(state, run);
  const std::uint32_t lastBlock = run.stopRequested() ? 0 : kBlocksHarvested;
  for (std::uint32_t block = 1; block <= lastBlock; ++block) {
    state.sector = block;
    if (run.stopRequested()) continue;
    std::array<std::byte, kBlockSize + kLookAhead> buffer{};
    state.currentoffset = (block - 1) * std::uint64_t{kBlockSize};
    // Deliberate: the last block of the harvest, not that of the file, is read only as far as the file's last block
    // would be. The values after a code found in it are read without that limit.
    // Decision: scan, The last block is cut, values are not
    const std::size_t wanted = block == kBlocksHarvested ? state.mod : buffer.size();
    run.input.read(state.currentoffset, std::span(buffer).first(wanted));
    run.observer.stage(RepairStage::readingHeaders);
    for (std::uint32_t i = 0; i < kBlockSize; ++i) {
      run.observer.progress(block, kBlocksHarvested);
      harvest.take(std::span(buffer).subspan(i, 4), (block - 1) * std::uint32_t{kBlockSize} + i);
    }
    if (state.allHeadersFound() && run.inputfilesize > kLargestUnsupported) {
      run.observer.headersFound();
      logLine(log, "Break");
      break;
    }
  }
  return state.allHeadersFound() && run.inputfilesize > kLargestUnsupported;
}

}  // namespace zelvo::engine
