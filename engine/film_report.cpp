// What a run has kept, and why a film is not supported: two judgements of what the stages left in the job.
#include <algorithm>
#include <array>
#include <cmath>

#include "avi/codec_names.h"
#include "engine/byte_order.h"
#include "engine/repair_file.h"

namespace zelvo::engine {

namespace {

/// As good as all: the last chunk before an index is never found, and lists within the film are not counted.
/// Decision: scan, Good is 99 per cent of the film's range
constexpr double kGoodShare = 0.99;
constexpr double kLongestPicture = 10;     // seconds
constexpr double kShortestPicture = 1e-3;  // seconds
constexpr std::uint32_t kBitmapHeaderSize = 40;

std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset) {
  return bytes.size() < offset + 4 ? 0 : loadLittleEndian32(bytes.subspan(offset).first<4>());
}

bool isPictureLength(double seconds) { return seconds >= kShortestPicture && seconds <= kLongestPicture; }

/// dwScale / dwRate; 0 when the file does not say so.
double secondsEach(std::span<const std::byte> scaleAndRate) {
  const std::uint32_t rate = numberAt(scaleAndRate, 4);
  return rate == 0 ? 0.0 : static_cast<double>(numberAt(scaleAndRate, 0)) / rate;
}

}  // namespace

void RepairFile::tellFound() {
  const ReadFailures failures = inputfilehandle->failures();
  platform::FilmReport report;
  report.pictures = tally_.pictures();
  report.blankPictures = tally_.blankPictures();
  report.soundChunks = tally_.soundChunks();
  report.share = keptShare(tally_, filmRange_, failures.bytes);
  report.failedReads = failures.count;
  report.unreadableBytes = failures.bytes;
  report.firstUnreadable = failures.firstOffset;

  double each = secondsEach(videoscaleratedata);
  if (!isPictureLength(each)) each = numberAt(avihdata1, 4) / 1e6;  // dwMicroSecPerFrame
  if (isPictureLength(each)) report.pictureSeconds = each * static_cast<double>(report.pictures);
  if (const std::uint32_t perSecond = numberAt(audiostrfdata.held, 8)) {  // nAvgBytesPerSec
    report.soundSeconds = static_cast<double>(tally_.soundBytes()) / perSecond;
  }

  std::string_view video = avi::videoCodecName(videocodec);
  if (video.empty()) video = avi::videoCodecName(videostrfcodecdata);
  report.videoCodec = video;
  report.audioCodec = avi::audioFormatName(std::span<const std::byte>(audiostrfdata.held));

  const bool isWhole = report.soundChunks > 0 && report.share >= kGoodShare && report.failedReads == 0;
  if (report.pictures == 0) {
    report.verdict = platform::FilmVerdict::nothing;
  } else {
    report.verdict = isWhole ? platform::FilmVerdict::good : platform::FilmVerdict::partly;
  }
  filmReport.set(report);
  if (run_->found) run_->found(report);
}

platform::Rejection RepairFile::rejection() const {
  using platform::Rejection;
  if (stopRequested(*run_)) return Rejection::stopped;
  if (allHeadersFound()) return Rejection::tooSmall;
  if (inputfilehandle->failures().count > 0) return Rejection::unreadable;
  if (!avihscaleratedatafound || !videocodecfound) return Rejection::headerLost;
  const bool hasSound = audiocodecfound && audiostrfcodecfound;
  if (videostrfcodecfound) return Rejection::noSound;
  const bool isWhole =
      videostrfdata.held.size() >= kBitmapHeaderSize && numberAt(videostrfdata.held, 0) >= kBitmapHeaderSize;
  return hasSound && isWhole ? Rejection::uncompressed : Rejection::headerLost;
}

}  // namespace zelvo::engine
