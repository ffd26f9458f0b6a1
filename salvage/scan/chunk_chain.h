/// Which possible chunk headers close on one another: offset + 8 + size is another header. Two headers that do so by
/// chance are rare, so this is the strongest evidence for a chunk that needs no index.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "salvage/scan/candidate.h"

namespace zelvo::salvage {

/// What is known of one candidate's place in the chain, as bits.
enum class ChainFact : std::uint8_t {
  closesOnCandidate = 1,  ///< its padded end is a candidate
  closesUnpadded = 2,     ///< its size is odd, and its end without the pad byte is a candidate
  closesOnEnd = 4,        ///< its padded end is the end of a list, of the data, or where an index begins
  isClosedOn = 8,         ///< the padded end of an earlier candidate is this one
  exceedsData = 16,       ///< its payload ends beyond the data
};

/// The facts of each candidate of a list, by its number.
class ChunkChain {
 public:
  static constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

  [[nodiscard]] bool is(std::size_t number, ChainFact fact) const {
    return (facts_[number] & static_cast<std::uint8_t>(fact)) != 0;
  }
  /// The candidate that it closes on, with the pad byte rather than without; `kNone` without one.
  [[nodiscard]] std::uint32_t next(std::size_t number) const { return next_[number]; }
  /// Whether its end is proved, with the pad byte that its size asks for.
  [[nodiscard]] bool closes(std::size_t number) const {
    return is(number, ChainFact::closesOnCandidate) || is(number, ChainFact::closesOnEnd);
  }
  [[nodiscard]] std::size_t size() const { return facts_.size(); }
  /// Keeps the facts alone; `next` may not be asked any more.
  void forgetLinks() { next_ = std::vector<std::uint32_t>(); }
  /// How many candidates were looked at: near linear, whatever they are.
  [[nodiscard]] std::uint64_t looks() const { return looks_; }

 private:
  friend ChunkChain linkChunks(const CandidateList&, std::span<const std::uint64_t>, std::uint64_t);

  std::vector<std::uint32_t> next_;
  std::vector<std::uint8_t> facts_;
  std::uint64_t looks_ = 0;
};

/// Links the candidates of a film whose data end at `dataEnd`. `otherEnds`, in any order: offsets where a chunk may end
/// though no candidate begins there, such as those of indexes whose header is lost. O(c log c) in time; takes five
/// bytes of memory a candidate, and eight a list.
/// \pre fewer candidates than `ChunkChain::kNone`
/// Thread: any.
[[nodiscard]] ChunkChain linkChunks(const CandidateList& candidates, std::span<const std::uint64_t> otherEnds,
                                    std::uint64_t dataEnd);

}  // namespace zelvo::salvage
