/// The literal transcription of the layout, the index chunks and the writing of the rebuilt file: one write per field,
/// one read and one write per chunk.
#pragma once

#include <cstdint>
#include <functional>

#include "tests/support/literal_bytes.h"
#include "tests/support/literal_headers.h"
#include "tests/support/literal_scan.h"

namespace zelvo::tests::literal {

/// The computed sizes and positions, in bytes, in the order of their computation.
struct Layout {
  std::uint64_t ix00size = 0;
  std::uint64_t ix01size = 0;
  std::uint64_t audiodatasize = 0;
  std::uint64_t videodatasize = 0;
  std::uint64_t audioindxsize = 0;
  std::uint64_t videoindxsize = 0;
  std::uint64_t ix00location = 0;
  std::uint64_t ix01location = 0;
  std::uint64_t audiostrlListsize = 0;
  std::uint64_t videostrlListsize = 0;
  std::uint64_t AVILISTsize = 0;
  std::uint64_t baseoffsetforvideo = 0;
  std::uint64_t movisize = 0;
  std::uint64_t RIFFLISTsize = 0;
  std::uint64_t baseoffsetforaudio = 0;
};

[[nodiscard]] Layout layoutOf(const Headers& headers, const Tables& tables);

/// Whether a stop has been asked for, looked at before the video chunks and again before the audio chunks.
struct WriterStops {
  std::function<bool()> beforeVideo = [] { return false; };
  std::function<bool()> beforeAudio = [] { return false; };
};

/// Writes the whole file; answers the layout that it follows.
Layout constructRIFFList(Input& input, const Headers& headers, const Tables& tables, Output& out,
                         const WriterStops& stops = {});

}  // namespace zelvo::tests::literal
