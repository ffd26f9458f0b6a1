#include "avi/file_view.h"

#include <algorithm>

#include "avi/byte_order.h"

namespace zelvo::avi {

std::span<const std::byte> FileView::bytes(std::uint64_t offset, std::size_t size) {
  size = std::min(size, window_.size());
  if (offset < start_ || offset - start_ > held_ || held_ - (offset - start_) < size) {
    const platform::IoResult result = file_.readAt(offset, window_);
    start_ = offset;
    held_ = result.count;
    isCut_ = static_cast<bool>(result.error);
    if (result.error) failures_.add({1, offset + result.count, result.error});
  }
  const auto at = static_cast<std::size_t>(offset - start_);
  failedLast_ = isCut_ && held_ - at < size;
  return std::span(window_).subspan(at, std::min(size, held_ - at));
}

std::optional<ChunkHeader> FileView::header(std::uint64_t offset) {
  const std::span<const std::byte> found = bytes(offset, 8);
  if (found.size() < 8) return std::nullopt;
  return ChunkHeader{FourCC::at(found), loadLittleEndian32(found.subspan<4, 4>())};
}

std::optional<FourCC> FileView::code(std::uint64_t offset) {
  const std::span<const std::byte> found = bytes(offset, 4);
  if (found.size() < 4) return std::nullopt;
  return FourCC::at(found);
}

}  // namespace zelvo::avi
