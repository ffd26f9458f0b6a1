#include "salvage/plan/laid_cuts.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "salvage/payloads/codec.h"
#include "salvage/payloads/cut_search.h"
#include "salvage/payloads/dv_cuts.h"
#include "salvage/payloads/jpeg_cuts.h"
#include "salvage/payloads/ms_video_cuts.h"
#include "salvage/plan/slot_payload.h"

namespace zelvo::salvage {

namespace {

/// A picture that needs more pictures before it is tried without them.
constexpr std::size_t kMaxBefore = 300;
constexpr std::size_t kMaxBytesBefore = std::size_t{24} << 20U;
constexpr std::size_t kAfter = 2;
/// A key so many slots later shows another scene.
constexpr std::size_t kMaxToKey = 600;
/// A cut may take such a part of what is left of the film's budget, and this in any case: less finds hardly any.
constexpr std::uint64_t kShare = 3;
constexpr std::uint64_t kEnough = std::uint64_t{1} << 27U;
/// Of the cuts that a payload's own codes leave so many are decoded, which are found by reading it so many times.
constexpr std::size_t kMaxLikely = 16;
constexpr std::uint64_t kMaxWalks = 32;

class Cuts {
 public:
  Cuts(const Evidence& evidence, LaidFilm& film)
      : evidence_(evidence), film_(film), left_(TrialBudget::ofPictures(evidence.scan.end)) {}

  std::size_t close() {
    std::vector<OpenCut> left;
    for (const OpenCut& cut : film_.openCuts) {
      if (found_ + left.size() >= kMaxClosedCuts || !close(cut)) left.push_back(cut);
    }
    film_.openCuts = std::move(left);
    return found_;
  }

 private:
  [[nodiscard]] platform::Bytes read(const Slot& slot) const {
    return readPayload(evidence_.input, slot, film_.pieces);
  }

  [[nodiscard]] bool isOf(const Slot& slot, std::uint8_t stream) const {
    return slot.stream == stream && slot.hasSource() && slot.size <= platform::TrialDecoder::kMaxPayload;
  }

  /// Nothing when the budget is not enough to show them to a decoder.
  [[nodiscard]] std::optional<PayloadNeighbours> neighboursOf(std::size_t number, const platform::TrialStream& told) {
    const auto& slots = film_.slots;
    const std::uint8_t stream = slots[number].stream;
    PayloadNeighbours neighbours;
    neighbours.isKey = slots[number].hasKeyFlag;
    const Codec codec = codecOf(evidence_.header.streams[stream].header);
    neighbours.needsKey = codec == Codec::h264 || codec == Codec::hevc;
    neighbours.needsTwoKeys = codec == Codec::mpegVideo;
    std::vector<std::size_t> before;
    std::size_t bytes = 0;
    for (std::size_t i = number; i > 0; --i) {
      const Slot& slot = slots[i - 1];
      if (!isOf(slot, stream)) continue;
      bytes += slot.size;
      if (before.size() == kMaxBefore || bytes > kMaxBytesBefore) {
        before.clear();  // without the first of them, the others are of no use
        bytes = 0;
        break;
      }
      before.push_back(i - 1);
      if (slot.hasKeyFlag) break;
    }
    if (!left_.take(told, before.size(), bytes)) return std::nullopt;
    for (std::size_t i = before.size(); i > 0; --i) {
      const Slot& slot = slots[before[i - 1]];
      if (slot.state <= SlotState::rejoined) neighbours.good.push_back(neighbours.before.size());
      neighbours.before.push_back(read(slot));
    }
    for (std::size_t i = number + 1; i < slots.size() && neighbours.after.size() < kAfter; ++i) {
      if (isOf(slots[i], stream)) neighbours.after.push_back(read(slots[i]));
    }
    for (std::size_t i = number + 1; i < std::min(slots.size(), number + kMaxToKey); ++i) {
      if (!isOf(slots[i], stream) || !slots[i].hasKeyFlag) continue;
      neighbours.nextKey = read(slots[i]);
      break;
    }
    return neighbours;
  }

  /// Where the codec's own codes say that it may be; the likeliest first.
  [[nodiscard]] std::vector<std::uint32_t> likelyCuts(const OpenCut& cut, std::span<const std::byte> bytes,
                                                      TrialBudget& budget) const {
    const Slot& slot = film_.slots[cut.slot];
    const Codec codec = codecOf(evidence_.header.streams[slot.stream].header);
    if (codec == Codec::dv) return dvCuts(bytes, slot.size);
    const std::uint64_t mostWalked = std::min(budget.bytesToWalk() / 2, kMaxWalks * bytes.size());
    const auto likeliest = [&](auto found) {
      budget.takeWalk(found.walked);
      if (found.cuts.size() > kMaxLikely) found.cuts.resize(kMaxLikely);
      return std::move(found.cuts);
    };
    if (codec == Codec::jpeg) return likeliest(jpegCuts(bytes, slot.size, mostWalked));
    if (codec != Codec::msVideo8 && codec != Codec::msVideo16) return {};
    const PictureFormat format = pictureFormat(evidence_.header.streams[slot.stream].header);
    const unsigned bits = codec == Codec::msVideo8 ? 8 : 16;
    return likeliest(msVideoCuts(bytes, slot.size, bits, {format.width, format.height}, mostWalked));
  }

  bool close(const OpenCut& cut) {
    Slot& slot = film_.slots[cut.slot];
    const platform::TrialStream stream = trialStreamOf(evidence_.header.streams[slot.stream].header);
    const platform::Bytes bytes =
        evidence_.input.readBytes(cut.payload, static_cast<std::size_t>(slot.size + cut.added));
    if (bytes.size() != slot.size + cut.added || !evidence_.decoder->open(stream)) return false;
    const std::optional<PayloadNeighbours> neighbours = neighboursOf(cut.slot, stream);
    if (!neighbours) return false;
    TrialBudget budget = left_.share(kShare, kEnough);
    DecodedTrial trial(*evidence_.decoder, stream, *neighbours, budget);
    const auto place = searchCut(trial, bytes, slot.size, likelyCuts(cut, bytes, budget));
    left_.giveBack(budget);
    if (!place) return false;
    slot.pieces = static_cast<std::uint32_t>(film_.pieces.size());
    if (*place > 0) film_.pieces.push_back({cut.payload, *place});
    if (*place < slot.size) film_.pieces.push_back({cut.payload + *place + cut.added, slot.size - *place});
    slot.state = SlotState::rejoined;
    ++found_;
    return true;
  }

  const Evidence& evidence_;
  LaidFilm& film_;
  TrialBudget left_;
  std::size_t found_ = 0;
};

}  // namespace

std::size_t closeCuts(const Evidence& evidence, LaidFilm& film) {
  if (evidence.decoder == nullptr || film.openCuts.empty()) return 0;
  return Cuts(evidence, film).close();
}

}  // namespace zelvo::salvage
