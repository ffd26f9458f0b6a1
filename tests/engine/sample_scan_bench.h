/// A sample scan alone, on an input without headers.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {

using Chunks = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

/// A code and a size field.
inline void putHeader(platform::Bytes& bytes, std::size_t offset, std::string_view code, std::uint32_t size) {
  platform::Bytes header = bytesOf(code);
  appendNumber(header, size);
  overwrite(bytes, offset, textAt(header, 0, 8));
}

/// A chunk that is accepted at 500, so that the buffer holds "00dc" and two zero bytes.
inline platform::Bytes withAcceptedChunk(std::size_t size) {
  platform::Bytes bytes = blank(size);
  putHeader(bytes, 500, "00dc", 60);
  overwrite(bytes, 568, {"00dc\0\0", 6});
  return bytes;
}

class SampleScan : public testing::Test {
 protected:
  void scan(platform::Bytes bytes) {
    bench.choose(std::move(bytes));
    prepare();
    bench.job->scanSamples();
  }
  /// Up to the scan, without a harvest: it takes nothing from the headers.
  void prepare() {
    bench.begin();
    static_cast<void>(bench.job->fileValidityCheck());
    bench.job->videosamplecount = bench.job->audiosamplecount = 0;
    bench.events.clear();
    bench.relay.values.clear();
    bench.relay.shown.clear();
  }

  EngineBench bench;
};

}  // namespace zelvo::tests
