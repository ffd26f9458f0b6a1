/// Whole clusters of a disk that a file was put together from in the wrong order. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "salvage/chain/entry_places.h"
#include "salvage/plan/film_plan.h"
#include "salvage/scan/index_template.h"

namespace zelvo::salvage {

/// Where each cluster of the original lies in the file.
class ClusterOrder {
 public:
  ClusterOrder(std::uint64_t size, std::vector<std::uint32_t> places) : size_(size), places_(std::move(places)) {}

  /// A power of two.
  [[nodiscard]] std::uint64_t clusterSize() const { return size_; }
  /// Where the bytes of the original from `begin` to `end` lie: pieces in order, joined where they follow on one
  /// another. Fewer bytes where the file does not have them.
  [[nodiscard]] std::vector<Piece> piecesOf(std::uint64_t begin, std::uint64_t end, std::uint64_t fileSize) const;

 private:
  std::uint64_t size_;
  std::vector<std::uint32_t> places_;  ///< of each cluster of the original, in clusters
};

/// The order that the displacements of the entries tell, when clusters changed places: nearly all displacements are
/// multiples of the cluster size, and headers stand in another order than in the original. A cluster in which no header
/// was found stays where it was unless its place is taken; the rest fill the free places.
/// Thread: any.
[[nodiscard]] std::optional<ClusterOrder> clusterOrder(std::span<const TemplateEntry> entries,
                                                       const EntryPlaces& places, std::uint64_t fileSize);

}  // namespace zelvo::salvage
