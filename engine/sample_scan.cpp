// The sample scan. For every block, unless the run is stopped:
// 1. Tell the progress.
// 2. Find the codes "00db", "00dc" and "01wb" at its 1024 positions.
// 3. Judge each in file order: a size below ten million, and a chunk code behind the payload.
// 4. Record what is accepted.
#include <array>

#include "engine/byte_order.h"
#include "engine/code_finder.h"
#include "engine/fourcc.h"
#include "engine/repair_file.h"
#include "engine/scan_window.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

constexpr std::uint32_t kSmallestRefusedSize = 10000000;

/// The six bytes behind a candidate's payload, of which the first three positions are searched: an odd payload is
/// followed by a pad byte.
/// Deliberate: the buffer is not cleared between candidates, so what the end of the file leaves unread is stale.
class LookAheadBuffer {
 public:
  [[nodiscard]] std::span<std::byte, 6> bytes() { return bytes_; }
  [[nodiscard]] bool holdsCode() const {
    for (std::size_t at = 0; at <= 2; ++at) {
      const FourCC code = FourCC::at(std::span(bytes_).subspan(at));
      if (code == k00dc || code == k01wb || code == k00db || code == kJunk) return true;
    }
    return false;
  }

 private:
  std::array<std::byte, 6> bytes_{};
};

}  // namespace

/// One walk over the input.
class SampleScan {
 public:
  explicit SampleScan(RepairFile& job) : job_(job), window_(*job.inputfilehandle) {}

  void scanBlock(std::uint32_t block, std::uint32_t last) {
    std::size_t positions = ScanWindow::kBlockSize;
    std::size_t ownRead = ScanWindow::kBlockSize + ScanWindow::kReadAhead;
    if (block == last) {
      // Deliberate: of the last block only `mod` bytes count, which is none when the size is a multiple of 1024.
      if (job_.mod == 0) return;
      positions = job_.mod < 4 ? 0 : job_.mod - 3;
      ownRead = job_.mod;
    }
    const std::span<const std::byte> bytes = window_.block(block, last, ownRead);
    finder_.find(bytes, positions, found_);
    for (const std::uint16_t i : found_.positions()) {
      judge(FourCC::at(bytes.subspan(i)), ScanWindow::startOf(block) + i);
    }
  }

 private:
  void judge(FourCC code, std::uint32_t position) {
    // Deliberate: these sums wrap at 32 bits, as block offsets do.
    const std::uint32_t size = window_.numberAt(position + 4);
    job_.videosamplesize = size;
    if (size == 0 || size >= kSmallestRefusedSize) return;
    window_.readLookAhead(position + 8 + size, lookAhead_.bytes());
    if (!lookAhead_.holdsCode()) return;
    if (code == k01wb) {
      record(job_.audiosamplecount, job_.audiosamplesizearray, job_.audiosampleoffsetarray, position, size, "audio");
    } else {
      record(job_.videosamplecount, job_.videosamplesizearray, job_.videosampleoffsetarray, position, size, "video");
    }
  }

  void record(std::uint64_t& count, SampleTable& sizes, SampleTable& offsets, std::uint32_t position,
              std::uint32_t size, std::string_view kind) {
    if (count == kLargestSampleCount) {
      bool& told = kind == "audio" ? audioFullTold_ : videoFullTold_;
      if (!told) logLine(job_.services_.log, "Table full, no more %@ chunks are recorded", kind);
      told = true;
      return;
    }
    ++count;
    sizes[count] = size;
    offsets[count] = position;
  }

  RepairFile& job_;
  ScanWindow window_;
  const CodeFinder finder_;
  FoundCodes found_;
  LookAheadBuffer lookAhead_;
  bool videoFullTold_ = false;
  bool audioFullTold_ = false;
};

void RepairFile::scanSamples() {
  if (stopRequested(*run_)) return;
  SampleScan scan(*this);
  const std::uint32_t last = numberofsectors;
  for (std::uint32_t left = last, block = 1; left != 0; --left, ++block) {
    sector = block;
    if (stopRequested(*run_)) {
      if (run_->cancel->cancelled()) break;  // it stays stopped, so the other blocks would be skipped too
      continue;
    }
    currentoffset = ScanWindow::startOf(block);
    controll->setProgressBarValue(block * 100.0 / last);
    updateProgressBar_.request();
    outlets.textfield.setStringValue("Retrieving audio/ video data forks..");
    scan.scanBlock(block, last);
  }
}

}  // namespace zelvo::engine
