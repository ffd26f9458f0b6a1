#include "salvage/headers/proved_shape.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/salvage/codec_films.h"
#include "tests/salvage/headers/ut_pictures.h"
#include "tests/salvage/scanned_film.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using platform::TrialAnswer;
using platform::TrialStream;
using platform::WantedPlanes;
using salvage::Codec;
using salvage::PictureSize;
using salvage::StreamSample;
using salvage::TrialBudget;
using salvage::TrialShape;

/// A decoder that has one picture, of a size of its own, and gives its samples row by row at whatever size it is asked.
class OnePicture final : public platform::TrialDecoder {
 public:
  [[nodiscard]] bool open(const TrialStream& stream) override {
    stream_ = stream;
    return true;
  }
  [[nodiscard]] std::optional<TrialAnswer> decode(std::span<const std::byte>, WantedPlanes wanted) override {
    ++decodes;
    TrialAnswer answer{.isAccepted = true, .complaints = complaints, .pictures = {}};
    const bool isZipped = stream_.codec == avi::FourCC{"ZMBV"}.value;
    answer.isAccepted = !isZipped || stream_.width * stream_.height <= size.width * size.height;
    if (!answer.isAccepted) return answer;
    answer.pictures.push_back({0, platform::PictureType::intra, true, {}});
    if (wanted == WantedPlanes::none) return answer;
    for (int number = 0; number < 3; ++number) answer.pictures.front().planes.push_back(plane(number));
    return answer;
  }
  [[nodiscard]] std::optional<TrialAnswer> finish(WantedPlanes) override {
    return TrialAnswer{.isAccepted = true, .complaints = 0, .pictures = {}};
  }
  [[nodiscard]] Bytes usualExtra(const TrialStream&) override { return {}; }
  [[nodiscard]] bool isThere() override { return true; }

  PictureSize size{320, 240};
  bool isNoise = false;
  bool isDark = false;  ///< darker than brightness gets
  std::uint32_t complaints = 0;
  std::size_t decodes = 0;

 private:
  [[nodiscard]] platform::PicturePlane plane(int number) const {
    platform::PicturePlane plane{stream_.width, stream_.height, {}};
    std::uint32_t noise = 1;
    for (std::uint32_t at = 0; at < stream_.width * stream_.height; ++at) {
      noise = noise * 1664525U + 1013904223U;
      const double x = at % size.width;
      const double y = at / size.width;
      const double wave = std::sin(x * 0.07) + std::cos(y * 0.13 + x * 0.02);
      const double value = number == 0 ? 128 + (isDark ? 64 : 40) * wave : 128 + 6 * wave;
      plane.samples.push_back(isNoise ? static_cast<std::byte>(noise >> 24U)
                                      : static_cast<std::byte>(static_cast<int>(value)));
    }
    return plane;
  }

  TrialStream stream_;
};

class ProvedShapeTest : public testing::Test {
 protected:
  [[nodiscard]] std::optional<TrialShape> shapeOf(const std::vector<Bytes>& payloads,
                                                  std::optional<PictureSize> known = std::nullopt) {
    Bytes film(200);
    appendText(film, "LIST");
    appendNumber(film, 0);
    appendText(film, "movi");
    StreamSample sample;
    for (const Bytes& payload : payloads) {
      appendText(film, "00dc");
      appendNumber(film, static_cast<std::uint32_t>(payload.size()));
      film.insert(film.end(), payload.begin(), payload.end());
      if (payload.size() % 2 != 0) film.push_back(std::byte{0});
      const auto front = payload.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(4096, payload.size()));
      sample.payloads.push_back({static_cast<std::uint32_t>(payload.size()), Bytes(payload.begin(), front)});
    }
    ScannedFilm scanned(film);
    scanned.run();
    return provedShape(decoder, {*scanned.input, scanned.scan.candidates, scanned.chain, 0}, sample, known, budget);
  }
  [[nodiscard]] static std::vector<Bytes> utFilm(const std::vector<std::uint64_t>& planes, unsigned slices = 1) {
    std::vector<Bytes> payloads;
    for (unsigned number = 0; number < 8; ++number) payloads.push_back(utPicture(planes, slices, number + 1));
    return payloads;
  }
  [[nodiscard]] static std::vector<Bytes> zippedFilm() {
    std::vector<Bytes> payloads;
    for (unsigned number = 0; number < 20; ++number) {
      Bytes payload = number % 10 == 5 ? numbered({1, 0, 1, 1, 8, 16, 16, 0x78, 0x9c}) : numbered({0});
      payload.resize(60 + number, static_cast<std::byte>(number * 3 + 1));
      for (const unsigned byte : {0U, 0U, 0xffU, 0xffU}) payload.push_back(static_cast<std::byte>(byte));
      payloads.push_back(std::move(payload));
    }
    return payloads;
  }
  [[nodiscard]] std::string codeOf(const std::vector<std::uint64_t>& planes) {
    const auto shape = shapeOf(utFilm(planes));
    if (!shape) return "nothing";
    std::string text;
    for (const std::byte byte : shape->compression.bytes()) text += static_cast<char>(byte);
    return text + " " + std::to_string(shape->bits);
  }

  OnePicture decoder;
  TrialBudget budget;
};

