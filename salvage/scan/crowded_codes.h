/// Thins out candidates where they stand closer together than a film's chunks do: bytes full of codes would take the
/// time and the room of all that is true. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "salvage/scan/candidate.h"

namespace zelvo::salvage {

/// Looks at one region of the file after the other. In a block with more than `kMostInBlock` candidates those stay that
/// a chain within the region leads through, each closing on the next; of several that close on one the end of the
/// longest chain. Blocks of fewer lose nothing.
/// Thread: one.
class CrowdedCodes {
 public:
  static constexpr std::uint64_t kRegion = std::uint64_t{1} << 20U;
  static constexpr std::uint64_t kBlock = std::uint64_t{1} << 16U;
  static constexpr std::size_t kMostInBlock = 1024;

  /// Thins `candidates` from number `first` on, all of which lie in one region, and answers how many went. O(n) in
  /// time; takes some 15 bytes of memory a candidate of the region.
  std::size_t thin(CandidateList& candidates, std::size_t first);

 private:
  static constexpr std::size_t kBlocks = kRegion / kBlock;

  [[nodiscard]] std::uint32_t at(std::uint64_t offset) const;
  void mark(const CandidateList& candidates, std::size_t first);
  void link(const CandidateList& candidates, std::size_t first);

  /// Of a candidate of the region, by its number there.
  struct Place {
    std::uint32_t before = 0;  ///< the one that closes on it and ends the longest chain
    std::uint32_t depth = 0;   ///< so many lie in front of it in its chain
    bool leadsOn = false;      ///< closes on another of the region
    bool stays = false;
  };

  std::uint64_t region_ = 0;  ///< where it begins
  std::array<std::size_t, kBlocks> counts_{};
  std::vector<std::uint64_t> bits_;    ///< of each byte of the region whether a candidate begins there
  std::vector<std::uint32_t> firsts_;  ///< of each word of `bits_` the number of its first candidate
  std::vector<Place> places_;
};

}  // namespace zelvo::salvage
