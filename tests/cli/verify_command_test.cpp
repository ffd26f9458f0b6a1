// zelvo-avi verify and zelvo-avi salvage --verify, from outside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/cli/program.h"
#include "tests/support/ffmpeg.h"
#include "tests/support/played_film.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Under a sanitizer decoders are not confined, which is said.
std::string withoutConfinement(const std::string& error) {
  return error.find("were not confined") == std::string::npos ? error : std::string();
}

TEST(VerifyCommand, WholeFilmPlaysThroughout) {
  const TempFolder folder;
  const std::string film = PlayedFilm().bytes();
  writeFile(folder / "in.avi", film);

  const Ended ended = runZelvoAvi({"verify", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("in.avi: This film plays throughout: 50 pictures and 0:02.00 of sound, in step.\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Video:     msvideo1, 8 x 8, 50 pictures, 0:02.00, no errors\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Sound:     pcm_s16le, 8,000 Hz, 1 channel, 0:02.00, no errors\n"));
  EXPECT_THAT(ended.out, HasSubstr("  In step:   sound and pictures within 0.00 s\n"));
  EXPECT_THAT(ended.out, HasSubstr("  Jumps:     20 of 20 land right\n"));
  EXPECT_THAT(withoutConfinement(ended.err), IsEmpty());
  EXPECT_EQ(readFile(folder / "in.avi"), film);
}

TEST(VerifyCommand, FaultHasItsTimeAndByte) {
  const TempFolder folder;
  PlayedFilm film;
  film.pictures = 100;
  film.picture = [](std::size_t number) { return number == 50 ? std::string("xy") : PlayedFilm::colour(number); };
  const std::string bytes = film.bytes();
  writeFile(folder / "in.avi", bytes);

  const Ended ended = runZelvoAvi({"verify", "--no-seeks", folder / "in.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("does not play throughout: 1 picture is damaged, the first at 0:02.00"));
  EXPECT_THAT(ended.out, HasSubstr("video, 0:02.00, at byte"));
  EXPECT_THAT(ended.out, Not(HasSubstr("Jumps")));
}

TEST(VerifyCommand, MissingIndexIsAFault) {
  const TempFolder folder;
  PlayedFilm film;
  film.hasIndex = false;
  writeFile(folder / "in.avi", film.bytes());
  const Ended ended = runZelvoAvi({"verify", folder / "in.avi"});
  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("it has no index, so players cannot jump in it"));
  EXPECT_THAT(ended.out, HasSubstr("  Index:     missing\n"));
}

TEST(VerifyCommand, FilmThatIsCutOffHasItsFaultsTold) {
  const TempFolder folder;
  const std::string bytes = PlayedFilm().bytes();
  writeFile(folder / "in.avi", bytes.substr(0, bytes.size() / 2));
  const Ended ended = runZelvoAvi({"verify", "--verbose", folder / "in.avi"});
  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("its header promises 50 pictures"));
  EXPECT_THAT(ended.out, HasSubstr("faults in its structure, the first at byte 0"));
}

TEST(VerifyCommand, WhatCannotBeReadExitsWithThree) {
  const TempFolder folder;
  writeFile(folder / "other.avi", std::string(9000, 'x'));
  const Ended other = runZelvoAvi({"verify", folder / "other.avi"});
  EXPECT_EQ(other.exit, 3);
  EXPECT_THAT(other.err, HasSubstr("no player recognises a film in it"));
  EXPECT_EQ(runZelvoAvi({"verify", folder / "none.avi"}).exit, 3);
  EXPECT_EQ(runZelvoAvi({"verify", folder.path()}).exit, 3);
}

TEST(VerifyCommand, SeveralFilmsHaveTheWorstExit) {
  const TempFolder folder;
  writeFile(folder / "good.avi", PlayedFilm().bytes());
  PlayedFilm film;
  film.hasIndex = false;
  writeFile(folder / "bad.avi", film.bytes());
  const Ended ended = runZelvoAvi({"verify", folder / "good.avi", folder / "bad.avi"});
  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("2 inputs: 1 play throughout, 1 with faults."));
  EXPECT_THAT(runZelvoAvi({"verify", "--quiet", folder / "good.avi"}).out, IsEmpty());
}

