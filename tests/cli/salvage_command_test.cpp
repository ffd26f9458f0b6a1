// zelvo-avi salvage, from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "salvage/report_json.h"
#include "salvage/salvage_words.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string film() { return SmallAvi{.frames = 20, .frameSize = 500, .soundSize = 100}.bytes(); }

/// The film with the header of its tenth picture and what follows overwritten.
std::string damagedFilm() {
  std::string bytes = film();
  const std::size_t media = bytes.find("movi");
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(media + 9 * 620), 700, '\0');
  return bytes;
}

/// The film with line feeds in its payloads, sent as if it were text.
std::string sentFilm() {
  std::string bytes = film();
  const std::size_t media = bytes.find("movi");
  for (std::size_t i = 0; i < 15; ++i) bytes.replace(media + 100 + i * 616, 20, 20, '\n');
  std::string sent;
  for (const char byte : bytes) sent += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
  return sent;
}

TEST(SalvageCommand, UndamagedFilmIsCleanAndKeepsItsChunks) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());

  const Ended ended = runZelvoAvi({"salvage", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("Nothing is wrong with this film."));
  EXPECT_THAT(ended.out, HasSubstr("Video:     Motion JPEG, 20 chunks\n"));
  EXPECT_THAT(ended.out, HasSubstr("Written:   " + (folder / "in-salvaged.avi")));
  EXPECT_THAT(ended.err, IsEmpty());
  EXPECT_THAT(folder.names(), ElementsAre("in-salvaged.avi", "in.avi"));
  EXPECT_EQ(readFile(folder / "in.avi"), film());
}

TEST(SalvageCommand, DamagedFilmIsPartlyThereAndExitsWithSuccess) {
  const TempFolder folder;
  writeFile(folder / "in.avi", damagedFilm());

  const Ended ended = runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "out.avi", "--verbose"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("This film was damaged;"));
  EXPECT_THAT(ended.out, HasSubstr("Damage:    bytes "));
  EXPECT_THAT(folder.names(), ElementsAre("in.avi", "out.avi"));
}

TEST(SalvageCommand, DecoderThatIsMissedIsNamed) {
  std::string bytes = film();
  bytes.insert(bytes.find("movi") + 4 + 9 * 616 + 8 + 250, 777, 'x');
  const TempFolder folder;
  const TempFolder elsewhere;
  writeFile(folder / "in.avi", bytes);
  const std::string program = zelvoAvi({}).front();
  std::filesystem::copy_file(program, elsewhere / "zelvo-avi");

  const Ended alone = run({elsewhere / "zelvo-avi", "salvage", folder / "in.avi", "-o", folder / "alone.avi"});
  const Ended beside = run({program, "salvage", folder / "in.avi", "-o", folder / "beside.avi"});

  EXPECT_EQ(alone.exit, 0);
  EXPECT_THAT(alone.err, HasSubstr("could have been found by decoding, but the program zelvo-avi-decoder"));
  EXPECT_THAT(folder.names(), ElementsAre("alone.avi", "beside.avi", "in.avi"));
  EXPECT_THAT(beside.err, Not(HasSubstr("zelvo-avi-decoder")));
}

TEST(SalvageCommand, ChunksForWhichThereIsNoRoomAreTold) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{.frames = 100'000, .frameSize = 4, .soundSize = 4}.bytes());

  const Ended ended = runZelvoAvi({"salvage", "--dry-run", folder / "in.avi"});

  EXPECT_THAT(ended.out, HasSubstr("Left out:  "));
  EXPECT_THAT(ended.out, HasSubstr(" chunks more than are kept of a film of this size\n"));
  EXPECT_THAT(runZelvoAvi({"salvage", "--dry-run", folder / "in.avi", "--json"}).out,
              Not(HasSubstr("\"chunks_left_out\":0,")));
}

TEST(SalvageCommand, SmallerAndSilentFilmsAreTakenToo) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{.frames = 4, .hasAudioHeader = false}.bytes());
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi"}).exit, 0);
}

