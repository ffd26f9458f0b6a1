/// The four tables that the sample scan fills: where in the input each video and audio chunk lies and how long it is.
/// Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "avi/chunk_run.h"

namespace zelvo::engine {

/// Entries of one table. Tables are one-based: entry 0 is never filled, so a table holds one chunk fewer.
inline constexpr std::size_t kSampleTableEntries = 1048576;
inline constexpr std::uint64_t kLargestSampleCount = kSampleTableEntries - 1;

using SampleTable = std::array<std::uint64_t, kSampleTableEntries>;

/// Entries 1 to `count` of two tables.
[[nodiscard]] inline avi::ChunkRun filledPart(const SampleTable& offsets, const SampleTable& sizes,
                                              std::uint64_t count) {
  return {std::span(offsets).subspan(1, count), std::span(sizes).subspan(1, count)};
}

/// 32 MiB: heap only. Fresh pages stay untouched until a chunk is recorded in them.
struct SampleTables {
  SampleTable videosamplesizearray;    ///< payload size of each video chunk
  SampleTable videosampleoffsetarray;  ///< position of each video chunk's code in the input
  SampleTable audiosampleoffsetarray;  ///< the same of audio
  SampleTable audiosamplesizearray;
};

}  // namespace zelvo::engine
