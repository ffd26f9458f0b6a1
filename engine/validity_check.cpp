// The validity check:
// 1. Open the input, and its movie for later.
// 2. Clear what an earlier run found.
// 3. Search the first ten blocks, position by position, for one of the twelve codes; the first found decides.
#include <algorithm>
#include <array>

#include "avi/fourcc.h"
#include "engine/globals.h"
#include "engine/repair_file.h"

namespace zelvo::engine {

using platform::logLine;

namespace {

constexpr std::uint32_t kBlocksSearched = 10;
constexpr std::size_t kBlockSize = avi::InputFile::kBlockSize;

/// The codes, in the order in which they are tried.
constexpr std::array kSignatures = {avi::kRiff, avi::kAvi,  avi::kList, avi::kHdrl, avi::kAvih, avi::kStrl,
                                    avi::kStrh, avi::kIndx, avi::k00db, avi::k00dc, avi::k00wb, avi::kMovi};

}  // namespace

bool RepairFile::fileValidityCheck() {
  validitycheck1 = false;
  video1 = services_.movies.movieWithFile(run_->path.value_or("")).movie;
  inputfilehandle = std::make_unique<avi::InputFile>(services_.files.openForReading(run_->path.value_or("")).file);
  validitycheck = false;
  audiocodecfound = false;
  videocodecfound = false;
  audiostrfcodecfound = false;
  videostrfcodecfound = false;
  avihscaleratedatafound = false;
  db = false;
  if (run_->inputfilesize < kBlockSize) return false;
  countBlocks();

  for (std::uint32_t block = 1; block <= kBlocksSearched; ++block) {
    sector = block;
    logLine(services_.log, "Sector=%i", block);
    // Deliberate: three zero bytes stand behind the block, so a code that runs into the next block is not found.
    std::array<std::byte, kBlockSize + 3> buffer{};
    inputfilehandle->read((block - 1) * kBlockSize, std::span(buffer).first<kBlockSize>());
    for (std::size_t i = 0; i < kBlockSize && !validitycheck; ++i) {
      if (services_.log.tracesPositions()) logLine(services_.log, "i=%i", i);
      if (flag) continue;
      const avi::FourCC code = avi::FourCC::at(std::span(buffer).subspan(i));
      if (std::find(kSignatures.begin(), kSignatures.end(), code) == kSignatures.end()) continue;
      validitycheck = true;
      logLine(services_.log, "Valid AVI file");
      db = code == avi::k00db;
    }
    if (validitycheck) {
      validitycheck1 = true;
      controll->setProgressBarValue(100.0);
      break;
    }
  }
  return validitycheck;
}

}  // namespace zelvo::engine
