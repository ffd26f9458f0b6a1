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

ScanWindow::ScanWindow(avi::InputFile& input, bool farAhead)
    : input_(input), farAhead_(farAhead), bytes_(kWindowSize + CodeFinder::kMargin) {}

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
    if (farAhead_ && !readsFail_) moveRing();
  }
  beyondWindow_ = 0;
}

void ScanWindow::readBlockAlone(std::uint32_t number, std::size_t ownRead) {
  std::fill(bytes_.begin(), bytes_.begin() + kBlockSize + kReadAhead + CodeFinder::kMargin, std::byte{0});
  read(startOf(number), std::span(bytes_).first(ownRead));
}

bool ScanWindow::inWindow(std::uint64_t offset, std::size_t size) const {
  return offset >= start_ && offset + size <= start_ + valid_;
}

std::uint32_t ScanWindow::numberAt(std::uint32_t offset) {
  if (inWindow(offset, 4)) return avi::loadLittleEndian32(std::span(bytes_).subspan(offset - start_).first<4>());
  std::array<std::byte, 4> number{};
  read(offset, number);
  return avi::loadLittleEndian32(number);
}

std::size_t ScanWindow::readLookAhead(std::uint32_t offset, std::span<std::byte, 6> into) {
  if (inWindow(offset, into.size())) {
    std::memcpy(into.data(), bytes_.data() + (offset - start_), into.size());
    return into.size();
  }
  ++beyondWindow_;
  if (!inRing(offset, into.size())) return read(offset, into);
  const std::size_t at = offset % kRingSize;
  const std::size_t first = std::min(into.size(), kRingSize - at);
  if (first == into.size()) {
    std::memcpy(into.data(), ring_.data() + at, into.size());
  } else {
    std::memcpy(into.data(), ring_.data() + at, first);
    std::memcpy(into.data() + first, ring_.data(), into.size() - first);
  }
  return into.size();
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

void ScanWindow::expectLookAheadOf(std::uint32_t position) const {
  if (!inWindow(std::uint64_t{position} + 4, 4)) return;
  const auto size = std::span(bytes_).subspan(position + 4 - start_).first<4>();
  const std::uint32_t lookAhead = position + 8 + avi::loadLittleEndian32(size);
  if (inRing(lookAhead, 1)) __builtin_prefetch(ring_.data() + lookAhead % kRingSize);
}

bool ScanWindow::inRing(std::uint64_t offset, std::size_t size) const {
  return offset >= ringStart_ && offset + size <= ringEnd_;
}

void ScanWindow::moveRing() {
  if (ring_.empty()) ring_.resize(kRingSize);
  const std::uint64_t wantedEnd = start_ + kWindowSize + kReach;
  if (start_ < ringStart_ || start_ > ringEnd_) ringEnd_ = start_;
  // What is read now overwrites what lies more than a ring's length before it.
  while (ringEnd_ < wantedEnd) {
    const std::size_t at = ringEnd_ % kRingSize;
    const std::size_t step = std::min<std::uint64_t>(wantedEnd - ringEnd_, kRingSize - at);
    const platform::IoResult result = input_.tryRead(ringEnd_, std::span(ring_).subspan(at, step));
    ringEnd_ += result.count;
    if (result.count < step) break;
  }
  ringStart_ = std::max(start_, ringEnd_ > kRingSize ? ringEnd_ - kRingSize : 0);
}

}  // namespace zelvo::engine
