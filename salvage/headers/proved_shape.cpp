#include "salvage/headers/proved_shape.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "avi/byte_order.h"
#include "salvage/headers/picture_texture.h"
#include "salvage/headers/ut_video.h"
#include "salvage/headers/zipped_blocks.h"

namespace zelvo::salvage {

namespace {

using ProvedPayloads = std::vector<platform::Bytes>;

constexpr std::size_t kAskedPayloads = 6;
constexpr std::size_t kDecodedPayloads = 3;

/// Whether that is so of nine in ten payloads.
template <class Claim>
bool isOfMost(const std::vector<SampledPayload>& payloads, const Claim& claim) {
  const auto holds = static_cast<std::size_t>(std::ranges::count_if(payloads, claim));
  return !payloads.empty() && holds * 10 >= payloads.size() * 9;
}

/// Some of the whole payloads that begin so, evenly taken. `isWanted` is asked with their first four bytes.
template <class Claim>
ProvedPayloads payloadsOf(const TrialChunks& chunks, const Claim& isWanted) {
  std::vector<std::uint32_t> numbers;
  for (std::uint32_t i = 0; i < chunks.candidates.size(); ++i) {
    const Candidate& chunk = chunks.candidates[i];
    if (chunk.kind() == CandidateKind::data && chunk.stream() == chunks.stream && chunks.chain.closes(i) &&
        chunk.size() > 4 && chunk.size() <= platform::TrialDecoder::kMaxPayload && isWanted(chunk.head()))
      numbers.push_back(i);
  }
  ProvedPayloads payloads;
  const std::size_t count = std::min(kAskedPayloads, numbers.size());
  for (std::size_t i = 0; i < count; ++i) {
    const Candidate& chunk = chunks.candidates[numbers[numbers.size() * (2 * i + 1) / (2 * count)]];
    payloads.push_back(chunks.input.readBytes(chunk.offset() + 8, chunk.size()));
  }
  return payloads;
}

class Proof {
 public:
  Proof(platform::TrialDecoder& decoder, TrialBudget& budget) : decoder_(decoder), budget_(budget) {}

  /// Whether a stream of such a shape has a picture in that payload.
  [[nodiscard]] bool takes(const TrialShape& shape, const platform::Bytes& payload) {
    return open(shape) && !decode(shape, payload, WantedPlanes::none).empty();
  }

  /// The one whose pictures are smoothest, by far against all of other sizes. Noise alone is as rough at any size.
  [[nodiscard]] std::optional<TrialShape> smoothest(const std::vector<TrialShape>& shapes,
                                                    const ProvedPayloads& payloads) {
    constexpr double kByFar = 0.9;
    std::vector<std::pair<double, TrialShape>> asked;
    for (const TrialShape& shape : shapes) {
      if (const auto rough = roughnessOf(shape, payloads)) asked.emplace_back(*rough, shape);
    }
    const auto best = std::ranges::min_element(asked, {}, &std::pair<double, TrialShape>::first);
    const bool isClear = best != asked.end() && std::ranges::all_of(asked, [&](const auto& other) {
                           return other.second.size == best->second.size || best->first <= kByFar * other.first;
                         });
    return isClear ? std::optional(best->second) : std::nullopt;
  }

  /// Whether the planes of these pictures are brightness and two of colour that come to red, green and blue, but for a
  /// few samples. Where they are green and how blue and red differ from it, black and bright samples do not.
  [[nodiscard]] bool areBrightnessAndColour(const TrialShape& shape, const ProvedPayloads& payloads) {
    constexpr std::size_t kFew = 500;
    if (!open(shape)) return false;
    std::size_t all = 0;
    std::size_t outside = 0;
    for (std::size_t i = 0; i < std::min(kDecodedPayloads, payloads.size()); ++i) {
      const Pictures pictures = decode(shape, payloads[i], WantedPlanes::all);
      if (pictures.empty() || pictures.front().planes.size() < 3) continue;
      const Planes& planes = pictures.front().planes;
      const auto value = [&](std::size_t plane, std::size_t at) { return static_cast<int>(planes[plane].samples[at]); };
      for (std::size_t at = 0; at < planes.front().samples.size(); ++at)
        outside += isColour(value(0, at), value(1, at), value(2, at)) ? 0U : 1U;
      all += planes.front().samples.size();
    }
    return all > 0 && outside * kFew <= all;
  }

 private:
  using WantedPlanes = platform::WantedPlanes;
  using Pictures = std::vector<platform::TrialPicture>;

