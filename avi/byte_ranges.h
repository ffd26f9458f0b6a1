/// A set of bytes of a file, as ranges that do not touch. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

namespace zelvo::avi {

/// Thread: one.
class ByteRanges {
 public:
  /// More ranges than this are not kept, so that a file that fails everywhere costs no more than some MiB of memory.
  static constexpr std::size_t kMax = 65536;

  /// Adds the bytes from `begin` up to, not including, `end`. Once there are `kMax` ranges, one that touches none of
  /// them is left out.
  void add(std::uint64_t begin, std::uint64_t end);
  /// How many bytes are in the set.
  [[nodiscard]] std::uint64_t bytes() const { return bytes_; }

 private:
  std::map<std::uint64_t, std::uint64_t> ranges_;  ///< begin to end
  std::uint64_t bytes_ = 0;
};

}  // namespace zelvo::avi
