#include "salvage/headers/ut_video.h"

#include <gtest/gtest.h>

#include <array>
#include <span>

#include "tests/salvage/headers/ut_pictures.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::CountRange;

TEST(UtVideo, CodesTellHowManySamplesThePlanesHave) {
  for (const unsigned slices : {1U, 4U, 256U}) {
    const auto picture = salvage::utVideoPicture(utPicture({76800, 19200, 19200}, slices, slices));
    ASSERT_TRUE(picture) << slices;
    EXPECT_EQ(picture->slices, slices);
    ASSERT_EQ(picture->samples.size(), 3U);
    const std::array<std::uint64_t, 3> true_{76800 / slices * slices, 19200 / slices * slices, 19200 / slices * slices};
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_LE(picture->samples[i].least, true_[i]);
      EXPECT_GE(picture->samples[i].most, true_[i]);
      // Fewer than 32 zeros fill a slice up, and fifteen are a sample. Behind its last code may come one of these, too.
      EXPECT_LE(picture->samples[i].most - picture->samples[i].least, 3U * slices);
    }
  }
}

TEST(UtVideo, PlaneOfOneValueMayHaveAnyNumberOfSamples) {
  std::mt19937 random(1);
  Bytes picture = utPlane(4096, 2, random);
  for (int i = 0; i < 2; ++i) {
    const Bytes grey = utPlane(1024, 2, random, true);
    picture.insert(picture.end(), grey.begin(), grey.end());
  }
  appendNumber(picture, 0);
  const auto found = salvage::utVideoPicture(picture);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->samples[1], (CountRange{0, salvage::kMaxUtVideoSamples}));
}

TEST(UtVideo, WhatIsNotWholeOrNotPackedSoIsNone) {
  const Bytes good = utPicture({4096, 1024, 1024}, 1, 9);
  ASSERT_TRUE(salvage::utVideoPicture(good));
  EXPECT_TRUE(salvage::beginsUtVideo(std::span(good).first(300), good.size()));
  for (const std::size_t size : {std::size_t{0}, std::size_t{100}, std::size_t{258}, good.size() / 2, good.size() - 4})
    EXPECT_FALSE(salvage::utVideoPicture(std::span(good).first(size))) << size;
  // Lengths of no full set, and of more than one.
  for (const unsigned length : {2U, 0U, 33U}) {
    Bytes bad = good;
    bad[0] = static_cast<std::byte>(length);
    EXPECT_FALSE(salvage::utVideoPicture(bad));
    EXPECT_FALSE(salvage::beginsUtVideo(std::span(bad).first(300), bad.size()));
  }
  // An end that is not one.
  for (const unsigned end : {2U, 0xfcU}) {
    Bytes bad = good;
    bad[256] = bad[256] ^ static_cast<std::byte>(end);
    EXPECT_FALSE(salvage::utVideoPicture(bad));
  }
  Bytes two = utPicture({4096, 1024}, 1, 9);
  EXPECT_FALSE(salvage::utVideoPicture(two));
  EXPECT_FALSE(salvage::utVideoPicture(utPicture({64, 64, 64, 64, 64}, 1, 9)));
  EXPECT_TRUE(salvage::utVideoPicture(utPicture({64, 64, 64, 64}, 1, 9)));
}

/// Three planes of as many slices each, which all hold the same words; all codes have one length.
Bytes evenPicture(unsigned length, std::size_t slices, std::uint32_t word, std::size_t words) {
  Bytes picture;
  for (int plane = 0; plane < 3; ++plane) {
    Bytes lengths(256, std::byte{0xff});
    std::fill_n(lengths.begin(), std::size_t{1} << length, static_cast<std::byte>(length));
    picture.insert(picture.end(), lengths.begin(), lengths.end());
    for (std::size_t i = 1; i <= slices; ++i) appendNumber(picture, static_cast<std::uint32_t>(i * words * 4));
    for (std::size_t i = 0; i < slices * words; ++i) appendNumber(picture, word);
  }
  appendNumber(picture, 0);
  return picture;
}

TEST(UtVideo, SliceIsFilledUpWithZerosAlone) {
  const auto filled = salvage::utVideoPicture(evenPicture(3, 1, 0xfffffffc, 1));
  ASSERT_TRUE(filled);
  EXPECT_EQ(filled->samples.front(), (CountRange{10, 10}));
  EXPECT_EQ(salvage::utVideoPicture(evenPicture(3, 1, 0xffffffe0, 1))->samples.front(), (CountRange{9, 10}));
  EXPECT_FALSE(salvage::utVideoPicture(evenPicture(3, 1, 0xffffffff, 1)));
  EXPECT_FALSE(salvage::utVideoPicture(evenPicture(3, 1, 0xfffffffd, 1)));
}

TEST(UtVideo, MoreSamplesThanAnyPictureHasAreNone) {
  constexpr std::size_t kWords = 1U << 15U;  // 2^20 samples of one bit
  EXPECT_TRUE(salvage::utVideoPicture(evenPicture(1, 2, 0x55555555, kWords)));
  EXPECT_FALSE(salvage::utVideoPicture(evenPicture(1, 4, 0x55555555, kWords)));
  EXPECT_FALSE(salvage::utVideoPicture(evenPicture(1, 1, 0x55555555, kWords * 4)));
}

TEST(UtVideo, NoiseIsNone) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    Bytes noise(2000);
    for (std::byte& byte : noise) byte = static_cast<std::byte>(round % 2 == 0 ? random() : random() % 16);
    EXPECT_FALSE(salvage::beginsUtVideo(noise, noise.size()));
    EXPECT_FALSE(salvage::utVideoPicture(noise));
  }
}

TEST(UtVideo, AnyByteMayBeWrong) {
  const Bytes good = utPicture({512, 128, 128}, 2, 5);
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    Bytes bad = good;
    for (int i = 0; i < 4; ++i) bad[random() % bad.size()] = static_cast<std::byte>(random());
    bad.resize(random() % 4 == 0 ? random() % bad.size() : bad.size());
    const auto picture = salvage::utVideoPicture(bad);
    if (picture) {
      EXPECT_GE(picture->samples.size(), 3U);
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
