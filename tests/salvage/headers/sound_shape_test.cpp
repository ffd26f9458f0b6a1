// What a sound stream holds, by its payloads alone.
#include "salvage/headers/sound_shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Codec;
using salvage::SampledPayload;
using salvage::soundShape;
using salvage::StreamSample;

StreamSample soundSampleOf(const std::vector<Bytes>& payloads) {
  StreamSample sample;
  for (const Bytes& payload : payloads) {
    const auto size = static_cast<std::uint32_t>(payload.size());
    sample.sizes.push_back(size);
    sample.payloads.push_back({size, payload});
    sample.whole.push_back({size, payload});
  }
  std::ranges::sort(sample.sizes);
  return sample;
}

Bytes mp3Frame(std::size_t size = 417) {
  Bytes frame = numbered({0xff, 0xfb, 0x90, 0x40});
  frame.resize(size, std::byte{0x77});
  if (size == 418) frame[2] = std::byte{0x92};
  return frame;
}

/// A wave of noise that is smooth in time, of so many channels and bits.
Bytes wave(std::size_t samples, unsigned channels, unsigned bits, double scale = 1) {
  std::mt19937 random(7);
  std::vector<double> now(channels);
  Bytes bytes;
  for (std::size_t i = 0; i < samples; ++i) {
    for (unsigned c = 0; c < channels; ++c) {
      now[c] = now[c] * 0.97 + (static_cast<double>(random() % 2000) - 1000) * scale;
      const auto value = static_cast<int>(std::lround(now[c]));
      if (bits == 8) {
        bytes.push_back(static_cast<std::byte>(128 + value / 256));
      } else {
        bytes.push_back(static_cast<std::byte>(static_cast<unsigned>(value) & 0xffU));
        bytes.push_back(static_cast<std::byte>(static_cast<unsigned>(value) >> 8U & 0xffU));
      }
    }
  }
  return bytes;
}

TEST(SoundShape, AFrameAChunkLastsItsSamples) {
  const auto shape = soundShape(soundSampleOf({mp3Frame(), mp3Frame(418), mp3Frame(), mp3Frame()}));
  EXPECT_EQ(shape.codec, Codec::mp3);
  EXPECT_TRUE(shape.isOfFrames);
  EXPECT_EQ(shape.samples, 1152U);
  EXPECT_EQ(shape.rate, 44100U);
  EXPECT_NEAR(shape.chunkSeconds(), 0.02612, 1e-5);
}

TEST(SoundShape, FramesThatRunOnAreAStreamOfBytes) {
  Bytes stream;
  for (int i = 0; i < 40; ++i) {
    const Bytes frame = mp3Frame();
    stream.insert(stream.end(), frame.begin(), frame.end());
  }
  std::vector<Bytes> blocks;
  for (std::size_t at = 100; at + 5000 < stream.size(); at += 5000)
    blocks.emplace_back(stream.begin() + static_cast<std::ptrdiff_t>(at),
                        stream.begin() + static_cast<std::ptrdiff_t>(at + 5000));
  const auto shape = soundShape(soundSampleOf(blocks));
  EXPECT_EQ(shape.codec, Codec::mp3);
  EXPECT_FALSE(shape.isOfFrames);
  EXPECT_EQ(shape.bytesPerSecond, 417U * 44100U / 1152U);
}

TEST(SoundShape, SamplesOfSixteenBits) {
  const auto mono = soundShape(soundSampleOf({wave(20000, 1, 16)}));
  EXPECT_EQ(mono.codec, Codec::pcm);
  EXPECT_EQ(mono.bits, 16);
  EXPECT_EQ(mono.channels, 1);
  EXPECT_EQ(mono.block, 2U);
  const auto stereo = soundShape(soundSampleOf({wave(20000, 2, 16)}));
  EXPECT_EQ(stereo.bits, 16);
  EXPECT_EQ(stereo.channels, 2);
  EXPECT_EQ(stereo.block, 4U);
}

TEST(SoundShape, ChannelsThatAreTheSameAreTwo) {
  const Bytes mono = wave(10000, 1, 16);
  Bytes both;
  for (std::size_t i = 0; i < mono.size(); i += 2) {
    for (int twice = 0; twice < 2; ++twice) both.insert(both.end(), {mono[i], mono[i + 1]});
  }
  EXPECT_EQ(soundShape(soundSampleOf({both})).channels, 2);
}

