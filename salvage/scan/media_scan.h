/// One pass over a film's bytes that finds every place where a chunk may begin and every index. Codes inside an index
/// are no candidates. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "avi/input_file.h"
#include "platform/workers.h"
#include "salvage/scan/byte_span.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/index_places.h"
#include "salvage/scan/stream_codes.h"

namespace zelvo::salvage {

/// The smallest unit that disks lose.
inline constexpr std::uint64_t kSector = 512;

/// How much a scan reads at a time and remembers, so that no input takes more memory than these say.
struct ScanLimits {
  std::size_t windowSize = std::size_t{1} << 18U;  ///< in whole pages of 4096, at least two
  /// Of 16 bytes each; fewer for a short file, see `candidatesOf`. When there are more, those that close on nothing and
  /// that nothing closes on are dropped; when that makes too little room, later ones are left out.
  std::size_t candidates = 3'000'000;
  std::size_t indexes = 65'536;  ///< tables and standard indexes, each; later ones are masked but not remembered
  std::size_t unreadable = 65'536;
  std::size_t zeroed = 65'536;  ///< stretches of zeros; later ones are not remembered

  /// How many candidates are kept of so many bytes: short of the limit, as many as make a whole film of chunks of 120
  /// bytes and an eighth of a million more, so that the time for a file grows with its size, whatever it holds.
  [[nodiscard]] std::size_t candidatesOf(std::uint64_t bytes) const;
};

struct MediaScan {
  CandidateList candidates;
  std::vector<IndexTable> tables;              ///< rising
  std::vector<StandardIndex> standardIndexes;  ///< rising
  std::vector<ByteSpan> unreadable;            ///< rising, apart from one another
  /// Stretches of whole sectors of `kSector` that hold zeros alone: rising, apart from one another.
  std::vector<ByteSpan> zeroed;
  /// What a rescue map says was not rescued; zeros stand there. Rising, apart; may reach beyond the end of the file.
  std::vector<ByteSpan> unrescued;
  std::uint64_t unreadableBytes = 0;  ///< also of stretches that are not remembered
  std::uint64_t leftOut = 0;          ///< candidates and indexes that found no room
  std::uint64_t dropped = 0;          ///< candidates that made room for others
  std::uint64_t end = 0;              ///< after the last byte that was looked at
  bool isComplete = false;            ///< false when `isEnding` ended it

  /// Where chunks may end though no candidate begins there: in front of each table.
  [[nodiscard]] std::vector<std::uint64_t> chunkEnds() const;
};

/// Scans from `begin` to the end of the file. Each byte is read once, but for the little that windows and tables share.
/// A code counts when `codes` has it; a table of another film's codes is recognised all the same.
/// `isEnding` is asked before each window and ends the scan. A helper of `workers` shares the reading; null for none.
/// Failure: what cannot be read is skipped in steps of 4096 bytes and remembered, by the input too.
/// Thread: any.
[[nodiscard]] MediaScan scanMedia(avi::InputFile& input, std::uint64_t begin, const StreamCodes& codes,
                                  const std::function<bool()>& isEnding, const ScanLimits& limits = {},
                                  platform::Workers* workers = nullptr);

}  // namespace zelvo::salvage
