#include "salvage/headers/trial_shape.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/salvage/scanned_film.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using platform::TrialStream;
using platform::WantedPlanes;
using salvage::Codec;
using salvage::PictureSize;
using salvage::TrialBudget;
using salvage::TrialShape;

constexpr std::size_t kMark = 4;

/// A decoder of a codec that is made up: a mark of four bytes, then grey samples row by row. It takes any size without
/// a word; what is missing stays grey.
class PlainPictures final : public platform::TrialDecoder {
 public:
  [[nodiscard]] bool open(const TrialStream& stream) override {
    ++opened;
    stream_ = stream;
    return stream.codec == knownCode.value && stream.extra == wantedExtra;
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> decode(std::span<const std::byte> payload, WantedPlanes) override {
    ++decodes;
    if (isDeadly) return std::nullopt;
    platform::PicturePlane plane{stream_.width, stream_.height, {}};
    plane.samples.resize(std::size_t{stream_.width} * stream_.height, std::byte{0x80});
    const auto samples = payload.subspan(std::min(kMark, payload.size()));
    std::copy_n(samples.begin(), std::min(samples.size(), plane.samples.size()), plane.samples.begin());
    if (isUpsideDown) std::ranges::reverse(plane.samples);
    platform::TrialAnswer answer{.isAccepted = true, .complaints = 0, .pictures = {}};
    answer.pictures.push_back({0, platform::PictureType::intra, true, {std::move(plane)}});
    return answer;
  }
  [[nodiscard]] std::optional<platform::TrialAnswer> finish(WantedPlanes) override {
    return platform::TrialAnswer{.isAccepted = true, .complaints = 0, .pictures = {}};
  }
  [[nodiscard]] Bytes usualExtra(const TrialStream&) override { return wantedExtra; }
  [[nodiscard]] bool isThere() override { return true; }

  avi::FourCC knownCode{"MP43"};
  Bytes wantedExtra;
  bool isDeadly = false;
  bool isUpsideDown = false;
  std::size_t opened = 0;
  std::size_t decodes = 0;

 private:
  TrialStream stream_;
};

/// Waves in both directions, so that every width but the right one shears them.
Bytes waves(PictureSize size, unsigned number) {
  Bytes payload(kMark);
  payload[1] = static_cast<std::byte>(number);
  for (std::uint32_t y = 0; y < size.height; ++y) {
    for (std::uint32_t x = 0; x < size.width; ++x) {
      const double value = std::sin(x * 0.11 + number) * 60 + std::cos(y * 0.17 + x * 0.03) * 60 + 128;
      payload.push_back(static_cast<std::byte>(static_cast<int>(value)));
    }
  }
  return payload;
}

class TrialShapeTest : public testing::Test {
 protected:
  [[nodiscard]] std::optional<TrialShape> shapeOf(const std::vector<Bytes>& payloads, Codec likely = Codec::msMpeg4,
                                                  std::optional<PictureSize> known = std::nullopt) {
    Bytes film(200);
    appendText(film, "LIST");
    appendNumber(film, 0);
    appendText(film, "movi");
    for (const Bytes& payload : payloads) {
      appendText(film, "00dc");
      appendNumber(film, static_cast<std::uint32_t>(payload.size()));
      film.insert(film.end(), payload.begin(), payload.end());
      if (payload.size() % 2 != 0) film.push_back(std::byte{0});
    }
    ScannedFilm scanned(film);
    scanned.run();
    return tryShapes(decoder, {*scanned.input, scanned.scan.candidates, scanned.chain, 0}, likely, known, budget);
  }
  [[nodiscard]] static std::vector<Bytes> film(PictureSize size) {
    std::vector<Bytes> payloads;
    for (unsigned number = 0; number < 8; ++number) payloads.push_back(waves(size, number));
    return payloads;
  }

