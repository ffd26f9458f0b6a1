#include "avi/fourcc.h"

#include <gtest/gtest.h>

#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using avi::FourCC;

TEST(FourCC, HoldsItsBytesInFileOrder) {
  EXPECT_EQ(hexOf(FourCC("RIFF").bytes()), "52 49 46 46");
  EXPECT_EQ(hexOf(avi::kAvi.bytes()), "41 56 49 20");
}

TEST(FourCC, IsTakenFromTheFirstFourBytes) { EXPECT_EQ(FourCC::at(bytesOf("00dcXYZ")), avi::k00dc); }

TEST(FourCC, IsComparedExactly) {
  EXPECT_NE(FourCC::at(bytesOf("00DC")), avi::k00dc);
  EXPECT_NE(FourCC::at(bytesOf("cd00")), avi::k00dc);
  EXPECT_NE(avi::k00db, avi::k00dc);
}

TEST(FourCC, TakesBytesAbove127) { EXPECT_EQ(hexOf(FourCC::at(bytesOf("\xff\xfe\x80\x7f")).bytes()), "ff fe 80 7f"); }

TEST(FourCC, DefaultIsFourZeroBytes) { EXPECT_EQ(hexOf(FourCC().bytes()), "00 00 00 00"); }

}  // namespace
}  // namespace zelvo::tests
