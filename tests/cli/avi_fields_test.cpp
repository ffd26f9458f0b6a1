#include "cli/avi_fields.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/small_avi.h"

namespace zelvo::cli {
namespace {

using test::le16;
using test::le32;

std::vector<Field> decode(avi::FourCC id, avi::FourCC streamType, const std::string& payload) {
  return decodeFields(id, {}, streamType, std::as_bytes(std::span(payload)));
}

const Field& named(const std::vector<Field>& fields, std::string_view name) {
  static const Field missing{"missing", std::string("missing"), ""};
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& field) { return field.name == name; });
  return found == fields.end() ? missing : *found;
}

std::uint64_t number(const Field& field) { return std::get<std::uint64_t>(field.value); }

TEST(AviFields, MainHeaderHasItsNamesUnitsAndFlags) {
  const auto fields = decode(avi::kAvih, {}, le32(40000) + le32(1) + le32(2) + le32(0x910) + le32(250));

  EXPECT_EQ(fields.size(), 5U) << "the payload ends here";
  EXPECT_EQ(number(named(fields, "dwMicroSecPerFrame")), 40000U);
  EXPECT_EQ(named(fields, "dwMicroSecPerFrame").unit, "microseconds");
  EXPECT_EQ(named(fields, "dwMicroSecPerFrame").note, "25.000 frames per second");
  EXPECT_EQ(named(fields, "dwFlags").note, "AVIF_HASINDEX | AVIF_ISINTERLEAVED | AVIF_TRUSTCKTYPE");
  EXPECT_EQ(number(named(fields, "dwTotalFrames")), 250U);
}

TEST(AviFields, EachFlagHasItsName) {
  const auto noteOf = [](avi::FourCC id, const std::string& before, std::uint64_t flags) {
    return named(decode(id, {}, before + le32(flags)), "dwFlags").note;
  };
  const std::string main(12, '\0');
  EXPECT_EQ(noteOf(avi::kAvih, main, 0x10), "AVIF_HASINDEX");
  EXPECT_EQ(noteOf(avi::kAvih, main, 0x20), "AVIF_MUSTUSEINDEX");
  EXPECT_EQ(noteOf(avi::kAvih, main, 0x100), "AVIF_ISINTERLEAVED");
  EXPECT_EQ(noteOf(avi::kAvih, main, 0x800), "AVIF_TRUSTCKTYPE");
  EXPECT_EQ(noteOf(avi::kAvih, main, 0x10000), "AVIF_WASCAPTUREFILE");
  EXPECT_EQ(noteOf(avi::kAvih, main, 0x20000), "AVIF_COPYRIGHTED");
  EXPECT_EQ(noteOf(avi::kAvih, main, 0xfffcf6cf), "");
  EXPECT_EQ(noteOf(avi::kStrh, "vidsMJPG", 1), "AVISF_DISABLED");
  EXPECT_EQ(noteOf(avi::kStrh, "vidsMJPG", 0x10000), "AVISF_VIDEO_PALCHANGES");
  EXPECT_EQ(noteOf(avi::kStrh, "vidsMJPG", 0xfffefffe), "");
}

TEST(AviFields, FieldIsToldOnceAllOfItIsThere) {
  struct Header {
    avi::FourCC id;
    avi::FourCC stream;
    char indexType;
    std::vector<std::size_t> ends;  ///< of its fields
  };
  const std::vector<std::size_t> super{2, 3, 4, 8, 12};
  const std::vector<Header> headers{
      {avi::kAvih, {}, 0, {4, 8, 12, 16, 20, 24, 28, 32, 36, 40}},
      {avi::kStrh, {}, 0, {4, 8, 12, 14, 16, 20, 24, 28, 32, 36, 40, 44, 48, 50, 52, 54, 56}},
      {avi::kStrf, avi::kVids, 0, {4, 8, 12, 14, 16, 20, 24, 28, 32, 36, 40}},
      {avi::kStrf, avi::kAuds, 0, {2, 4, 8, 12, 14, 16, 18}},
      {avi::kIndx, {}, 0, super},
      {avi::kIx00, {}, 1, {2, 3, 4, 8, 12, 20}},
      {avi::FourCC("dmlh"), {}, 0, {4}},
      {avi::FourCC("vprp"), {}, 0, {4, 8, 12, 16, 20, 24, 28, 32, 36}}};
  for (const Header& header : headers) {
    std::string payload(80, '\0');
    payload[3] = header.indexType;
    EXPECT_EQ(decode(header.id, header.stream, payload).size(), header.ends.size());
    for (std::size_t i = 0; i < header.ends.size(); ++i) {
      EXPECT_EQ(decode(header.id, header.stream, payload.substr(0, header.ends[i])).size(), i + 1);
      EXPECT_EQ(decode(header.id, header.stream, payload.substr(0, header.ends[i] - 1)).size(), i);
    }
  }
}

