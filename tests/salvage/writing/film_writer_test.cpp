// The film that comes out of a plan.
#include "salvage/writing/film_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/salvage/written_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Slot;
using salvage::SlotState;
using testing::ElementsAre;
using testing::IsEmpty;

Bytes keyPicture() { return numbered({0, 0, 1, 0xb6, 0x10, 1, 2}); }
Bytes otherPicture() { return numbered({0, 0, 1, 0xb6, 0x50, 3}); }

TEST(FilmWriter, ChunksComeOutInThePlansOrderAndAllAgrees) {
  const auto film = pictureAndSound();
  film->add(0, keyPicture());
  film->add(1, numbered({1, 2, 3, 4}));
  film->add(0, otherPicture());
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("00dc:00 00 01 b6 10 01 02", "01wb:01 02 03 04", "00dc:00 00 01 b6 50 03"));
  EXPECT_THAT(film->notes.problems, IsEmpty());
  EXPECT_EQ(film->bytes.size(), film->layout.size());
  EXPECT_FALSE(film->written.failure.has_value());
}

TEST(FilmWriter, EveryIndexEntryMatchesWhatItPointsAt) {
  const auto film = pictureAndSound();
  for (int i = 0; i < 20; ++i) {
    film->add(0, i % 4 == 0 ? keyPicture() : otherPicture());
    film->add(1, numbered({1, 2}));
  }
  film->write();
  std::uint64_t checked = 0;
  for (const auto& index : film->notes.indexes) {
    EXPECT_EQ(index.matching, index.checked);
    checked += index.checked;
  }
  EXPECT_EQ(checked, 20U + 20U + 40U + 2U);  // ix00, ix01, idx1, two super indexes
}

TEST(FilmWriter, SlotsOutOfOrderInTheInputAreReadWhereTheyLie) {
  const auto film = pictureAndSound();
  film->add(0, keyPicture());
  film->add(0, otherPicture());
  std::swap(film->plan.slots[0], film->plan.slots[1]);
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("00dc:00 00 01 b6 50 03", "00dc:00 00 01 b6 10 01 02"));
}

TEST(FilmWriter, PiecesAreJoined) {
  const auto film = pictureAndSound();
  film->add(0, numbered({1, 2, 3, 4, 5, 6, 7, 8}));
  Slot& slot = film->plan.slots[0];
  film->plan.pieces = {{0, 1}, {slot.source, 3}, {slot.source + 5, 2}};
  slot.pieces = 1;
  slot.size = 5;
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("00dc:01 02 03 06 07"));
}

TEST(FilmWriter, WhatPiecesLackIsZero) {
  const auto film = pictureAndSound();
  film->add(0, numbered({1, 2, 3}));
  Slot& slot = film->plan.slots[0];
  film->plan.pieces = {{slot.source, 2}};
  slot.pieces = 0;
  slot.size = 4;
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("00dc:01 02 00 00"));
}

TEST(FilmWriter, LostPicturesAreEmptyAndLostSoundIsSilent) {
  const auto film = std::make_unique<WrittenFilmBench>();
  film->with(pictureStream("XVID"), "00dc").with(soundStream(1, 1, 8000, 1, 8, 1), "01wb");
  film->addLost(0, 500);
  film->addLost(1, 3);
  film->add(0, keyPicture());
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("00dc:", "01wb:80 80 80", "00dc:00 00 01 b6 10 01 02"));
  EXPECT_THAT(film->notes.problems, IsEmpty());
}

TEST(FilmWriter, KeysAreThoseThatTheCodecSays) {
  const auto film = pictureAndSound();
  film->add(0, keyPicture());
  film->add(0, otherPicture());
  film->add(1, numbered({1, 2}));
  film->add(0, otherPicture()).isIndexed = true;
  film->plan.slots.back().hasKeyFlag = true;
  film->add(0, keyPicture()).isIndexed = true;
  film->write();
  EXPECT_THAT(film->keysInTable(), ElementsAre(true, false, true, false, true));
  EXPECT_THAT(film->keysIn(avi::kIx00), ElementsAre(true, false, false, true));
  EXPECT_THAT(film->keysIn(avi::kIx01), ElementsAre(true));
  EXPECT_EQ(film->written.keyPictures, 2U);
}

TEST(FilmWriter, OfOtherCodecsAnIndexSaysWhichAreKeys) {
  const auto film = std::make_unique<WrittenFilmBench>();
  film->with(pictureStream("????"), "00dc").with(pictureStream("H264"), "01dc");
  for (const std::uint8_t stream : {std::uint8_t{0}, std::uint8_t{1}}) {
    for (const bool isKey : {false, true}) {
      auto& slot = film->add(stream, numbered({0, 0, 1, 0x41, 1}));
      slot.isIndexed = true;
      slot.hasKeyFlag = isKey;
    }
  }
  film->add(1, numbered({0, 0, 1, 0x65, 1})).isIndexed = true;
  film->add(1, numbered({0, 0, 1, 0x41, 1}));
  film->write();
  EXPECT_THAT(film->keysInTable(), ElementsAre(false, true, false, true, true, false));
}

