#include "deep/film_end.h"

#include <gtest/gtest.h>

#include <csignal>

namespace zelvo::tests {

using deep::failureWords;
using deep::FilmEnd;
using deep::filmEnd;
using Kind = deep::FilmEnd::Kind;

namespace {

salvage::FilmResult resultOf(int exit, int signal = 0) {
  salvage::FilmResult result;
  result.end = platform::ProgramEnd{.exit = exit, .signal = signal};
  return result;
}

salvage::FilmResult toldOf(int exit, const std::string& reason = {}, int signal = 0) {
  salvage::FilmResult result = resultOf(signal == 0 ? exit : -1, signal);
  result.line = salvage::BatchLine{};
  result.line->exit = exit;
  result.line->reason = reason;
  result.isLast = true;
  return result;
}

}  // namespace

TEST(FilmEndTest, WhatTheProgramTellsCounts) {
  EXPECT_EQ(filmEnd(toldOf(0), false).kind, Kind::done);
  EXPECT_EQ(filmEnd(toldOf(1), false).kind, Kind::hopeless);
  EXPECT_EQ(filmEnd(toldOf(3, "why"), false).kind, Kind::failed);
  EXPECT_EQ(filmEnd(toldOf(3, "why"), false).reason, "why");
  EXPECT_EQ(filmEnd(toldOf(130), false).kind, Kind::stopped);
}

TEST(FilmEndTest, AStopExplainsEveryEndButASuccess) {
  EXPECT_EQ(filmEnd(toldOf(0), true).kind, Kind::done);
  EXPECT_EQ(filmEnd(toldOf(3), true).kind, Kind::stopped);
  EXPECT_EQ(filmEnd(resultOf(-1, SIGTERM), true).kind, Kind::stopped);
  EXPECT_EQ(filmEnd(resultOf(-1, SIGKILL), true).kind, Kind::stopped);
  EXPECT_EQ(filmEnd(salvage::FilmResult{}, true).kind, Kind::stopped);
}

TEST(FilmEndTest, AProgramThatDiedAfterItToldItsEndHasComeToIt) {
  EXPECT_EQ(filmEnd(toldOf(0, {}, SIGSEGV), false).kind, Kind::done);
}

TEST(FilmEndTest, AProgramThatOnlyWantedToNameItsFilmHasDied) {
  salvage::FilmResult result = resultOf(-1, SIGKILL);
  result.line = salvage::BatchLine{};
  const FilmEnd end = filmEnd(result, false);
  EXPECT_EQ(end.kind, Kind::died);
  EXPECT_EQ(end.signal, SIGKILL);
}

TEST(FilmEndTest, WithoutAWordAnExitTellsLittle) {
  EXPECT_EQ(filmEnd(resultOf(0), false).kind, Kind::died);
  EXPECT_EQ(filmEnd(resultOf(1), false).kind, Kind::died);
  EXPECT_EQ(filmEnd(resultOf(2), false).kind, Kind::failed);
  EXPECT_EQ(filmEnd(salvage::FilmResult{}, false).kind, Kind::notStarted);
}

TEST(FilmEndTest, EveryFailureHasASentence) {
  const auto& english = platform::englishTranslator();
  const std::string unchanged = " Nothing was changed in your file.";
  EXPECT_EQ(failureWords({.kind = Kind::failed}, "a.avi", english), "a.avi could not be read or written." + unchanged);
  EXPECT_EQ(failureWords({.kind = Kind::stopped}, "a.avi", english), "It was stopped." + unchanged);
  EXPECT_EQ(failureWords({.kind = Kind::notStarted, .error = std::make_error_code(std::errc::permission_denied)},
                         "a.avi", english),
            "The deep repair could not be started. The system says: Permission denied." + unchanged);
  EXPECT_EQ(failureWords({.kind = Kind::notStarted, .error = std::make_error_code(std::errc::not_enough_memory)},
                         "a.avi", english),
            "There is not enough memory. Closing other programs helps." + unchanged);
}

}  // namespace zelvo::tests
