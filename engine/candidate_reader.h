/// Reads stretches of the input and finds the places that may be chunks, with everything that judging them takes. It
/// keeps no state that an answer depends on, so stretches can be read in any order and side by side.
/// Offsets and sizes are in bytes; blocks are 1024 bytes, numbered from 1.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "avi/fourcc.h"
#include "avi/input_file.h"
#include "engine/code_finder.h"
#include "engine/scan_window.h"

namespace zelvo::engine {

/// A place where the code of a data chunk stands.
struct Candidate {
  static constexpr std::uint32_t kSmallestRefusedSize = 10000000;

  std::uint32_t block = 0;
  std::uint16_t inBlock = 0;  ///< 0 to 1023
  /// How many bytes of `lookAhead` could be read; none when the size is refused or `found` tells what they hold.
  std::uint8_t lookAheadCount = 0;
  std::array<std::byte, kLookAheadSize> lookAhead;  ///< what lies after the payload
  std::optional<LookAheadFind> found;               ///< what all of the look-ahead holds, where that is known already
  bool isBlank = false;                             ///< a picture of nothing but zero bytes
  avi::FourCC code;
  std::uint32_t size = 0;  ///< the size field

  [[nodiscard]] bool sizeIsRefused() const { return size == 0 || size >= kSmallestRefusedSize; }
  /// Deliberate: computed in 32 bits, as block offsets are.
  [[nodiscard]] std::uint32_t position() const { return ScanWindow::startOf(block) + inBlock; }
  /// Deliberate: so is where the payload ends.
  [[nodiscard]] std::uint32_t payloadEnd() const { return position() + 8 + size; }
};

/// Reads of one block and its candidates that failed.
struct BlockFailures {
  std::uint32_t block = 0;
  avi::ReadFailures failures;
};

/// What a stretch holds, in file order.
struct StretchContent {
  std::vector<Candidate> candidates;
  std::vector<BlockFailures> failures;
};

/// A run of blocks.
struct Stretch {
  static constexpr std::uint32_t kBlocks = ScanWindow::kBlocks;
  std::uint32_t firstBlock = 1;
  std::uint32_t blocks = 0;
};

/// Thread: one; each thread has a reader of its own.
class CandidateReader {
 public:
  /// `last` is the number of the input's last block, `mod` how many of its bytes count.
  CandidateReader(avi::InputFile& input, std::uint32_t last, std::uint32_t mod)
      : window_(input), last_(last), mod_(mod) {}

  /// Replaces `content` by that of the stretch.
  void read(const Stretch& stretch, StretchContent& content);

 private:
  void readBlock(std::uint32_t block, std::vector<Candidate>& candidates);

  ScanWindow window_;
  CodeFinder finder_;
  FoundCodes found_;
  std::uint32_t last_;
  std::uint32_t mod_;
};

}  // namespace zelvo::engine
