#include "salvage/payloads/jpeg_cuts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "salvage/payloads/jpeg_scan.h"
#include "tests/salvage/made_jpeg.h"
#include "tests/salvage/payloads/foreign_bytes.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::JpegCuts;
using salvage::jpegCuts;

constexpr std::uint64_t kPlenty = 10'000'000;

/// The place of the cut that gives the picture back among those found; their number when there is none.
std::size_t rankOf(const Bytes& picture, const Bytes& bytes, const JpegCuts& found) {
  const auto isRight = [&](std::uint32_t cut) {
    Bytes rejoined(bytes.begin(), bytes.begin() + cut);
    rejoined.insert(rejoined.end(), bytes.end() - static_cast<std::ptrdiff_t>(picture.size() - cut), bytes.end());
    return rejoined == picture;
  };
  return static_cast<std::size_t>(std::ranges::find_if(found.cuts, isRight) - found.cuts.begin());
}

void expectFound(const Bytes& picture, std::size_t from) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    const std::size_t cut = from + (picture.size() - from) * seed / 13;
    const Bytes bytes = withForeign(picture, cut, 1001 + 777 * seed, seed);
    const JpegCuts found = jpegCuts(bytes, static_cast<std::uint32_t>(picture.size()), kPlenty);
    EXPECT_LT(rankOf(picture, bytes, found), std::min<std::size_t>(16, found.cuts.size())) << "cut at " << cut;
    EXPECT_LT(found.walked, 12 * picture.size());
  }
}

TEST(JpegCutsTest, TheRightCutIsAmongTheLikeliest) {
  for (const unsigned sampling : {0x22U, 0x21U, 0x11U}) {
    const Bytes picture = MadeJpeg{.sampling = sampling}.bytes();
    expectFound(picture, salvage::jpegScan(picture)->begin);
  }
  expectFound(MadeJpeg{.components = 1}.bytes(), 400);
}

TEST(JpegCutsTest, BetweenRestartsToo) {
  expectFound(MadeJpeg{.restartUnits = 5}.bytes(), 400);
  expectFound(MadeJpeg{.restartUnits = 40}.bytes(), 400);
}

TEST(JpegCutsTest, InEitherOfTwoFields) {
  Bytes both = MadeJpeg{.height = 80}.bytes();
  const std::size_t first = both.size();
  const Bytes second = MadeJpeg{.height = 80, .seed = 2}.bytes();
  both.insert(both.end(), 3, std::byte{0});
  both.insert(both.end(), second.begin(), second.end());
  for (const std::size_t cut : {first / 2, first - 50, first + first / 2, first + first / 3}) {
    const Bytes bytes = withForeign(both, cut, 3001, 7);
    const JpegCuts found = jpegCuts(bytes, static_cast<std::uint32_t>(both.size()), kPlenty);
    EXPECT_LT(rankOf(both, bytes, found), std::min<std::size_t>(16, found.cuts.size())) << "cut at " << cut;
  }
}

TEST(JpegCutsTest, NothingWhereHeadersAreTornOrNothingBreaks) {
  const Bytes picture = MadeJpeg{}.bytes();
  const auto size = static_cast<std::uint32_t>(picture.size());
  EXPECT_TRUE(jpegCuts(withForeign(picture, 100, 3000, 1), size, kPlenty).cuts.empty());
  EXPECT_TRUE(jpegCuts(withForeign(picture, size, 3000, 1), size, kPlenty).cuts.empty());
}

TEST(JpegCutsTest, APictureThatIsDamagedElsewhereTooHasNone) {
  Bytes bytes = withForeign(MadeJpeg{}.bytes(), 3000, 3000, 1);
  const auto size = static_cast<std::uint32_t>(bytes.size() - 3000);
  bytes[bytes.size() - 900] = std::byte{0xff};
  bytes[bytes.size() - 899] = std::byte{0x44};
  EXPECT_TRUE(jpegCuts(bytes, size, kPlenty).cuts.empty());
}

TEST(JpegCutsTest, ReadsNoMoreThanItMay) {
  const Bytes picture = MadeJpeg{}.bytes();
  const Bytes bytes = withForeign(picture, 3000, 3000, 1);
  for (const std::uint64_t most : {std::uint64_t{0}, std::uint64_t{1000}, std::uint64_t{picture.size()}}) {
    const JpegCuts found = jpegCuts(bytes, static_cast<std::uint32_t>(picture.size()), most);
    EXPECT_TRUE(found.cuts.empty());
    EXPECT_LT(found.walked, most + 1000);
  }
}

/// Bytes that never break are walked once, wherever they begin.
TEST(JpegCutsTest, WorkStaysLinear) {
  Bytes bytes = MadeJpeg{.width = 1280, .height = 640}.bytes();
  const auto size = static_cast<std::uint32_t>(bytes.size());
  bytes.insert(bytes.begin() + size / 2, 20'000, std::byte{0});
  EXPECT_LT(jpegCuts(bytes, size, ~std::uint64_t{0}).walked, std::uint64_t{40} * size);
}

}  // namespace
}  // namespace zelvo::tests