  /// Brightness from 16 to 235, colours around 128; some more room is for noise and for other matrices.
  static bool isColour(int bright, int blue, int red) {
    constexpr double kRoom = 20;
    const double grey = 1.164 * (bright - 16);
    const auto isIn = [](double value) { return value >= -kRoom && value <= 255 + kRoom; };
    return isIn(grey + 1.596 * (red - 128)) && isIn(grey + 2.018 * (blue - 128)) &&
           isIn(grey - 0.813 * (red - 128) - 0.391 * (blue - 128));
  }

  [[nodiscard]] bool open(const TrialShape& shape) { return decoder_.open(streamOf(shape)); }

  /// None when the decoder has anything against it.
  [[nodiscard]] Pictures decode(const TrialShape& shape, const platform::Bytes& payload, WantedPlanes wanted) {
    Pictures pictures;
    if (!budget_.take(streamOf(shape))) return pictures;
    const auto take = [&](std::optional<platform::TrialAnswer> answer) {
      if (!answer || !answer->isAccepted || answer->complaints > 0) return false;
      std::ranges::move(answer->pictures, std::back_inserter(pictures));
      return true;
    };
    if (!take(decoder_.decode(payload, wanted)) || !take(decoder_.finish(wanted))) pictures.clear();
    return pictures;
  }

  [[nodiscard]] std::optional<double> roughnessOf(const TrialShape& shape, const ProvedPayloads& payloads) {
    if (!open(shape)) return std::nullopt;
    double sum = 0;
    const std::size_t count = std::min(kDecodedPayloads, payloads.size());
    for (std::size_t i = 0; i < count; ++i) {
      const Pictures pictures = decode(shape, payloads[i], WantedPlanes::all);
      if (pictures.empty() || pictures.front().planes.empty()) return std::nullopt;
      sum += textureOf(pictures.front().planes).roughness;
    }
    return count == 0 ? std::nullopt : std::optional(sum / static_cast<double>(count));
  }

