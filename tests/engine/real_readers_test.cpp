// What other programs make of rebuilt files: FFmpeg makes inputs, they are damaged and repaired, and FFmpeg has to read
// exactly the chunks that the engine says it kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/engine/linux_bench.h"
#include "tests/support/avi_builder.h"
#include "tests/support/ffmpeg.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

struct Format {
  const char* name;
  const char* encoder;  ///< the codecs' options
};

struct Damage {
  const char* name;
  void (*apply)(Bytes& bytes);
};

Bytes::iterator lastOf(Bytes& bytes, std::string_view code) {
  return std::find_end(bytes.begin(), bytes.end(), code.begin(), code.end(),
                       [](std::byte byte, char letter) { return byte == static_cast<std::byte>(letter); });
}

/// Behind the header lists, whatever reserve the muxer has put there.
std::size_t dataStart(const Bytes& bytes) {
  constexpr std::string_view kMovi = "movi";
  const auto at = std::search(bytes.begin(), bytes.end(), kMovi.begin(), kMovi.end(),
                              [](std::byte byte, char letter) { return byte == static_cast<std::byte>(letter); });
  return static_cast<std::size_t>(at - bytes.begin()) + 4;
}

/// The file ends `into` bytes after the last code of its first 70 per cent.
void cutBehind(Bytes& bytes, std::string_view code, std::ptrdiff_t into) {
  bytes.resize(bytes.size() * 7 / 10);
  const auto at = lastOf(bytes, code);
  bytes.resize(static_cast<std::size_t>(at - bytes.begin() + into));
}

void none(Bytes&) {}
void noIndex(Bytes& bytes) { bytes.erase(lastOf(bytes, "idx1"), bytes.end()); }
void truncated(Bytes& bytes) { cutBehind(bytes, "01wb", 100); }
void zeroedSectors(Bytes& bytes) {
  for (std::size_t at = dataStart(bytes) / 512 * 512 + 20480; at + 4096 < bytes.size(); at += 90112) {
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), 1536, std::byte{0});
  }
}
void wrongSizes(Bytes& bytes) {
  overwrite(bytes, 4, std::string_view("\x00\x00\x00\x00", 4));
  overwrite(bytes, dataStart(bytes) - 8, "\xff\xff\xff\xff");
}
void deletedRanges(Bytes& bytes) {
  for (std::size_t part = 8; part >= 3; --part) {
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(dataStart(bytes) + bytes.size() / 10 * part);
    bytes.erase(at, at + static_cast<std::ptrdiff_t>(700 + 811 * part));
  }
}

constexpr Format kFormats[] = {
    {"Mpeg4AndMp3", "-c:v mpeg4 -q:v 2 -c:a libmp3lame -b:a 128k"},
    {"MjpegAndPcm", "-c:v mjpeg -q:v 3 -pix_fmt yuvj420p -c:a pcm_s16le"},
    {"H264AndAc3", "-c:v libx264 -preset ultrafast -qp 6 -threads 1 -c:a ac3"},
};
constexpr Damage kDamages[] = {{"Undamaged", none},        {"NoIndex", noIndex},
                               {"Truncated", truncated},   {"ZeroedSectors", zeroedSectors},
                               {"WrongSizes", wrongSizes}, {"DeletedRanges", deletedRanges}};

bool makeMovie(const std::string& path, const Format& format) {
  return runFfmpeg(
      "-f lavfi -i testsrc2=size=320x240:rate=25:duration=5 "
      "-f lavfi -i sine=frequency=440:duration=5:sample_rate=48000 " +
      std::string(format.encoder) + " -fflags +bitexact -flags +bitexact '" + path + "'");
}

/// What the engine says it kept, as FFmpeg should see it.
std::vector<Packet> keptChunks(const LinuxBench& bench, const Bytes& input) {
  std::vector<Packet> packets;
  const auto add = [&](int stream, std::uint64_t count, const engine::SampleTable& offsets,
                       const engine::SampleTable& sizes) {
    for (std::uint64_t k = 1; k <= count; ++k) {
      const std::uint64_t start = std::min<std::uint64_t>(offsets[k] + 8, input.size());
      const std::uint64_t held = std::min<std::uint64_t>(sizes[k], input.size() - start);
      packets.push_back({stream, held, checksumOf(std::span(input).subspan(start, held))});
    }
  };
  add(0, bench.job->videosamplecount, bench.job->videosampleoffsetarray, bench.job->videosamplesizearray);
  add(1, bench.job->audiosamplecount, bench.job->audiosampleoffsetarray, bench.job->audiosamplesizearray);
  return packets;
}

class RealReaders : public testing::TestWithParam<std::tuple<Format, Damage>> {};

