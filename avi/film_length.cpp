#include "avi/film_length.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "avi/fourcc.h"
#include "platform/bytes.h"

namespace zelvo::avi {

namespace {

constexpr std::size_t kRead = 16384;

/// Where the first `code` starts; nothing when fewer than `needed` bytes follow its beginning.
std::optional<std::size_t> find(std::span<const std::byte> bytes, FourCC code, std::size_t needed) {
  const auto wanted = code.bytes();
  const auto found = std::search(bytes.begin(), bytes.end(), wanted.begin(), wanted.end());
  const auto at = static_cast<std::size_t>(found - bytes.begin());
  if (found == bytes.end() || bytes.size() - at < needed) return std::nullopt;
  return at;
}

}  // namespace

std::optional<double> filmLength(platform::ReadableFile& file) {
  constexpr std::size_t kMicroseconds = 8;  // after the code and the size field
  constexpr std::size_t kTotalFrames = 24;
  constexpr std::size_t kDmlhFrames = 8;
  constexpr double kFastest = 1e3;  // microseconds
  constexpr double kSlowest = 1e7;
  platform::Bytes bytes(kRead);
  const platform::IoResult result = file.readAt(0, bytes);
  bytes.resize(result.count);
  const auto avih = find(bytes, kAvih, kTotalFrames + 4);
  if (!avih) return std::nullopt;
  const double each = littleEndian32At(bytes, *avih + kMicroseconds);
  std::uint32_t frames = littleEndian32At(bytes, *avih + kTotalFrames);
  if (const auto dmlh = find(bytes, kDmlh, kDmlhFrames + 4))
    frames = std::max(frames, littleEndian32At(bytes, *dmlh + kDmlhFrames));
  if (frames == 0 || each < kFastest || each > kSlowest) return std::nullopt;
  return each * frames / 1e6;
}

}  // namespace zelvo::avi