TEST(SalvageCommand, DryRunWritesNothing) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());

  const Ended ended = runZelvoAvi({"salvage", "--dry-run", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("would be written"));
  EXPECT_THAT(folder.names(), ElementsAre("in.avi"));
}

TEST(SalvageCommand, WhatHoldsNoFilmIsHopeless) {
  const TempFolder folder;
  writeFile(folder / "in.avi", std::string(100'000, 'x'));
  writeFile(folder / "empty.avi", "");

  const Ended ended = runZelvoAvi({"salvage", folder / "in.avi"});
  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.err, HasSubstr("nothing can be brought back from"));
  EXPECT_THAT(runZelvoAvi({"salvage", folder / "empty.avi"}).err, HasSubstr("is empty."));
  EXPECT_THAT(folder.names(), ElementsAre("empty.avi", "in.avi"));
}

TEST(SalvageCommand, AnExistingOutputStaysUnlessForced) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());
  writeFile(folder / "out.avi", "mine");

  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "out.avi"}).exit, 3);
  EXPECT_EQ(readFile(folder / "out.avi"), "mine");
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "out.avi", "--force"}).exit, 0);
  EXPECT_NE(readFile(folder / "out.avi"), "mine");
}

TEST(SalvageCommand, AnInputIsNeverAnOutput) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());
  writeFile(folder / "in-salvaged.avi", film());

  EXPECT_EQ(runZelvoAvi({"salvage", "--force", folder / "in.avi", "-o", folder / "in.avi"}).exit, 3);
  const Ended ended = runZelvoAvi({"salvage", "--force", folder / "in.avi", folder / "in-salvaged.avi"});
  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("which is an input of the same command"));
  EXPECT_EQ(readFile(folder / "in.avi"), film());
  EXPECT_EQ(readFile(folder / "in-salvaged.avi"), film());
}

TEST(SalvageCommand, SeveralInputsGoToOneFolder) {
  const TempFolder folder;
  writeFile(folder / "a.avi", film());
  writeFile(folder / "b.divx", damagedFilm());
  std::filesystem::create_directory(folder / "out");

  const Ended ended = runZelvoAvi(
      {"salvage", folder / "a.avi", folder / "b.divx", folder / "none.avi", "--output-dir", folder / "out"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.out, HasSubstr("3 inputs: 2 repaired, 1 failed."));
  EXPECT_TRUE(std::filesystem::exists(folder / "out/a-salvaged.avi"));
  EXPECT_TRUE(std::filesystem::exists(folder / "out/b-salvaged.avi"));
}

TEST(SalvageCommand, SameBytesEveryTime) {
  const TempFolder folder;
  writeFile(folder / "in.avi", damagedFilm());
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "one.avi"}).exit, 0);
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "two.avi"}).exit, 0);
  EXPECT_TRUE(readFile(folder / "one.avi") == readFile(folder / "two.avi"));
}

TEST(SalvageCommand, ClosedGapsMakeAShorterFilm) {
  const TempFolder folder;
  writeFile(folder / "in.avi", damagedFilm());
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "filled.avi"}).exit, 0);
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "closed.avi", "--gaps", "close"}).exit, 0);
  EXPECT_LT(readFile(folder / "closed.avi").size(), readFile(folder / "filled.avi").size());
}

TEST(SalvageCommand, LostHeadersComeFromADonor) {
  const TempFolder folder;
  std::string bytes = film();
  const std::size_t media = bytes.find("movi");
  std::fill_n(bytes.begin(), media - 8, '\0');
  writeFile(folder / "in.avi", bytes);
  writeFile(folder / "donor.avi", film());

  const Ended alone = runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "alone.avi"});
  EXPECT_EQ(alone.exit, 0);
  EXPECT_THAT(alone.out, HasSubstr("Headers:   0 of "));
  const Ended helped =
      runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "out.avi", "--donor", folder / "donor.avi", "--json"});
  EXPECT_EQ(helped.exit, 0);
  EXPECT_THAT(helped.out, HasSubstr("\"header\":\"donor\""));
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "--donor", folder / "none.avi"}).exit, 3);
}

