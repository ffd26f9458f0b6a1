/// A header harvest after a validity check, on an input that a test makes.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {

inline constexpr std::size_t kBlock = 1024;
inline constexpr std::size_t kBlock50 = 49 * kBlock;

// Where the builder puts its sections.
inline constexpr std::size_t kAvih = 24;
inline constexpr std::size_t kVids = 108;
inline constexpr std::size_t kAuds = 232;

/// The builder's three header sections, whose codes are at the offsets above, moved to `offset`.
inline void putSections(platform::Bytes& bytes, std::size_t offset) {
  const platform::Bytes headers = AviBuilder().headers();
  std::copy(headers.begin() + kAvih, headers.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

/// One stream section alone: "vids" or "auds", its header's values and a format.
inline void putSection(platform::Bytes& bytes, std::size_t offset, bool video) {
  const platform::Bytes headers = AviBuilder().headers();
  const std::size_t start = video ? kVids : kAuds;
  const std::size_t size = video ? kAuds - 24 - kVids : headers.size() - kAuds;
  std::copy_n(headers.begin() + static_cast<std::ptrdiff_t>(start), std::min(size, bytes.size() - offset),
              bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

class HeaderHarvest : public testing::Test {
 protected:
  bool harvest(platform::Bytes bytes) {
    bench.choose(std::move(bytes));
    return harvestChosen();
  }
  bool harvestChosen() {
    bench.begin();
    static_cast<void>(bench.job->fileValidityCheck());
    bench.events.clear();
    bench.relay.values.clear();
    bench.relay.shown.clear();
    return bench.job->harvestHeaders();
  }
  std::size_t eventCount(const std::string& event) {
    const auto lines = bench.events.lines();
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), event));
  }
  /// How many blocks were gone through, told by the progress stores (the last of "Break" apart).
  std::size_t blocksHarvested() const { return bench.relay.values.size() / kBlock; }

  EngineBench bench;
};

}  // namespace zelvo::tests