TEST(FilmWriter, WhatIsNotWholeIsNoKey) {
  const auto film = pictureAndSound();
  for (const SlotState state : {SlotState::torn, SlotState::cut, SlotState::damaged, SlotState::sizeMended,
                                SlotState::codeMended, SlotState::rejoined})
    film->add(0, keyPicture()).state = state;
  film->addLost(0, 0);
  film->add(0, {});
  film->write();
  EXPECT_THAT(film->keysInTable(), ElementsAre(false, false, false, true, true, true, false, false));
}

TEST(FilmWriter, OfACodecThatTellsNothingTheFirstPictureIsKey) {
  const auto film = std::make_unique<WrittenFilmBench>();
  film->with(pictureStream("????"), "00dc");
  film->add(0, numbered({1, 2}));
  film->add(0, numbered({1, 2}));
  film->write();
  EXPECT_THAT(film->keysInTable(), ElementsAre(true, false));
}

TEST(FilmWriter, StreamsGetTheNumbersOfTheirPlaces) {
  const auto film = std::make_unique<WrittenFilmBench>();
  film->with(soundStream(1, 1, 8000, 2, 16, 2), "03wb").with(pictureStream("XVID"), "07db");
  film->add(1, keyPicture());
  film->add(0, numbered({1, 2}));
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("01db:00 00 01 b6 10 01 02", "00wb:01 02"));
}

TEST(FilmWriter, FormsAreSplitAndFoundAgain) {
  const auto film = pictureAndSound();
  for (int i = 0; i < 9; ++i) film->add(0, Bytes(100, static_cast<std::byte>(i)));
  film->add(1, numbered({1, 2}));
  film->write(3 * (108 + 24));
  ASSERT_EQ(film->layout.forms.size(), 4U);
  EXPECT_THAT(film->notes.problems, IsEmpty());
  EXPECT_EQ(film->chunks().size(), 10U);
  EXPECT_EQ(film->all(avi::kIx00).size(), 3U);
  EXPECT_EQ(film->all(avi::kIx01).size(), 1U);
  EXPECT_EQ(film->all(avi::kIdx1).size(), 1U);
  for (const auto& index : film->notes.indexes) EXPECT_EQ(index.matching, index.checked);
  EXPECT_EQ(film->notes.indexes[0].entries, 3U);  // the super index of the pictures: a standard index a form
  EXPECT_EQ(film->notes.indexes[1].entries, 1U);
}

TEST(FilmWriter, WhatCannotBeReadIsZeroAndTold) {
  const auto film = pictureAndSound();
  film->add(0, Bytes(10000, std::byte{5}));
  auto& file = film->files.put("/in.avi", film->input);
  file.badReadStart = 5000;
  file.badReadEnd = 5001;
  file.readError = std::make_error_code(std::errc::io_error);
  film->write();
  EXPECT_EQ(film->written.unreadable, 8192U - 5000U);
  EXPECT_GT(film->failures.count, 0U);
  const auto payload = film->all(avi::k00dc).at(0).offset + 8;
  for (std::size_t i = 0; i < 10000; ++i) {
    const bool isLost = i + 1 >= 5000 && i + 1 < 8192;
    ASSERT_EQ(film->bytes[payload + i], isLost ? std::byte{0} : std::byte{5}) << i;
  }
}

TEST(FilmWriter, APlanBehindTheInputsEndGivesZeros) {
  const auto film = pictureAndSound();
  film->add(0, numbered({1, 2}));
  film->plan.slots[0].size = 6;
  film->write();
  EXPECT_THAT(film->chunks(), ElementsAre("00dc:01 02 00 00 00 00"));
  EXPECT_EQ(film->written.unreadable, 4U);
}

TEST(FilmWriter, LargePayloadsComeThroughWhole) {
  const auto film = pictureAndSound();
  Bytes large(3'000'001);
  for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<std::byte>(i * 7 % 251);
  film->add(0, large);
  film->add(0, keyPicture());
  film->write();
  const auto chunk = film->all(avi::k00dc).at(0);
  EXPECT_TRUE(std::ranges::equal(std::span(film->bytes).subspan(chunk.offset + 8, large.size()), large));
  EXPECT_THAT(film->notes.problems, IsEmpty());
}

