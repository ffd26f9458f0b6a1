#include "salvage/plan/cluster_order.h"

#include <algorithm>
#include <compare>
#include <limits>

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kSmallestCluster = 512;
constexpr std::uint64_t kLargest = std::uint64_t{1} << 20U;
constexpr std::uint32_t kNowhere = std::numeric_limits<std::uint32_t>::max();
/// So many of the headers that moved may contradict: displacements of constant sizes are chance at times.
constexpr std::uint64_t kContradictingPercent = 8;

/// A header that says where its cluster lies.
struct Vote {
  std::uint32_t cluster = 0;  ///< of the original
  std::uint32_t place = 0;

  friend auto operator<=>(const Vote&, const Vote&) = default;
};

bool isExact(const EntryPlaces& places, std::size_t entry) { return places.places[entry].support == Support::exact; }

/// Whether headers stand in another order than in the original, more often than chance makes it.
bool isDisordered(std::span<const TemplateEntry> entries, const EntryPlaces& places) {
  std::int64_t last = std::numeric_limits<std::int64_t>::min();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!isExact(places, i)) continue;
    const std::int64_t header = places.headerOf(i, entries);
    if (header < last) return true;
    last = header;
  }
  return false;
}

/// What the exact headers say of clusters of such a size. `agreeing` becomes how many of them agree with most of their
/// cluster.
std::vector<Vote> votesFor(std::uint64_t size, std::span<const TemplateEntry> entries, const EntryPlaces& places,
                           std::size_t& agreeing) {
  std::vector<Vote> votes;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!isExact(places, i)) continue;
    const std::int64_t displacement = places.displacements[places.places[i].displacement];
    if (displacement % static_cast<std::int64_t>(size) != 0) continue;
    votes.push_back({static_cast<std::uint32_t>(entries[i].offset / size),
                     static_cast<std::uint32_t>(static_cast<std::uint64_t>(places.headerOf(i, entries)) / size)});
  }
  std::ranges::sort(votes);
  // One vote a cluster is left: that of most of its headers.
  agreeing = 0;
  std::vector<Vote> decided;
  for (std::size_t i = 0; i < votes.size();) {
    std::size_t best = i;
    std::size_t most = 0;
    const std::uint32_t cluster = votes[i].cluster;
    while (i < votes.size() && votes[i].cluster == cluster) {
      std::size_t end = i;
      while (end < votes.size() && votes[end] == votes[i]) ++end;
      if (end - i > most) {
        most = end - i;
        best = i;
      }
      i = end;
    }
    agreeing += most;
    decided.push_back(votes[best]);
  }
  return decided;
}

std::vector<std::uint32_t> placesBy(const std::vector<Vote>& votes, std::size_t count) {
  std::vector<std::uint32_t> places(count, kNowhere);
  std::vector<bool> isTaken(count, false);
  for (const Vote& vote : votes) {
    if (vote.cluster >= count || vote.place >= count || isTaken[vote.place]) continue;
    places[vote.cluster] = vote.place;
    isTaken[vote.place] = true;
  }
  for (std::size_t cluster = 0; cluster < count; ++cluster) {
    if (places[cluster] != kNowhere || isTaken[cluster]) continue;
    places[cluster] = static_cast<std::uint32_t>(cluster);
    isTaken[cluster] = true;
  }
  std::size_t free = 0;
  for (std::uint32_t& place : places) {
    if (place != kNowhere) continue;
    while (isTaken[free]) ++free;
    place = static_cast<std::uint32_t>(free);
    isTaken[free] = true;
  }
  return places;
}

}  // namespace

std::vector<Piece> ClusterOrder::piecesOf(std::uint64_t begin, std::uint64_t end, std::uint64_t fileSize) const {
  std::vector<Piece> pieces;
  while (begin < end) {
    const std::uint64_t cluster = begin / size_;
    if (cluster >= places_.size()) break;
    const std::uint64_t stop = std::min(end, (cluster + 1) * size_);
    const std::uint64_t place = places_[cluster] * size_ + begin % size_;
    const std::uint64_t there = std::min(stop - begin, fileSize - std::min(fileSize, place));
    if (there == 0) break;
    if (!pieces.empty() && pieces.back().offset + pieces.back().size == place) {
      pieces.back().size += static_cast<std::uint32_t>(there);
    } else {
      pieces.push_back({place, static_cast<std::uint32_t>(there)});
    }
    begin += there;
    if (begin < stop) break;
  }
  return pieces;
}

std::optional<ClusterOrder> clusterOrder(std::span<const TemplateEntry> entries, const EntryPlaces& places,
                                         std::uint64_t fileSize) {
  if (places.places.empty() || places.displacements.size() < 2 || !isDisordered(entries, places)) return std::nullopt;
  std::size_t exact = 0;
  std::size_t moved = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!isExact(places, i)) continue;
    ++exact;
    if (places.displacements[places.places[i].displacement] != 0) ++moved;
  }
  for (std::uint64_t size = kLargest; size >= kSmallestCluster; size /= 2) {
    std::size_t agreeing = 0;
    const std::vector<Vote> votes = votesFor(size, entries, places, agreeing);
    if ((exact - agreeing) * 100 > moved * kContradictingPercent) continue;
    return ClusterOrder(size, placesBy(votes, static_cast<std::size_t>((fileSize + size - 1) / size)));
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
