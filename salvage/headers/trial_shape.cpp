// Each trial has a score, the less the better: how much the decoder complains, and how rough its picture is. A wrong
// width shears a picture, a wrong height spoils or leaves out planes. Decoders that take any size without a word are
// asked once more: with the end of a payload zeroed, a picture of the right size changes at its edge alone.
#include "salvage/headers/trial_shape.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "avi/byte_order.h"
#include "salvage/headers/picture_texture.h"
#include "salvage/payloads/key_picture.h"

namespace zelvo::salvage {

namespace {

using platform::Bytes;
using platform::PicturePlane;
using platform::TrialStream;
using platform::WantedPlanes;

struct TrialCodec {
  std::string_view code;
  Codec codec;
  std::uint16_t bits;
  bool needsExtra;
};

constexpr std::array kCodecs = {
    TrialCodec{"FFV1", Codec::ffv1, 24, false},    TrialCodec{"MP43", Codec::msMpeg4, 24, false},
    TrialCodec{"MP42", Codec::msMpeg4, 24, false}, TrialCodec{"WMV1", Codec::msMpeg4, 24, false},
    TrialCodec{"WMV2", Codec::wmv2, 24, true},     TrialCodec{"HFYU", Codec::intra, 16, true},
    TrialCodec{"HFYU", Codec::intra, 24, true},    TrialCodec{"HFYU", Codec::intra, 32, true},
    TrialCodec{"FFVH", Codec::intra, 12, true},
};

/// The commonest first, since the budget may not be enough for all.
constexpr std::array kTriedSizes = {
    PictureSize{320, 240},  PictureSize{640, 480},   PictureSize{720, 576},   PictureSize{720, 480},
    PictureSize{352, 288},  PictureSize{640, 360},   PictureSize{1280, 720},  PictureSize{160, 120},
    PictureSize{176, 144},  PictureSize{352, 240},   PictureSize{384, 288},   PictureSize{512, 384},
    PictureSize{768, 576},  PictureSize{800, 600},   PictureSize{1024, 768},  PictureSize{854, 480},
    PictureSize{848, 480},  PictureSize{640, 352},   PictureSize{624, 352},   PictureSize{608, 336},
    PictureSize{576, 320},  PictureSize{576, 432},   PictureSize{512, 288},   PictureSize{480, 360},
    PictureSize{480, 272},  PictureSize{480, 320},   PictureSize{480, 480},   PictureSize{480, 576},
    PictureSize{400, 300},  PictureSize{640, 272},   PictureSize{640, 256},   PictureSize{640, 384},
    PictureSize{640, 368},  PictureSize{640, 400},   PictureSize{640, 288},   PictureSize{640, 304},
    PictureSize{640, 336},  PictureSize{624, 336},   PictureSize{608, 256},   PictureSize{592, 320},
    PictureSize{576, 240},  PictureSize{576, 304},   PictureSize{528, 288},   PictureSize{512, 272},
    PictureSize{512, 304},  PictureSize{448, 336},   PictureSize{432, 240},   PictureSize{400, 224},
    PictureSize{368, 272},  PictureSize{360, 288},   PictureSize{360, 240},   PictureSize{320, 180},
    PictureSize{320, 200},  PictureSize{320, 176},   PictureSize{256, 192},   PictureSize{240, 180},
    PictureSize{240, 176},  PictureSize{240, 160},   PictureSize{208, 160},   PictureSize{192, 144},
    PictureSize{176, 132},  PictureSize{160, 112},   PictureSize{128, 96},    PictureSize{704, 576},
    PictureSize{704, 480},  PictureSize{704, 400},   PictureSize{704, 396},   PictureSize{704, 384},
    PictureSize{704, 288},  PictureSize{720, 540},   PictureSize{720, 405},   PictureSize{720, 404},
    PictureSize{720, 400},  PictureSize{720, 304},   PictureSize{720, 288},   PictureSize{688, 384},
    PictureSize{672, 384},  PictureSize{768, 432},   PictureSize{800, 450},   PictureSize{852, 480},
    PictureSize{960, 540},  PictureSize{1024, 576},  PictureSize{1280, 544},  PictureSize{1280, 528},
    PictureSize{1280, 960}, PictureSize{1280, 1024}, PictureSize{1440, 1080}, PictureSize{1920, 1080},
    PictureSize{1920, 800},
};

/// The first row in which two planes of one size differ, and the last one.
std::optional<std::pair<std::size_t, std::size_t>> changedRows(const PicturePlane& before, const PicturePlane& after) {
  const std::size_t width = before.width;
  std::optional<std::pair<std::size_t, std::size_t>> rows;
  for (std::size_t y = 0; y < before.height; ++y) {
    const auto from = static_cast<std::ptrdiff_t>(y * width);
    const auto row = before.samples.begin() + from;
    if (std::equal(row, row + static_cast<std::ptrdiff_t>(width), after.samples.begin() + from)) continue;
    rows = {rows ? rows->first : y, y};
  }
  return rows;
}

/// Whether such rows are the last ones of a plane, down to its edge; or the first ones, since some pictures begin at
/// the bottom.
bool areAtEdge(std::pair<std::size_t, std::size_t> rows, std::size_t height) {
  constexpr std::size_t kRows = 3;  // may come out the same by chance
  const std::size_t most = height * 4 / 10;
  const std::size_t edge = height * 3 / 100 + kRows;
  return (rows.first + most >= height && rows.second + edge >= height) || (rows.second <= most && rows.first <= edge);
}

class ShapeTrials {
 public:
  ShapeTrials(platform::TrialDecoder& decoder, const TrialChunks& chunks, TrialBudget& budget)
      : decoder_(decoder), chunks_(chunks), budget_(budget) {}

