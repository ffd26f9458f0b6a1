// Which codes a film's chunks may bear.
#include "salvage/scan/stream_codes.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using avi::FourCC;
using salvage::StreamCodes;
using salvage::SurvivingHeaders;

SurvivingHeaders headersWith(std::vector<FourCC> types) {
  SurvivingHeaders headers;
  headers.main.emplace().streams = static_cast<std::uint32_t>(types.size());
  for (const FourCC type : types) headers.streams.emplace_back().type = type;
  return headers;
}

TEST(StreamCodes, WithoutHeadersEveryNumberHasEverySuffix) {
  const StreamCodes codes;
  for (const FourCC code : {FourCC{"00db"}, FourCC{"00dc"}, FourCC{"17pc"}, FourCC{"99wb"}, FourCC{"05tx"},
                            FourCC{"02sb"}, FourCC{"00__"}}) {
    const auto found = codes.find(code);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(codes.codeOf(*found), code);
  }
  EXPECT_EQ(codes.find(FourCC{"17pc"})->stream, 17);
  for (const FourCC code :
       {FourCC{"00da"}, FourCC{"0adc"}, FourCC{":0dc"}, FourCC{"/0dc"}, FourCC{"LIST"}, FourCC{"ix00"}})
    EXPECT_FALSE(codes.find(code).has_value());
}

TEST(StreamCodes, CompleteHeadersTellTypeAndNumber) {
  const StreamCodes codes(headersWith({avi::kVids, avi::kAuds, FourCC{"txts"}, FourCC{"iavs"}}));
  for (const FourCC code : {FourCC{"00db"}, FourCC{"00dc"}, FourCC{"00pc"}, FourCC{"01wb"}, FourCC{"02tx"},
                            FourCC{"02sb"}, FourCC{"03__"}, FourCC{"03dc"}})
    EXPECT_TRUE(codes.find(code).has_value()) << code.value;
  for (const FourCC code :
       {FourCC{"00wb"}, FourCC{"01dc"}, FourCC{"02dc"}, FourCC{"04dc"}, FourCC{"00__"}, FourCC{"99wb"}}) {
    EXPECT_FALSE(codes.find(code).has_value()) << code.value;
    EXPECT_TRUE(codes.findAnyStream(code).has_value()) << code.value;
  }
}

TEST(StreamCodes, LostStreamHeadersLeaveEveryCodeOpen) {
  SurvivingHeaders headers = headersWith({avi::kAuds});
  headers.main->streams = 2;
  EXPECT_TRUE(StreamCodes(headers).find(FourCC{"00dc"}).has_value());
  headers.main.reset();
  EXPECT_TRUE(StreamCodes(headers).find(FourCC{"01wb"}).has_value());
}

TEST(StreamCodes, SuperIndexNamesFurtherSuffixes) {
  SurvivingHeaders headers = headersWith({avi::kVids, avi::kAuds});
  headers.streams[0].superIndex.emplace().chunkId = FourCC{"00iv"};
  const StreamCodes codes(headers);
  const auto found = codes.find(FourCC{"00iv"});
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(codes.codeOf(*found), FourCC{"00iv"});
  EXPECT_FALSE(codes.find(FourCC{"01iv"}).has_value());
  EXPECT_TRUE(codes.find(FourCC{"00dc"}).has_value());
}

TEST(StreamCodes, HostileSuperIndexesNameNoMoreThanThereIsRoomFor) {
  SurvivingHeaders headers = headersWith(std::vector<FourCC>(100, avi::kVids));
  for (std::size_t i = 0; i < headers.streams.size(); ++i) {
    FourCC code{"00aa"};
    code.value += static_cast<std::uint32_t>(i % 20) << 24U | static_cast<std::uint32_t>(i / 20) << 16U;
    headers.streams[i].superIndex.emplace().chunkId = code;
  }
  headers.streams[99].superIndex->chunkId = FourCC{"00\x01\x02"};
  headers.streams[98].superIndex->chunkId = FourCC{"wxyz"};
  const StreamCodes codes(headers);
  EXPECT_TRUE(codes.find(FourCC{"00ai"}).has_value());
  EXPECT_FALSE(codes.find(FourCC{"00aj"}).has_value());
  EXPECT_FALSE(codes.find(FourCC{"00\x01\x02"}).has_value());
  EXPECT_TRUE(codes.find(FourCC{"99dc"}).has_value());
}

}  // namespace
}  // namespace zelvo::tests
