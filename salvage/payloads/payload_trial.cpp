#include "salvage/payloads/payload_trial.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <utility>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

namespace {

using platform::PicturePlane;
using platform::TrialPicture;
using platform::WantedPlanes;
using Planes = std::vector<PicturePlane>;

constexpr std::uint64_t kNoMisfit = std::numeric_limits<std::uint64_t>::max();

std::uint64_t markOf(std::uint64_t mark, const Planes& planes) {
  constexpr std::uint64_t kPrime = 0x9e3779b97f4a7c15;
  constexpr unsigned kTurn = 29;
  constexpr std::size_t kStep = sizeof(std::uint64_t);
  for (const PicturePlane& plane : planes) {
    std::span<const std::byte> left(plane.samples);
    while (!left.empty()) {
      std::uint64_t samples = 0;
      const std::size_t count = std::min(left.size(), kStep);
      std::memcpy(&samples, left.data(), count);
      mark = std::rotl((mark ^ samples) * kPrime, kTurn);
      left = left.subspan(count);
    }
  }
  return mark;
}

int difference(std::byte one, std::byte other) { return static_cast<int>(one) - static_cast<int>(other); }

/// How far a picture is from another: what their samples are apart, and half of what that changes by at the borders of
/// blocks, where wrong blocks show. `kNoMisfit` for pictures that cannot be compared.
std::uint64_t distance(const Planes& one, const Planes& other) {
  constexpr std::size_t kBlock = 8;
  if (one.empty() || one.size() != other.size()) return kNoMisfit;
  std::uint64_t apart = 0;
  std::uint64_t edges = 0;
  std::vector<int> above;
  std::vector<int> row;
  for (std::size_t plane = 0; plane < one.size(); ++plane) {
    const std::size_t width = one[plane].width;
    if (width != other[plane].width || one[plane].height != other[plane].height) return kNoMisfit;
    row.resize(width);
    for (std::size_t y = 0; y < one[plane].height; ++y) {
      std::swap(above, row);
      row.resize(width);
      for (std::size_t x = 0; x < width; ++x) {
        row[x] = difference(one[plane].samples[y * width + x], other[plane].samples[y * width + x]);
        apart += static_cast<std::uint64_t>(std::abs(row[x]));
      }
      for (std::size_t x = kBlock; x < width; x += kBlock)
        edges += static_cast<std::uint64_t>(std::abs(row[x] - row[x - 1]));
      if (y == 0 || y % kBlock != 0) continue;
      for (std::size_t x = 0; x < width; ++x) edges += static_cast<std::uint64_t>(std::abs(row[x] - above[x]));
    }
  }
  return apart + edges / 2;
}

/// Blocks that the decoder left as they were.
std::uint32_t missingBlocks(const Planes& planes) {
  constexpr std::size_t kBlock = 16;
  constexpr std::byte kGreySample{0x80};
  if (planes.empty()) return 0;
  std::uint32_t missing = 0;
  const PicturePlane& plane = planes.front();
  for (std::size_t top = 0; top + kBlock <= plane.height; top += kBlock) {
    for (std::size_t left = 0; left + kBlock <= plane.width; left += kBlock) {
      bool isGrey = true;
      for (std::size_t y = top; isGrey && y < top + kBlock; ++y) {
        const auto row = std::span(plane.samples).subspan(y * plane.width + left, kBlock);
        isGrey = std::ranges::all_of(row, [](std::byte sample) { return sample == kGreySample; });
      }
      missing += isGrey ? 1U : 0U;
    }
  }
  return missing;
}

const TrialPicture* pictureOf(const std::vector<TrialPicture>& pictures, std::size_t payload) {
  const auto found = std::ranges::find_if(
      pictures, [&](const TrialPicture& one) { return one.payload == payload && !one.planes.empty(); });
  return found == pictures.end() ? nullptr : &*found;
}

}  // namespace

platform::TrialStream trialStreamOf(const SurvivingStream& stream) {
  constexpr std::size_t kHeader = 40;
  const PictureFormat format = pictureFormat(stream);
  platform::TrialStream told{0, format.width, format.height, format.bits, {}};
  if (stream.format.size() < kHeader) return told;
  constexpr std::size_t kCompression = 16;
  told.codec = avi::FourCC::at(std::span(stream.format).subspan(kCompression)).value;
  told.extra.assign(stream.format.begin() + kHeader, stream.format.end());
  return told;
}

DecodedTrial::DecodedTrial(platform::TrialDecoder& decoder, const platform::TrialStream& stream,
                           const PayloadNeighbours& neighbours, TrialBudget& budget)
    : decoder_(decoder), stream_(stream), neighbours_(neighbours), budget_(budget) {}

/// A decoder that did not survive a payload is opened again, so that the next one finds it as it was.
DecodedTrial::Answer DecodedTrial::decode(std::span<const std::byte> payload, WantedPlanes wanted) {
  if (!isOpen_) return std::nullopt;
  Answer answer = payload.data() == nullptr ? decoder_.finish(wanted) : decoder_.decode(payload, wanted);
  if (!answer) {
    isOpen_ = decoder_.open(stream_);
    if (isOpen_) learn();
  }
  return answer;
}

