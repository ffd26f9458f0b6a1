// Films whose stream headers are lost.
#include "salvage/headers/header_synthesis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "salvage/headers/header_donor.h"
#include "salvage/headers/stream_header.h"
#include "tests/salvage/codec_films.h"
#include "tests/salvage/scanned_film.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Codec;
using salvage::FilmHeader;
using salvage::HeaderOrigin;

/// A film without any header: "movi" and the chunks.
class Bare {
 public:
  Bare() : bytes_(200) {
    appendText(bytes_, "LIST");
    appendNumber(bytes_, 0);
    appendText(bytes_, "movi");
  }
  void add(std::string_view code, const Bytes& payload) {
    appendText(bytes_, code);
    appendNumber(bytes_, static_cast<std::uint32_t>(payload.size()));
    bytes_.insert(bytes_.end(), payload.begin(), payload.end());
    if (payload.size() % 2 != 0) bytes_.push_back(std::byte{0});
  }
  [[nodiscard]] const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
};

Bytes jpeg(std::size_t size) {
  Bytes picture = numbered({0xff, 0xd8, 0xff, 0xc0, 0, 17, 8, 0, 240, 1, 64, 3});
  picture.resize(size, std::byte{0x55});
  return picture;
}

Bytes noisePayload(std::size_t samples, unsigned seed) {
  std::mt19937 random(seed);
  int now = 0;
  Bytes bytes;
  for (std::size_t i = 0; i < samples; ++i) {
    now = now * 31 / 32 + static_cast<int>(random() % 1000) - 500;
    for (const unsigned shift : {0U, 8U})
      bytes.push_back(static_cast<std::byte>(static_cast<unsigned>(now) >> shift & 0xffU));
  }
  return bytes;
}

/// 40 pictures of 320x240, each with a twenty-fifth of a second of sound at 22.05 kHz.
Bare jpegAndSound() {
  Bare film;
  for (unsigned i = 0; i < 40; ++i) {
    film.add("00dc", jpeg(300 + i));
    film.add("01wb", noisePayload(882, i));
  }
  return film;
}

/// What comes of a film without headers.
struct Found {
  explicit Found(const Bare& film, salvage::KnownRates known = {}, const salvage::SurvivingHeaders* donor = nullptr)
      : scanned(film.bytes()) {
    scanned.run();
    const auto seen = salvage::seenStreams(scanned.scan.candidates, scanned.chain, scanned.codes);
    auto samples = salvage::sampleStreams(*scanned.input, scanned.scan.candidates, scanned.chain, seen);
    if (donor != nullptr) taken = salvage::takeFromDonor(header, *donor, samples);
    if (taken > 0) return;
    fields = salvage::synthesiseHeaders(header, {samples, {}, scanned.scan.candidates, scanned.chain, known});
  }
  [[nodiscard]] std::string valueOf(int stream, std::string_view name) const {
    for (const auto& field : fields) {
      if (field.stream == stream && field.name == name) return field.value;
    }
    return "none";
  }

  ScannedFilm scanned;
  FilmHeader header;
  std::vector<salvage::FoundField> fields;
  std::size_t taken = 0;
};

TEST(HeaderSynthesis, JpegAndSamplesAreRecognisedWithTheirRates) {
  const Found found(jpegAndSound());
  ASSERT_EQ(found.header.streams.size(), 2U);
  const auto& video = found.header.streams[0].header;
  EXPECT_EQ(found.header.streams[0].origin, HeaderOrigin::synthesised);
  EXPECT_EQ(codecOf(video), Codec::jpeg);
  EXPECT_EQ(pictureFormat(video).width, 320U);
  EXPECT_EQ(pictureFormat(video).height, 240U);
  EXPECT_EQ(video.rate, 25U);
  EXPECT_EQ(video.scale, 1U);
  const auto sound = soundFormat(found.header.streams[1].header);
  EXPECT_EQ(sound.samplesPerSec, 22050U);
  EXPECT_EQ(sound.channels, 1U);
  EXPECT_EQ(sound.bitsPerSample, 16U);
  EXPECT_EQ(found.header.streams[1].header.sampleSize, 2U);
  EXPECT_EQ(found.valueOf(0, "size"), "320x240");
  EXPECT_EQ(found.valueOf(1, "sample rate"), "22050");
}

TEST(HeaderSynthesis, TheUserKnowsBetter) {
  const Found found(jpegAndSound(), {.pictures = 12.5, .samples = std::nullopt});
  EXPECT_EQ(found.header.streams[0].header.rate, 25U);
  EXPECT_EQ(found.header.streams[0].header.scale, 2U);
  EXPECT_EQ(soundFormat(found.header.streams[1].header).samplesPerSec, 11025U);
  const Found other(jpegAndSound(), {.pictures = std::nullopt, .samples = 44100});
  EXPECT_EQ(other.header.streams[0].header.rate, 50U);
}