  std::optional<TrialShape> run(Codec likely, std::optional<PictureSize> known) {
    // Their first bits may be anything, so that they may have been taken for one of the others.
    const std::array codecs{likely, Codec::intra};
    for (const Codec codec : std::span(codecs).first(likely == Codec::intra ? 1 : 2)) {
      if (known) {
        if (auto found = best(codec, {&*known, 1})) return found;
      }
      if (auto found = best(codec, kTriedSizes)) return found;
    }
    return std::nullopt;
  }

 private:
  static constexpr std::size_t kKeys = 2;        ///< that tell
  static constexpr std::size_t kKeysAtHand = 6;  ///< more of them, should some be plain
  static constexpr std::uint32_t kMaxComplaints = 1;
  static constexpr double kOfComplaint = 0.2;
  static constexpr double kGoodScore = 0.15;

  struct Scored {
    TrialShape shape;
    double score = 0;
    bool isFlat = false;  ///< a plane of it is, as of pictures without colour
  };

  /// Scores a codec at a size. \return it when it is beyond doubt
  std::optional<TrialShape> tryCodec(const TrialCodec& codec, PictureSize size) {
    std::vector<Bytes>& keys = keysOf(codec.codec);
    if (keys.empty() || !isPlausible(codec, size, keys.front().size())) return std::nullopt;
    Scored one;
    one.shape = {codec.codec, avi::FourCC::at(std::as_bytes(std::span(codec.code))), size, codec.bits, {}};
    if (codec.needsExtra) one.shape.extra = decoder_.usualExtra(streamOf(one.shape));
    if ((codec.needsExtra && one.shape.extra.empty()) || !score(one, keys)) return std::nullopt;
    const bool isGood = one.score < kGoodScore && !one.isFlat;
    if (isGood && endAtEdge(one)) return one.shape;
    if (!isGood) scored_.push_back(std::move(one));
    return std::nullopt;
  }

  /// Whether a picture of such a size may take so many bytes. Codecs that lose nothing have at least a bit for each
  /// sample, and hardly more than the samples have.
  static bool isPlausible(const TrialCodec& codec, PictureSize size, std::uint64_t bytes) {
    const std::uint64_t bits = std::uint64_t{size.width} * size.height * codec.bits;
    const bool losesNothing = codec.codec == Codec::intra || codec.codec == Codec::ffv1;
    if (losesNothing && bytes * 8 > bits + bits / 4) return false;
    return codec.codec != Codec::intra || bytes * 64 >= bits;
  }

