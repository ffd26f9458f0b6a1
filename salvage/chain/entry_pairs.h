/// Entries of an index and headers, packed for sorting and joining millions of them.
#pragma once

#include <cstdint>

#include "salvage/scan/candidate.h"

namespace zelvo::salvage {

/// An entry and a header that may be its own; sorted by displacement and entry.
class Pair {
 public:
  Pair(std::int64_t displacement, std::uint32_t entry, std::uint32_t candidate)
      : key_(static_cast<std::uint64_t>(displacement + kBias) << kEntryBits | entry), candidate_(candidate) {}

  [[nodiscard]] std::int64_t displacement() const { return static_cast<std::int64_t>(key_ >> kEntryBits) - kBias; }
  [[nodiscard]] std::uint32_t entry() const {
    return static_cast<std::uint32_t>(key_ & ((std::uint64_t{1} << kEntryBits) - 1));
  }
  [[nodiscard]] std::uint32_t candidate() const { return candidate_; }
  /// Displacement and entry in one: what pairs are sorted by.
  [[nodiscard]] std::uint64_t key() const { return key_; }

 private:
  static constexpr unsigned kEntryBits = 23;
  static constexpr auto kBias = static_cast<std::int64_t>(Candidate::kOffsetLimit);

  std::uint64_t key_;
  std::uint32_t candidate_;
};

/// An entry or a header by stream, size and number, so that sorted ones of one stream and size are together.
class Keyed {
 public:
  static constexpr unsigned kNumberBits = 24;

  Keyed(std::uint8_t stream, std::uint32_t size, std::size_t number)
      : value_((std::uint64_t{stream} << 32U | size) << kNumberBits | number) {}

  [[nodiscard]] std::uint64_t key() const { return value_ >> kNumberBits; }
  /// What all is packed into.
  [[nodiscard]] std::uint64_t value() const { return value_; }
  [[nodiscard]] std::uint32_t number() const {
    return static_cast<std::uint32_t>(value_ & ((std::uint64_t{1} << kNumberBits) - 1));
  }

 private:
  std::uint64_t value_;
};

/// A stretch of pairs with one displacement.
struct PairGroup {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::int64_t rank = 0;

  friend bool operator<(const PairGroup& one, const PairGroup& other) {
    return one.rank != other.rank ? one.rank < other.rank : one.begin > other.begin;
  }
};
/// What a displacement would explain.
struct PairGain {
  std::size_t entries = 0;
  std::size_t neighbours = 0;    ///< of these, those whose successor is there, too
  std::uint64_t uniqueness = 0;  ///< thousandths: the sum of one over how often each size occurs
  std::uint32_t largest = 0;     ///< bytes of a payload
};

}  // namespace zelvo::salvage