TEST(FilmWriter, AFailedWriteIsTold) {
  const auto film = pictureAndSound();
  film->add(0, Bytes(200'000));
  film->files.put("/in.avi", film->input);
  film->files.put("/full.avi", {}).badWriteFrom = 70'000;
  film->files.at("/full.avi").writeError = std::make_error_code(std::errc::no_space_on_device);
  avi::InputFile in(film->files.openForReading("/in.avi").file);
  const auto out = film->files.openForWriting("/full.avi");
  const auto layout = salvage::layOut(film->plan, film->header);
  const auto written =
      salvage::writeFilm({in, *out.file, film->workers, film->plan, film->header, *layout, [] { return false; }});
  ASSERT_TRUE(written.failure.has_value());
  EXPECT_EQ(written.failure->offset, 70'000U);
  EXPECT_EQ(written.failure->cause, std::errc::no_space_on_device);
}

TEST(FilmWriter, RoomForAllOfItIsAskedForBeforeTheFirstWrite) {
  const auto film = pictureAndSound();
  film->add(0, Bytes(200'000));
  film->files.put("/in.avi", film->input);
  MemoryFile& file = film->files.put("/out.avi", {});
  std::vector<std::uint64_t> sizes;
  file.onWrite = [&](std::uint64_t, std::size_t) { sizes.push_back(file.size); };
  const auto out = film->files.openForWriting("/out.avi");
  avi::InputFile in(film->files.openForReading("/in.avi").file);
  const auto layout = salvage::layOut(film->plan, film->header);
  const auto write = [&] {
    return salvage::writeFilm({in, *out.file, film->workers, film->plan, film->header, *layout, [] { return false; }});
  };
  file.reserveError = {};
  EXPECT_FALSE(write().failure.has_value());
  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes[0], layout->size());
  EXPECT_EQ(file.size, layout->size());

  sizes.clear();
  file.reserveError = std::make_error_code(std::errc::no_space_on_device);
  const auto refused = write();
  ASSERT_TRUE(refused.failure.has_value());
  EXPECT_EQ(refused.failure->offset, 0U);
  EXPECT_EQ(refused.failure->cause, std::errc::no_space_on_device);
  EXPECT_THAT(sizes, IsEmpty());
}

TEST(FilmWriter, AStopEndsIt) {
  const auto film = pictureAndSound();
  film->add(0, Bytes(200'000));
  film->isEnding = true;
  film->write();
  EXPECT_LT(film->bytes.size(), 200'000U);
}

TEST(FilmWriter, PaletteChangesKeepTheirCodeAndPlaceAndAreNoPictures) {
  WrittenFilmBench film;
  film.with(pictureStream("MRLE"), "00dc").with(soundStream(1, 1, 8000, 2, 16, 2), "01wb");
  film.add(0, numbered({0, 1}));
  film.add(0, numbered({7, 1, 0, 0, 9, 9, 9, 0})).isPalette = true;
  film.add(0, numbered({0, 2}));
  film.add(1, numbered({1, 2}));
  film.write();
  EXPECT_THAT(film.chunks(), ElementsAre("00dc:00 01", "00pc:07 01 00 00 09 09 09 00", "00dc:00 02", "01wb:01 02"));
  EXPECT_THAT(film.notes.problems, IsEmpty());
  EXPECT_EQ(fieldOf(film.notes.mainHeader, "dwTotalFrames"), 2U);
  EXPECT_EQ(fieldOf(film.notes.streamHeaders.at(0), "dwLength"), 2U);
  EXPECT_EQ(film.keysIn(avi::kIx00).size(), 2U);
  const avi::OutlineItem table = film.all(avi::kIdx1).at(0);
  EXPECT_EQ(table.size, 4U * 16U);
  EXPECT_EQ(textAt(film.bytes, table.offset + 8 + 16, 4), "00pc");
  EXPECT_EQ(numberAt(film.bytes, table.offset + 8 + 20), 0x100U);
}

TEST(FilmWriter, PaletteChangesThatAreNotWholeAreLeftOut) {
  WrittenFilmBench film;
  film.with(pictureStream("MRLE"), "00dc");
  film.add(0, numbered({0, 1}));
  for (const SlotState state : {SlotState::damaged, SlotState::torn, SlotState::cut, SlotState::lost}) {
    Slot& slot = film.add(0, numbered({7, 1, 0, 0, 9, 9, 9, 0}));
    slot.isPalette = true;
    slot.state = state;
  }
  film.add(0, numbered({0, 2}));
  film.write(100);
  EXPECT_THAT(film.chunks(), ElementsAre("00dc:00 01", "00dc:00 02"));
  EXPECT_THAT(film.notes.problems, IsEmpty());
  EXPECT_EQ(film.bytes.size(), film.layout.size());
}

}  // namespace
}  // namespace zelvo::tests
