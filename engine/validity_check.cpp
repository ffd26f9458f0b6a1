// The validity check:
// 1. Clear what an earlier run found.
// 2. Search the first ten blocks, position by position, for one of the twelve codes; the first found decides.
#include <algorithm>
#include <array>

#include "avi/fourcc.h"
#include "engine/low32.h"
#include "engine/repair_stages.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

constexpr std::uint32_t kBlocksSearched = 10;
constexpr std::size_t kBlockSize = avi::InputFile::kBlockSize;

/// The codes, in the order in which they are tried.
constexpr std::array kSignatures = {avi::kRiff, avi::kAvi,  avi::kList, avi::kHdrl, avi::kAvih, avi::kStrl,
                                    avi::kStrh, avi::kIndx, avi::k00db, avi::k00dc, avi::k00wb, avi::kMovi};

}  // namespace

void countBlocks(RepairState& state, std::uint64_t inputfilesize) {
  state.mod = static_cast<std::uint32_t>(inputfilesize % kBlockSize);
  std::uint64_t blocks = inputfilesize / kBlockSize;
  if (inputfilesize <= kBlockSize) {
    blocks = 1;
  } else if (state.mod != 0) {
    ++blocks;
  }
  state.numberofsectors = low32(blocks);
}

bool checkValidity(RepairState& state, const RepairContext& run, bool testsCodes) {
  platform::Log& log = run.observer.log();
  run.observer.stage(RepairStage::recognising);
  state.validitycheck = false;
  state.audiocodecfound = false;
  state.videocodecfound = false;
  state.audiostrfcodecfound = false;
  state.videostrfcodecfound = false;
  state.avihscaleratedatafound = false;
  state.db = false;
  if (run.inputfilesize < kBlockSize) return false;
  countBlocks(state, run.inputfilesize);

  for (std::uint32_t block = 1; block <= kBlocksSearched; ++block) {
    state.sector = block;
    logLine(log, "Sector=%i", block);
    // Deliberate: three zero bytes stand after the block, so a code that runs into the next block is not found.
    std::array<std::byte, kBlockSize + 3> buffer{};
    run.input.read((block - 1) * kBlockSize, std::span(buffer).first<kBlockSize>());
    for (std::size_t i = 0; i < kBlockSize && !state.validitycheck; ++i) {
      if (log.tracesPositions()) logLine(log, "i=%i", i);
      if (!testsCodes) continue;
      const auto code = avi::FourCC::at(std::span(buffer).subspan(i));
      if (std::find(kSignatures.begin(), kSignatures.end(), code) == kSignatures.end()) continue;
      state.validitycheck = true;
      logLine(log, "Valid AVI file");
      state.db = code == avi::k00db;
    }
    if (state.validitycheck) {
      run.observer.recognised();
      break;
    }
  }
  return state.validitycheck;
}

}  // namespace zelvo::engine