  /// Whole payloads that would be keys of such a codec, from different parts of the film; those that told something
  /// come first. Of a codec all of whose pictures are keys any will do.
  std::vector<Bytes>& keysOf(Codec codec) {
    auto known = std::ranges::find(keys_, codec, &std::pair<Codec, std::vector<Bytes>>::first);
    if (known != keys_.end()) return known->second;
    const std::vector<std::uint32_t> numbers = numbersOf(codec);
    keys_.emplace_back(codec, std::vector<Bytes>());
    std::vector<Bytes>& keys = keys_.back().second;
    const auto readAll = [&](std::size_t count) {
      for (std::size_t i = 0; i < count; ++i) keys.push_back(read(numbers[numbers.size() * (2 * i + 1) / (2 * count)]));
    };
    readAll(std::min(kKeys, numbers.size()));
    if (numbers.size() > kKeys) readAll(std::min(kKeysAtHand, numbers.size() - kKeys));
    return keys_.back().second;
  }

  [[nodiscard]] Bytes read(std::uint32_t number) const {
    const Candidate& chunk = chunks_.candidates[number];
    return chunks_.input.readBytes(chunk.offset() + 8, chunk.size());
  }

  /// The chunks that would be keys of such a codec.
  [[nodiscard]] std::vector<std::uint32_t> numbersOf(Codec codec) const {
    constexpr std::uint32_t kLeast = 64;
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t i = 0; i < chunks_.candidates.size(); ++i) {
      const Candidate& chunk = chunks_.candidates[i];
      if (chunk.kind() != CandidateKind::data || chunk.stream() != chunks_.stream || !chunks_.chain.closes(i) ||
          chunk.size() < kLeast || chunk.size() > platform::TrialDecoder::kMaxPayload)
        continue;
      std::array<std::byte, 4> head{};
      avi::storeLittleEndian32(head, chunk.head());
      if (isKeyPicture(codec, head).value_or(true)) numbers.push_back(i);
    }
    return numbers;
  }

  /// The picture of a payload by itself; none when nothing came of it, or when it is not wanted.
  [[nodiscard]] Planes decode(const TrialStream& stream, const Bytes& payload, WantedPlanes wanted,
                              std::uint32_t& complaints) {
    Planes planes;
    if (!budget_.take(stream)) {
      complaints = kMaxComplaints + 1;
      return planes;
    }
    const auto take = [&](std::optional<platform::TrialAnswer> answer) {
      complaints += answer ? answer->complaints + (answer->isAccepted ? 0U : 1U) : kMaxComplaints + 1;
      if (!answer) return false;
      for (platform::TrialPicture& picture : answer->pictures) {
        if (planes.empty()) planes = std::move(picture.planes);
      }
      return true;
    };
    if (take(decoder_.decode(payload, wanted))) static_cast<void>(take(decoder_.finish(wanted)));
    return planes;
  }

  /// False when it can be none: the decoder complains, or what comes is rough, or shows nothing.
  bool score(Scored& one, std::vector<Bytes>& keys) {
    const TrialStream stream = streamOf(one.shape);
    if (!decoder_.open(stream)) return false;
    std::uint32_t complaints = 0;
    // This one complains of most sizes, which costs less than pictures.
    if (one.shape.codec == Codec::msMpeg4)
      static_cast<void>(decode(stream, keys.front(), WantedPlanes::none, complaints));
    if (complaints > kMaxComplaints) return false;
    std::size_t telling = 0;
    for (std::size_t i = 0; i < keys.size() && telling < kKeys; ++i) {
      complaints = 0;
      const Planes planes = decode(stream, keys[i], WantedPlanes::all, complaints);
      if (complaints > kMaxComplaints || planes.empty() || planes.front().width != stream.width ||
          planes.front().height != stream.height || isMostlyFlat(planes.front()))
        return false;
      const Texture texture = textureOf(planes);
      if (isPlain(texture)) continue;
      if (isRough(texture)) return false;
      one.isFlat = one.isFlat || std::ranges::any_of(planes, isMostlyFlat);
      one.score += kOfComplaint * complaints + texture.roughness;
      std::rotate(keys.begin() + static_cast<std::ptrdiff_t>(telling), keys.begin() + static_cast<std::ptrdiff_t>(i),
                  keys.begin() + static_cast<std::ptrdiff_t>(i) + 1);
      ++telling;
    }
    if (telling == 0) return false;
    one.score /= static_cast<double>(telling);
    return true;
  }

