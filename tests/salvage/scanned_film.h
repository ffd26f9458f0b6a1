/// A film in memory, taken through the first stages of a salvage.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "avi/input_file.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/media_scan.h"
#include "salvage/scan/stream_codes.h"
#include "salvage/scan/surviving_headers.h"
#include "tests/support/avi_builder.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

/// Thread: one.
struct ScannedFilm {
  explicit ScannedFilm(platform::Bytes bytes) {
    files.put("/in.avi", std::move(bytes));
    input = std::make_unique<avi::InputFile>(files.openForReading("/in.avi").file);
  }
  /// Headers, scan and chain, with the limits as they are set.
  ScannedFilm& run() {
    headers = salvage::survivingHeaders(*input);
    codes = salvage::StreamCodes(headers);
    return scanFrom(headers.mediaBegin());
  }
  /// Scan and chain alone.
  ScannedFilm& scanFrom(std::uint64_t begin) {
    scan = salvage::scanMedia(
        *input, begin, codes, [] { return false; }, limits);
    chain = salvage::linkChunks(scan.candidates, scan.chunkEnds(), scan.end);
    return *this;
  }
  [[nodiscard]] MemoryFile& file() { return files.at("/in.avi"); }
  /// Offsets of the candidates that are a stream's chunks.
  [[nodiscard]] std::vector<std::uint64_t> chunks() const {
    std::vector<std::uint64_t> offsets;
    for (std::size_t i = 0; i < scan.candidates.size(); ++i) {
      if (scan.candidates[i].kind() == salvage::CandidateKind::data) offsets.push_back(scan.candidates[i].offset());
    }
    return offsets;
  }
  /// Of these, those whose ends are proved.
  [[nodiscard]] std::vector<std::uint64_t> trusted() const {
    std::vector<std::uint64_t> offsets;
    for (std::size_t i = 0; i < scan.candidates.size(); ++i) {
      if (scan.candidates[i].kind() == salvage::CandidateKind::data && chain.closes(i))
        offsets.push_back(scan.candidates[i].offset());
    }
    return offsets;
  }
  /// The number of the candidate at `offset`; `ChunkChain::kNone` without one.
  [[nodiscard]] std::size_t numberAt(std::uint64_t offset) const {
    std::uint64_t looks = 0;
    const std::size_t found = scan.candidates.firstAtOrAfter(offset, 0, looks);
    return found < scan.candidates.size() && scan.candidates[found].offset() == offset ? found
                                                                                       : salvage::ChunkChain::kNone;
  }

  MemoryFiles files;
  std::unique_ptr<avi::InputFile> input;
  salvage::ScanLimits limits;
  salvage::SurvivingHeaders headers;
  salvage::StreamCodes codes;
  salvage::MediaScan scan;
  salvage::ChunkChain chain;
};

/// Where the chunks of a film that AviBuilder built lie.
[[nodiscard]] inline std::vector<std::uint64_t> chunkOffsets(const AviBuilder& film) {
  std::vector<std::uint64_t> offsets;
  std::uint64_t at = film.headers().size() + 12;
  for (const AviChunk& chunk : film.chunks) {
    offsets.push_back(at);
    at += 8 + chunk.size + chunk.size % 2;
  }
  return offsets;
}

/// Overwrites the four bytes at `offset` with a little-endian number.
inline void overwriteNumber(platform::Bytes& bytes, std::size_t offset, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) bytes[offset + i] = static_cast<std::byte>(number >> 8 * i & 0xffU);
}

}  // namespace zelvo::tests