TEST(VerifyCommand, ThreadsAreANumber) {
  const TempFolder folder;
  writeFile(folder / "in.avi", PlayedFilm().bytes());
  for (const char* const wrong : {"0", "17", "two", "-1", "2x"})
    EXPECT_EQ(runZelvoAvi({"verify", std::string("--threads=") + wrong, folder / "in.avi"}).exit, 2) << wrong;
  EXPECT_EQ(runZelvoAvi({"verify", "--threads", "3", folder / "in.avi"}).exit, 0);
}

TEST(VerifyCommand, EveryLineOfJsonFitsItsSchema) {
  const TempFolder folder;
  writeFile(folder / "good.avi", PlayedFilm().bytes());
  PlayedFilm hurt;
  hurt.picture = [](std::size_t number) { return number == 20 ? std::string("xy") : PlayedFilm::colour(number); };
  hurt.promised = 90;
  hurt.hasIndex = false;
  writeFile(folder / "hurt.avi", hurt.bytes() + "xxxx");
  writeFile(folder / "other.avi", std::string(9000, 'x'));

  const Ended ended = runZelvoAvi(
      {"verify", "--json", folder / "good.avi", folder / "hurt.avi", folder / "other.avi", folder / "none.avi"});

  EXPECT_EQ(std::count(ended.out.begin(), ended.out.end(), '\n'), 4);
  for (const char* const outcome : {"plays", "faults", "failed"})
    EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"" + std::string(outcome) + "\""));
  writeFile(folder / "result.json", ended.out);
  const Ended judged = run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py",
                            ZELVO_ROOT "/docs/cli-verify.schema.json", folder / "result.json"});
  EXPECT_EQ(judged.exit, 0) << judged.out << judged.err;
}

TEST(VerifyCommand, SalvageTellsWhatPlays) {
  const TempFolder folder;
  writeFile(folder / "in.avi", PlayedFilm().bytes());

  const Ended text = runZelvoAvi({"salvage", "--verify", folder / "in.avi", "-o", folder / "a.avi"});
  const Ended json = runZelvoAvi({"salvage", "--verify", "--json", folder / "in.avi", "-o", folder / "b.avi"});
  const Ended page =
      runZelvoAvi({"salvage", "--verify", folder / "in.avi", "-o", folder / "c.avi", "--report", folder / "c.html"});

  EXPECT_EQ(text.exit, 0);
  EXPECT_THAT(text.out, HasSubstr("  Plays:     This film plays throughout: 50 pictures"));
  EXPECT_THAT(json.out, HasSubstr("\"plays\":{\"verdict\":\"plays\""));
  EXPECT_THAT(readFile(folder / "c.html"), HasSubstr("<h2>Does it play?</h2>"));
  EXPECT_EQ(page.exit, 0);
  writeFile(folder / "result.json", json.out);
  const Ended judged = run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py",
                            ZELVO_ROOT "/docs/cli-salvage.schema.json", folder / "result.json"});
  EXPECT_EQ(judged.exit, 0) << judged.out << judged.err;
}

TEST(VerifyCommand, SalvageVerifiesOnlyWhatItWrites) {
  EXPECT_EQ(runZelvoAvi({"salvage", "--verify", "--dry-run", "in.avi"}).exit, 2);
}

/// Films of many codecs, none of which has a fault.
class VerifiedCodec : public testing::TestWithParam<const char*> {};

