// Clusters of a disk in the wrong order.
#include "salvage/plan/cluster_order.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using salvage::clusterOrder;
using salvage::EntryPlaces;
using salvage::Piece;
using salvage::Support;
using salvage::TemplateEntry;
using Pieces = std::vector<Piece>;

constexpr std::uint64_t kMovedCluster = 4096;

/// A film of chunks of 1024 bytes with their headers; `placeOf` answers where each of its clusters lies.
struct Moved {
  template <class PlaceOf>
  Moved(std::size_t clusters, const PlaceOf& placeOf) : fileSize(clusters * kMovedCluster) {
    for (std::uint64_t at = 256; at + 1024 <= fileSize; at += 1024) {
      TemplateEntry entry;
      entry.offset = at;
      entry.size = 1016;
      entries.push_back(entry);
      const auto cluster = static_cast<std::int64_t>(at / kMovedCluster);
      const std::int64_t by = (placeOf(cluster) - cluster) * static_cast<std::int64_t>(kMovedCluster);
      const auto known = std::ranges::find(places.displacements, by);
      places.places.push_back({static_cast<std::uint16_t>(known - places.displacements.begin()), Support::exact});
      if (known == places.displacements.end()) places.displacements.push_back(by);
    }
  }

  std::vector<TemplateEntry> entries;
  EntryPlaces places;
  std::uint64_t fileSize;
};

std::int64_t swapped(std::int64_t cluster) {
  if (cluster == 2) return 5;
  return cluster == 5 ? 2 : cluster;
}

TEST(ClusterOrder, OfAFilmInOrderIsNone) {
  const Moved film(10, [](std::int64_t cluster) { return cluster; });
  EXPECT_FALSE(clusterOrder(film.entries, film.places, film.fileSize));
}

TEST(ClusterOrder, OfAFilmWithMissingBytesIsNone) {
  Moved film(10, [](std::int64_t cluster) { return cluster; });
  film.places.displacements.push_back(-300);
  for (std::size_t i = 20; i < film.places.places.size(); ++i) film.places.places[i].displacement = 1;
  EXPECT_FALSE(clusterOrder(film.entries, film.places, film.fileSize));
}

TEST(ClusterOrder, TellsWhereThePiecesOfAPayloadLie) {
  const Moved film(10, swapped);
  const auto order = clusterOrder(film.entries, film.places, film.fileSize);
  ASSERT_TRUE(order);
  EXPECT_EQ(order->piecesOf(100, 300, film.fileSize), (Pieces{{100, 200}}));
  EXPECT_EQ(order->piecesOf(2 * kMovedCluster - 50, 2 * kMovedCluster + 60, film.fileSize),
            (Pieces{{2 * kMovedCluster - 50, 50}, {5 * kMovedCluster, 60}}));
  EXPECT_EQ(order->piecesOf(5 * kMovedCluster + 10, 6 * kMovedCluster + 10, film.fileSize),
            (Pieces{{2 * kMovedCluster + 10, kMovedCluster - 10}, {6 * kMovedCluster, 10}}));
}

TEST(ClusterOrder, PiecesEndWithTheFile) {
  const Moved film(10, swapped);
  const auto order = clusterOrder(film.entries, film.places, film.fileSize);
  ASSERT_TRUE(order);
  EXPECT_EQ(order->piecesOf(9 * kMovedCluster, 11 * kMovedCluster, 9 * kMovedCluster + 100),
            (Pieces{{9 * kMovedCluster, 100}}));
  EXPECT_TRUE(order->piecesOf(20 * kMovedCluster, 21 * kMovedCluster, film.fileSize).empty());
}

TEST(ClusterOrder, ClusterWithoutAHeaderFillsTheFreePlace) {
  Moved film(10, swapped);
  // Nothing is known of cluster 5, whose place cluster 2 took.
  for (std::size_t i = 0; i < film.entries.size(); ++i) {
    if (film.entries[i].offset / kMovedCluster == 5) film.places.places[i].support = Support::none;
  }
  const auto order = clusterOrder(film.entries, film.places, film.fileSize);
  ASSERT_TRUE(order);
  EXPECT_EQ(order->piecesOf(5 * kMovedCluster, 5 * kMovedCluster + 10, film.fileSize),
            (Pieces{{2 * kMovedCluster, 10}}));
}

}  // namespace
}  // namespace zelvo::tests
