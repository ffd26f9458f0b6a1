// The headers of a repaired film.
#include "salvage/writing/header_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/salvage/written_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using testing::ElementsAre;

std::unique_ptr<WrittenFilmBench> headedFilm() {
  auto bench = pictureAndSound();
  for (int i = 0; i < 3; ++i) {
    bench->add(0, Bytes(static_cast<std::size_t>(10 + i)));
    bench->add(1, Bytes(6));
  }
  return bench;
}

TEST(HeaderWriter, LengthsCountChunksOfPicturesAndSamplesOfSound) {
  const auto bench = headedFilm();
  bench->write();
  ASSERT_EQ(bench->notes.streamHeaders.size(), 2U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[0], "dwLength"), 3U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[1], "dwLength"), 9U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[0], "dwSuggestedBufferSize"), 12U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[1], "dwSuggestedBufferSize"), 6U);
}

TEST(HeaderWriter, SoundWithoutASampleSizeCountsChunks) {
  const auto bench = std::make_unique<WrittenFilmBench>();
  bench->with(soundStream(0x55, 2, 44100, 1152, 0, 0), "00wb");
  bench->add(0, Bytes(400));
  bench->add(0, Bytes(410));
  bench->write();
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[0], "dwLength"), 2U);
}

TEST(HeaderWriter, MainHeaderKeepsWhatIsTrueAndMendsTheRest) {
  const auto bench = headedFilm();
  bench->header.main = salvage::SurvivingMainHeader{.microSecPerFrame = 33333,
                                                    .flags = 0x20 | 0x10000,
                                                    .totalFrames = 999,
                                                    .initialFrames = 2,
                                                    .streams = 7,
                                                    .suggestedBufferSize = 5,
                                                    .width = 352,
                                                    .height = 288};
  bench->write();
  const auto& fields = bench->notes.mainHeader;
  EXPECT_EQ(fieldOf(fields, "dwMicroSecPerFrame"), 33333U);
  EXPECT_EQ(fieldOf(fields, "dwFlags"), 0x10000U | 0x10U | 0x100U | 0x800U);
  EXPECT_EQ(fieldOf(fields, "dwTotalFrames"), 3U);
  EXPECT_EQ(fieldOf(fields, "dwInitialFrames"), 2U);
  EXPECT_EQ(fieldOf(fields, "dwStreams"), 2U);
  EXPECT_EQ(fieldOf(fields, "dwSuggestedBufferSize"), 12U);
  EXPECT_EQ(fieldOf(fields, "dwWidth"), 352U);
  EXPECT_EQ(fieldOf(fields, "dwHeight"), 288U);
}

TEST(HeaderWriter, LostMainHeaderIsMadeFromTheStreams) {
  const auto bench = headedFilm();
  bench->write();
  EXPECT_EQ(fieldOf(bench->notes.mainHeader, "dwMicroSecPerFrame"), 40000U);
  EXPECT_EQ(fieldOf(bench->notes.mainHeader, "dwWidth"), 320U);
  EXPECT_EQ(fieldOf(bench->notes.mainHeader, "dwHeight"), 240U);
}

TEST(HeaderWriter, FramesOfTheFirstFormAndOfAll) {
  const auto bench = headedFilm();
  bench->write(2 * (8 + 12 + 24));
  ASSERT_GT(bench->layout.forms.size(), 1U);
  const std::uint64_t first = bench->layout.forms.front().chunks[0].chunks;
  EXPECT_LT(first, 3U);
  EXPECT_EQ(fieldOf(bench->notes.mainHeader, "dwTotalFrames"), first);
  EXPECT_EQ(numberAt(bench->bytes, bench->all(avi::kDmlh).at(0).offset + 8), 3U);
}

TEST(HeaderWriter, StreamHeadersOfOtherLengthsStay) {
  const auto bench = headedFilm();
  bench->header.streams[0].header.header.resize(64, std::byte{9});
  bench->header.streams[1].header.header.resize(48);
  bench->write();
  const auto headers = bench->all(avi::kStrh);
  EXPECT_EQ(headers.at(0).size, 64U);
  EXPECT_EQ(bench->bytes[headers.at(0).offset + 8 + 63], std::byte{9});
  EXPECT_EQ(headers.at(1).size, 48U);
  EXPECT_TRUE(bench->notes.problems.empty());
}

TEST(HeaderWriter, NamesPropertiesDataAndInformationStay) {
  const auto bench = headedFilm();
  bench->header.streams[0].header.name = bytesOf("Name");
  bench->header.streams[0].header.data = bytesOf("odd");
  bench->header.streams[0].header.properties = bytesOf("proper");
  bench->header.information = bytesOf({"ISFT\4\0\0\0made", 12});
  bench->write();
  const auto textOf = [&](avi::FourCC id) {
    const auto chunk = bench->all(id).at(0);
    return textAt(bench->bytes, chunk.offset + 8, chunk.size);
  };
  EXPECT_EQ(textOf(avi::kStrn), "Name");
  EXPECT_EQ(textOf(avi::FourCC{"strd"}), "odd");
  EXPECT_EQ(textOf(avi::kVprp), "proper");
  EXPECT_TRUE(bench->notes.problems.empty());
}

TEST(HeaderWriter, AClockOfZeroIsMended) {
  const auto bench = headedFilm();
  bench->header.main = salvage::SurvivingMainHeader{.microSecPerFrame = 20000};
  for (auto& stream : bench->header.streams) {
    stream.header.scale = 0;
    std::fill_n(stream.header.header.begin() + 20, 8, std::byte{0});
  }
  bench->write();
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[0], "dwScale"), 20000U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[0], "dwRate"), 1'000'000U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[1], "dwScale"), 2U);
  EXPECT_EQ(fieldOf(bench->notes.streamHeaders[1], "dwRate"), 16000U);
}

TEST(FilmLayout, LastLostSlotsAreLeftOut) {
  const auto bench = headedFilm();
  bench->addLost(0, 0);
  bench->addLost(1, 8);
  bench->write();
  EXPECT_EQ(bench->layout.slots, 6U);
  EXPECT_EQ(bench->chunks().size(), 6U);
}

TEST(FilmLayout, TooManyFormsAreRefused) {
  const auto bench = pictureAndSound();
  for (std::size_t i = 0; i < salvage::kMaxForms; ++i) bench->add(0, {});
  EXPECT_TRUE(salvage::layOut(bench->plan, bench->header, 1).has_value());
  bench->add(0, {});
  EXPECT_FALSE(salvage::layOut(bench->plan, bench->header, 1).has_value());
}

TEST(FilmLayout, RoughSizeIsThatOfChunksAndOneIndex) {
  const auto bench = headedFilm();
  bench->addLost(0, 400);
  EXPECT_EQ(salvage::roughSize(bench->plan, bench->header), 10U + 12U + 12U + 3U * 6U + 7U * 16U);
}

TEST(FilmLayout, HugePayloadsAreCutAndFormsStayBelowFourGigabytes) {
  const auto bench = pictureAndSound();
  for (int i = 0; i < 5; ++i) {
    salvage::Slot slot;
    slot.size = 0xffffffff;
    bench->plan.slots.push_back(slot);
  }
  const auto layout = salvage::layOut(bench->plan, bench->header);
  ASSERT_TRUE(layout.has_value());
  EXPECT_EQ(layout->forms.size(), 5U);
  for (const auto& form : layout->forms) EXPECT_LT(form.end - form.begin, std::uint64_t{1} << 32U);
  EXPECT_EQ(layout->chunks[0].bytes, 5 * std::uint64_t{salvage::kMaxPayload});
}

}  // namespace
}  // namespace zelvo::tests