TEST_P(VerifiedCodec, PlaysThroughout) {
  if (!ffmpegIsInstalled()) GTEST_SKIP() << "FFmpeg is not installed";
  const TempFolder folder;
  ASSERT_TRUE(runFfmpeg("-f lavfi -i testsrc2=s=320x240:r=25:d=4 -f lavfi -i sine=r=44100:d=4 -threads 1 " +
                        std::string(GetParam()) + " " + folder.path("film.avi")));
  const Ended ended = runZelvoAvi({"verify", "--verbose", folder / "film.avi"});
  EXPECT_EQ(ended.exit, 0) << ended.out << ended.err;
}

INSTANTIATE_TEST_SUITE_P(
    Films, VerifiedCodec,
    testing::Values("-c:v mpeg4 -g 25 -c:a libmp3lame -q:a 4", "-c:v mpeg4 -bf 2 -c:a ac3",
                    "-c:v libx264 -pix_fmt yuv420p -bf 3 -g 25 -c:a aac",
                    "-c:v libx264 -pix_fmt yuv420p -g 25 -x264-params open-gop=1 -c:a mp2",
                    "-c:v libx264 -pix_fmt yuv420p -g 25 -x264-params intra-refresh=1 -an",
                    "-c:v mjpeg -pix_fmt yuvj420p -c:a pcm_s16le", "-c:v mpeg2video -bf 2 -c:a mp2",
                    "-c:v libxvid -bf 2 -c:a adpcm_ms", "-c:v ffv1 -c:a adpcm_ima_wav",
                    "-c:v huffyuv -pix_fmt yuv422p -c:a pcm_u8", "-c:v msmpeg4 -c:a wmav2", "-c:v wmv2 -c:a pcm_alaw",
                    "-c:v flv1 -c:a flac", "-c:v h263 -s 352x288 -an", "-c:v rawvideo -s 64x48 -c:a pcm_s16le",
                    "-c:v msvideo1 -c:a pcm_s16le", "-c:v utvideo -c:a mp3", "-vn -c:a mp3",
                    "-vf \"select='not(between(n,20,60))'\" -vsync vfr -c:v mpeg4 -c:a mp3",
                    "-map 0:v -map 1:a -map 1:a -c:v mpeg4 -c:a mp3", "-af atrim=0:2 -c:v mpeg4 -c:a mp3"),
    [](const auto& film) {
      std::string name = film.param;
      std::erase_if(name, [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) == 0; });
      return name;
    });

/// A film of one stream in which whole frames of DV lie, each with its sound.
std::string withSoundInside(const std::string& frames) {
  constexpr std::size_t kFrame = 144'000;
  const std::size_t count = frames.size() / kFrame;
  std::string media;
  std::string index;
  for (std::size_t i = 0; i < count; ++i) {
    index += "00__" + le32(0x10) + le32(media.size() + 4) + le32(kFrame);
    media += chunk("00__", frames.substr(i * kFrame, kFrame));
  }
  const std::string zeros(16, '\0');
  const std::string main = le32(40000) + le32(0) + le32(0) + le32(0x10) + le32(count) + le32(0) + le32(1) + le32(0) +
                           le32(720) + le32(576) + zeros;
  const std::string stream =
      "iavsdvsd" + le32(0) + le32(0) + le32(0) + le32(1) + le32(25) + le32(0) + le32(count) + le32(kFrame) + zeros;
  const std::string headers =
      chunk("avih", main) + list("LIST", "strl", chunk("strh", stream) + chunk("strf", zeros + zeros));
  return list("RIFF", "AVI ", list("LIST", "hdrl", headers) + list("LIST", "movi", media) + chunk("idx1", index));
}