  platform::TrialDecoder& decoder_;
  TrialBudget& budget_;
};

/// A way in which Ut Video keeps colours.
struct UtLayout {
  std::string_view code;
  std::size_t planes;
  std::uint32_t share;  ///< of the first plane's samples that a plane of colour has: one in so many
  std::uint16_t bits;
  std::array<std::uint8_t, 4> origin;  ///< what the encoder was given
};
constexpr std::array kUtLayouts = {
    UtLayout{"ULY0", 3, 4, 12, {'Y', 'V', '1', '2'}}, UtLayout{"ULY2", 3, 2, 16, {'Y', 'U', 'Y', '2'}},
    UtLayout{"ULRG", 3, 1, 24, {0, 0, 1, 0x18}},      UtLayout{"ULY4", 3, 1, 24, {'Y', 'V', '2', '4'}},
    UtLayout{"ULRA", 4, 1, 32, {0, 0, 2, 0x18}},
};

/// Samples that the first plane of all these pictures may have; nothing when three in four do not agree.
std::optional<CountRange> samplesOf(const UtLayout& layout, const std::vector<UtVideoPicture>& pictures) {
  CountRange range{1, kMaxUtVideoSamples};
  std::size_t agree = 0;
  for (const UtVideoPicture& picture : pictures) {
    if (picture.samples.size() != layout.planes || picture.slices != pictures.front().slices) continue;
    CountRange own = range;
    for (std::size_t i = 0; i < picture.samples.size(); ++i) {
      const std::uint64_t share = i == 0 ? 1 : layout.share;
      own.least = std::max(own.least, picture.samples[i].least * share);
      own.most = std::min(own.most, picture.samples[i].most * share);
    }
    if (own.least > own.most) continue;
    range = own;
    ++agree;
  }
  return agree * 4 >= pictures.size() * 3 && agree > 0 ? std::optional(range) : std::nullopt;
}

platform::Bytes utExtra(const UtLayout& layout, unsigned slices) {
  constexpr std::array<std::uint8_t, 4> kVersion{0xf0, 0, 0, 1};
  constexpr std::uint32_t kInfoSize = 4;
  platform::Bytes extra(16);
  std::ranges::transform(kVersion, extra.begin(), [](std::uint8_t byte) { return std::byte{byte}; });
  std::ranges::transform(layout.origin, extra.begin() + 4, [](std::uint8_t byte) { return std::byte{byte}; });
  avi::storeLittleEndian32(std::span(extra).subspan<8, 4>(), kInfoSize);
  avi::storeLittleEndian32(std::span(extra).subspan<12, 4>(), (slices - 1) << 24U | 1U);
  return extra;
}

/// Sizes with as many samples; the known one alone where it is among them.
std::vector<PictureSize> sizesWith(CountRange samples, std::optional<PictureSize> known) {
  constexpr std::uint64_t kWidestRange = 64;
  constexpr std::uint32_t kNarrowest = 16;
  std::vector<PictureSize> sizes;
  if (samples.most - samples.least > kWidestRange) return sizes;
  for (std::uint64_t count = samples.least; count <= samples.most; ++count) {
    if (known && std::uint64_t{known->width} * known->height == count) return {*known};
    for (std::uint32_t width = kNarrowest; std::uint64_t{width} * width <= count * 4; width += 2) {
      const auto height = static_cast<std::uint32_t>(count / width);
      if (count % width == 0 && height % 2 == 0 && height <= width * 2) sizes.push_back({width, height});
    }
  }
  return sizes;
}

std::optional<TrialShape> utShape(Proof& proof, const TrialChunks& chunks, std::optional<PictureSize> known) {
  const ProvedPayloads payloads = payloadsOf(chunks, [](std::uint32_t) { return true; });
  std::vector<UtVideoPicture> pictures;
  ProvedPayloads good;
  for (const platform::Bytes& payload : payloads) {
    auto picture = utVideoPicture(payload);
    if (!picture) continue;
    pictures.push_back(std::move(*picture));
    good.push_back(payload);
  }
  if (pictures.empty() || pictures.size() * 4 < payloads.size() * 3) return std::nullopt;
  std::vector<TrialShape> shapes;
  for (const UtLayout& layout : kUtLayouts) {
    const auto samples = samplesOf(layout, pictures);
    if (!samples) continue;
    for (const PictureSize size : sizesWith(*samples, known)) {
      shapes.push_back({Codec::intra, avi::FourCC::at(std::as_bytes(std::span(layout.code))), size, layout.bits,
                        utExtra(layout, pictures.front().slices)});
    }
  }
  const auto found = proof.smoothest(shapes, good);
  if (!found) return found;
  // Red, green and blue are packed as brightness and colour of full size are, which are rarer.
  const auto shapeIn = [&](avi::FourCC code) {
    return std::ranges::find_if(
        shapes, [&](const TrialShape& shape) { return shape.size == found->size && shape.compression == code; });
  };
  const avi::FourCC rare{"ULY4"};
  const avi::FourCC usual{"ULRG"};
  if (found->compression != rare && found->compression != usual) return found;
  return *shapeIn(proof.areBrightnessAndColour(*shapeIn(rare), good) ? rare : usual);
}

/// The length of what is zipped is known to a row: a decoder wants as much as the picture takes, so that one with a row
/// more is refused.
std::optional<TrialShape> zippedShape(Proof& proof, const TrialChunks& chunks, std::optional<PictureSize> known) {
  ProvedPayloads keys = payloadsOf(chunks, beginsZippedKey);
  std::erase_if(keys, [](const platform::Bytes& key) { return !zippedKey(key); });
  if (keys.empty()) return std::nullopt;
  const std::uint16_t bits = zippedKey(keys.front())->bits;
  std::vector<TrialShape> shapes;
  const auto add = [&](PictureSize size) {
    const TrialShape shape{Codec::zmbv, avi::FourCC{"ZMBV"}, size, bits, {}};
    TrialShape higher = shape;
    ++higher.size.height;
    if (proof.takes(shape, keys.front()) && !proof.takes(higher, keys.front())) shapes.push_back(shape);
  };
  if (known) add(*known);
  if (!shapes.empty()) return shapes.front();
  std::ranges::for_each(usualSizes(), add);
  std::ranges::for_each(kScreenSizes, add);
  return proof.smoothest(shapes, keys);
}

}  // namespace

std::optional<TrialShape> provedShape(platform::TrialDecoder& decoder, const TrialChunks& chunks,
                                      const StreamSample& sample, std::optional<PictureSize> known,
                                      TrialBudget& budget) {
  Proof proof(decoder, budget);
  const auto isUt = [](const SampledPayload& payload) { return beginsUtVideo(payload.bytes, payload.size); };
  if (isOfMost(sample.payloads, isUt)) return utShape(proof, chunks, known);
  const auto isZipped = [](const SampledPayload& payload) { return mayBeZipped(payload.bytes, payload.size); };
  if (isOfMost(sample.payloads, isZipped)) return zippedShape(proof, chunks, known);
  return std::nullopt;
}

}  // namespace zelvo::salvage
