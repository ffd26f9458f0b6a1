#include "salvage/payloads/payload_trial.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <utility>

#include "salvage/payloads/codec.h"
#include "salvage/payloads/picture_distance.h"

namespace zelvo::salvage {

namespace {

using platform::PicturePlane;
using platform::TrialPicture;
using platform::WantedPlanes;
using Planes = std::vector<PicturePlane>;

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

/// Shows the decoder the pictures before, since headers may stand there alone, and keeps the last of them and what is
/// usual among them.
void DecodedTrial::learn() {
  hasLearnt_ = true;
  strips_.clear();
  const auto keep = [&](const Answer& answer, bool isGood) {
    if (!answer) return false;
    if (isGood) complaints_ = std::max(complaints_, answer->complaints);
    for (const TrialPicture& picture : answer->pictures) {
      if (picture.planes.empty()) continue;
      const auto strips = stripDistances(picture.planes, before_);
      if (!strips.empty()) strips_.push_back(std::ranges::max(strips));
      before_ = picture.planes;
    }
    return true;
  };
  for (std::size_t i = 0; i < neighbours_.before.size(); ++i) {
    const bool isGood = std::ranges::binary_search(neighbours_.good, i);
    if (!keep(decoder_.decode(neighbours_.before[i], WantedPlanes::all), isGood)) break;
  }
  static_cast<void>(keep(decoder_.finish(WantedPlanes::all), false));
}

/// A payload may hold two pictures, of which the second one is decoded with the next payload. Pictures between the key
/// and this one that the decoder misses take it as long as one that is there.
std::size_t DecodedTrial::payloadsOfTrial() const { return isAfterKey() ? 3 : hasNext() ? 2 : 1; }

std::size_t DecodedTrial::bytesBeside() const {
  if (isAfterKey()) return keysOfTrial() * neighbours_.before.front().size();
  return hasNext() ? neighbours_.after.front().size() : 0;
}

std::optional<LoneTrial> DecodedTrial::alone(std::span<const std::byte> payload) {
  if (!hasLearnt_) learn();
  if (!isOpen_ || !budget_.take(stream_, payloadsOfTrial(), payload.size() + bytesBeside())) return std::nullopt;
  LoneTrial trial;
  const std::uint32_t number = keysOfTrial();
  const auto add = [&](const Answer& answer) {
    if (!answer) return false;
    trial.complaints += answer->complaints + (answer->isAccepted ? 0U : 1U);
    for (const TrialPicture& picture : answer->pictures) {
      if (picture.payload < number) continue;
      if (picture.payload == number) {
        trial.hasPicture = true;
        if (isAfterKey()) trial.complaints += missingBlocks(picture.planes);
      }
      trial.mark = markOf(trial.mark, picture.planes);
    }
    return true;
  };
  for (std::uint32_t i = 0; i < number; ++i) {
    if (!decode(neighbours_.before.front(), WantedPlanes::none)) return std::nullopt;
  }
  constexpr std::uint32_t kCrash = 1000;
  if (!add(decode(payload, WantedPlanes::all)))
    return isOpen_ ? std::optional(LoneTrial{kCrash, false, 0}) : std::nullopt;
  if (hasNext()) static_cast<void>(add(decode(neighbours_.after.front(), WantedPlanes::all)));
  static_cast<void>(add(decode({}, WantedPlanes::all)));
  return trial;
}

/// The picture that comes of a payload among its neighbours, and the first one after it that is not predicted from it.
std::optional<DecodedTrial::Shown> DecodedTrial::show(std::span<const std::byte> payload, bool isLast) {
  if (!hasLearnt_) learn();
  const std::size_t before = neighbours_.isKey ? 0 : neighbours_.before.size();
  const bool hasNext = !neighbours_.nextKey.empty();
  const std::size_t bytes = bytesBefore() + payload.size() + neighbours_.nextKey.size();
  if (!isOpen_ || (!isLast && !budget_.take(stream_, before + (hasNext ? 2 : 1), bytes))) return std::nullopt;
  for (std::size_t i = 0; i < before; ++i) {
    if (!decode(neighbours_.before[i], WantedPlanes::none)) return std::nullopt;
  }
  std::vector<TrialPicture> pictures;
  const auto add = [&](Answer answer) {
    if (!answer) return false;
    std::ranges::move(answer->pictures, std::back_inserter(pictures));
    return true;
  };
  const bool isDecoded = add(decode(payload, WantedPlanes::all)) &&
                         (!hasNext || add(decode(neighbours_.nextKey, WantedPlanes::all))) &&
                         add(decode({}, WantedPlanes::all));
  if (!isDecoded) return std::nullopt;
  Shown shown;
  for (TrialPicture& picture : pictures) {
    Planes& planes = picture.payload == before ? shown.picture : shown.nextKey;
    if (picture.payload >= before && planes.empty()) planes = std::move(picture.planes);
  }
  return shown.picture.empty() ? std::nullopt : std::optional(std::move(shown));
}

std::optional<std::uint64_t> DecodedTrial::misfit(std::span<const std::byte> payload) {
  const auto shown = show(payload, false);
  if (!shown) return std::nullopt;
  return std::min(pictureDistance(shown->picture, before_), pictureDistance(shown->picture, shown->nextKey));
}

bool DecodedTrial::isTaken(std::span<const std::byte> payload) {
  if (!neighbours_.needsKey) return true;
  if (!hasLearnt_) learn();
  const std::size_t before = neighbours_.isKey ? 0 : neighbours_.before.size();
  if (!isOpen_ || !budget_.take(stream_, before + 1, bytesBefore() + payload.size())) return false;
  for (std::size_t i = 0; i < before; ++i) {
    if (!decode(neighbours_.before[i], WantedPlanes::none)) return false;
  }
  const Answer answer = decode(payload, WantedPlanes::none);
  return decode({}, WantedPlanes::none) && answer && answer->isAccepted && answer->complaints <= complaints_;
}

bool DecodedTrial::belongs(std::span<const std::byte> payload, double rightShare) {
  constexpr std::uint32_t kSlack = 150;
  const auto shown = show(payload, true);
  if (!shown) return false;
  if (strips_.empty()) return true;
  // Now and then a film flashes, or cuts to another scene.
  std::vector<std::uint32_t> known = strips_;
  const auto most = known.begin() + static_cast<std::ptrdiff_t>(known.size() * 9 / 10);
  std::ranges::nth_element(known, most);
  const auto isNear = [&](const Planes& other) {
    const std::vector<std::uint32_t> strips = stripDistances(shown->picture, other);
    if (strips.empty()) return false;
    const auto right = strips.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(strips.size()) * rightShare);
    const std::uint32_t above = right == strips.begin() ? 0 : *std::max_element(strips.begin(), right);
    // The picture before in the order of display may be some further away than a neighbour.
    const std::uint32_t limit = std::max(*most * 11 / 5, above * 3 / 2) + kSlack;
    return std::all_of(right, strips.end(), [&](std::uint32_t strip) { return strip <= limit; });
  };
  return isNear(before_) || isNear(shown->nextKey);
}

std::size_t DecodedTrial::comparisonsLeft() const {
  const std::size_t before = neighbours_.isKey ? 0 : neighbours_.before.size();
  return budget_.timesOf(stream_, before + 2, bytesBefore() + neighbours_.nextKey.size());
}

std::size_t DecodedTrial::trialsLeft(std::size_t size) const {
  return budget_.timesOf(stream_, payloadsOfTrial(), size + bytesBeside());
}

/// Those of the payloads that it is predicted from.
std::size_t DecodedTrial::bytesBefore() const {
  std::size_t bytes = 0;
  if (neighbours_.isKey) return bytes;
  for (const platform::Bytes& payload : neighbours_.before) bytes += payload.size();
  return bytes;
}

/// The last ones before, evenly taken where there are many.
std::vector<const platform::Bytes*> DecodedTrial::goodPayloads() const {
  constexpr std::size_t kAsked = 6;
  std::vector<const platform::Bytes*> good;
  for (std::size_t i = neighbours_.good.size(); i > 0 && good.size() < kAsked; --i) {
    const std::size_t number = neighbours_.good[i - 1];
    if ((number == 0) == neighbours_.isKey) good.push_back(&neighbours_.before[number]);
  }
  if (good.empty() && !neighbours_.isKey && !neighbours_.after.empty()) good.push_back(&neighbours_.after.front());
  return good;
}

std::optional<std::uint32_t> DecodedTrial::usualComplaints() {
  std::optional<std::uint32_t> most;
  for (const platform::Bytes* const payload : goodPayloads()) {
    if (const auto trial = alone(*payload); trial && trial->hasPicture)
      most = std::max(most.value_or(0), trial->complaints);
  }
  // Without those that it is predicted from, a picture may cause a few more than others.
  constexpr std::uint32_t kMore = 2;
  if (most && neighbours_.needsKey) *most += kMore;
  return most;
}

std::optional<std::uint32_t> DecodedTrial::tellingEnd() {
  constexpr std::array<std::uint32_t, 6> kEnds{1, 2, 3, 4, 8, 16};
  std::optional<std::uint32_t> most;
  for (const platform::Bytes* const payload : goodPayloads()) {
    const auto whole = alone(*payload);
    if (!whole || !whole->hasPicture) continue;
    const auto tells = [&](std::uint32_t end) {
      if (end * 2 > payload->size()) return false;
      const auto shorter = alone(std::span(*payload).first(payload->size() - end));
      return shorter && !shorter->looksLike(*whole);
    };
    const auto least = std::ranges::find_if(kEnds, tells);
    if (least == kEnds.end()) return std::nullopt;
    most = std::max(most.value_or(0), *least);
  }
  if (most) ++*most;  // for one that reads on a little less than those
  return most;
}

}  // namespace zelvo::salvage
