/// What the journals of a collection say together. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "salvage/batch_line.h"

namespace zelvo::salvage {

/// How much of a film is lost or hurt, 0 to 1: of its seconds, and all of one that nothing was brought back from.
[[nodiscard]] double lostShare(const BatchLine& line);
/// A figure of a line; 0 when it has none of that name.
[[nodiscard]] double figureOf(const BatchLine& line, std::string_view name);

struct CollectionTotals {
  std::uint64_t films = 0;
  std::uint64_t done = 0;
  std::uint64_t failed = 0;
  std::uint64_t unfinished = 0;  ///< named, and no end is known: the run was cut short, or goes on
  std::uint64_t adopted = 0;
  std::map<std::string, std::uint64_t> outcomes;  ///< by their words
  std::map<std::string, std::uint64_t> verdicts;
  std::uint64_t inputBytes = 0;
  std::uint64_t outputBytes = 0;
  double filmSeconds = 0;
  double lostSeconds = 0;
  double workSeconds = 0;
  std::uint64_t peakMemory = 0;
};

/// Thread: one.
class CollectionSummary {
 public:
  /// Of a film that several lines are about, the last one that says it is done counts, or else the last one.
  void add(BatchLine line);
  /// The films, by their paths.
  [[nodiscard]] std::vector<const BatchLine*> films() const;
  /// The worst first: those that failed, then by how much is lost, then by their paths.
  [[nodiscard]] std::vector<const BatchLine*> worst() const;
  [[nodiscard]] CollectionTotals totals() const;
  [[nodiscard]] bool isFull() const { return lines_.size() >= kMaxFilms; }

  static constexpr std::size_t kMaxFilms = 4'000'000;
  /// Of more films than this no pictures are kept.
  static constexpr std::size_t kMaxPictures = 20'000;

 private:
  std::unordered_map<std::string, BatchLine> lines_;  ///< by command and input
};

}  // namespace zelvo::salvage
