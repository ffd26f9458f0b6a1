// zelvo-avi triage, from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>

#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string lookedAtFilm() { return SmallAvi{.frames = 60, .frameSize = 3000, .soundSize = 300}.bytes(); }

std::string evenNoise(std::size_t size) {
  std::mt19937 random(9);
  std::string bytes(size, '\0');
  std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
  return bytes;
}

class TriageCommand : public testing::Test {
 protected:
  Ended triage(const std::string& bytes, std::vector<std::string> options = {}) const {
    writeFile(folder_ / "in.avi", bytes);
    options.insert(options.begin(), {"triage", folder_ / "in.avi"});
    return runZelvoAvi(options);
  }
  /// Empty when every line is as the schema says.
  [[nodiscard]] std::string wrongIn(const std::string& json) const {
    writeFile(folder_ / "result.json", json);
    const Ended ended = run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py",
                             ZELVO_ROOT "/docs/cli-triage.schema.json", folder_ / "result.json"});
    return ended.exit == 0 ? "" : ended.out + ended.err;
  }

  const TempFolder folder_;
};

TEST_F(TriageCommand, AGoodFilmComesBack) {
  const Ended ended = triage(lookedAtFilm());
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("in.avi: Nearly all of it should come back.\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Kept:      98 % of its bytes, surely between 96 and 100 %, by a deep repair\n"));
  EXPECT_THAT(ended.out, HasSubstr("Motion JPEG "));
  EXPECT_THAT(ended.out, HasSubstr("PCM "));
  EXPECT_THAT(ended.err, IsEmpty());
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi"));
  EXPECT_TRUE(readFile(folder_ / "in.avi") == lookedAtFilm());
}

TEST_F(TriageCommand, ALostHeaderIsTold) {
  std::string bytes = lookedAtFilm();
  std::fill_n(bytes.begin(), bytes.find("movi"), '\0');
  EXPECT_THAT(triage(bytes).out, HasSubstr("; the header is lost.\n"));
}

TEST_F(TriageCommand, WhereNothingIsLeftTheReasonIsTold) {
  const auto sentence = [&](const std::string& bytes) {
    const Ended ended = triage(bytes);
    EXPECT_EQ(ended.exit, 1);
    return ended.out;
  };
  EXPECT_THAT(sentence(std::string(300'000, '\0')), HasSubstr("in.avi: Nothing is left: all of it is zero.\n"));
  EXPECT_THAT(sentence(evenNoise(300'000)),
              HasSubstr("in.avi: Nothing is left of a film: its bytes are random or encrypted.\n"));
  EXPECT_THAT(sentence(""), HasSubstr("in.avi: Nothing is left: the file is empty.\n"));
  EXPECT_THAT(sentence("%PDF-1.7\n" + evenNoise(300'000)),
              HasSubstr("in.avi: This is no AVI film but begins as another format does: PDF document.\n"));
  std::string text;
  while (text.size() < 300'000) text += "Once upon a time there was no film at all.\n";
  EXPECT_THAT(sentence(text), HasSubstr("in.avi: This is no film: it holds text.\n"));
}

TEST_F(TriageCommand, ChunksOfWhichNothingTellsWhatTheyHoldAreTold) {
  std::string media;
  for (int i = 0; i < 60; ++i) media += chunk("00__", evenNoise(5000));
  const Ended ended = triage(std::string(2048, '\0') + media);
  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out,
              HasSubstr("Nothing should come back: chunks of a film are there, but nothing tells what they hold.\n"));
}

TEST_F(TriageCommand, OfALargeZeroFileEveryPlaceIsZero) {
  writeFile(folder_ / "in.avi", "");
  std::filesystem::resize_file(folder_ / "in.avi", std::uintmax_t{5} << 30U);
  const Ended ended = runZelvoAvi({"triage", folder_ / "in.avi"});
  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("Nothing is left: every place looked at is zero.\n"));
  EXPECT_THAT(ended.out, HasSubstr("places, 67.1 MB of 5.37 GB\n"));
}

TEST_F(TriageCommand, EveryOutcomeIsJsonAsDocumented) {
  writeFile(folder_ / "zeros.avi", std::string(100'000, '\0'));
  writeFile(folder_ / "pdf.avi", "%PDF-1.7\n" + evenNoise(300'000));
  const Ended ended =
      triage(lookedAtFilm(), {folder_ / "zeros.avi", folder_ / "pdf.avi", folder_ / "none.avi", "--json"});
  EXPECT_EQ(ended.exit, 3);
  EXPECT_EQ(std::ranges::count(ended.out, '\n'), 4);
  EXPECT_EQ(wrongIn(ended.out), "");
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"repairable\""));
  EXPECT_THAT(ended.out, HasSubstr("\"format\":\"PDF document\""));
  EXPECT_THAT(ended.out, HasSubstr("\"zeros\":1"));
  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"failed\""));
  EXPECT_THAT(ended.err, HasSubstr("4 inputs: 1 can be repaired, 2 cannot be repaired, 1 failed."));
}

TEST_F(TriageCommand, WhatTheMapCallsLostIsNotBelieved) {
  const std::string bytes = lookedAtFilm();
  const std::size_t half = bytes.size() / 2 / 512 * 512;
  writeFile(folder_ / "in.map", "0 +\n0 " + std::to_string(half) + " +\n" + std::to_string(half) + " " +
                                    std::to_string(bytes.size() - half) + " -\n");
  const Ended ended = triage(bytes, {"--map", folder_ / "in.map"});
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("About half of it should come back.\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Not saved: 50 %: not rescued, by the map\n"));
  EXPECT_EQ(triage(bytes, {"--map", folder_ / "none.map"}).exit, 3);
  EXPECT_EQ(triage(bytes, {"other.avi", "--map", folder_ / "in.map"}).exit, 2);
}

TEST_F(TriageCommand, QuietSaysNothingButErrors) {
  EXPECT_THAT(triage(lookedAtFilm(), {"--quiet"}).out, IsEmpty());
  EXPECT_THAT(runZelvoAvi({"triage", folder_ / "none.avi", "-q"}).err, HasSubstr("there is no file named "));
  EXPECT_EQ(runZelvoAvi({"triage", "/dev/null"}).exit, 3);
}

}  // namespace
}  // namespace zelvo::tests
