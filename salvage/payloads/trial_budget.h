/// How much of decoding a film's repair may still ask for. It is counted in pixels and bytes, never in time, so that
/// the same film always comes out the same.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/trial_decoder.h"

namespace zelvo::salvage {

class TrialBudget {
 public:
  /// For all of a film: some thousand pictures of a small one, some hundred of a large one; seconds of work.
  static constexpr std::uint64_t kOfFilm = std::uint64_t{1} << 30U;
  /// What a payload costs at least.
  static constexpr std::uint64_t kLeast = std::uint64_t{1} << 17U;

  explicit TrialBudget(std::uint64_t pixels = kOfFilm) : left_(pixels) {}

  /// For single pictures of a film of so many bytes. One picture is a hundredth of a short film and next to nothing of
  /// a long one, so the longer the film, the less it may cost, down to what takes about as long as reading it all.
  [[nodiscard]] static TrialBudget ofPictures(std::uint64_t filmSize) {
    constexpr std::uint64_t kShortFilm = std::uint64_t{8} << 20U;
    const std::uint64_t size = std::max(kShortFilm, filmSize);
    return TrialBudget(std::min(kOfFilm, std::max(kOfFilm * kShortFilm / size, size + size / 2)));
  }

  /// Takes what so many payloads of a stream cost that have so many bytes together, where these count. False when there
  /// is not so much left.
  [[nodiscard]] bool take(const platform::TrialStream& stream, std::size_t payloads = 1, std::size_t bytes = 0) {
    const std::uint64_t cost = costOf(stream, payloads, bytes);
    if (cost > left_) return false;
    left_ -= cost;
    return true;
  }
  /// Takes what it costs to read so many bytes bit by bit, or all that is left.
  void takeWalk(std::uint64_t bytes) { left_ -= std::min(left_, bytes * kOfWalkedByte); }
  /// How many bytes it is enough to read so.
  [[nodiscard]] std::uint64_t bytesToWalk() const { return left_ / kOfWalkedByte; }
  /// How many times it is enough for that.
  [[nodiscard]] std::size_t timesOf(const platform::TrialStream& stream, std::size_t payloads,
                                    std::size_t bytes) const {
    return static_cast<std::size_t>(left_ / costOf(stream, payloads, bytes));
  }
  /// Splits off what a part of the work may cost; not less than `least` where there is so much.
  [[nodiscard]] TrialBudget share(std::uint64_t parts, std::uint64_t least = 0) {
    const TrialBudget part(std::min(left_, std::max(least, left_ / parts)));
    left_ -= part.left_;
    return part;
  }
  /// Takes back what a part has left.
  void giveBack(const TrialBudget& part) { left_ += part.left_; }

 private:
  static constexpr std::uint64_t kOfWalkedByte = 16;

  /// Where payloads are large, their bytes take longer than their pixels.
  [[nodiscard]] static std::uint64_t costOf(const platform::TrialStream& stream, std::size_t payloads,
                                            std::size_t bytes) {
    constexpr std::uint64_t kOfByte = 2;
    return std::max(std::uint64_t{stream.width} * stream.height, kLeast) * payloads + kOfByte * bytes;
  }

  std::uint64_t left_;
};

}  // namespace zelvo::salvage
