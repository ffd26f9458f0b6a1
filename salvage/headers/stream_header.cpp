#include "salvage/headers/stream_header.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "avi/byte_order.h"

namespace zelvo::salvage {

namespace {

using platform::Bytes;

constexpr std::size_t kStreamHeader = 56;

void put(Bytes& bytes, std::uint64_t value, std::size_t count) {
  for (; count > 0; --count, value >>= 8U) bytes.push_back(static_cast<std::byte>(value & 0xffU));
}

void store(Bytes& bytes, std::size_t at, std::uint32_t value) {
  avi::storeLittleEndian32(std::span(bytes).subspan(at).first<4>(), value);
}

SurvivingStream begin(avi::FourCC type, avi::FourCC handler, std::uint32_t sampleSize) {
  SurvivingStream stream;
  stream.type = type;
  stream.handler = handler;
  stream.sampleSize = sampleSize;
  stream.header.resize(kStreamHeader);
  store(stream.header, 0, type.value);
  store(stream.header, 4, handler.value);
  store(stream.header, 40, 0xffffffff);  // dwQuality: the codec's own
  store(stream.header, 44, sampleSize);
  return stream;
}

std::uint16_t tagOf(Codec codec) {
  switch (codec) {
    case Codec::msAdpcm:
      return 0x02;
    case Codec::aLaw:
      return 0x06;
    case Codec::muLaw:
      return 0x07;
    case Codec::imaAdpcm:
      return 0x11;
    case Codec::mp2:
      return 0x50;
    case Codec::mp3:
      return 0x55;
    case Codec::aac:
      return 0xff;
    case Codec::wma:
      return 0x161;
    case Codec::ac3:
      return 0x2000;
    default:
      return 0x01;
  }
}

/// AudioSpecificConfig: the low complexity profile, the rate by its number, the channels.
Bytes aacConfiguration(const SoundShape& shape) {
  constexpr std::array<std::uint32_t, 13> kRates{96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                                 22050, 16000, 12000, 11025, 8000,  7350};
  constexpr std::uint32_t kLowComplexity = 2;
  const auto nearest = std::ranges::min_element(
      kRates, {}, [&](std::uint32_t rate) { return rate > shape.rate ? rate - shape.rate : shape.rate - rate; });
  const auto number = static_cast<std::uint32_t>(nearest - kRates.begin());
  const std::uint32_t word = kLowComplexity << 11U | number << 7U | std::uint32_t{shape.channels} << 3U;
  Bytes bytes;
  put(bytes, word >> 8U, 1);
  put(bytes, word & 0xffU, 1);
  return bytes;
}

/// What follows cbSize.
Bytes extraOf(const SoundShape& shape, std::uint32_t frame) {
  Bytes extra;
  if (shape.codec == Codec::aac) return aacConfiguration(shape);
  if (shape.codec == Codec::wma) {
    put(extra, 0, 4);  // dwSamplesPerBlock
    put(extra, 1, 2);  // wEncodeOptions
    put(extra, 0, 4);  // dwSuperBlockAlign
  }
  if (shape.codec == Codec::imaAdpcm) put(extra, shape.samples, 2);
  if (shape.codec == Codec::msAdpcm) {
    constexpr std::array<int, 14> kPairs{256, 0, 512, -256, 0, 0, 192, 64, 240, 0, 460, -208, 392, -232};
    put(extra, shape.samples, 2);
    put(extra, kPairs.size() / 2, 2);
    for (const int value : kPairs) put(extra, static_cast<std::uint16_t>(static_cast<std::int16_t>(value)), 2);
  }
  if (shape.codec == Codec::mp3) {  // MPEGLAYER3WAVEFORMAT
    put(extra, 1, 2);               // wID
    put(extra, 2, 4);               // fdwFlags: no padding
    put(extra, frame, 2);           // nBlockSize
    put(extra, 1, 2);               // nFramesPerBlock
    put(extra, 1393, 2);            // nCodecDelay, as usual
  }
  return extra;
}

}  // namespace

void setClock(SurvivingStream& stream, std::uint32_t scale, std::uint32_t rate) {
  stream.scale = scale;
  stream.rate = rate;
  if (stream.header.size() < 28) return;
  store(stream.header, 20, scale);
  store(stream.header, 24, rate);
}

void setSampleRate(SurvivingStream& stream, std::uint32_t rate) {
  const SoundFormat format = soundFormat(stream);
  const auto changed = [&](std::uint32_t value) {
    const double exact = static_cast<double>(value) * rate / format.samplesPerSec;
    return static_cast<std::uint32_t>(std::clamp(std::round(exact), 1.0, 4294967295.0));
  };
  setClock(stream, stream.scale, changed(stream.rate));
  store(stream.format, 4, rate);
  store(stream.format, 8, changed(format.avgBytesPerSec));
}

SurvivingStream makePictureHeader(const PictureShape& shape, PictureRate rate) {
  SurvivingStream stream = begin(avi::kVids, shape.compression, 0);
  setClock(stream, rate.scale, rate.rate);
  store(stream.header, 52, shape.size.width | shape.size.height << 16U);  // rcFrame: right, bottom
  const std::uint32_t bits = std::uint32_t{shape.size.width} * shape.bits;
  const std::uint32_t row = shape.codec == Codec::rawPicture && shape.bits != 12 ? (bits + 31) / 32 * 4 : bits / 8;
  put(stream.format, 40, 4);
  put(stream.format, shape.size.width, 4);
  put(stream.format, shape.isTopDown && shape.compression.value == 0 ? ~shape.size.height + 1 : shape.size.height, 4);
  put(stream.format, 1, 2);  // biPlanes
  put(stream.format, shape.bits, 2);
  put(stream.format, shape.compression.value, 4);
  put(stream.format, row * shape.size.height, 4);
  stream.format.resize(40);
  if (!shape.extra.empty()) {
    stream.format.insert(stream.format.end(), shape.extra.begin(), shape.extra.end());
    store(stream.format, 0, static_cast<std::uint32_t>(stream.format.size()));
  } else if (shape.codec == Codec::wmv2) {
    // Pictures a second and kilobits, which no decoder needs, and the tools that one writer always uses.
    for (const unsigned byte : {0xcbU, 0x0dU, 0xb4U, 0x80U}) put(stream.format, byte, 1);
    avi::storeLittleEndian32(std::span(stream.format).first<4>(), 44);
  }
  // A picture of 8 bits is grey when nothing tells its colours.
  if (shape.bits == 8 && (shape.codec == Codec::rawPicture || shape.codec == Codec::msVideo8)) {
    for (std::uint32_t grey = 0; grey < 256; ++grey) put(stream.format, grey * 0x010101U, 4);
  }
  return stream;
}

SurvivingStream makeSoundHeader(const SoundShape& shape, std::uint32_t largestChunk) {
  std::uint32_t block = shape.block;
  std::uint32_t bytesPerSecond = shape.bytesPerSecond;
  SurvivingStream stream;
  if (shape.isOfFrames) {
    // Readers count a chunk as so many units as blocks begin in it.
    block = std::max(shape.codec == Codec::ac3 ? 3840 : shape.samples, largestChunk);
    if (bytesPerSecond == 0) bytesPerSecond = 16000;
    stream = begin(avi::kAuds, {}, 0);
    setClock(stream, shape.samples, shape.rate);
  } else if (shape.bytesPerSecond != 0) {
    stream = begin(avi::kAuds, {}, 1);
    setClock(stream, 1, shape.bytesPerSecond);
  } else {
    const std::uint32_t samples = std::max(1U, shape.samples);
    bytesPerSecond = static_cast<std::uint32_t>(std::uint64_t{shape.rate} * block / samples);
    stream = begin(avi::kAuds, {}, block);
    setClock(stream, samples, shape.rate);
  }
  const Bytes extra = extraOf(shape, block);
  put(stream.format, tagOf(shape.codec), 2);
  put(stream.format, shape.channels, 2);
  put(stream.format, shape.rate, 4);
  put(stream.format, bytesPerSecond, 4);
  put(stream.format, std::min(block, 0xffffU), 2);
  put(stream.format, shape.bits, 2);
  put(stream.format, extra.size(), 2);
  stream.format.insert(stream.format.end(), extra.begin(), extra.end());
  return stream;
}

SurvivingStream makeTextHeader(PictureRate rate) {
  SurvivingStream stream = begin(avi::FourCC{"txts"}, {}, 0);
  setClock(stream, rate.scale, rate.rate);
  return stream;
}

}  // namespace zelvo::salvage
