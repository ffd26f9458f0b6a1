#include "avi/chunk_codes.h"

#include <gtest/gtest.h>

#include <span>
#include <string_view>

namespace zelvo::tests {
namespace {

using avi::beginsChunkForSure;
using avi::FourCC;
using avi::isPrintable;
using avi::isStandardIndex;
using avi::isStreamData;
using avi::namesSameData;

FourCC code(std::string_view text) { return FourCC::at(std::as_bytes(std::span(text))); }

TEST(ChunkCodes, PrintableIsFromSpaceToTilde) {
  EXPECT_TRUE(isPrintable(code("  ~~")));
  EXPECT_FALSE(isPrintable(code("\x1f   ")));
  EXPECT_FALSE(isPrintable(code("   \x7f")));
}

TEST(ChunkCodes, StreamDataHasTwoDigitsAndAKind) {
  for (const char* data : {"00db", "99dc", "09pc", "90wb", "11tx", "22sb", "00__"})
    EXPECT_TRUE(isStreamData(code(data))) << data;
  for (const char* other : {"/0db", "0/db", ":0db", "0:db", "00dd", "00bd", "00ix", "ix00", "JUNK"}) {
    EXPECT_FALSE(isStreamData(code(other))) << other;
  }
}

TEST(ChunkCodes, StandardIndexHasTwoDigits) {
  for (const char* index : {"ix00", "ix99", "ix09", "ix90"}) EXPECT_TRUE(isStandardIndex(code(index))) << index;
  for (const char* other : {"ix/0", "ix0:", "ix0/", "ix:0", "iy00", "jx00", "indx", "00ix"}) {
    EXPECT_FALSE(isStandardIndex(code(other))) << other;
  }
}

TEST(ChunkCodes, FewCodesOnlyBeginAChunk) {
  for (const char* sure : {"00db", "07tx", "ix03", "LIST", "RIFF", "JUNK", "idx1"}) {
    EXPECT_TRUE(beginsChunkForSure(code(sure))) << sure;
  }
  for (const char* other : {"movi", "strf", "indx", "rec ", "00wc"})
    EXPECT_FALSE(beginsChunkForSure(code(other))) << other;
}

TEST(ChunkCodes, BothVideoCodesOfAStreamNameTheSameData) {
  EXPECT_TRUE(namesSameData(code("00dc"), code("00db")));
  EXPECT_TRUE(namesSameData(code("00db"), code("00dc")));
  EXPECT_TRUE(namesSameData(code("01wb"), code("01wb")));
  EXPECT_FALSE(namesSameData(code("00dc"), code("01db")));
  EXPECT_FALSE(namesSameData(code("00dc"), code("10db")));
  EXPECT_FALSE(namesSameData(code("00dc"), code("00wb")));
  EXPECT_FALSE(namesSameData(code("00wb"), code("00dc")));
  EXPECT_FALSE(namesSameData(code("00dc"), code("00dd")));
}

}  // namespace
}  // namespace zelvo::tests
