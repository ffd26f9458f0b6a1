#include "salvage/plan/laid_cuts.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/salvage/codec_films.h"
#include "tests/salvage/known_pictures.h"
#include "tests/salvage/made_film.h"
#include "tests/salvage/made_jpeg.h"
#include "tests/salvage/salvage_bench.h"

namespace zelvo::tests {
namespace {

using salvage::LossCause;
using salvage::SlotState;

class LaidCuts : public testing::Test {
 protected:
  [[nodiscard]] static std::vector<platform::Bytes> picturesOf(const MadeFilm& film) {
    std::vector<platform::Bytes> pictures;
    for (std::size_t i = 0; i < film.payloads.size(); i += 2) {
      // Payloads that begin alike would be taken for one another.
      pictures.push_back(film.payloads[i]);
    }
    return pictures;
  }

  MadeFilm film;
  KnownPictures decoder{picturesOf(film)};
};

TEST_F(LaidCuts, BytesPutIntoAPictureAreCutOut) {
  film.insert(film.headers[20] + 8 + 300, noise(777));
  const PlannedFilm planned(film.bytes, &decoder);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.cutsFound, 1U);
  EXPECT_EQ(planned.plan.cutsOpen, 0U);
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::rejoined);
  ASSERT_EQ(planned.plan.spans.size(), 1U);
  EXPECT_EQ(planned.plan.spans[0].cause, LossCause::inserted);
}

TEST_F(LaidCuts, EachOfSeveralIsFound) {
  for (const std::size_t chunk : {60U, 40U, 20U}) film.insert(film.headers[chunk] + 8 + 300, noise(777 + chunk));
  const PlannedFilm planned(film.bytes, &decoder);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.cutsFound, 3U);
}

TEST_F(LaidCuts, WithoutADecoderThePictureStaysTorn) {
  film.insert(film.headers[20] + 8 + 300, noise(777));
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80, {{20, "torn0"}}));
  EXPECT_EQ(planned.plan.cutsFound, 0U);
  EXPECT_EQ(planned.plan.cutsOpen, 1U);
}

TEST_F(LaidCuts, DoubledBytesNeedNoDecoder) {
  const auto begin = film.bytes.begin() + static_cast<std::ptrdiff_t>(film.headers[20] + 8 + 100);
  film.insert(film.headers[20] + 8 + 300, platform::Bytes(begin, begin + 200));
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(80));
  EXPECT_EQ(planned.plan.slots[20].state, SlotState::rejoined);
  EXPECT_EQ(planned.plan.cutsOpen, 0U);
  ASSERT_EQ(planned.plan.spans.size(), 1U);
  EXPECT_EQ(planned.plan.spans[0].cause, LossCause::inserted);
}

TEST_F(LaidCuts, RunWithoutADecoderSaysThatItLacksOne) {
  film.insert(film.headers[20] + 8 + 300, noise(777));
  SalvageBench bench(film.bytes);
  EXPECT_TRUE(bench.perform().lacksDecoder);
  bench.decoder = &decoder;
  EXPECT_FALSE(bench.perform().lacksDecoder);
}

TEST_F(LaidCuts, StopEndsTheDecoding) {
  film.insert(film.headers[20] + 8 + 300, noise(777));
  SalvageBench bench(film.bytes);
  bench.decoder = &decoder;
  decoder.onDecode = [&] { bench.cancel.abandon(); };
  EXPECT_EQ(bench.perform().end, salvage::SalvageEnd::stopped);
  EXPECT_EQ(decoder.decodes, 1U);
}

TEST_F(LaidCuts, WholeFilmNeedsNoDecoder) { EXPECT_FALSE(SalvageBench(film.bytes).perform().lacksDecoder); }

TEST_F(LaidCuts, UnknownCodecStaysTorn) {
  decoder.isKnown = false;
  film.insert(film.headers[20] + 8 + 300, noise(777));
  const PlannedFilm planned(film.bytes, &decoder);
  EXPECT_EQ(fates(planned, film), allBut(80, {{20, "torn0"}}));
  EXPECT_EQ(decoder.decodes, 0U);
}

TEST_F(LaidCuts, NothingIsDecodedWhereNothingWasPutIn) {
  film.remove(film.headers[30] + 100, 301);
  const PlannedFilm planned(film.bytes, &decoder);
  EXPECT_TRUE(decoder.opened.empty());
}

/// How many pictures have their foreign bytes cut out, when the sixth of them has some.
std::size_t cutsFoundIn(const std::vector<platform::Bytes>& pictures, AviBuilder builder, KnownPictures& decoder) {
  for (const platform::Bytes& picture : pictures)
    builder.chunks.push_back({"00dc", static_cast<std::uint32_t>(picture.size())});
  platform::Bytes bytes = builder.build();
  const auto headers = chunkOffsets(builder);
  for (std::size_t i = 0; i < pictures.size(); ++i)
    std::ranges::copy(pictures[i], bytes.begin() + static_cast<std::ptrdiff_t>(headers[i] + 8));
  const platform::Bytes foreign = noise(3333);
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(headers[5] + 8 + pictures[5].size() / 2), foreign.begin(),
               foreign.end());
  decoder = KnownPictures(pictures);
  return PlannedFilm(bytes, &decoder).plan.cutsFound;
}

TEST_F(LaidCuts, OfJpegFewCutsAreDecoded) {
  AviBuilder builder;
  builder.videoHandler = builder.videoCompression = "MJPG";
  std::vector<platform::Bytes> pictures;
  for (unsigned seed = 0; seed < 12; ++seed) pictures.push_back(MadeJpeg{.seed = seed}.bytes());
  EXPECT_EQ(cutsFoundIn(pictures, builder, decoder), 1U);
  EXPECT_LT(decoder.decodes, 80U);
}

TEST_F(LaidCuts, OfMicrosoftVideoFewCutsAreDecoded) {
  AviBuilder builder;
  builder.videoHandler = builder.videoCompression = "CRAM";
  std::vector<platform::Bytes> pictures;
  for (unsigned seed = 0; seed < 12; ++seed) pictures.push_back(msVideoPicture(80, 60, seed));
  EXPECT_EQ(cutsFoundIn(pictures, builder, decoder), 1U);
  EXPECT_LT(decoder.decodes, 80U);
}

TEST_F(LaidCuts, StreamIsToldAsItsHeaderHasIt) {
  film.insert(film.headers[20] + 8 + 300, noise(777));
  const PlannedFilm planned(film.bytes, &decoder);
  ASSERT_FALSE(decoder.opened.empty());
  EXPECT_EQ(decoder.opened[0].codec, 0x5a5a5a5aU);  // "ZZZZ"
}

}  // namespace
}  // namespace zelvo::tests