TEST_F(ProvedShapeTest, SizeIsTheSmoothestOfThoseWithAsManySamples) {
  for (const PictureSize size : {PictureSize{320, 240}, PictureSize{366, 204}, PictureSize{240, 320}}) {
    decoder.size = size;
    const std::uint64_t samples = std::uint64_t{size.width} * size.height;
    const auto shape = shapeOf(utFilm({samples, samples / 4, samples / 4}));
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->size, size);
    EXPECT_EQ(shape->codec, Codec::intra);
    EXPECT_EQ(shape->compression, avi::FourCC{"ULY0"});
  }
}

TEST_F(ProvedShapeTest, PlanesTellHowColoursAreKept) {
  EXPECT_EQ(codeOf({76800, 19200, 19200}), "ULY0 12");
  EXPECT_EQ(codeOf({76800, 38400, 38400}), "ULY2 16");
  EXPECT_EQ(codeOf({76800, 76800, 76800, 76800}), "ULRA 32");
  EXPECT_EQ(codeOf({76800, 30000, 30000}), "nothing");
  EXPECT_EQ(codeOf({76800, 19200, 38400}), "nothing");
}

TEST_F(ProvedShapeTest, BrightnessHasNoBlackOfGreen) {
  EXPECT_EQ(codeOf({76800, 76800, 76800}), "ULY4 24");
  decoder.isDark = true;
  EXPECT_EQ(codeOf({76800, 76800, 76800}), "ULRG 24");
}

TEST_F(ProvedShapeTest, ExtraBytesTellTheSlices) {
  const auto shape = shapeOf(utFilm({76800, 19200, 19200}, 4));
  ASSERT_TRUE(shape);
  EXPECT_EQ(shape->extra, numbered({0xf0, 0, 0, 1, 'Y', 'V', '1', '2', 4, 0, 0, 0, 1, 0, 0, 3}));
}

TEST_F(ProvedShapeTest, NoiseHasNoSizeUnlessOneIsKnown) {
  decoder.isNoise = true;
  const auto film = utFilm({76800, 19200, 19200});
  EXPECT_FALSE(shapeOf(film));
  EXPECT_EQ(shapeOf(film, PictureSize{320, 240})->size, (PictureSize{320, 240}));
  decoder.isNoise = false;
  EXPECT_EQ(shapeOf(film, PictureSize{640, 480})->size, (PictureSize{320, 240}));
}

TEST_F(ProvedShapeTest, AFewDamagedPicturesDoNotMatter) {
  std::vector<Bytes> film;
  for (unsigned number = 0; number < 12; ++number) film.push_back(utPicture({76800, 19200, 19200}, 1, number));
  film[3].resize(film[3].size() / 2);  // one of those that are asked
  EXPECT_TRUE(shapeOf(film));
  for (std::size_t i = 0; i < 6; ++i) film[i].resize(film[i].size() / 2);
  EXPECT_FALSE(shapeOf(film));
}

TEST_F(ProvedShapeTest, ZippedBlocksHaveTheSizeWhoseNextRowIsTooMuch) {
  for (const PictureSize size : {PictureSize{320, 200}, PictureSize{640, 350}, PictureSize{640, 480}}) {
    decoder.size = size;
    const auto shape = shapeOf(zippedFilm());
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->size, size);
    EXPECT_EQ(shape->codec, Codec::zmbv);
    EXPECT_EQ(shape->compression, avi::FourCC{"ZMBV"});
    EXPECT_EQ(shape->bits, 32);
  }
  // What a main header says is taken when it fits, and only then.
  decoder.size = {500, 300};
  EXPECT_FALSE(shapeOf(zippedFilm()));
  EXPECT_EQ(shapeOf(zippedFilm(), PictureSize{500, 300})->size, (PictureSize{500, 300}));
  decoder.size = {320, 200};
  EXPECT_EQ(shapeOf(zippedFilm(), PictureSize{160, 120})->size, (PictureSize{320, 200}));
}

TEST_F(ProvedShapeTest, WithoutAKeyThereIsNoSize) {
  auto film = zippedFilm();
  for (const std::size_t key : {5U, 15U}) film[key][0] = std::byte{0};
  EXPECT_FALSE(shapeOf(film));
  EXPECT_EQ(decoder.decodes, 0U);
}

TEST_F(ProvedShapeTest, DecoderThatComplainsHasNoPicture) {
  decoder.complaints = 1;
  EXPECT_FALSE(shapeOf(zippedFilm()));
  EXPECT_FALSE(shapeOf(utFilm({76800, 19200, 19200})));
}

TEST_F(ProvedShapeTest, OthersAreNotAsked) {
  EXPECT_FALSE(shapeOf(std::vector<Bytes>(8, Bytes(3000, std::byte{5}))));
  EXPECT_FALSE(shapeOf({}));
  EXPECT_EQ(decoder.decodes, 0U);
}

TEST_F(ProvedShapeTest, BudgetIsNotOverdrawn) {
  budget = TrialBudget(TrialBudget::kLeast * 7);
  static_cast<void>(shapeOf(utFilm({76800, 19200, 19200})));
  EXPECT_LE(decoder.decodes, 7U);
}

}  // namespace
}  // namespace zelvo::tests
