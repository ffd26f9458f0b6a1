// Films that FFmpeg makes, repaired with its decoders as witnesses.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/linux/trial_decoder.h"
#include "tests/salvage/salvage_bench.h"
#include "tests/support/ffmpeg.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using platform::linux_::LinuxTrialDecoder;
using salvage::SalvageEnd;

class DecodedFilms : public testing::Test {
 protected:
  void SetUp() override {
    if (!ffmpegIsInstalled()) GTEST_SKIP() << "FFmpeg is not installed";
  }

  /// Moving bars with noise, two seconds of them.
  void make(const std::string& encoder) {
    ASSERT_TRUE(runFfmpeg("-f lavfi -i testsrc2=s=320x240:r=25:d=2,noise=alls=10:allf=t -threads 1 -fflags +bitexact " +
                          encoder + " " + folder.path("film.avi")));
    const std::string text = readFile(folder.path("film.avi"));
    const auto* const bytes = reinterpret_cast<const std::byte*>(text.data());
    film.assign(bytes, bytes + text.size());
  }
  [[nodiscard]] std::size_t positionOf(std::string_view code, std::size_t from = 0) const {
    const auto place =
        std::search(film.begin() + static_cast<std::ptrdiff_t>(from), film.end(), code.begin(), code.end(),
                    [](std::byte byte, char letter) { return static_cast<char>(byte) == letter; });
    return static_cast<std::size_t>(place - film.begin());
  }
  /// Where picture number `number` begins.
  [[nodiscard]] std::size_t pictureAt(int number) const {
    std::size_t at = positionOf("movi") + 4;
    for (; number > 0; --number) {
      const std::size_t size = sizeAt(at + 4);
      at += 8 + size + size % 2;
    }
    return at;
  }
  [[nodiscard]] std::size_t sizeAt(std::size_t at) const {
    std::size_t size = 0;
    for (std::size_t i = 4; i > 0; --i) size = size << 8U | static_cast<std::size_t>(film[at + i - 1]);
    return size;
  }
  /// Repairs the film; the answer is how its packets differ from those of the undamaged one.
  [[nodiscard]] std::optional<std::vector<Packet>> repair() {
    SalvageBench bench(film);
    bench.decoder = &decoder;
    EXPECT_EQ(bench.perform().end, SalvageEnd::written);
    const Bytes made = bench.files.content("/out.avi");
    writeFile(folder.path("out.avi"), {reinterpret_cast<const char*>(made.data()), made.size()});
    return storedPackets(folder.path("out.avi"));
  }

  TempFolder folder;
  LinuxTrialDecoder decoder{ZELVO_DECODER};
  Bytes film;
};

class ForeignBytes : public DecodedFilms, public testing::WithParamInterface<const char*> {};

TEST_P(ForeignBytes, AreCutOutOfAPicture) {
  make(GetParam());
  std::mt19937 random(3);
  Bytes foreign(5003);
  for (std::byte& byte : foreign) byte = static_cast<std::byte>(random() % 256);
  const std::size_t chunk = pictureAt(20);
  const auto place = static_cast<std::ptrdiff_t>(chunk + 8 + sizeAt(chunk + 4) / 2);
  film.insert(film.begin() + place, foreign.begin(), foreign.end());
  EXPECT_EQ(repair(), storedPackets(folder.path("film.avi")));
}

INSTANTIATE_TEST_SUITE_P(Codecs, ForeignBytes,
                         testing::Values("-c:v mpeg4 -vtag XVID -g 25 -b:v 1000k",
                                         "-c:v mjpeg -pix_fmt yuvj420p -q:v 7"));

class LostHeaders : public DecodedFilms, public testing::WithParamInterface<const char*> {};

TEST_P(LostHeaders, AreFoundByTrial) {
  make(GetParam());
  const auto pictures = decodedPictures(folder.path("film.avi"));
  const auto media = static_cast<std::ptrdiff_t>(positionOf("LIST", positionOf("strf")));
  std::fill(film.begin(), film.begin() + std::min<std::ptrdiff_t>(media, 4096), std::byte{0});
  EXPECT_EQ(repair(), storedPackets(folder.path("film.avi")));
  EXPECT_EQ(decodedPictures(folder.path("out.avi")), pictures);
}

INSTANTIATE_TEST_SUITE_P(Codecs, LostHeaders,
                         testing::Values("-c:v ffv1 -level 1 -g 10", "-c:v huffyuv", "-c:v wmv2 -b:v 600k",
                                         "-c:v msmpeg4v2 -b:v 600k"));

}  // namespace
}  // namespace zelvo::tests