  /// Whether the end of a payload is an edge of its picture, which is whole.
  [[nodiscard]] bool endsAtEdge(const TrialStream& stream, Bytes payload) {
    std::uint32_t complaints = 0;
    const Planes whole = decode(stream, payload, WantedPlanes::all, complaints);
    if (complaints > kMaxComplaints || whole.empty()) return false;
    const Texture texture = textureOf(whole);
    if (isRough(texture) && !isPlain(texture)) return false;
    const auto tail = static_cast<std::ptrdiff_t>(payload.size() / 64 + 4);
    std::fill(payload.end() - tail, payload.end(), std::byte{0});
    const Planes changed = decode(stream, payload, WantedPlanes::all, complaints);
    if (whole.size() != changed.size()) return false;
    bool hasChange = false;
    for (std::size_t i = 0; i < whole.size(); ++i) {
      if (whole[i].width != changed[i].width || whole[i].height != changed[i].height) return false;
      const auto rows = changedRows(whole[i], changed[i]);
      if (rows && !areAtEdge(*rows, whole[i].height)) return false;
      hasChange = hasChange || rows;
    }
    return hasChange;
  }

  /// Whether that is so of the first key, and of most of many: bytes of another codec may come to one smooth picture.
  [[nodiscard]] bool endAtEdge(const Scored& one) {
    constexpr std::size_t kMany = 8;
    const TrialStream stream = streamOf(one.shape);
    const Codec codec = one.shape.codec;
    if (!decoder_.open(stream) || !endsAtEdge(stream, keysOf(codec).front())) return false;
    const std::vector<std::uint32_t> numbers = numbersOf(codec);
    const std::size_t asked = std::min(kMany, numbers.size());
    std::size_t held = 0;
    for (std::size_t i = 0; i < asked; ++i)
      held += endsAtEdge(stream, read(numbers[numbers.size() * i / asked])) ? 1U : 0U;
    return held * 4 >= asked * 3;
  }

  [[nodiscard]] std::optional<TrialShape> best(Codec likely, std::span<const PictureSize> sizes) {
    scored_.clear();
    for (const PictureSize size : sizes) {
      for (const TrialCodec& codec : kCodecs) {
        if (codec.codec != likely) continue;
        if (auto found = tryCodec(codec, size)) return found;
      }
    }
    std::ranges::stable_sort(scored_, {}, &Scored::score);
    for (const Scored& one : scored_) {
      if (endAtEdge(one)) return one.shape;
    }
    return std::nullopt;
  }

  platform::TrialDecoder& decoder_;
  const TrialChunks& chunks_;
  TrialBudget& budget_;
  std::vector<std::pair<Codec, std::vector<Bytes>>> keys_;
  std::vector<Scored> scored_;
};

}  // namespace

TrialStream streamOf(const TrialShape& shape) {
  return {shape.compression.value, shape.size.width, shape.size.height, shape.bits, shape.extra};
}

std::span<const PictureSize> usualSizes() { return kTriedSizes; }

std::optional<TrialShape> tryShapes(platform::TrialDecoder& decoder, const TrialChunks& chunks, Codec likely,
                                    std::optional<PictureSize> known, TrialBudget& budget) {
  return ShapeTrials(decoder, chunks, budget).run(likely, known);
}

}  // namespace zelvo::salvage
