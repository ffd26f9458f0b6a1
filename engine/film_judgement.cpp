// What a run has kept, and why a film is not supported: two judgements of what the stages left in the state.
#include <algorithm>
#include <array>
#include <cmath>

#include "avi/byte_order.h"
#include "avi/codec_names.h"
#include "engine/repair_stages.h"

namespace zelvo::engine {

namespace {

/// As good as all: the last chunk before an index is never found, and lists within the film are not counted.
/// Decision: scan, Good is 99 per cent of the film's range
constexpr double kGoodShare = 0.99;
constexpr double kLongestPicture = 10;     // seconds
constexpr double kShortestPicture = 1e-3;  // seconds
constexpr std::uint32_t kBitmapHeaderSize = 40;

std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset) {
  return bytes.size() < offset + 4 ? 0 : avi::loadLittleEndian32(bytes.subspan(offset).first<4>());
}

bool isPictureLength(double seconds) { return seconds >= kShortestPicture && seconds <= kLongestPicture; }

/// dwScale / dwRate; 0 when the file does not say so.
double secondsEach(std::span<const std::byte> scaleAndRate) {
  const std::uint32_t rate = numberAt(scaleAndRate, 4);
  return rate == 0 ? 0.0 : static_cast<double>(numberAt(scaleAndRate, 0)) / rate;
}

}  // namespace

void findFilmRange(RepairState& state, const RepairContext& run) {
  state.filmRange = filmRange(run.input, state.tally);
}

platform::FilmReport filmReportOf(const RepairState& state, const RepairContext& run) {
  const avi::ReadFailures failures = run.input.failures();
  platform::FilmReport report;
  report.pictures = state.tally.pictures();
  report.blankPictures = state.tally.blankPictures();
  report.soundChunks = state.tally.soundChunks();
  report.share = keptShare(state.tally, state.filmRange, failures.bytes);
  report.failedReads = failures.count;
  report.unreadableBytes = failures.bytes;
  report.firstUnreadable = failures.firstOffset;

  double each = secondsEach(state.videoscaleratedata);
  if (!isPictureLength(each)) each = numberAt(state.avihdata1, 4) / 1e6;  // dwMicroSecPerFrame
  if (isPictureLength(each)) report.pictureSeconds = each * static_cast<double>(report.pictures);
  if (const std::uint32_t perSecond = numberAt(state.audiostrfdata.held, 8)) {  // nAvgBytesPerSec
    report.soundSeconds = static_cast<double>(state.tally.soundBytes()) / perSecond;
  }

  std::string_view video = avi::videoCodecName(state.videocodec);
  if (video.empty()) video = avi::videoCodecName(state.videostrfcodecdata);
  report.videoCodec = video;
  report.audioCodec = avi::audioFormatName(std::span<const std::byte>(state.audiostrfdata.held));

  const bool isWhole = report.soundChunks > 0 && report.share >= kGoodShare && report.failedReads == 0;
  if (report.pictures == 0) {
    report.verdict = platform::FilmVerdict::nothing;
  } else {
    report.verdict = isWhole ? platform::FilmVerdict::good : platform::FilmVerdict::partly;
  }
  return report;
}

platform::Rejection rejectionOf(const RepairState& state, const RepairContext& run) {
  using platform::Rejection;
  if (run.stopRequested()) return Rejection::stopped;
  if (state.allHeadersFound()) return Rejection::tooSmall;
  if (run.input.failures().count > 0) return Rejection::unreadable;
  if (!state.avihscaleratedatafound || !state.videocodecfound) return Rejection::headerLost;
  const bool hasSound = state.audiocodecfound && state.audiostrfcodecfound;
  if (state.videostrfcodecfound) return Rejection::noSound;
  const bool isWhole = state.videostrfdata.held.size() >= kBitmapHeaderSize &&
                       numberAt(state.videostrfdata.held, 0) >= kBitmapHeaderSize;
  return hasSound && isWhole ? Rejection::uncompressed : Rejection::headerLost;
}

}  // namespace zelvo::engine
