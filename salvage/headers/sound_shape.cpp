// Each codec that can be known by its payloads is tried; what is none of them are samples, whose width and channels
// their own differences tell.
#include "salvage/headers/sound_shape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <span>

#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/sound_frame.h"

namespace zelvo::salvage {

namespace {

using Payload = std::span<const std::byte>;

/// How often a claim must hold.
bool isNearlyAll(std::size_t holds, std::size_t all, unsigned perCent) {
  return all > 0 && holds * 100 >= all * perCent;
}

/// Whole frames one after the other that make up a payload.
struct Frames {
  std::uint32_t count = 0;
  SoundFrame first;
};

/// Nothing when the payload is not made of whole frames, as far as its front shows.
std::optional<Frames> framesOf(Codec codec, const SampledPayload& payload) {
  Frames frames;
  std::uint32_t at = 0;
  while (at < payload.size) {
    if (at >= payload.bytes.size()) return std::nullopt;
    const auto frame = soundFrame(codec, Payload(payload.bytes).subspan(at));
    if (!frame || frame->size == 0 || frame->size > payload.size - at) return std::nullopt;
    if (frames.count++ == 0) frames.first = *frame;
    at += frame->size;
  }
  if (frames.count == 0) return std::nullopt;
  return frames;
}

SoundShape shapeOf(Codec codec, const SoundFrame& frame) {
  SoundShape shape;
  shape.codec = codec;
  shape.channels = frame.channels;
  shape.rate = frame.rate;
  shape.samples = frame.samples;
  shape.bytesPerSecond =
      static_cast<std::uint32_t>(std::uint64_t{frame.size} * frame.rate / std::max(1U, frame.samples));
  return shape;
}

/// Chunks of whole frames.
std::optional<SoundShape> wholeFrames(Codec codec, const StreamSample& sample) {
  std::vector<Frames> found;
  for (const SampledPayload& payload : sample.payloads) {
    if (const auto frames = framesOf(codec, payload)) found.push_back(*frames);
  }
  if (!isNearlyAll(found.size(), sample.payloads.size(), 80)) return std::nullopt;
  SoundShape shape = shapeOf(codec, found[found.size() / 2].first);
  const std::uint32_t count = found[found.size() / 2].count;
  const auto isSame = [&](const Frames& frames) { return frames.count == count; };
  shape.isOfFrames = isNearlyAll(static_cast<std::size_t>(std::ranges::count_if(found, isSame)), found.size(), 90);
  if (shape.isOfFrames) shape.samples *= count;
  return shape;
}

/// Frames that run on from chunk to chunk: three in a row somewhere in each long payload.
std::optional<SoundShape> streamOfFrames(Codec codec, const StreamSample& sample) {
  std::size_t found = 0;
  std::size_t looked = 0;
  std::optional<SoundFrame> any;
  for (const SampledPayload& payload : sample.whole) {
    if (payload.bytes.size() < 4096) continue;
    ++looked;
    for (std::size_t at = 0; at < 2048; ++at) {
      std::size_t next = at;
      int row = 0;
      std::optional<SoundFrame> frame;
      for (; row < 3 && next < payload.bytes.size(); ++row) {
        frame = soundFrame(codec, Payload(payload.bytes).subspan(next));
        if (!frame || frame->size < 8) break;
        next += frame->size;
      }
      if (row < 3) continue;
      any = frame;
      ++found;
      break;
    }
  }
  if (!any || found < looked) return std::nullopt;
  return shapeOf(codec, *any);
}

std::optional<SoundShape> compressed(const StreamSample& sample) {
  for (const Codec codec : {Codec::mp3, Codec::mp2, Codec::ac3}) {
    if (auto shape = wholeFrames(codec, sample)) return shape;
  }
  for (const Codec codec : {Codec::mp3, Codec::mp2, Codec::ac3}) {
    if (auto shape = streamOfFrames(codec, sample)) return shape;
  }
  return std::nullopt;
}

bool isImaHead(Payload block, std::uint16_t channels) {
  for (std::size_t i = 0; i < channels; ++i) {
    if (static_cast<unsigned>(block[4 * i + 2]) > 88 || block[4 * i + 3] != std::byte{0}) return false;
  }
  return true;
}

bool isMsHead(Payload block, std::uint16_t channels) {
  for (std::size_t i = 0; i < channels; ++i) {
    const auto low = static_cast<unsigned>(block[channels + 2 * i]);
    const unsigned step = low | static_cast<unsigned>(block[channels + 2 * i + 1]) << 8U;
    if (static_cast<unsigned>(block[i]) > 6 || step == 0 || step > 0x3fff) return false;
  }
  return true;
}

std::optional<SoundShape> adpcm(const StreamSample& sample) {
  std::uint32_t divisor = 0;
  for (const std::uint32_t size : sample.sizes) divisor = std::gcd(divisor, size);
  constexpr std::array<std::uint32_t, 5> kBlocks{256, 512, 1024, 2048, 4096};
  std::vector<std::uint32_t> blocks;
  for (const std::uint32_t block : kBlocks) {
    if (divisor != 0 && divisor % block == 0) blocks.push_back(block);
  }
  if (divisor >= 32 && divisor <= 8192) blocks.push_back(divisor);
  for (const Codec codec : {Codec::imaAdpcm, Codec::msAdpcm}) {
    for (const std::uint16_t channels : {std::uint16_t{2}, std::uint16_t{1}}) {
      for (const std::uint32_t block : blocks) {
        std::size_t holds = 0;
        std::size_t all = 0;
        for (const auto* list : {&sample.payloads, &sample.whole}) {
          for (const SampledPayload& payload : *list) {
            for (std::size_t at = 0; at + 16 <= payload.bytes.size() && all < 2000; at += block, ++all) {
              const Payload head = Payload(payload.bytes).subspan(at, 16);
              const bool isHead = codec == Codec::imaAdpcm ? isImaHead(head, channels) : isMsHead(head, channels);
              if (isHead) ++holds;
            }
          }
        }
        if (all < 4 || !isNearlyAll(holds, all, codec == Codec::imaAdpcm ? 97 : 95)) continue;
        SoundShape shape;
        shape.codec = codec;
        shape.channels = channels;
        shape.bits = 4;
        shape.block = block;
        shape.samples = samplesInBlock(codec, block, channels);
        return shape;
      }
    }
  }
  return std::nullopt;
}

/// Frames of raw AAC vary in size and all begin with the same kind of element.
std::optional<SoundShape> aac(const StreamSample& sample) {
  if (sample.commonSize() != 0 || sample.payloads.size() < 8) return std::nullopt;
  for (const std::uint16_t channels : {std::uint16_t{2}, std::uint16_t{1}}) {
    // Element and tag 0, and of a single channel what follows differs, so only a pair's first byte is nearly constant.
    const auto isElement = [&](const SampledPayload& payload) {
      return BitReader(payload.bytes).read(7) == (channels == 2 ? 0x10U : 0U);
    };
    const auto holds = static_cast<std::size_t>(std::ranges::count_if(sample.payloads, isElement));
    const bool isShort = sample.sizes[sample.sizes.size() / 2] < 1500;
    if (!isShort || !isNearlyAll(holds, sample.payloads.size(), 97)) continue;
    SoundShape shape;
    shape.codec = Codec::aac;
    shape.channels = channels;
    shape.samples = 1024;
    shape.isOfFrames = true;
    return shape;
  }
  return std::nullopt;
}

/// Windows Media Audio: all chunks are so many blocks of one length, which follows from bit rate and sample rate.
std::optional<SoundShape> wma(const StreamSample& sample) {
  constexpr std::array<std::uint32_t, 6> kFrameRates{44100, 48000, 32000, 22050, 16000, 11025};
  constexpr std::array<std::uint32_t, 12> kBitRates{128000, 64000, 96000, 160000, 192000, 48000,
                                                    32000,  80000, 20000, 40000,  16000,  8000};
  const std::uint32_t size = sample.commonSize();
  if (size % 2 == 0 || sample.sizes.size() < 8) return std::nullopt;
  for (const std::uint32_t bitRate : kBitRates) {
    for (const std::uint32_t rate : kFrameRates) {
      const std::uint32_t length = rate > 22050 ? 2048 : rate > 16000 ? 1024 : 512;
      const std::uint32_t block = bitRate / 8 * length / rate;
      if (block == 0 || size % block != 0 || size / block > 8) continue;
      SoundShape shape;
      shape.codec = Codec::wma;
      shape.channels = bitRate >= 48000 || rate > 22050 ? 2 : 1;
      shape.bits = 16;
      shape.block = block;
      shape.rate = rate;
      shape.samples = length;
      return shape;
    }
  }
  return std::nullopt;
}

double entropyOf(Payload bytes, std::size_t phase) {
  std::array<std::uint32_t, 256> counts{};
  std::uint32_t all = 0;
  for (std::size_t i = phase; i < bytes.size(); i += 2) {
    ++counts[static_cast<std::size_t>(bytes[i])];
    ++all;
  }
  double entropy = 0;
  for (const std::uint32_t count : counts) {
    if (count == 0) continue;
    const double share = static_cast<double>(count) / all;
    entropy -= share * std::log2(share);
  }
  return entropy;
}

/// Mean differences between samples that lie 1 and 2 apart; those 1 apart also by whether the first is even.
struct Differences {
  double even = 0;
  double odd = 0;
  double two = 0;
};

template <class Sample>
Differences differencesOf(std::size_t count, const Sample& sample) {
  Differences sums;
  for (std::size_t i = 0; i + 3 < count; i += 2) {
    sums.even += std::abs(sample(i) - sample(i + 1));
    sums.odd += std::abs(sample(i + 1) - sample(i + 2));
    sums.two += (std::abs(sample(i) - sample(i + 2)) + std::abs(sample(i + 1) - sample(i + 3))) / 2;
  }
  return sums;
}

/// Two channels in turns: samples of one time are alike in another way than samples of two, or samples of one channel
/// are more alike than neighbours.
bool isStereo(const Differences& sums) {
  const double neighbours = (sums.even + sums.odd) / 2;
  if (neighbours == 0) return false;
  if (sums.even < 0.75 * sums.odd || sums.odd < 0.75 * sums.even) return true;
  return sums.two < 0.9 * neighbours;
}

/// The level that a code of G.711 stands for.
int aLawLevel(unsigned code) {
  code ^= 0x55U;
  const unsigned segment = code >> 4U & 7U;
  int level = static_cast<int>((code & 15U) << 4U) + 8;
  if (segment > 0) level = (level + 0x100) << (segment - 1);
  return (code & 0x80U) != 0 ? level : -level;
}

int muLawLevel(unsigned code) {
  code = ~code & 0xffU;
  const int level = ((static_cast<int>(code & 15U) << 3) + 0x84) << (code >> 4U & 7U);
  return (code & 0x80U) != 0 ? 0x84 - level : level - 0x84;
}

/// How much the numbers of neighbouring codes differ when the codes are ordered by their levels: true levels are spread
/// smoothly.
template <class Level>
double roughness(const std::array<std::uint32_t, 256>& counts, const Level& level) {
  std::array<unsigned, 256> order{};
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::stable_sort(order, {}, level);
  double before = 0;
  double sum = 0;
  for (const unsigned code : order) {
    sum += std::abs(counts[code] - before);
    before = counts[code];
  }
  return sum + before;
}

/// Bytes are samples of eight bits, or codes of one of two laws.
Codec codecOfBytes(std::span<const std::byte> bytes) {
  std::array<std::uint32_t, 256> counts{};
  for (const std::byte byte : bytes) ++counts[static_cast<std::size_t>(byte)];
  const double linear = roughness(counts, [](unsigned code) { return static_cast<int>(code); });
  const double aLaw = roughness(counts, aLawLevel);
  const double muLaw = roughness(counts, muLawLevel);
  if (linear <= std::min(aLaw, muLaw)) return Codec::pcm;
  return aLaw <= muLaw ? Codec::aLaw : Codec::muLaw;
}

SoundShape samples(const StreamSample& sample) {
  platform::Bytes bytes;
  for (const SampledPayload& payload : sample.whole) {
    // From an even place on, so that pairs of bytes stay pairs.
    const std::size_t size = payload.bytes.size() & ~std::size_t{3};
    bytes.insert(bytes.end(), payload.bytes.begin(), payload.bytes.begin() + static_cast<std::ptrdiff_t>(size));
  }
  constexpr double kAlike = 0.35;
  const bool isOdd = std::ranges::any_of(sample.sizes, [](std::uint32_t size) { return size % 2 != 0; });
  const bool isOfBytes = isOdd || std::abs(entropyOf(bytes, 0) - entropyOf(bytes, 1)) <= kAlike;
  SoundShape shape;
  shape.bits = isOfBytes ? 8 : 16;
  if (isOfBytes) shape.codec = codecOfBytes(bytes);
  const auto byteAt = [&](std::size_t i) { return static_cast<double>(bytes[i]); };
  const auto wordAt = [&](std::size_t i) {
    const auto word =
        static_cast<std::uint16_t>(static_cast<unsigned>(bytes[2 * i]) | static_cast<unsigned>(bytes[2 * i + 1]) << 8U);
    return static_cast<double>(static_cast<std::int16_t>(word));
  };
  const std::uint32_t frame = isOfBytes ? 2 : 4;
  const bool isInPairs =
      std::ranges::all_of(sample.sizes, [&](std::uint32_t size) { return size % frame == 0; }) &&
      isStereo(isOfBytes ? differencesOf(bytes.size(), byteAt) : differencesOf(bytes.size() / 2, wordAt));
  shape.channels = isInPairs ? 2 : 1;
  shape.block = isInPairs ? frame : frame / 2;
  return shape;
}

}  // namespace

double SoundShape::chunkSeconds() const { return isOfFrames && rate != 0 ? static_cast<double>(samples) / rate : 0; }

std::uint32_t samplesInBlock(Codec codec, std::uint32_t block, std::uint16_t channels) {
  const std::uint32_t head = (codec == Codec::imaAdpcm ? 4U : 7U) * channels;
  if (channels == 0 || block <= head) return 0;
  return (block - head) * 2 / channels + (codec == Codec::imaAdpcm ? 1 : 2);
}

SoundShape soundShape(const StreamSample& sample) {
  if (auto shape = compressed(sample)) return *shape;
  if (auto shape = adpcm(sample)) return *shape;
  if (auto shape = aac(sample)) return *shape;
  if (auto shape = wma(sample)) return *shape;
  return samples(sample);
}

}  // namespace zelvo::salvage