TEST(HeaderSynthesis, LargePicturesGoWithFasterSound) {
  Bare film;
  for (unsigned i = 0; i < 40; ++i) {
    Bytes picture = jpeg(300 + i);
    picture[9] = std::byte{2};  // 576 pixels wide
    film.add("00dc", picture);
    film.add("01wb", noisePayload(1470, i));
  }
  const Found found(film);
  EXPECT_EQ(found.header.streams[0].header.rate, 30U);
  EXPECT_EQ(soundFormat(found.header.streams[1].header).samplesPerSec, 44100U);
}

TEST(HeaderSynthesis, UnevenlyInterleavedSoundHasUsualRates) {
  Bare film;
  unsigned seed = 0;
  for (const int pictures : {2, 8, 3, 6, 4, 5, 7}) {
    for (int i = 0; i < pictures; ++i) film.add("00dc", jpeg(300 + seed));
    film.add("01wb", noisePayload(7680, ++seed));
  }
  const Found found(film);
  ASSERT_EQ(found.header.streams.size(), 2U);
  EXPECT_EQ(found.header.streams[0].header.rate, 15U);
  EXPECT_EQ(found.header.streams[0].header.scale, 1U);
  EXPECT_EQ(salvage::soundFormat(found.header.streams[1].header).samplesPerSec, 22050U);
}

TEST(HeaderSynthesis, FramesOfSoundAreAClock) {
  Bare film;
  Bytes frame = numbered({0xff, 0xfb, 0x90, 0x40});
  frame.resize(417);
  double due = 0;
  for (int i = 0; i < 60; ++i) {
    film.add("00dc", jpeg(300));
    for (; due < (i + 1) / 20.0; due += 1152.0 / 44100) film.add("01wb", frame);
  }
  const Found found(film);
  ASSERT_EQ(found.header.streams.size(), 2U);
  EXPECT_EQ(found.header.streams[0].header.rate, 20U);
  EXPECT_EQ(codecOf(found.header.streams[1].header), Codec::mp3);
  EXPECT_EQ(found.header.streams[1].header.scale, 1152U);
  EXPECT_EQ(found.header.streams[1].header.rate, 44100U);
  EXPECT_EQ(found.header.streams[1].header.sampleSize, 0U);
}

TEST(HeaderSynthesis, ASurvivingHeaderIsTheClockOfTheLostOne) {
  const Bare film = jpegAndSound();
  ScannedFilm scanned(film.bytes());
  scanned.run();
  const auto seen = salvage::seenStreams(scanned.scan.candidates, scanned.chain, scanned.codes);
  FilmHeader header;
  salvage::addStream(header, {1, seen[1].code, soundStream(1, 1, 11025, 2, 16, 2), HeaderOrigin::own});
  const auto lost = salvage::sampleStreams(*scanned.input, scanned.scan.candidates, scanned.chain,
                                           salvage::streamsWithoutHeader(header, seen));
  ASSERT_EQ(lost.size(), 1U);
  salvage::synthesiseHeaders(header, {lost, {}, scanned.scan.candidates, scanned.chain, {}});
  ASSERT_EQ(header.streams.size(), 2U);
  EXPECT_EQ(header.streams[0].header.rate, 25U);
  EXPECT_EQ(header.streams[0].header.scale, 2U);
}

TEST(HeaderSynthesis, TextComesAsOftenAsItDoesAmongPictures) {
  Bare film;
  for (unsigned i = 0; i < 200; ++i) {
    film.add("00dc", jpeg(300 + i));
    film.add("01wb", noisePayload(882, i));
    if (i % 50 == 0) film.add("02tx", Bytes(40 + i, std::byte{0x41}));
  }
  const Found found(film);
  ASSERT_EQ(found.header.streams.size(), 3U);
  const auto& text = found.header.streams[2];
  EXPECT_EQ(text.number, 2);
  EXPECT_EQ(text.origin, HeaderOrigin::synthesised);
  EXPECT_EQ(text.header.type, avi::FourCC{"txts"});
  EXPECT_EQ(text.header.rate, 500U);
  EXPECT_EQ(text.header.scale, 1000U);
  EXPECT_EQ(text.header.header.size(), 56U);
  EXPECT_EQ(found.valueOf(2, "rate"), "0.5");
}

TEST(HeaderSynthesis, PicturesOfAnUnknownSizeAreLeftOut) {
  Bare film;
  for (unsigned i = 0; i < 20; ++i) film.add("00dc", Bytes(101 + i, std::byte{0x77}));
  EXPECT_TRUE(Found(film).header.streams.empty());
}

salvage::SurvivingHeaders donorOf(salvage::SurvivingStream video, salvage::SurvivingStream sound) {
  salvage::SurvivingHeaders donor;
  donor.streams = {std::move(video), std::move(sound)};
  donor.main = salvage::SurvivingMainHeader{.microSecPerFrame = 50000, .streams = 2};
  return donor;
}

