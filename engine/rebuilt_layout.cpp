#include "engine/rebuilt_layout.h"

#include <numeric>

namespace zelvo::engine {

namespace {

/// Deliberate: the sum starts at entry 0, which is never filled and is 0.
std::uint64_t dataSize(std::span<const std::uint64_t> sizes, std::uint64_t count) {
  const auto entries = sizes.first(static_cast<std::size_t>(count) + 1);
  return std::accumulate(entries.begin(), entries.end(), std::uint64_t{0});
}

}  // namespace

RebuiltLayout RebuiltLayout::of(const LayoutInput& input) {
  RebuiltLayout out;
  out.ix00size = input.videosamplecount * 8 + 24;
  out.ix01size = input.audiosamplecount * 8 + 24;
  out.audioindxsize = 44;
  out.videoindxsize = 44;
  out.ix00location = input.videostrfsize + 8 + 164 + (out.videoindxsize + 8) + 76 + (input.audiostrfsize + 8) +
                     (out.audioindxsize + 8) + 20;
  out.ix01location = out.ix00location + out.ix00size;
  out.audiostrlListsize = input.audiostrfsize + 76 + 8 + out.audioindxsize;
  out.videostrlListsize = input.videostrfsize + 76 + 8 + out.videoindxsize;
  out.AVILISTsize = out.videostrlListsize + 76 + 8 + out.audiostrlListsize;
  out.baseoffsetforvideo = out.AVILISTsize + 20 + (out.ix00size + 20) + (out.ix01size + 8);
  out.audiodatasize = dataSize(input.audiosamplesizearray, input.audiosamplecount);
  out.videodatasize = dataSize(input.videosamplesizearray, input.videosamplecount);
  out.movisize = (out.ix00size + 8 + 4) + (out.ix01size + 8) + 8 * input.videosamplecount + 8 * input.audiosamplecount +
                 out.audiodatasize + out.videodatasize;
  out.RIFFLISTsize = out.AVILISTsize + 12 + 8 + out.movisize;
  out.baseoffsetforaudio = out.baseoffsetforvideo + out.videodatasize + 8 * input.videosamplecount;
  return out;
}

}  // namespace zelvo::engine
