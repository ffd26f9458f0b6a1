// Whole rebuilt files as outlines: a line for every list, chunk and header field. They are in
// tests/golden/rebuilt_*.txt.
#include <gtest/gtest.h>

#include <algorithm>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/avi_outline.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"
#include "tests/support/golden.h"

namespace zelvo::tests {
namespace {

class RebuiltFileOutline : public testing::Test {
 protected:
  void expectOutline(platform::Bytes input, const std::string& golden) {
    bench.choose(std::move(input));
    bench.run();
    EXPECT_TRUE(matchesGolden("rebuilt_" + golden, outlineOf(bench.output())));
  }
  static AviBuilder fiveChunks() {
    AviBuilder avi;
    avi.chunks = {{"00dc", 200000, std::byte{0x61}},
                  {"01wb", 101, std::byte{0x62}},
                  {"00dc", 300000, std::byte{0x63}},
                  {"01wb", 30000, std::byte{0x64}},
                  {"00dc", 5, std::byte{0x65}}};
    return avi;
  }

  EngineBench bench;
};

TEST_F(RebuiltFileOutline, UndamagedInput) { expectOutline(fiveChunks().build(), "undamaged"); }

TEST_F(RebuiltFileOutline, InputWithoutIndexKeepsItsLastChunkThroughTheStaleLookAhead) {
  AviBuilder avi = fiveChunks();
  avi.withIndex = false;
  avi.chunks.back().size = 6;  // no pad byte overwrites the front of the stale code
  expectOutline(avi.build(), "no_index");
}

TEST_F(RebuiltFileOutline, UncompressedVideoBehindALostFront) {
  AviBuilder avi = fiveChunks();
  for (AviChunk& chunk : avi.chunks) {
    if (chunk.code == "00dc") chunk.code = "00db";
  }
  // The first code of the file is "00db": a stray one lies before everything else.
  platform::Bytes input = bytesOf("  00db  ");
  const platform::Bytes whole = avi.build();
  input.insert(input.end(), whole.begin(), whole.end());
  expectOutline(std::move(input), "uncompressed");
}

TEST_F(RebuiltFileOutline, ZeroedSector) {
  platform::Bytes input = fiveChunks().build();
  // Takes the header of the second video chunk, whose look-ahead from the audio chunk before it fails too.
  std::fill_n(input.begin() + 200300, 512, std::byte{0});
  expectOutline(std::move(input), "zeroed_sector");
}

TEST_F(RebuiltFileOutline, TruncatedInput) {
  platform::Bytes input = fiveChunks().build();
  input.resize(525001);
  expectOutline(std::move(input), "truncated");
}

TEST_F(RebuiltFileOutline, InputWithoutAnyChunk) {
  AviBuilder avi;
  platform::Bytes input = avi.build();
  input.resize(600000, std::byte{0x20});
  expectOutline(std::move(input), "no_chunks");
}

TEST_F(RebuiltFileOutline, MainHeaderKeepsASizeFieldThatDoesNotFit) {
  AviBuilder avi = fiveChunks();
  avi.avihSize = 1234;
  expectOutline(avi.build(), "main_header_size");
}

TEST_F(RebuiltFileOutline, OddFormatIsNotPadded) {
  AviBuilder avi = fiveChunks();
  avi.audioFormatSize = 31;
  avi.audioHandler = {"\0\0\0\0", 4};
  expectOutline(avi.build(), "odd_format");
}

TEST_F(RebuiltFileOutline, StoppedBeforeTheCopy) {
  bench.files.onTouch = [](const std::string&) { engine::stopflag = true; };
  expectOutline(fiveChunks().build(), "stopped");
}

}  // namespace
}  // namespace zelvo::tests
