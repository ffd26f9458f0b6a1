#include "engine/scan_window.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "avi/byte_order.h"
#include "engine/code_finder.h"

namespace zelvo::engine {

namespace {

bool allZero(std::span<const std::byte> bytes) {
  if (bytes.empty()) return true;
  return bytes.front() == std::byte{0} && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

}  // namespace

ScanWindow::ScanWindow(avi::InputFile& input) : input_(input), bytes_(kWindowSize + CodeFinder::kMargin), map_(input) {}

std::span<const std::byte> ScanWindow::block(std::uint32_t number, std::uint32_t last, std::size_t ownRead) {
  if (firstBlock_ == 0 || number < firstBlock_ || number - firstBlock_ >= blocks_) moveTo(number, last);
  if (readsFail_) {
    readBlockAlone(number, ownRead);
    return bytes_;
  }
  return std::span<const std::byte>(bytes_).subspan((number - firstBlock_) * kBlockSize);
}

std::size_t ScanWindow::read(std::uint64_t offset, std::span<std::byte> into) {
  const platform::IoResult result = input_.tryRead(offset, into);
  if (result.error) failures_.add({1, offset + result.count, result.error});
  return result.count;
}

void ScanWindow::moveTo(std::uint32_t number, std::uint32_t last) {
  firstBlock_ = number;
  start_ = startOf(number);
  // A window ends where block offsets wrap.
  const std::uint64_t untilWrap = ((std::uint64_t{1} << 32U) - start_) / kBlockSize;
  blocks_ = static_cast<std::uint32_t>(std::min({std::uint64_t{kBlocks}, untilWrap, std::uint64_t{last} - number + 1}));
  const auto wanted = std::span(bytes_).first(blocks_ * kBlockSize + kReadAhead);
  const platform::IoResult result = input_.tryRead(start_, wanted);
  readsFail_ = static_cast<bool>(result.error);
  valid_ = readsFail_ ? 0 : result.count;
  std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(result.count), bytes_.end(), std::byte{0});
  if (beyondWindow_ > kDense) {
    dense_ = true;
    if (!readsFail_) map_.cover(start_, start_ + kWindowSize + kReach);
  }
  beyondWindow_ = 0;
}

void ScanWindow::readBlockAlone(std::uint32_t number, std::size_t ownRead) {
  std::fill(bytes_.begin(), bytes_.begin() + kBlockSize + kReadAhead + CodeFinder::kMargin, std::byte{0});
  read(startOf(number), std::span(bytes_).first(ownRead));
}

std::uint32_t ScanWindow::numberAt(std::uint32_t offset) {
  if (inWindow(offset, 4)) return avi::loadLittleEndian32(std::span(bytes_).subspan(offset - start_).first<4>());
  std::array<std::byte, 4> number{};
  read(offset, number);
  return avi::loadLittleEndian32(number);
}

std::size_t ScanWindow::readLookAhead(std::uint32_t offset, std::span<std::byte, kLookAheadSize> into) {
  if (inWindow(offset, into.size())) {
    std::memcpy(into.data(), bytes_.data() + (offset - start_), into.size());
    return into.size();
  }
  ++beyondWindow_;
  return map_.isBeyondInput(offset) ? 0 : read(offset, into);
}

bool ScanWindow::isAllZero(std::uint64_t offset, std::uint64_t size) {
  if (readsFail_) return false;
  if (inWindow(offset, 1)) {
    const std::uint64_t held = std::min(size, start_ + valid_ - offset);
    const auto part = std::span<const std::byte>(bytes_).subspan(static_cast<std::size_t>(offset - start_));
    if (!allZero(part.first(static_cast<std::size_t>(held)))) return false;
    offset += held;
    size -= held;
  }
  std::array<std::byte, 4096> piece{};
  while (size > 0) {
    const auto wanted = std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(size, piece.size())));
    const platform::IoResult result = input_.tryRead(offset, wanted);
    if (result.error || !allZero(wanted.first(result.count))) return false;
    if (result.count < wanted.size()) break;
    offset += result.count;
    size -= result.count;
  }
  return true;
}

void ScanWindow::expectLookAheads(std::uint32_t block, std::span<const std::uint16_t> positions) const {
  const std::size_t valid = validFrom(block);
  const std::uint32_t start = startOf(block);
  const auto bytes = std::span(bytes_).subspan(start - start_);
  for (const std::size_t at : positions) {
    if (at + 8 > valid) break;
    const std::uint32_t size = avi::loadLittleEndian32(bytes.subspan(at + 4).first<4>());
    __builtin_prefetch(map_.placeOf(start + static_cast<std::uint32_t>(at) + 8 + size));
  }
}

}  // namespace zelvo::engine