TEST(SoundShape, SamplesOfEightBits) {
  const auto mono = soundShape(soundSampleOf({wave(20000, 1, 8, 8)}));
  EXPECT_EQ(mono.codec, Codec::pcm);
  EXPECT_EQ(mono.bits, 8);
  EXPECT_EQ(mono.channels, 1);
  EXPECT_EQ(soundShape(soundSampleOf({wave(20000, 2, 8, 8)})).channels, 2);
}

TEST(SoundShape, OddChunksAreOfSingleBytes) {
  Bytes bytes = wave(9999, 1, 16);
  bytes.pop_back();
  EXPECT_EQ(soundShape(soundSampleOf({bytes})).bits, 8);
}

TEST(SoundShape, ALawIsToldByTheOrderOfItsLevels) {
  // Levels that are spread evenly around zero, as codes of A-law: the code of level zero is 0xd5.
  std::mt19937 random(3);
  std::normal_distribution<double> spread(0, 20);
  Bytes bytes;
  for (int i = 0; i < 20000; ++i) {
    const int step = std::clamp(static_cast<int>(spread(random)), -127, 127);
    const unsigned code = step >= 0 ? 0x80U | static_cast<unsigned>(step) : static_cast<unsigned>(-step - 1);
    bytes.push_back(static_cast<std::byte>(code ^ 0x55U));
  }
  EXPECT_EQ(soundShape(soundSampleOf({bytes})).codec, Codec::aLaw);
}

TEST(SoundShape, MuLawIsToldByTheOrderOfItsLevels) {
  std::mt19937 random(3);
  std::normal_distribution<double> spread(0, 20);
  Bytes bytes;
  for (int i = 0; i < 20000; ++i) {
    const int step = std::clamp(static_cast<int>(spread(random)), -127, 127);
    const unsigned code = step >= 0 ? static_cast<unsigned>(step) : 0x80U | static_cast<unsigned>(-step - 1);
    bytes.push_back(static_cast<std::byte>(~code & 0xffU));
  }
  EXPECT_EQ(soundShape(soundSampleOf({bytes})).codec, Codec::muLaw);
}

Bytes imaBlocks(unsigned channels, std::size_t count) {
  std::mt19937 random(5);
  Bytes bytes;
  for (std::size_t block = 0; block < count; ++block) {
    const std::size_t begin = bytes.size();
    for (unsigned c = 0; c < channels; ++c) {
      for (const unsigned value :
           {static_cast<unsigned>(random() & 0xffU), 0x12U, static_cast<unsigned>(random() % 89), 0U})
        bytes.push_back(static_cast<std::byte>(value));
    }
    while (bytes.size() < begin + 512) bytes.push_back(static_cast<std::byte>(random() & 0xffU));
  }
  return bytes;
}

TEST(SoundShape, ImaAdpcmHasItsHeadInEveryBlock) {
  const auto stereo = soundShape(soundSampleOf({imaBlocks(2, 4), imaBlocks(2, 2)}));
  EXPECT_EQ(stereo.codec, Codec::imaAdpcm);
  EXPECT_EQ(stereo.channels, 2);
  EXPECT_EQ(stereo.block, 512U);
  EXPECT_EQ(stereo.samples, 505U);
  EXPECT_EQ(soundShape(soundSampleOf({imaBlocks(1, 4), imaBlocks(1, 2)})).channels, 1);
}

TEST(SoundShape, BlocksTooSmallForTheirHeadHoldNothing) {
  EXPECT_EQ(salvage::samplesInBlock(Codec::imaAdpcm, 8, 2), 0U);
  EXPECT_EQ(salvage::samplesInBlock(Codec::imaAdpcm, 1024, 2), 1017U);
  EXPECT_EQ(salvage::samplesInBlock(Codec::msAdpcm, 1024, 2), 1012U);
  EXPECT_EQ(salvage::samplesInBlock(Codec::msAdpcm, 1024, 0), 0U);
}

TEST(SoundShape, NothingAtAllIsTakenForSamples) { EXPECT_EQ(soundShape(StreamSample{}).codec, Codec::pcm); }

}  // namespace
}  // namespace zelvo::tests
