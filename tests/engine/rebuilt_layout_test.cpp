#include "engine/rebuilt_layout.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace zelvo::tests {
namespace {

using engine::LayoutInput;
using engine::RebuiltLayout;

struct Case {
  std::vector<std::uint64_t> video;  ///< sizes from entry 1 on
  std::vector<std::uint64_t> audio;
  std::uint64_t videoFormat;
  std::uint64_t audioFormat;
};

std::uint64_t sum(const std::vector<std::uint64_t>& sizes) {
  return std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{0});
}

class RebuiltLayoutOf : public testing::TestWithParam<Case> {
 protected:
  static RebuiltLayout layoutOf(const Case& given) {
    std::vector<std::uint64_t> video = given.video;
    std::vector<std::uint64_t> audio = given.audio;
    video.insert(video.begin(), 0);
    audio.insert(audio.begin(), 0);
    return RebuiltLayout::of(
        {given.video.size(), given.audio.size(), given.videoFormat, given.audioFormat, video, audio});
  }
};

TEST_P(RebuiltLayoutOf, HasItsClosedForms) {
  const Case& given = GetParam();
  const std::uint64_t videos = given.video.size();
  const std::uint64_t audios = given.audio.size();
  const std::uint64_t formats = given.videoFormat + given.audioFormat;

  const RebuiltLayout layout = layoutOf(given);

  EXPECT_EQ(layout.ix00size, 8 * videos + 24);
  EXPECT_EQ(layout.ix01size, 8 * audios + 24);
  EXPECT_EQ(layout.videoindxsize, 44U);
  EXPECT_EQ(layout.audioindxsize, 44U);
  EXPECT_EQ(layout.ix00location, formats + 380);
  EXPECT_EQ(layout.ix01location, formats + 380 + 8 * videos + 24);
  EXPECT_EQ(layout.audiostrlListsize, given.audioFormat + 128);
  EXPECT_EQ(layout.videostrlListsize, given.videoFormat + 128);
  EXPECT_EQ(layout.AVILISTsize, formats + 340);
  EXPECT_EQ(layout.baseoffsetforvideo, formats + 388 + layout.ix00size + layout.ix01size);
  EXPECT_EQ(layout.videodatasize, sum(given.video));
  EXPECT_EQ(layout.audiodatasize, sum(given.audio));
  EXPECT_EQ(layout.movisize, 68 + 16 * (videos + audios) + sum(given.video) + sum(given.audio));
  EXPECT_EQ(layout.baseoffsetforaudio, layout.baseoffsetforvideo + sum(given.video) + 8 * videos);
  EXPECT_EQ(layout.RIFFLISTsize, layout.baseoffsetforaudio + 8 * audios + sum(given.audio) - 8);
}

INSTANTIATE_TEST_SUITE_P(Cases, RebuiltLayoutOf,
                         testing::Values(Case{{}, {}, 0, 0}, Case{{}, {}, 40, 18}, Case{{1}, {}, 40, 30},
                                         Case{{}, {7, 9}, 41, 17}, Case{{100, 7, 50}, {3, 4}, 1064, 30},
                                         Case{{0xffffffffU, 0xffffffffU}, {0xffffffffU}, 0xffffffffU, 0xffffffffU}));

TEST(RebuiltLayout, SumsStartAtEntryZero) {
  const std::vector<std::uint64_t> sizes = {1000, 1, 2, 400};
  const RebuiltLayout layout = RebuiltLayout::of({2, 1, 40, 18, sizes, sizes});
  EXPECT_EQ(layout.videodatasize, 1003U);
  EXPECT_EQ(layout.audiodatasize, 1001U);
}

TEST(RebuiltLayout, EntriesBehindTheCountAreNotSummed) {
  const std::vector<std::uint64_t> sizes = {0, 1, 2, 400};
  EXPECT_EQ(RebuiltLayout::of({0, 2, 40, 18, sizes, sizes}).videodatasize, 0U);
  EXPECT_EQ(RebuiltLayout::of({0, 2, 40, 18, sizes, sizes}).audiodatasize, 3U);
}

}  // namespace
}  // namespace zelvo::tests
