#include "engine/look_ahead_map.h"

#include <algorithm>
#include <span>

namespace zelvo::engine {

void LookAheadMap::cover(std::uint64_t start, std::uint64_t end) {
  if (!bytes_) {
    bytes_.emplace(kPiece + kTail + CodeFinder::kMargin);
    codes_.resize(kPositions / 64);
    padding_.resize(kPositions / 64);
    nearPadding_.resize(kPositions / 4096);
  }
  if (start < start_ || start > end_) end_ = start;
  start_ = start;
  // What is marked now overwrites what lies before `start`.
  while (end_ < end) {
    const auto wanted = std::span(*bytes_).first(kPiece + kTail);
    const platform::IoResult result = input_.tryRead(end_, wanted);
    std::fill(bytes_->begin() + result.count, bytes_->end(), std::byte{0});
    // Bits are written 64 at a time; the few places before the end of what can be read are left out.
    const std::size_t whole = result.count < kRest ? 0 : (result.count - kRest) / 64 * 64;
    const std::size_t places = std::min(whole, kPiece);
    mark(places);
    if (result.count < wanted.size() && !result.error) inputEnd_ = end_ + result.count;
    end_ += places;
    if (places < kPiece) break;
  }
}

void LookAheadMap::mark(std::size_t places) {
  // A place finds what starts at it or at one of the two after it.
  const auto spread = [](std::uint64_t own, std::uint64_t next) {
    return own | own >> 1U | next << 63U | own >> 2U | next << 62U;
  };
  CodeBits own = finder_.bits(bytes_->data());
  for (std::size_t at = 0; at < places; at += 64) {
    const CodeBits next = finder_.bits(bytes_->data() + at + 64);
    const std::size_t word = (end_ + at) % kPositions / 64;
    padding_[word] = spread(own.padding, next.padding);
    codes_[word] = spread(own.data, next.data) | padding_[word];
    const std::uint64_t bit = std::uint64_t{1} << (word % 64);
    std::uint64_t& nearPadding = nearPadding_[word / 64];
    nearPadding = padding_[word] != 0 ? nearPadding | bit : nearPadding & ~bit;
    own = next;
  }
}

}  // namespace zelvo::engine