  PlainPictures decoder;
  TrialBudget budget;
};

/// A white picture with noise of some steps.
Bytes flash(PictureSize size) {
  Bytes payload(kMark);
  std::uint32_t state = 1;
  for (std::uint32_t i = 0; i < size.width * size.height; ++i) {
    state = state * 1664525U + 1013904223U;
    payload.push_back(static_cast<std::byte>(225U + (state >> 24U) % 20U));
  }
  return payload;
}

TEST_F(TrialShapeTest, PicturesThatShowNothingButNoiseAreNotAsked) {
  constexpr PictureSize kSize{320, 240};
  std::vector<Bytes> payloads = film(kSize);
  for (const std::size_t dark : {0U, 2U, 3U, 6U}) payloads[dark] = flash(kSize);
  const auto shape = shapeOf(payloads);
  ASSERT_TRUE(shape);
  EXPECT_EQ(shape->size, kSize);
}

TEST_F(TrialShapeTest, WhatShowsNothingButNoiseAnywhereHasNoSize) {
  EXPECT_FALSE(shapeOf(std::vector<Bytes>(8, flash({320, 240}))));
}

TEST_F(TrialShapeTest, SizeIsThatWithTheSmoothestPicture) {
  for (const PictureSize size : {PictureSize{176, 144}, PictureSize{320, 240}, PictureSize{480, 272}}) {
    const auto shape = shapeOf(film(size));
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->size, size);
    EXPECT_EQ(shape->codec, Codec::msMpeg4);
    EXPECT_EQ(shape->compression, avi::FourCC{"MP43"});
  }
}

TEST_F(TrialShapeTest, CodecIsThatWhoseDecoderGivesAPicture) {
  decoder.knownCode = avi::FourCC{"MP42"};
  EXPECT_EQ(shapeOf(film({176, 144}))->compression, avi::FourCC{"MP42"});
}

TEST_F(TrialShapeTest, CodecThatMakesPicturesOfAFewPayloadsAloneIsNone) {
  std::vector<Bytes> payloads = film({176, 144});
  for (const std::size_t odd : {0U, 4U}) {
    std::uint32_t state = 1;
    for (std::byte& byte : payloads[odd]) byte = static_cast<std::byte>((state = state * 1664525 + 1013904223) >> 24U);
    payloads[odd][0] = std::byte{0};
  }
  EXPECT_TRUE(shapeOf(payloads));
  for (std::size_t odd = 0; odd < payloads.size(); ++odd) {
    if (odd != 2 && odd != 6) payloads[odd] = payloads[odd == 4 ? 0 : 4];
  }
  EXPECT_EQ(shapeOf(payloads), std::nullopt);
}

TEST_F(TrialShapeTest, PicturesMayBeginAtTheBottom) {
  decoder.isUpsideDown = true;
  EXPECT_EQ(shapeOf(film({320, 240}))->size, (PictureSize{320, 240}));
}

TEST_F(TrialShapeTest, KnownSizeNeedsNoOthers) {
  EXPECT_EQ(shapeOf(film({300, 200}), Codec::msMpeg4, PictureSize{300, 200})->size, (PictureSize{300, 200}));
  EXPECT_LT(decoder.decodes, 30U);
}

TEST_F(TrialShapeTest, SizeThatIsKnownWronglyIsFoundAllTheSame) {
  EXPECT_EQ(shapeOf(film({320, 240}), Codec::msMpeg4, PictureSize{640, 480})->size, (PictureSize{320, 240}));
}

TEST_F(TrialShapeTest, ExtraBytesAreThoseOfACommonEncoder) {
  decoder.knownCode = avi::FourCC{"HFYU"};
  decoder.wantedExtra = Bytes(7, std::byte{5});
  const auto shape = shapeOf(film({176, 144}), Codec::intra);
  ASSERT_TRUE(shape);
  EXPECT_EQ(shape->size, (PictureSize{176, 144}));
  EXPECT_EQ(shape->extra, decoder.wantedExtra);
}

TEST_F(TrialShapeTest, NothingComesOfASizeThatIsNotUsual) { EXPECT_FALSE(shapeOf(film({333, 111}))); }

TEST_F(TrialShapeTest, NothingComesOfAnotherCodec) {
  decoder.knownCode = avi::FourCC{"ZZZZ"};
  EXPECT_FALSE(shapeOf(film({320, 240})));
  EXPECT_EQ(decoder.decodes, 0U);
}

TEST_F(TrialShapeTest, DecoderThatDiesIsNoAnswer) {
  decoder.isDeadly = true;
  EXPECT_FALSE(shapeOf(film({320, 240})));
}

TEST_F(TrialShapeTest, BudgetIsNotOverdrawn) {
  budget = TrialBudget(TrialBudget::kLeast * 20);
  static_cast<void>(shapeOf(film({176, 144})));
  EXPECT_LE(decoder.decodes, 20U);
}

}  // namespace
}  // namespace zelvo::tests
