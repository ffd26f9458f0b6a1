// Foreign bytes in pictures of Microsoft Video 1.
#include "salvage/payloads/ms_video_cuts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "salvage/payloads/ms_video.h"
#include "tests/salvage/codec_films.h"
#include "tests/salvage/payloads/foreign_bytes.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::msVideoCuts;
using salvage::PictureSize;

constexpr std::uint64_t kMuch = std::uint64_t{1} << 40U;
constexpr PictureSize kSize{160, 120};

void put(Bytes& bytes, unsigned value) {
  bytes.push_back(static_cast<std::byte>(value & 0xffU));
  bytes.push_back(static_cast<std::byte>(value >> 8U));
}

/// Blocks of one, two and eight colours of a ramp from the picture's bottom up, and some that are skipped.
Bytes smoothPicture() {
  std::mt19937 random(8);
  Bytes bytes;
  for (unsigned row = 0; row < kSize.height / 4; ++row) {
    for (unsigned block = 0; block < kSize.width / 4; ++block) {
      const unsigned colour = row << 5U | block / 4;
      const auto kind = random() % 5;
      if (kind == 0) put(bytes, 0x8401);
      if (kind == 1) put(bytes, 0x8000U | colour);
      if (kind == 2) {
        put(bytes, 0x3333);
        put(bytes, colour);
        put(bytes, colour + 1);
      }
      if (kind < 3) continue;
      put(bytes, 0x0ff0);
      put(bytes, 0x8000U | colour);
      for (int i = 0; i < 7; ++i) put(bytes, colour + 1);
    }
  }
  put(bytes, 0);
  return bytes;
}

Bytes withoutThem(const Bytes& bytes, std::size_t size, std::size_t cut) {
  Bytes payload(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(cut));
  payload.insert(payload.end(), bytes.end() - static_cast<std::ptrdiff_t>(size - cut), bytes.end());
  return payload;
}

/// How many of the cuts are found, and how many of them first.
struct Found {
  int all = 0;
  int first = 0;
  std::size_t cuts = 0;  ///< all that were found, right or not
};

Found foundIn(const Bytes& picture, unsigned bits, std::size_t foreign) {
  Found found;
  const auto size = static_cast<std::uint32_t>(picture.size());
  for (std::size_t i = 0; i < 100; ++i) {
    const std::size_t cut = picture.size() * i / 99;
    const Bytes bytes = withForeign(picture, cut, foreign, static_cast<unsigned>(i));
    const auto cuts = msVideoCuts(bytes, size, bits, kSize, kMuch).cuts;
    const auto isRight = [&](std::uint32_t one) { return withoutThem(bytes, size, one) == picture; };
    found.all += std::ranges::any_of(cuts, isRight) ? 1 : 0;
    found.cuts += cuts.size();
    found.first += !cuts.empty() && isRight(cuts.front()) ? 1 : 0;
  }
  return found;
}

TEST(MsVideoCuts, MostAreFoundAndComeFirst) {
  const Bytes smooth = smoothPicture();
  ASSERT_EQ(salvage::msVideoCount(smooth, 16)->blocks, 1200U);
  const Found many = foundIn(smooth, 16, 3001);
  EXPECT_EQ(many.all, 100);
  EXPECT_GE(many.first, 80);
  EXPECT_LE(many.cuts, 700U);
  // Of few foreign bytes many cuts leave the right number of blocks.
  const Found few = foundIn(smooth, 16, 18);
  EXPECT_GE(few.all, 85);
  EXPECT_GE(few.first, 60);
  const Found ofPalette = foundIn(msVideoPicture(40, 30), 8, 5000);
  EXPECT_EQ(ofPalette.all, 100);
  EXPECT_GE(ofPalette.first, 80);
}

TEST(MsVideoCuts, PictureOfAnotherSizeHasNone) {
  const Bytes picture = smoothPicture();
  const Bytes bytes = withForeign(picture, 3000, 4000);
  const auto size = static_cast<std::uint32_t>(picture.size());
  EXPECT_FALSE(msVideoCuts(bytes, size, 16, kSize, kMuch).cuts.empty());
  EXPECT_TRUE(msVideoCuts(bytes, size, 16, {1600, 1200}, kMuch).cuts.empty());
  EXPECT_TRUE(msVideoCuts(bytes, size, 16, {8, 8}, kMuch).cuts.empty());
  EXPECT_TRUE(msVideoCuts(bytes, size, 16, {}, kMuch).cuts.empty());
}

TEST(MsVideoCuts, NoMoreIsReadThanMayBe) {
  const Bytes picture = smoothPicture();
  const Bytes bytes = withForeign(picture, 3000, 4000);
  const auto size = static_cast<std::uint32_t>(picture.size());
  const auto all = msVideoCuts(bytes, size, 16, kSize, kMuch);
  EXPECT_GE(all.walked, 3 * bytes.size() + picture.size());
  EXPECT_EQ(msVideoCuts(bytes, size, 16, kSize, all.walked).cuts, all.cuts);
  EXPECT_EQ(msVideoCuts(bytes, size, 16, kSize, all.walked - 1).walked, all.walked - size);
  EXPECT_TRUE(msVideoCuts(bytes, size, 16, kSize, 3 * bytes.size() - 1).cuts.empty());
}

TEST(MsVideoCuts, WhereAnyCutWouldDoNothingTells) {
  const auto cutsOf = [](std::uint32_t side) {
    // Blocks of one colour, and as many of others between them.
    Bytes bytes;
    for (std::uint32_t i = 0; i < 2 * side * side / 16; ++i) put(bytes, 0x8000U | i * 7 % 253);
    return msVideoCuts(bytes, static_cast<std::uint32_t>(bytes.size() / 2), 8, {side, side}, kMuch).cuts.size();
  };
  EXPECT_GT(cutsOf(256), 0U);
  EXPECT_EQ(cutsOf(1024), 0U);
}

TEST(MsVideoCuts, BytesOfAnyKindDoNoHarm) {
  std::mt19937 random(3);
  for (int round = 0; round < 5000; ++round) {
    Bytes bytes(random() % 40 + 2);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(round % 2 == 0 ? random() % 256 : random() % 3 * 0x42);
    const auto size = static_cast<std::uint32_t>(random() % (bytes.size() - 1) + 1);
    for (const unsigned bits : {8U, 16U}) {
      for (const std::uint32_t cut : msVideoCuts(bytes, size, bits, {8, 8}, kMuch).cuts) {
        const auto count = salvage::msVideoCount(withoutThem(bytes, size, cut), bits);
        ASSERT_TRUE(count);
        EXPECT_EQ(count->blocks, 4U);
      }
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