TEST(SalvageCommand, AStreamThatNothingTellsOfIsLeftOutAndTold) {
  const TempFolder folder;
  std::string bytes;
  for (int i = 0; i < 30; ++i) {
    bytes += chunk("00dc", std::string(static_cast<std::size_t>(100 + i), 'x'));
    bytes += chunk("01wb", std::string(50, static_cast<char>(i)));
  }
  writeFile(folder / "in.avi", std::string(500, '\0') + list("LIST", "movi", bytes));

  const Ended ended = runZelvoAvi({"salvage", "--dry-run", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.err, HasSubstr("1 stream of"));
  EXPECT_THAT(ended.out, HasSubstr("1 stream of it cannot be recognised and is left out"));
}

TEST(SalvageCommand, ASampleRateIsForOneTrack) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());
  EXPECT_EQ(runZelvoAvi({"salvage", "--dry-run", "--rate", "8000", folder / "in.avi"}).exit, 0);
}

TEST(SalvageCommand, ReportsAreOfTheKindThatTheirNamesSay) {
  const TempFolder folder;
  writeFile(folder / "in.avi", damagedFilm());
  for (const char* const name : {"r.json", "r.html", "r.txt"}) {
    EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "--dry-run", "--quiet", "--report", folder / name}).exit, 0);
  }
  EXPECT_THAT(readFile(folder / "r.json"), HasSubstr("\"verdict\":\"partial\""));
  EXPECT_THAT(readFile(folder / "r.txt"), HasSubstr("Damage:    bytes "));
  const std::string page = readFile(folder / "r.html");
  EXPECT_THAT(page, HasSubstr("<svg"));
  EXPECT_THAT(page, HasSubstr("<title>bytes "));
  EXPECT_THAT(page, HasSubstr("prefers-color-scheme: dark"));
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page, Not(HasSubstr("http")));
}

TEST(SalvageCommand, SeveralReportsAreWrittenOfOneRun) {
  const TempFolder folder;
  writeFile(folder / "in.avi", damagedFilm());
  const Ended ended = runZelvoAvi({"salvage", "--report", folder / "r.json", folder / "in.avi", "--report",
                                   folder / "r.txt", "--report", folder / "r.html"});
  EXPECT_EQ(ended.exit, 0) << ended.err;
  EXPECT_THAT(readFile(folder / "r.txt"), HasSubstr("Damage:    bytes "));
  EXPECT_THAT(readFile(folder / "r.html"), HasSubstr("<svg"));
  const auto report = salvage::readReport(readFile(folder / "r.json"));
  ASSERT_TRUE(report);
  EXPECT_EQ(report->verdict, salvage::SalvageVerdict::partial);
  EXPECT_THAT(ended.out, HasSubstr(verdictSentence(*report)));
  EXPECT_GT(report->headerEnd, 0U);
}

TEST(SalvageCommand, ATransferAsTextIsUndoneAndTold) {
  const TempFolder folder;
  writeFile(folder / "in.avi", sentFilm());
  const Ended ended = runZelvoAvi({"salvage", folder / "in.avi", "--report", folder / "r.html"});
  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("Transfer:  sent as if it were text, which put "));
  EXPECT_THAT(ended.out, HasSubstr("all of its pictures and sound are there again"));
  EXPECT_THAT(readFile(folder / "r.html"), HasSubstr("<p>The file was sent as if it were text"));
}

TEST(SalvageCommand, AReportReplacesNothing) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());
  writeFile(folder / "r.txt", "mine");

  const Ended ended = runZelvoAvi({"salvage", folder / "in.avi", "--report", folder / "r.txt"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("exists already"));
  EXPECT_EQ(readFile(folder / "r.txt"), "mine");
  EXPECT_TRUE(std::filesystem::exists(folder / "in-salvaged.avi"));
}

