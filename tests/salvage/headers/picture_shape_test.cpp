// Which codec pictures are of, by their payloads alone.
#include "salvage/headers/picture_shape.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Codec;
using salvage::PictureSize;
using salvage::StreamSample;

constexpr PictureSize kKnown{352, 288};

StreamSample sampleOf(const std::vector<Bytes>& payloads, std::string_view code = "00dc") {
  StreamSample sample;
  Bytes letters;
  appendText(letters, code);
  sample.seen.code = avi::FourCC::at(letters);
  std::uint32_t extra = 0;
  for (const Bytes& payload : payloads) {
    const auto size = static_cast<std::uint32_t>(payload.size());
    sample.sizes.push_back(size + extra++ % 5);
    sample.payloads.push_back({size, payload});
    sample.whole.push_back({size, payload});
    sample.run.push_back({size, payload});
  }
  std::ranges::sort(sample.sizes);
  return sample;
}

/// A film of so many pictures, a key each ten.
std::vector<Bytes> group(const Bytes& key, const Bytes& other, int count = 30) {
  std::vector<Bytes> payloads;
  for (int i = 0; i < count; ++i) {
    payloads.push_back(i % 10 == 0 ? key : other);
    payloads.back().resize(64 + static_cast<std::size_t>(i), static_cast<std::byte>(i + 2));
  }
  return payloads;
}

Codec codecOf(const std::vector<Bytes>& payloads, std::optional<PictureSize> known = kKnown) {
  return salvage::pictureShape(sampleOf(payloads), known).codec;
}

TEST(PictureShape, MarksTellTheCodec) {
  EXPECT_EQ(codecOf(group(numbered({0xff, 0xd8, 0xff}), numbered({0xff, 0xd8, 0xff}))), Codec::jpeg);
  EXPECT_EQ(codecOf(group(numbered({0, 0, 1, 0xb0, 1}), numbered({0, 0, 1, 0xb6, 0x50}))), Codec::mpeg4);
  EXPECT_EQ(codecOf(group(numbered({0, 0, 0, 1, 0x67}), numbered({0, 0, 0, 1, 0x41}))), Codec::h264);
  EXPECT_EQ(codecOf(group(numbered({0, 0, 1, 0xb3, 0x16, 0, 0xf0, 0x13}), numbered({0, 0, 1, 0, 0, 0x10}))),
            Codec::mpegVideo);
}

TEST(PictureShape, MsVideoIsKnownByInstructionsThatComeToOneSize) {
  std::vector<Bytes> payloads;
  for (unsigned seed = 0; seed < 12; ++seed) payloads.push_back(msVideoPicture(40, 30, seed));
  StreamSample sample = sampleOf(payloads);
  const auto shape = salvage::pictureShape(sample, std::nullopt);
  EXPECT_EQ(shape.codec, Codec::msVideo8);
  EXPECT_EQ(shape.compression, avi::FourCC{"CRAM"});
  EXPECT_EQ(shape.bits, 8);
  EXPECT_EQ(shape.size, (PictureSize{160, 120}));
  EXPECT_EQ(salvage::codecWithoutMarks(sample), std::nullopt);
  // What was read in part says nothing, and two that were read whole are no proof.
  for (auto* list : {&sample.payloads, &sample.whole}) {
    for (std::size_t i = 0; i < list->size(); ++i) {
      if (i > 0 || list == &sample.whole) (*list)[i].size += 100;
    }
  }
  EXPECT_NE(salvage::pictureShape(sample, std::nullopt).codec, Codec::msVideo8);
}

TEST(PictureShape, MsVideoIsNoneWherePicturesHaveDifferentSizes) {
  std::vector<Bytes> payloads;
  for (unsigned seed = 0; seed < 12; ++seed) payloads.push_back(msVideoPicture(40, 20 + seed, seed));
  EXPECT_NE(codecOf(payloads), Codec::msVideo8);
}

TEST(PictureShape, Mpeg4IsNoMpeg2) {
  EXPECT_EQ(codecOf(group(numbered({0, 0, 1, 0xb3, 1, 2, 3, 4, 0, 0, 1, 0xb6, 1}), numbered({0, 0, 1, 0xb6, 0x50}))),
            Codec::mpeg4);
}

TEST(PictureShape, Ffv1BeginsItsKeysAlike) {
  const Bytes key = numbered({0x9a, 0xec, 0x87, 0x30});
  EXPECT_EQ(codecOf(group(key, numbered({0, 0, 4, 0xde}))), Codec::ffv1);
  auto other = group(key, numbered({0, 0, 4, 0xde}));
  other[10][3] = std::byte{1};
  EXPECT_NE(codecOf(other), Codec::ffv1);
}

TEST(PictureShape, Wmv2HasMostlyPredictedPictures) {
  EXPECT_EQ(codecOf(group(numbered({0, 0x40, 0x5c}), numbered({0x88, 0x23, 9}))), Codec::wmv2);
  EXPECT_EQ(codecOf(group(numbered({0, 0x40, 0x5c}), numbered({0x80, 0x23, 9}))), Codec::msMpeg4);
}

TEST(PictureShape, CodecsWithoutASizeNeedOneFromElsewhere) {
  const auto payloads = group(numbered({0x09, 0x7b}), numbered({0x45, 0xf0}));
  EXPECT_EQ(codecOf(payloads), Codec::msMpeg4);
  EXPECT_EQ(salvage::pictureShape(sampleOf(payloads), kKnown).size, kKnown);
  EXPECT_EQ(codecOf(payloads, std::nullopt), Codec::unknown);
}

TEST(PictureShape, Mpeg4CodeFollowsTheEncodersName) {
  const auto codeOf = [](std::string_view name) {
    Bytes key = numbered({0, 0, 1, 0xb0, 1, 0, 0, 1, 0xb2});
    appendText(key, name);
    return salvage::pictureShape(sampleOf(group(key, numbered({0, 0, 1, 0xb6, 0x50}))), kKnown).compression;
  };
  EXPECT_EQ(codeOf("XviD0069"), avi::FourCC{"XVID"});
  EXPECT_EQ(codeOf("DivX503b1393p"), avi::FourCC{"DX50"});
  EXPECT_EQ(codeOf("Lavc58"), avi::FourCC{"FMP4"});
  EXPECT_EQ(codeOf(""), avi::FourCC{"XVID"});
}

TEST(PictureShape, RawPicturesStandOnTheirHeadsAsTheirCodeSays) {
  const std::vector<Bytes> payloads(10, Bytes(64 * 48 * 3, std::byte{7}));
  for (const auto& [code, isTopDown] : {std::pair{"00dc", true}, std::pair{"00db", false}}) {
    StreamSample sample = sampleOf(payloads, code);
    std::ranges::fill(sample.sizes, 64 * 48 * 3);
    const auto shape = salvage::pictureShape(sample, PictureSize{64, 48});
    EXPECT_EQ(shape.codec, Codec::rawPicture);
    EXPECT_EQ(shape.bits, 24);
    EXPECT_EQ(shape.isTopDown, isTopDown);
  }
}

TEST(PictureShape, PlanarYuvIsKnownByItsLength) {
  StreamSample sample = sampleOf(std::vector<Bytes>(10, Bytes(64 * 48 * 3 / 2)));
  std::ranges::fill(sample.sizes, 64 * 48 * 3 / 2);
  const auto shape = salvage::pictureShape(sample, PictureSize{64, 48});
  EXPECT_EQ(shape.compression, avi::FourCC{"I420"});
  EXPECT_EQ(shape.bits, 12);
}

}  // namespace
}  // namespace zelvo::tests
