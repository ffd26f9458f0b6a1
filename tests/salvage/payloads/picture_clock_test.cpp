// The clock that MPEG-4 pictures carry.
#include "salvage/payloads/picture_clock.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::PictureClock;

/// ClockBits from the top down.
class ClockBits {
 public:
  ClockBits& add(std::uint32_t value, int count) {
    for (int i = count - 1; i >= 0; --i) bits_.push_back((value >> i & 1U) != 0);
    return *this;
  }
  [[nodiscard]] Bytes bytes() const {
    Bytes bytes((bits_.size() + 7) / 8 + 8);
    for (std::size_t i = 0; i < bits_.size(); ++i) {
      if (bits_[i]) bytes[i / 8] |= static_cast<std::byte>(0x80U >> i % 8);
    }
    return bytes;
  }

 private:
  std::vector<bool> bits_;
};

Bytes clockLayer(std::uint32_t resolution) {
  ClockBits bits;
  bits.add(0x00000120, 32).add(0, 1).add(1, 8).add(0, 1).add(1, 4).add(0, 1).add(0, 2).add(1, 1);
  bits.add(resolution, 16).add(1, 1).add(0, 1).add(1, 1).add(320, 13).add(1, 1).add(240, 13).add(1, 1);
  return bits.bytes();
}

/// A predicted picture `ticks` after the last whole second, of a clock with 5 bits.
Bytes clockPicture(std::uint32_t ticks, int seconds = 0) {
  ClockBits bits;
  bits.add(0x000001b6, 32).add(1, 2);
  for (int i = 0; i < seconds; ++i) bits.add(1, 1);
  bits.add(0, 1).add(1, 1).add(ticks, 5).add(1, 1).add(1, 1);
  return bits.bytes();
}

TEST(PictureClock, IsReadOnceTheLayersHeaderWasMet) {
  PictureClock clock(pictureStream("XVID"));
  EXPECT_FALSE(clock.isKnown());
  EXPECT_FALSE(clock.ticks(clockPicture(7)));
  clock.learn(clockLayer(25));
  ASSERT_TRUE(clock.isKnown());
  EXPECT_EQ(clock.turn(), 25U);
  EXPECT_EQ(clock.ticksPerPicture(), 1.0);
  EXPECT_EQ(clock.ticks(clockPicture(7)), 7U);
  EXPECT_EQ(clock.ticks(clockPicture(24, 2)), 24U);
}

TEST(PictureClock, ReadsTheHeaderInTheStreamsFormat) {
  auto stream = pictureStream("XVID");
  const Bytes header = clockLayer(25);
  stream.format.insert(stream.format.end(), header.begin(), header.end());
  EXPECT_TRUE(PictureClock(stream).isKnown());
}

TEST(PictureClock, DoesNotBelieveATickBeyondTheSecond) {
  PictureClock clock(pictureStream("XVID"));
  clock.learn(clockLayer(25));
  EXPECT_FALSE(clock.ticks(clockPicture(27)));
  EXPECT_FALSE(clock.ticks(Bytes(100)));
}

TEST(PictureClock, OfOtherCodecsIsUnknown) {
  PictureClock clock(pictureStream("MJPG"));
  clock.learn(clockLayer(25));
  EXPECT_FALSE(clock.isKnown());
}

}  // namespace
}  // namespace zelvo::tests