TEST(AviFields, RateNeedsAScale) {
  const std::string before = "vidsMJPG" + std::string(12, '\0');
  EXPECT_EQ(named(decode(avi::kStrh, {}, before + le32(0) + le32(25)), "dwRate").note, "");
  EXPECT_EQ(named(decode(avi::kStrh, {}, before + le32(1) + le32(25)), "dwRate").note, "25.000 units per second");
}

TEST(AviFields, CodeBelow256IsANumber) {
  const auto compression = [](std::uint64_t code) {
    const auto fields = decode(avi::kStrf, avi::kVids, std::string(16, '\0') + le32(code));
    return std::get<std::string>(named(fields, "biCompression").value);
  };
  EXPECT_EQ(compression(255), "255");
  EXPECT_EQ(compression(256), "\\x00\\x01\\x00\\x00");
}

TEST(AviFields, TextIsToldUpTo200Bytes) {
  const auto lengthOf = [](std::size_t size) {
    return std::get<std::string>(decode(avi::FourCC("strn"), {}, std::string(size, 'x')).at(0).value).size();
  };
  EXPECT_EQ(lengthOf(200), 200U);
  EXPECT_EQ(lengthOf(201), 200U);
}

TEST(AviFields, NoTimePerFrameIsNoRate) {
  EXPECT_EQ(named(decode(avi::kAvih, {}, le32(0)), "dwMicroSecPerFrame").note, "");
}

TEST(AviFields, StreamHeaderTellsTheRate) {
  const auto fields = decode(avi::kStrh, {}, "vidsMJPG" + le32(0) + le32(0) + le32(0) + le32(1001) + le32(30000));

  EXPECT_EQ(std::get<std::string>(named(fields, "fccHandler").value), "MJPG");
  EXPECT_EQ(named(fields, "dwRate").note, "29.970 units per second");
}

TEST(AviFields, VideoFormatIsABitmapHeader) {
  const auto fields = decode(avi::kStrf, avi::kVids,
                             le32(40) + le32(320) + le32(0xffffff10) + le16(1) + le16(24) + std::string("XVID"));

  EXPECT_EQ(std::get<std::int64_t>(named(fields, "biHeight").value), -240) << "the picture stands on its head";
  EXPECT_EQ(std::get<std::string>(named(fields, "biCompression").value), "XVID");
}

TEST(AviFields, UncompressedVideoHasANumberForItsCode) {
  const auto fields = decode(avi::kStrf, avi::kVids, le32(40) + le32(1) + le32(1) + le16(1) + le16(24) + le32(0));

  EXPECT_EQ(std::get<std::string>(named(fields, "biCompression").value), "0");
}

TEST(AviFields, AudioFormatIsAWaveFormat) {
  const auto fields = decode(avi::kStrf, avi::kAuds, le16(0x55) + le16(2) + le32(44100));

  EXPECT_EQ(named(fields, "wFormatTag").note, "0x0055, MP3");
  EXPECT_EQ(number(named(fields, "nSamplesPerSec")), 44100U);
  EXPECT_EQ(named(fields, "nSamplesPerSec").unit, "Hz");
}

TEST(AviFields, FormatOfAnUnknownStreamIsLeftAlone) {
  EXPECT_TRUE(decode(avi::kStrf, avi::FourCC("txts"), le32(40)).empty());
}

TEST(AviFields, StandardIndexHasItsBaseOffset) {
  const auto fields = decode(avi::FourCC("ix00"), {},
                             le16(2) + std::string("\0\1", 2) + le32(7) + "00dc" + le32(0x10) + le32(1) + le32(0));

  EXPECT_EQ(number(named(fields, "qwBaseOffset")), 0x100000010U);
  EXPECT_EQ(number(named(fields, "nEntriesInUse")), 7U);
}

TEST(AviFields, InformationIsText) {
  const std::string text("Encoder 1.0\0\0", 13);
  const auto fields = decodeFields(avi::FourCC("ISFT"), avi::FourCC("INFO"), {}, std::as_bytes(std::span(text)));

  ASSERT_EQ(fields.size(), 1U);
  EXPECT_EQ(std::get<std::string>(fields[0].value), "Encoder 1.0");
}

TEST(AviFields, EveryHeaderMayEndAnywhere) {
  for (const avi::FourCC id : {avi::kAvih, avi::kStrh, avi::kStrf, avi::kIndx, avi::kIx00, avi::FourCC("dmlh"),
                               avi::FourCC("vprp"), avi::FourCC("strn")}) {
    for (const avi::FourCC type : {avi::kVids, avi::kAuds}) {
      for (std::size_t size = 0; size < 80; ++size) {
        for (const Field& field : decode(id, type, std::string(size, '\xff'))) EXPECT_FALSE(field.name.empty());
      }
    }
  }
}

}  // namespace
}  // namespace zelvo::cli
