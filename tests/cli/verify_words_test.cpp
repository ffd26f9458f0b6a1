#include "cli/verify_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using cli::checkLines;
using cli::faultWords;
using cli::verdictSentence;
using platform::PlayedKind;
using salvage::FilmCheck;
using salvage::PlayError;
using salvage::PlayErrorKind;
using testing::HasSubstr;

/// A film of pictures and sound without a fault.
FilmCheck whole() {
  FilmCheck check;
  check.play.streams.resize(2);
  check.play.streams[0].told = {.stream = 0, .kind = PlayedKind::video, .hasDecoder = true, .codec = "mpeg4"};
  check.play.streams[0].pictures = 15'000;
  check.play.streams[0].seconds = 600;
  check.play.streams[1].told = {.stream = 1, .kind = PlayedKind::sound, .hasDecoder = true, .codec = "mp3"};
  check.play.streams[1].seconds = 600;
  return check;
}

FilmCheck with(const PlayError& fault, std::size_t stream = 0) {
  FilmCheck check = whole();
  check.play.streams[stream].faults.push_back(fault);
  check.play.streams[stream].errors = fault.packets;
  return check;
}

TEST(VerifyWords, FilmThatPlaysIsSummedUp) {
  EXPECT_EQ(verdictSentence(whole()), "This film plays throughout: 15,000 pictures and 10:00.00 of sound, in step.");
}

TEST(VerifyWords, EachFaultHasItsOwnWords) {
  const auto said = [](const PlayError& fault, std::size_t stream) { return verdictSentence(with(fault, stream)); };
  EXPECT_THAT(said({.kind = PlayErrorKind::crashed, .begin = 72, .packets = 1}, 0),
              HasSubstr("the decoder crashed at 1:12.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::hung, .begin = 72, .packets = 1}, 0),
              HasSubstr("the decoder hung at 1:12.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::noMemory, .begin = 72, .packets = 1}, 0),
              HasSubstr("asked for too much memory at 1:12.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::hurt, .begin = 3, .packets = 2}, 0),
              HasSubstr("2 pictures are damaged, the first at 0:03.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::refused, .begin = 3, .packets = 1}, 1),
              HasSubstr("1 piece of sound is damaged, the first at 0:03.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::noPictures, .begin = 3, .packets = 20, .seconds = 0.8}, 0),
              HasSubstr("no picture comes for 0.80 s, first at 0:03.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::lostSound, .begin = 3, .packets = 1, .seconds = 1.2}, 1),
              HasSubstr("1.20 s of sound are missing, first at 0:03.00"));
  EXPECT_THAT(said({.kind = PlayErrorKind::extraSound, .begin = 3, .packets = 1, .seconds = 1.2}, 1),
              HasSubstr("sound of 1.20 s is too much"));
  EXPECT_THAT(said({.kind = PlayErrorKind::outOfStep, .begin = 60, .packets = 1, .seconds = -2}, 1),
              HasSubstr("sound and pictures are 2.00 s apart from about 1:00.00 on"));
  EXPECT_THAT(said({.kind = PlayErrorKind::outOfStep, .begin = 60, .packets = 1, .seconds = -2}, 0),
              HasSubstr("pictures and the first ones are 2.00 s apart from about 1:00.00 on"));
  EXPECT_THAT(said({.kind = PlayErrorKind::noDecoder, .packets = 1}, 0),
              HasSubstr("nothing here decodes the pictures (mpeg4)"));
}

TEST(VerifyWords, WhatIsWrongWithTheContainerIsSaid) {
  FilmCheck check = whole();
  check.container.chunks = 100;
  EXPECT_THAT(verdictSentence(check), HasSubstr("it has no index, so players cannot jump in it"));
  check.container.indexed = 60;
  EXPECT_THAT(verdictSentence(check), HasSubstr("its index leaves out 40 of 100 chunks"));
  check.container.shortStreams = {{.stream = 0, .promised = 250, .found = 200, .offset = 0}};
  EXPECT_THAT(verdictSentence(check), HasSubstr("its header promises 250 pictures, and 200 are there"));
  check.falseKeys = {{.payload = 7}, {.payload = 7}, {.payload = 9}};
  EXPECT_THAT(verdictSentence(check), HasSubstr("its index calls 2 pictures a key that are none"));
  check.play.seeks = {{.end = platform::SeekEnd::right}, {.end = platform::SeekEnd::late}};
  EXPECT_THAT(verdictSentence(check), HasSubstr("1 of 2 jumps lands wrong"));
}

TEST(VerifyWords, DriftIsSaid) {
  FilmCheck check = whole();
  check.play.streams[1].creep = 0.4;
  EXPECT_EQ(check.verdict(), salvage::FilmVerdict::plays);
  check.play.streams[1].creep = -0.9;
  EXPECT_THAT(verdictSentence(check), HasSubstr("sound runs away from the pictures, by 0.90 s at the end"));
}

TEST(VerifyWords, FaultHasTimePlaceAndKind) {
  EXPECT_EQ(faultWords({.kind = PlayErrorKind::hurt, .begin = 62.5, .end = 62.54, .offset = 1234, .packets = 1}),
            "1:02.50, at byte 1,234: 1 packet damaged");
  EXPECT_EQ(faultWords({.kind = PlayErrorKind::refused, .begin = 62.5, .end = 63, .offset = 1234, .packets = 12}),
            "1:02.50 to 1:03.00, at byte 1,234: 12 packets refused by the decoder");
  EXPECT_EQ(faultWords({.kind = PlayErrorKind::crashed, .begin = 5, .packets = 1, .signal = 11}),
            "0:05.00: the decoder crashed (signal 11)");
  EXPECT_EQ(faultWords({.kind = PlayErrorKind::outOfStep, .begin = 60, .offset = 1234, .packets = 1, .seconds = -2}),
            "1:00.00, at byte 1,234: from about here on it is 2.00 s early against the pictures");
}

TEST(VerifyWords, WrongJumpsAreTold) {
  FilmCheck check = whole();
  check.play.seeks = {{.target = 5'000'000, .end = platform::SeekEnd::outOfStep}};
  EXPECT_THAT(checkLines(check, false),
              testing::ElementsAre("a jump to 0:05.00 puts the streams out of step with one another"));
}

TEST(VerifyWords, ManyFaultsAreToldWhenTheyAreWanted) {
  FilmCheck check = whole();
  for (int i = 0; i < 10; ++i)
    check.play.streams[0].faults.push_back({.kind = PlayErrorKind::crashed, .begin = 10.0 * i, .packets = 1});
  EXPECT_EQ(checkLines(check, false).size(), 4U);
  EXPECT_EQ(checkLines(check, false).back(), "7 more; --verbose tells each");
  EXPECT_EQ(checkLines(check, true).size(), 10U);
}

}  // namespace
}  // namespace zelvo::tests