/// Shows the decoder the pictures before, since headers may stand there alone, and keeps the last of them.
void DecodedTrial::learn() {
  hasLearnt_ = true;
  const auto keep = [&](Answer answer) {
    if (!answer) return false;
    for (TrialPicture& picture : answer->pictures) {
      if (!picture.planes.empty()) before_ = std::move(picture.planes);
    }
    return true;
  };
  for (const platform::Bytes& payload : neighbours_.before) {
    if (!keep(decoder_.decode(payload, WantedPlanes::all))) break;
  }
  static_cast<void>(keep(decoder_.finish(WantedPlanes::all)));
}

std::optional<LoneTrial> DecodedTrial::alone(std::span<const std::byte> payload) {
  if (!hasLearnt_) learn();
  const bool isAfterKey = neighbours_.needsKey && !neighbours_.isKey && !neighbours_.before.empty();
  // A payload may hold two pictures, of which the second one is decoded with the next payload.
  const bool hasNext = !neighbours_.isKey && !isAfterKey && !neighbours_.after.empty();
  if (!isOpen_ || !budget_.take(stream_, isAfterKey || hasNext ? 2 : 1)) return std::nullopt;
  LoneTrial trial;
  const std::uint32_t number = isAfterKey ? 1 : 0;
  const auto add = [&](const Answer& answer) {
    if (!answer) return false;
    trial.complaints += answer->complaints + (answer->isAccepted ? 0U : 1U);
    for (const TrialPicture& picture : answer->pictures) {
      if (picture.payload < number) continue;
      if (picture.payload == number) {
        trial.hasPicture = true;
        if (isAfterKey) trial.complaints += missingBlocks(picture.planes);
      }
      trial.mark = markOf(trial.mark, picture.planes);
    }
    return true;
  };
  if (isAfterKey && !decode(neighbours_.before.front(), WantedPlanes::none)) return std::nullopt;
  constexpr std::uint32_t kCrash = 1000;
  if (!add(decode(payload, WantedPlanes::all)))
    return isOpen_ ? std::optional(LoneTrial{kCrash, false, 0}) : std::nullopt;
  if (hasNext) static_cast<void>(add(decode(neighbours_.after.front(), WantedPlanes::all)));
  static_cast<void>(add(decode({}, WantedPlanes::all)));
  return trial;
}

std::optional<std::uint64_t> DecodedTrial::misfit(std::span<const std::byte> payload) {
  if (!hasLearnt_) learn();
  const std::size_t before = neighbours_.isKey ? 0 : neighbours_.before.size();
  if (!isOpen_ || !budget_.take(stream_, before + 1 + neighbours_.after.size())) return std::nullopt;
  for (std::size_t i = 0; i < before; ++i) {
    if (!decode(neighbours_.before[i], WantedPlanes::none)) return std::nullopt;
  }
  std::vector<TrialPicture> pictures;
  const auto add = [&](Answer answer) {
    if (!answer) return false;
    std::ranges::move(answer->pictures, std::back_inserter(pictures));
    return true;
  };
  bool isDecoded = add(decode(payload, WantedPlanes::all));
  for (std::size_t i = 0; isDecoded && i < neighbours_.after.size(); ++i)
    isDecoded = add(decode(neighbours_.after[i], WantedPlanes::all));
  if (!isDecoded || !add(decode({}, WantedPlanes::all))) return std::nullopt;
  const TrialPicture* const picture = pictureOf(pictures, before);
  if (picture == nullptr) return std::nullopt;
  std::uint64_t nearest = distance(picture->planes, before_);
  if (const TrialPicture* const after = pictureOf(pictures, before + 1))
    nearest = std::min(nearest, distance(picture->planes, after->planes));
  return nearest;
}

std::size_t DecodedTrial::comparisonsLeft() const {
  const std::size_t before = neighbours_.isKey ? 0 : neighbours_.before.size();
  return budget_.payloadsOf(stream_) / (before + 1 + neighbours_.after.size());
}

std::optional<std::uint32_t> DecodedTrial::usualComplaints() {
  constexpr std::size_t kAsked = 3;
  std::optional<std::uint32_t> most;
  const auto ask = [&](const platform::Bytes& payload) {
    if (const auto trial = alone(payload); trial && trial->hasPicture)
      most = std::max(most.value_or(0), trial->complaints);
  };
  const auto& before = neighbours_.before;
  if (neighbours_.isKey) {
    if (!before.empty()) ask(before.front());
    return most;
  }
  for (std::size_t i = before.size(); i > 1 && before.size() - i < kAsked; --i) ask(before[i - 1]);
  if (!most && !neighbours_.after.empty()) ask(neighbours_.after.front());
  return most;
}

}  // namespace zelvo::salvage