TEST(VerifyCommand, DvWithItsSoundInsidePlaysBeforeAndAfterASalvage) {
  if (!ffmpegIsInstalled()) GTEST_SKIP() << "FFmpeg is not installed";
  const TempFolder folder;
  ASSERT_TRUE(
      runFfmpeg("-f lavfi -i testsrc2=s=720x576:r=25:d=1 -f lavfi -i sine=r=48000:d=1 -threads 1 "
                "-target pal-dv -ac 2 -f dv " +
                folder.path("film.dv")));
  const std::string film = withSoundInside(readFile(folder.path("film.dv")));
  writeFile(folder / "film.avi", film);
  const Ended whole = runZelvoAvi({"verify", folder / "film.avi"});
  EXPECT_EQ(whole.exit, 0);
  EXPECT_THAT(whole.out, HasSubstr("plays throughout: 25 pictures and 0:01.00 of sound, in step"));
  EXPECT_THAT(whole.out, HasSubstr("Jumps:     20 of 20 land right"));
  EXPECT_THAT(whole.out, HasSubstr("Index:     25 of 25 chunks"));

  writeFile(folder / "cut.avi", film.substr(0, film.size() * 2 / 3));
  EXPECT_EQ(runZelvoAvi({"salvage", folder / "cut.avi", "-o", folder / "out.avi"}).exit, 0);
  const Ended again = runZelvoAvi({"verify", folder / "out.avi"});
  EXPECT_EQ(again.exit, 0) << again.out;
  EXPECT_THAT(again.out, HasSubstr("16 pictures and 0:00.64 of sound, in step"));
}

TEST(VerifyCommand, DamageInsideAFilmIsFoundWhereItIs) {
  if (!ffmpegIsInstalled()) GTEST_SKIP() << "FFmpeg is not installed";
  const TempFolder folder;
  ASSERT_TRUE(
      runFfmpeg("-f lavfi -i testsrc2=s=320x240:r=25:d=8 -f lavfi -i sine=r=44100:d=8 -threads 1 -c:v mpeg4 "
                "-g 25 -c:a libmp3lame " +
                folder.path("film.avi")));
  std::string film = readFile(folder.path("film.avi"));
  // Zeros inside picture 100, a second or so before the next key.
  std::size_t at = film.find("movi");
  for (int i = 0; i <= 105; ++i) at = film.find("00dc", at + 1);
  const std::size_t begin = at + 8;
  std::fill_n(film.begin() + static_cast<std::ptrdiff_t>(begin) + 40, 400, '\0');
  writeFile(folder.path("film.avi"), film);

  const Ended ended = runZelvoAvi({"verify", "--no-seeks", folder / "film.avi"});

  EXPECT_EQ(ended.exit, 1);
  EXPECT_THAT(ended.out, HasSubstr("1 picture is damaged, the first at 0:04.2"));
}

TEST(VerifyCommand, KeysThatDecodingDisprovesAreDroppedByASalvage) {
  if (!ffmpegIsInstalled()) GTEST_SKIP() << "FFmpeg is not installed";
  const TempFolder folder;
  // The bits of this codec tell a repair no keys, so it believes the film's own index.
  ASSERT_TRUE(runFfmpeg("-f lavfi -i testsrc2=s=320x240:r=25:d=4 -threads 1 -c:v snow -strict -2 -g 25 -an " +
                        folder.path("film.avi")));
  std::string film = readFile(folder.path("film.avi"));
  const std::size_t index = film.find("idx1") + 8;
  for (const std::size_t entry : {std::size_t{10}, std::size_t{40}}) film[index + 16 * entry + 4] = '\x10';
  writeFile(folder.path("film.avi"), film);
  EXPECT_THAT(runZelvoAvi({"verify", folder / "film.avi"}).out, HasSubstr("its index calls 2 pictures a key"));

  const Ended ended = runZelvoAvi({"salvage", "--verify", folder / "film.avi", "-o", folder / "out.avi"});

  EXPECT_EQ(ended.exit, 0);
  EXPECT_THAT(ended.out, HasSubstr("2 pictures not called a key any more"));
  EXPECT_THAT(ended.out, HasSubstr("Plays:     This film plays throughout"));
  const Ended again = runZelvoAvi({"verify", folder / "out.avi"});
  EXPECT_EQ(again.exit, 0) << again.out;
}

}  // namespace
}  // namespace zelvo::tests