TEST(SalvageCommand, AReportIsNoInput) {
  const TempFolder folder;
  writeFile(folder / "in.txt", film());
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.txt", "--force", "--report", folder / "in.txt"}).exit, 3);
  EXPECT_EQ(readFile(folder / "in.txt"), film());
}

TEST(SalvageCommand, NamesInThePageAreNoMarkup) {
  const TempFolder folder;
  writeFile(folder / "<b>&.avi", film());
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "<b>&.avi", "--dry-run", "--report", folder / "r.html"}).exit, 0);
  EXPECT_THAT(readFile(folder / "r.html"), HasSubstr("/&lt;b&gt;&amp;.avi</h1>"));
}

TEST(SalvageCommand, OptionsThatMakeNoSenseAreRefusedBeforeAnythingIsTouched) {
  const TempFolder folder;
  writeFile(folder / "a.avi", film());
  writeFile(folder / "b.avi", film());
  const std::vector<std::vector<std::string>> uses = {{"--damaged", "blue"},
                                                      {"--gaps", "wide"},
                                                      {"--fps", "fast"},
                                                      {"--fps", "0"},
                                                      {"--rate", "7"},
                                                      {"--report", folder / "r.pdf"},
                                                      {"--report", folder / "r.txt", "--report", folder / "r.pdf"},
                                                      {"--report", folder / "r.txt", "--report", folder / "r.txt"},
                                                      {"--output-dir", folder.path(), "-o", folder / "x.avi"},
                                                      {"--report", folder / "x.txt", "-o", folder / "x.txt"},
                                                      {folder / "b.avi", "-o", folder / "x.avi"},
                                                      {folder / "b.avi", "--donor", folder / "a.avi"},
                                                      {folder / "b.avi", "--report", folder / "r.txt"}};
  for (const auto& use : uses) {
    std::vector<std::string> command{"salvage", folder / "a.avi"};
    command.insert(command.end(), use.begin(), use.end());
    EXPECT_EQ(runZelvoAvi(command).exit, 2) << use.front();
  }
  EXPECT_THAT(folder.names(), ElementsAre("a.avi", "b.avi"));
}

TEST(SalvageCommand, KnownRatesEndInTheHeader) {
  const TempFolder folder;
  writeFile(folder / "in.avi", film());
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "in.avi", "-o", folder / "out.avi", "--fps", "12.5"}).exit, 0);
  const Ended ended = runZelvoAvi({"inspect", folder / "out.avi"});
  EXPECT_THAT(ended.out, HasSubstr("dwMicroSecPerFrame = 80000"));
}

TEST(SalvageCommand, EveryJsonIsAsDocumented) {
  const TempFolder folder;
  writeFile(folder / "good.avi", film());
  writeFile(folder / "hurt.avi", damagedFilm());
  std::string headless = film();
  std::fill_n(headless.begin(), headless.find("movi") - 8, '\0');
  writeFile(folder / "headless.avi", headless);
  writeFile(folder / "other.avi", std::string(9000, 'x'));
  writeFile(folder / "sent.avi", sentFilm());

  const Ended ended = runZelvoAvi({"salvage", "--json", folder / "good.avi", folder / "hurt.avi",
                                   folder / "headless.avi", folder / "other.avi", folder / "none.avi"});
  const Ended dry = runZelvoAvi({"salvage", "--json", "--dry-run", folder / "hurt.avi", folder / "sent.avi"});

  EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 5);
  for (const char* const outcome : {"repaired", "not-supported", "failed"})
    EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"" + std::string(outcome) + "\""));
  EXPECT_THAT(dry.out, HasSubstr("\"outcome\":\"repairable\""));
  writeFile(folder / "result.json", ended.out + dry.out);
  const Ended judged = run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py",
                            ZELVO_ROOT "/docs/cli-salvage.schema.json", folder / "result.json"});
  EXPECT_EQ(judged.exit, 0) << judged.out << judged.err;
}

}  // namespace
}  // namespace zelvo::tests