TEST(HeaderDonor, ItsHeadersStandInWhenTheyFit) {
  auto video = pictureStream("MJPG", 320, 240);
  video.name = bytesOf("another film");
  const auto donor = donorOf(video, soundStream(1, 1, 8000, 2, 16, 2));
  const Found found(jpegAndSound(), {}, &donor);
  EXPECT_EQ(found.taken, 2U);
  EXPECT_EQ(found.header.streams[0].origin, HeaderOrigin::donor);
  EXPECT_TRUE(found.header.streams[0].header.name.empty());
  EXPECT_EQ(soundFormat(found.header.streams[1].header).samplesPerSec, 8000U);
  ASSERT_TRUE(found.header.main.has_value());
  EXPECT_EQ(found.header.main->microSecPerFrame, 50000U);
}

TEST(HeaderDonor, AnotherCodecSizeOrNumberOfStreamsGivesNothing) {
  const auto sound = soundStream(1, 1, 8000, 2, 16, 2);
  const auto xvid = donorOf(pictureStream("XVID"), soundStream(0x55, 2, 44100, 1152, 0, 0));
  EXPECT_EQ(Found(jpegAndSound(), {}, &xvid).taken, 0U);
  const auto larger = donorOf(pictureStream("MJPG", 640, 480), soundStream(0x55, 2, 44100, 1152, 0, 0));
  EXPECT_EQ(Found(jpegAndSound(), {}, &larger).taken, 0U);
  auto more = donorOf(pictureStream("MJPG"), sound);
  more.streams.push_back(sound);
  more.main->streams = 3;
  EXPECT_EQ(Found(jpegAndSound(), {}, &more).taken, 0U);
  auto incomplete = donorOf(pictureStream("MJPG"), sound);
  incomplete.main.reset();
  EXPECT_EQ(Found(jpegAndSound(), {}, &incomplete).taken, 0U);
}

TEST(KnownRates, ChangeHeadersThatAreThere) {
  FilmHeader header;
  header.main = salvage::SurvivingMainHeader{.microSecPerFrame = 40000};
  salvage::addStream(header, {0, avi::k00dc, pictureStream("MJPG"), HeaderOrigin::own});
  salvage::addStream(header, {1, avi::k01wb, soundStream(1, 2, 44100, 4, 16, 4), HeaderOrigin::own});
  salvage::applyKnownRates(header, {.pictures = 29.97, .samples = 22050});
  EXPECT_EQ(header.streams[0].header.rate, 30000U);
  EXPECT_EQ(header.streams[0].header.scale, 1001U);
  EXPECT_EQ(numberAt(header.streams[0].header.header, 24), 30000U);
  EXPECT_EQ(header.main->microSecPerFrame, 33367U);
  EXPECT_EQ(soundFormat(header.streams[1].header).samplesPerSec, 22050U);
  EXPECT_EQ(soundFormat(header.streams[1].header).avgBytesPerSec, 88200U);
  EXPECT_EQ(header.streams[1].header.rate, 88200U);
}

TEST(StreamHeader, RawPicturesFromTheTopHaveANegativeHeight) {
  salvage::PictureShape shape;
  shape.codec = Codec::rawPicture;
  shape.size = {3, 5};
  shape.isTopDown = true;
  const auto stream = salvage::makePictureHeader(shape, {25, 1});
  EXPECT_EQ(numberAt(stream.format, 8), 0xfffffffbU);
  EXPECT_EQ(numberAt(stream.format, 20), 60U);
  EXPECT_EQ(stream.format.size(), 40U);
}

TEST(StreamHeader, SoundFormatsNameTheirExtraBytes) {
  for (const Codec codec : {Codec::pcm, Codec::mp3, Codec::ac3, Codec::aac, Codec::imaAdpcm, Codec::msAdpcm}) {
    salvage::SoundShape shape;
    shape.codec = codec;
    shape.rate = 44100;
    shape.channels = 2;
    shape.block = 1024;
    shape.samples = 1000;
    shape.isOfFrames = codec == Codec::mp3 || codec == Codec::ac3 || codec == Codec::aac;
    const auto stream = salvage::makeSoundHeader(shape, 2000);
    EXPECT_EQ(codecOf(stream), codec);
    EXPECT_EQ(number16At(stream.format, 16) + 18U, stream.format.size());
    EXPECT_EQ(stream.header.size(), 56U);
  }
}

TEST(StreamHeader, AacNamesProfileRateAndChannels) {
  salvage::SoundShape shape;
  shape.codec = Codec::aac;
  shape.rate = 44100;
  shape.channels = 2;
  shape.samples = 1024;
  shape.isOfFrames = true;
  EXPECT_EQ(hexAt(salvage::makeSoundHeader(shape, 500).format, 18, 2), "12 10");
}

}  // namespace
}  // namespace zelvo::tests