TEST_P(RealReaders, FfmpegReadsExactlyTheChunksThatWereKept) {
  if (!ffmpegIsInstalled()) GTEST_SKIP() << "skipped: ffmpeg is not installed";
  const auto& [format, damage] = GetParam();
  LinuxBench bench;
  ASSERT_TRUE(makeMovie(bench.inputPath(), format));
  Bytes input = contentOf(bench.inputPath());
  damage.apply(input);
  ASSERT_GT(input.size(), 524288U);
  writeContent(bench.inputPath(), input);

  ASSERT_EQ(bench.run(), engine::RunEnd::rebuilt);

  const std::vector<Packet> kept = keptChunks(bench, input);
  ASSERT_GT(kept.size(), 60U);
  const auto packets = storedPackets(bench.outputPath());
  ASSERT_TRUE(packets.has_value());
  EXPECT_EQ(packets->size(), kept.size());
  const auto [read, wanted] = std::ranges::mismatch(*packets, kept);
  EXPECT_TRUE(read == packets->end() && wanted == kept.end()) << "packet " << read - packets->begin() << " differs";

  const auto pictures = decodedPictures(bench.outputPath());
  ASSERT_TRUE(pictures.has_value());
  if (damage.apply == none) {
    EXPECT_EQ(*pictures, bench.job->videosamplecount);
  } else {
    EXPECT_GT(*pictures, 40U);
  }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Format, Damage>>& tested) {
  return std::string(std::get<0>(tested.param).name) + std::get<1>(tested.param).name;
}

INSTANTIATE_TEST_SUITE_P(Files, RealReaders, testing::Combine(testing::ValuesIn(kFormats), testing::ValuesIn(kDamages)),
                         nameOf);

/// Makes a movie at the bench's input path and answers its bytes; nothing without FFmpeg.
Bytes movieFor(const LinuxBench& bench, const Format& format) {
  if (!ffmpegIsInstalled() || !makeMovie(bench.inputPath(), format)) return {};
  return contentOf(bench.inputPath());
}

TEST(RealReaders, VideoChunkCutByTheEndIsKeptAsItCameAndMovesTheAudioUp) {
  LinuxBench bench;
  Bytes input = movieFor(bench, kFormats[0]);
  if (input.empty()) GTEST_SKIP() << "skipped: ffmpeg is not installed";
  cutBehind(input, "00dc", 1000);
  writeContent(bench.inputPath(), input);

  ASSERT_EQ(bench.run(), engine::RunEnd::rebuilt);

  // Nothing could be read after its payload, so that the code after the chunk before it still stood there.
  const std::uint64_t last = bench.job->videosamplecount;
  ASSERT_EQ(bench.job->videosampleoffsetarray[last], input.size() - 1000);
  const std::uint64_t missing = bench.job->videosamplesizearray[last] + 8 - 1000;
  const Bytes output = contentOf(bench.outputPath());
  EXPECT_EQ(output.size(), bench.job->layout.RIFFLISTsize + 8 - missing);
  const auto audio = static_cast<std::size_t>(bench.job->layout.baseoffsetforaudio - missing);
  EXPECT_TRUE(literal::isCode(output, audio, "01wb"));
}

TEST(RealReaders, PcmFormatOfSixteenBytesWithZerosBehindItIsNotSupported) {
  LinuxBench bench;
  Bytes input = movieFor(bench, kFormats[1]);
  if (input.empty()) GTEST_SKIP() << "skipped: ffmpeg is not installed";
  // The four bytes that are looked for at offset 16 of the format belong to the next chunk already.
  const auto header = lastOf(input, "auds");
  ASSERT_EQ(header[60], std::byte{16});
  std::fill_n(header + 80, 4, std::byte{0});
  writeContent(bench.inputPath(), input);

  EXPECT_EQ(bench.run(), engine::RunEnd::notSupported);
}

/// Files of real cameras, from the folder that the environment variable ZELVO_SAMPLES names. They are only read.
std::vector<std::string> samples() {
  std::vector<std::string> paths;
  const char* folder = std::getenv("ZELVO_SAMPLES");
  if (folder == nullptr) return paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::string extension = entry.path().extension().string();
    std::ranges::transform(extension, extension.begin(), [](unsigned char c) { return std::tolower(c); });
    if (extension == ".avi") paths.push_back(entry.path().string());
  }
  std::ranges::sort(paths);
  return paths;
}

TEST(RealSamples, EachEndsAsTheTranscriptionSaysAndFfmpegReadsWhatWasKept) {
  if (std::getenv("ZELVO_SAMPLES") == nullptr) GTEST_SKIP() << "skipped: ZELVO_SAMPLES names no folder";
  const std::vector<std::string> paths = samples();
  ASSERT_FALSE(paths.empty()) << "no AVI files there";
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    const Bytes input = contentOf(path);
    ASSERT_FALSE(input.empty());
    engine::RunEnd expected{};
    Bytes expectedOutput;
    {
      LiteralComparison comparison;
      comparison.largestOutput = std::uint64_t{1} << 30U;
      comparison.files.put("/in.avi", input);
      ASSERT_EQ(comparison.wholeRunOf(input.size()), "");
      expected = comparison.job->runEnd;
      expectedOutput = comparison.files.content("/out.avi");
    }
    LinuxBench bench;
    writeContent(bench.inputPath(), input);
    ASSERT_EQ(bench.run(), expected);
    EXPECT_EQ(contentOf(bench.inputPath()), input);
    if (expected != engine::RunEnd::rebuilt) continue;
    EXPECT_EQ(contentOf(bench.outputPath()), expectedOutput);
    if (!ffmpegIsInstalled()) continue;
    const std::vector<Packet> kept = keptChunks(bench, input);
    const auto packets = storedPackets(bench.outputPath());
    ASSERT_TRUE(packets.has_value());
    EXPECT_EQ(*packets, kept);
  }
}

}  // namespace
}  // namespace zelvo::tests
