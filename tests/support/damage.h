/// Damaged inputs by the thousand, each from a seed: streams of chunks with ranges deleted, sectors zeroed, ends cut
/// off, size fields at their boundaries, codes across block borders, and reads that fail. The same seed gives the same
/// input on every machine. Sizes and offsets are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <string_view>

#include "platform/bytes.h"

namespace zelvo::tests {

struct DamagedInput {
  std::string name;  ///< what was done, for the message of a test that fails
  platform::Bytes bytes;
  std::uint64_t size = 0;         ///< of the file; what lies after `bytes` is zero
  std::uint64_t claimedSize = 0;  ///< what the repair is told
  std::uint64_t badReadStart = std::numeric_limits<std::uint64_t>::max();  ///< reads of this range fail
  std::uint64_t badReadEnd = 0;
  std::function<void()> beforeBadRead;  ///< see MemoryFile
};

/// Thread: one.
class DamageGenerator {
 public:
  explicit DamageGenerator(std::uint64_t seed) : seed_(seed), random_(seed) {}

  /// At most some tens of kilobytes of chunks, thoroughly damaged.
  [[nodiscard]] DamagedInput small();
  /// Up to `largest` bytes, with codes, size fields and look-aheads across the borders of multiples of 65,536.
  [[nodiscard]] DamagedInput acrossWindows(std::size_t largest);
  /// "00dc" or "01wb" and a size below `sizeLimit` every 8 bytes; many look-aheads meet the end of the file or, when
  /// `failing`, the ends of a range that cannot be read.
  [[nodiscard]] DamagedInput dense(std::size_t size, std::uint32_t sizeLimit, bool failing = false);
  /// A whole AVI file of `count` pairs of chunks after valid headers, then damaged; some claim to be larger than they
  /// are.
  [[nodiscard]] DamagedInput wholeFile(int count);

  /// 0 to `limit` - 1.
  [[nodiscard]] std::uint64_t below(std::uint64_t limit) { return limit == 0 ? 0 : random_() % limit; }
  /// True `percent` times of a hundred.
  [[nodiscard]] bool chance(unsigned percent) { return below(100) < percent; }

 private:
  [[nodiscard]] std::string_view anyCode();
  [[nodiscard]] std::uint32_t anySizeField();
  void appendPayload(platform::Bytes& out, std::size_t size);
  void appendChunks(platform::Bytes& out, std::uint64_t count);
  void put(platform::Bytes& out, std::size_t offset, std::string_view code, std::uint32_t size);
  void damageOnce(DamagedInput& input);
  void deleteRange(DamagedInput& input);
  void zeroSectors(DamagedInput& input);
  void cutEnd(DamagedInput& input);
  void repeatRange(DamagedInput& input);
  void overwriteRange(DamagedInput& input);
  void codeAtBorder(DamagedInput& input, std::size_t step);
  void candidatesAtEnd(DamagedInput& input);
  /// Size, claim and failing reads, once the bytes stand.
  void finish(DamagedInput& input);
  [[nodiscard]] DamagedInput begin(std::string_view name) const;

  std::uint64_t seed_;
  std::mt19937_64 random_;
};

}  // namespace zelvo::tests
