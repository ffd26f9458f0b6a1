#include "avi/header_fields.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/small_avi.h"

namespace zelvo::tests {
namespace {

using avi::AudioFormatTag;
using avi::decodeFields;
using avi::Field;
using avi::FourCC;
using avi::FramesPerSecond;
using avi::kAuds;
using avi::kAvih;
using avi::kIndx;
using avi::kIx00;
using avi::kStrf;
using avi::kStrh;
using avi::kVids;
using avi::SetFlags;
using avi::Unit;
using avi::UnitsPerSecond;

std::vector<Field> decode(FourCC id, FourCC streamType, const std::string& payload) {
  return decodeFields(id, {}, streamType, std::as_bytes(std::span(payload)));
}

const Field& named(const std::vector<Field>& fields, std::string_view name) {
  static const Field missing{"missing", std::string("missing")};
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& field) { return field.name == name; });
  return found == fields.end() ? missing : *found;
}

std::uint64_t number(const Field& field) { return std::get<std::uint64_t>(field.value); }

TEST(HeaderFields, MainHeaderHasItsNamesUnitsAndFlags) {
  const auto fields = decode(kAvih, {}, le32(40000) + le32(1) + le32(2) + le32(0x910) + le32(250));

  EXPECT_EQ(fields.size(), 5U) << "the payload ends here";
  EXPECT_EQ(number(named(fields, "dwMicroSecPerFrame")), 40000U);
  EXPECT_EQ(named(fields, "dwMicroSecPerFrame").unit, Unit::microseconds);
  EXPECT_DOUBLE_EQ(std::get<FramesPerSecond>(named(fields, "dwMicroSecPerFrame").meaning).rate, 25);
  EXPECT_EQ(std::get<SetFlags>(named(fields, "dwFlags").meaning),
            (SetFlags{"AVIF_HASINDEX", "AVIF_ISINTERLEAVED", "AVIF_TRUSTCKTYPE"}));
  EXPECT_EQ(number(named(fields, "dwTotalFrames")), 250U);
}

TEST(HeaderFields, NoTimePerFrameIsNoRate) {
  EXPECT_TRUE(std::holds_alternative<std::monostate>(named(decode(kAvih, {}, le32(0)), "dwMicroSecPerFrame").meaning));
}

TEST(HeaderFields, StreamHeaderTellsTheRate) {
  const auto fields = decode(kStrh, {}, "vidsMJPG" + le32(0) + le32(0) + le32(0) + le32(1001) + le32(30000));

  EXPECT_EQ(std::get<FourCC>(named(fields, "fccHandler").value), FourCC("MJPG"));
  EXPECT_DOUBLE_EQ(std::get<UnitsPerSecond>(named(fields, "dwRate").meaning).rate, 30000.0 / 1001);
}

TEST(HeaderFields, VideoFormatIsABitmapHeader) {
  const auto fields =
      decode(kStrf, kVids, le32(40) + le32(320) + le32(0xffffff10) + le16(1) + le16(24) + std::string("XVID"));

  EXPECT_EQ(std::get<std::int64_t>(named(fields, "biHeight").value), -240) << "the picture stands on its head";
  EXPECT_EQ(std::get<FourCC>(named(fields, "biCompression").value), FourCC("XVID"));
}

TEST(HeaderFields, UncompressedVideoHasZeroForItsCode) {
  const auto fields = decode(kStrf, kVids, le32(40) + le32(1) + le32(1) + le16(1) + le16(24) + le32(0));

  EXPECT_EQ(std::get<FourCC>(named(fields, "biCompression").value).value, 0U);
}

TEST(HeaderFields, AudioFormatIsAWaveFormat) {
  const auto fields = decode(kStrf, kAuds, le16(0x55) + le16(2) + le32(44100));

  EXPECT_EQ(std::get<AudioFormatTag>(named(fields, "wFormatTag").meaning).name, "MP3");
  EXPECT_EQ(number(named(fields, "nSamplesPerSec")), 44100U);
  EXPECT_EQ(named(fields, "nSamplesPerSec").unit, Unit::hertz);
}

TEST(HeaderFields, FormatOfAnUnknownStreamIsLeftAlone) { EXPECT_TRUE(decode(kStrf, FourCC("txts"), le32(40)).empty()); }

TEST(HeaderFields, StandardIndexHasItsBaseOffset) {
  const auto fields =
      decode(FourCC("ix00"), {}, le16(2) + std::string("\0\1", 2) + le32(7) + "00dc" + le32(0x10) + le32(1) + le32(0));

  EXPECT_EQ(number(named(fields, "qwBaseOffset")), 0x100000010U);
  EXPECT_EQ(number(named(fields, "nEntriesInUse")), 7U);
}

