#include "salvage/plan/whole_chunks.h"

#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

/// More would fill any gap by chance.
constexpr std::uint64_t kMostSounds = 256;
constexpr std::uint64_t kMostPictures = 65'536;

std::uint64_t chunkOf(std::uint32_t size) { return avi::kChunkHeader + size + size % 2; }

}  // namespace

std::optional<WholeChunks> wholeChunks(std::uint64_t bytes, std::optional<std::uint32_t> picture, std::uint32_t sound,
                                       std::size_t estimate) {
  if (bytes == 0 || sound == 0) return std::nullopt;
  std::optional<WholeChunks> best;
  const auto apart = [&](std::size_t pictures) {
    return pictures > estimate ? pictures - estimate : estimate - pictures;
  };
  const std::uint64_t most = picture ? bytes / chunkOf(*picture) : 0;
  for (std::uint64_t pictures = 0; pictures <= most && pictures <= kMostPictures; ++pictures) {
    const std::uint64_t left = bytes - pictures * chunkOf(picture.value_or(0));
    if (left % chunkOf(sound) != 0 || left / chunkOf(sound) > kMostSounds) continue;
    const WholeChunks one{static_cast<std::size_t>(pictures), static_cast<std::size_t>(left / chunkOf(sound))};
    if (!best || apart(one.pictures) < apart(best->pictures)) best = one;
  }
  return best;
}

}  // namespace zelvo::salvage
