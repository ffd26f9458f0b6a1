/// How far the chunks of a damaged film have moved: a displacement is the offset of a chunk's header in the file less
/// that in the original. Deleted, inserted, doubled and shuffled bytes are all the same problem: find the few
/// displacements that explain where the headers stand. Offsets are in bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "salvage/scan/candidate.h"
#include "salvage/scan/index_template.h"

namespace zelvo::salvage {

/// Bounds of the search, so that no index and no film makes it long.
struct DisplacementLimits {
  std::size_t displacements = 250;
  std::size_t pairs = 500'000;  ///< of an entry and a header that may be its own, held at a time: 16 bytes each

  /// Those for so many bytes: fewer pairs of a short file, so that the time for a file grows with its size.
  [[nodiscard]] static DisplacementLimits ofFile(std::uint64_t bytes) {
    constexpr std::uint64_t kFewest = 100'000;
    constexpr std::uint64_t kBytesEach = 512;
    DisplacementLimits limits;
    limits.pairs =
        std::min(limits.pairs, static_cast<std::size_t>(std::max<std::uint64_t>(kFewest, bytes / kBytesEach)));
    return limits;
  }
};

/// Which headers stand for which entries.
struct DisplacementCover {
  static constexpr std::uint16_t kNone = std::numeric_limits<std::uint16_t>::max();

  std::vector<std::int64_t> values;        ///< in the order in which they were accepted
  std::vector<std::uint16_t> ofEntry;      ///< of each entry whose header stands in the file: a number in `values`
  std::vector<std::uint8_t> isClaimed;     ///< of each candidate: 1 when it is the header of an entry
  std::optional<std::int64_t> endShift{};  ///< what the place of the index itself tells

  /// The smallest clusters that file systems of films have.
  static constexpr std::int64_t kCluster = 4096;
  /// Whether two displacements may come of whole clusters that changed places.
  [[nodiscard]] static bool areAligned(std::int64_t one, std::int64_t other) { return (one - other) % kCluster == 0; }
};

/// Takes back what may be chance: stretches of entries with one displacement that are short or full of holes, as
/// streams of constant sizes match at many a false one. Nothing is taken back from an index that mostly lies in firm
/// stretches, and no entries of which half have a size of their own, unless `isStrict`: then it may be the index of
/// another film.
/// Thread: any.
void dropChance(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
                bool isStrict);

/// Explains as many entries as possible by headers of their stream and size, greedily: the displacement that explains
/// most comes first, and a header that one entry explains supports no other. `indexBegin`: where the table of the index
/// stands, 0 without one. `dataEnd`: where the file ends.
/// Takes up to 13 bytes of memory a candidate and 14 an entry beside the pairs.
/// \pre fewer than eight million entries and as many candidates
/// Thread: any.
[[nodiscard]] DisplacementCover coverEntries(std::span<const TemplateEntry> entries, const CandidateList& candidates,
                                             std::uint64_t indexBegin, std::uint64_t dataEnd,
                                             const DisplacementLimits& limits = {});

}  // namespace zelvo::salvage