TEST(HeaderFields, InformationIsText) {
  const std::string text("Encoder 1.0\0\0", 13);
  const auto fields = decodeFields(FourCC("ISFT"), FourCC("INFO"), {}, std::as_bytes(std::span(text)));

  ASSERT_EQ(fields.size(), 1U);
  EXPECT_EQ(std::get<std::string>(fields[0].value), "Encoder 1.0");
}

TEST(HeaderFields, EveryHeaderMayEndAnywhere) {
  for (const FourCC id : {kAvih, kStrh, kStrf, kIndx, kIx00, FourCC("dmlh"), FourCC("vprp"), FourCC("strn")}) {
    for (const FourCC type : {kVids, kAuds}) {
      for (std::size_t size = 0; size < 80; ++size) {
        for (const Field& field : decode(id, type, std::string(size, '\xff'))) EXPECT_FALSE(field.name.empty());
      }
    }
  }
}

TEST(HeaderFields, EachFlagHasItsName) {
  const auto flagsOf = [](FourCC id, const std::string& before, std::uint64_t flags) {
    return std::get<SetFlags>(named(decode(id, {}, before + le32(flags)), "dwFlags").meaning);
  };
  const std::string main(12, '\0');
  EXPECT_EQ(flagsOf(kAvih, main, 0x10), SetFlags{"AVIF_HASINDEX"});
  EXPECT_EQ(flagsOf(kAvih, main, 0x20), SetFlags{"AVIF_MUSTUSEINDEX"});
  EXPECT_EQ(flagsOf(kAvih, main, 0x100), SetFlags{"AVIF_ISINTERLEAVED"});
  EXPECT_EQ(flagsOf(kAvih, main, 0x800), SetFlags{"AVIF_TRUSTCKTYPE"});
  EXPECT_EQ(flagsOf(kAvih, main, 0x10000), SetFlags{"AVIF_WASCAPTUREFILE"});
  EXPECT_EQ(flagsOf(kAvih, main, 0x20000), SetFlags{"AVIF_COPYRIGHTED"});
  EXPECT_EQ(flagsOf(kAvih, main, 0xfffcf6cf), SetFlags{});
  EXPECT_EQ(flagsOf(kStrh, "vidsMJPG", 1), SetFlags{"AVISF_DISABLED"});
  EXPECT_EQ(flagsOf(kStrh, "vidsMJPG", 0x10000), SetFlags{"AVISF_VIDEO_PALCHANGES"});
  EXPECT_EQ(flagsOf(kStrh, "vidsMJPG", 0xfffefffe), SetFlags{});
}

TEST(HeaderFields, FieldIsToldOnceAllOfItIsThere) {
  struct Header {
    FourCC id;
    FourCC stream;
    char indexType;
    std::vector<std::size_t> ends;  ///< of its fields
  };
  const std::vector<std::size_t> super{2, 3, 4, 8, 12};
  const std::vector<Header> headers{{kAvih, {}, 0, {4, 8, 12, 16, 20, 24, 28, 32, 36, 40}},
                                    {kStrh, {}, 0, {4, 8, 12, 14, 16, 20, 24, 28, 32, 36, 40, 44, 48, 50, 52, 54, 56}},
                                    {kStrf, kVids, 0, {4, 8, 12, 14, 16, 20, 24, 28, 32, 36, 40}},
                                    {kStrf, kAuds, 0, {2, 4, 8, 12, 14, 16, 18}},
                                    {kIndx, {}, 0, super},
                                    {kIx00, {}, 1, {2, 3, 4, 8, 12, 20}},
                                    {FourCC("dmlh"), {}, 0, {4}},
                                    {FourCC("vprp"), {}, 0, {4, 8, 12, 16, 20, 24, 28, 32, 36}}};
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

TEST(HeaderFields, RateNeedsAScale) {
  const std::string before = "vidsMJPG" + std::string(12, '\0');
  EXPECT_TRUE(
      std::holds_alternative<std::monostate>(named(decode(kStrh, {}, before + le32(0) + le32(25)), "dwRate").meaning));
  EXPECT_DOUBLE_EQ(
      std::get<UnitsPerSecond>(named(decode(kStrh, {}, before + le32(1) + le32(25)), "dwRate").meaning).rate, 25);
}

TEST(HeaderFields, TextIsToldUpTo200Bytes) {
  const auto lengthOf = [](std::size_t size) {
    return std::get<std::string>(decode(FourCC("strn"), {}, std::string(size, 'x')).at(0).value).size();
  };
  EXPECT_EQ(lengthOf(200), 200U);
  EXPECT_EQ(lengthOf(201), 200U);
}

}  // namespace
}  // namespace zelvo::tests
