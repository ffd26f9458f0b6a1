// The rebuilt file: every field at its offset, and what is told on the way.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/engine/rebuilt_file_bench.h"

namespace zelvo::tests {
namespace {

struct Row {
  std::size_t offset;
  const char* field;
  Bytes value;
};

/// Each row's bytes at its offset, and no byte between two rows.
void expectRows(const Bytes& file, const std::vector<Row>& rows) {
  std::size_t end = rows.front().offset;
  for (const Row& row : rows) {
    EXPECT_EQ(row.offset, end) << row.field;
    EXPECT_EQ(hexAt(file, row.offset, row.value.size()), hexOf(row.value)) << row.field << " at " << row.offset;
    end = row.offset + row.value.size();
  }
}

TEST_F(RebuiltFile, EveryFieldLiesAtItsOffset) {
  addChunk("00dc", 100, std::byte{0x61});
  addChunk("01wb", 50, std::byte{0x62});
  addChunk("00db", 7, std::byte{0x63});

  const Bytes file = write();

  expectRows(file, {{0, "form id", bytesOf("RIFF")},
                    {4, "form size", number(691)},
                    {8, "form type", bytesOf("AVI ")},
                    {12, "list id", bytesOf("LIST")},
                    {16, "list size", number(398)},
                    {20, "list type", bytesOf("hdrl")},
                    {24, "chunk id", bytesOf("avih")},
                    {28, "main header, first part", counting(20, 1)},
                    {48, "dwTotalFrames", number(2)},
                    {52, "main header, rest", counting(36, 31)},
                    {88, "list id", bytesOf("LIST")},
                    {92, "list size", number(168)},
                    {96, "list type", bytesOf("strl")},
                    {100, "chunk id", bytesOf("strh")},
                    {104, "chunk size", number(56)},
                    {108, "fccType", bytesOf("vids")},
                    {112, "fccHandler", bytesOf("DIVX")},
                    {116, "dwFlags", zeros(4)},
                    {120, "wPriority", zeros(2)},
                    {122, "wLanguage", zeros(2)},
                    {124, "dwInitialFrames", zeros(4)},
                    {128, "dwScale, dwRate", counting(8, 71)},
                    {136, "dwStart", zeros(4)},
                    {140, "dwLength", number(2)},
                    {144, "dwSuggestedBufferSize", number(0x00ffffff)},
                    {148, "dwQuality", zeros(4)},
                    {152, "dwSampleSize", counting(4, 81)},
                    {156, "rcFrame", zeros(8)},
                    {164, "chunk id", bytesOf("strf")},
                    {168, "chunk size", number(40)},
                    {172, "stream format", counting(40, 111)}});
  expectRows(file, {{212, "chunk id", bytesOf("indx")},
                    {216, "chunk size", number(44)},
                    {220, "wLongsPerEntry, bIndexSubType, bIndexType", bytesOf({"\4\0\0\0", 4})},
                    {224, "nEntriesInUse", number(1)},
                    {228, "dwChunkId", bytesOf("00db")},
                    {232, "dwReserved", zeros(12)},
                    {244, "qwOffset", wideNumber(430)},
                    {252, "dwSize", number(44)},
                    {256, "dwDuration", wideNumber(2)},
                    {264, "list id", bytesOf("LIST")},
                    {268, "list size", number(146)},
                    {272, "list type", bytesOf("strl")},
                    {276, "chunk id", bytesOf("strh")},
                    {280, "chunk size", number(56)},
                    {284, "fccType", bytesOf("auds")},
                    {288, "fccHandler", bytesOf("mp3 ")},
                    {292, "dwFlags, wPriority, wLanguage, dwInitialFrames", zeros(12)},
                    {304, "dwScale, dwRate", counting(8, 91)},
                    {312, "dwStart", zeros(4)},
                    {316, "dwLength", number(1)},
                    {320, "dwSuggestedBufferSize", number(0x00ffffff)},
                    {324, "dwQuality", zeros(4)},
                    {328, "dwSampleSize", counting(4, 101)},
                    {332, "rcFrame", zeros(8)},
                    {340, "chunk id", bytesOf("strf")},
                    {344, "chunk size", number(18)},
                    {348, "stream format", counting(18, 160)},
                    {366, "chunk id", bytesOf("indx")},
                    {370, "chunk size", number(44)},
                    {374, "wLongsPerEntry, bIndexSubType, bIndexType", bytesOf({"\4\0\0\0", 4})},
                    {378, "nEntriesInUse", number(1)},
                    {382, "dwChunkId", bytesOf("01wb")},
                    {386, "dwReserved", zeros(12)},
                    {398, "qwOffset", wideNumber(478)},
                    {406, "dwSize", number(36)},
                    {410, "dwDuration", wideNumber(1)}});
  expectRows(file, {{418, "list id", bytesOf("LIST")},
                    {422, "list size", number(273)},
                    {426, "list type", bytesOf("movi")},
                    {430, "chunk id", bytesOf("ix00")},
                    {434, "chunk size", number(40)},
                    {438, "wLongsPerEntry, bIndexSubType, bIndexType", bytesOf({"\2\0\0\1", 4})},
                    {442, "nEntriesInUse", number(2)},
                    {446, "dwChunkId", bytesOf("00dc")},
                    {450, "qwBaseOffset", wideNumber(518)},
                    {458, "dwReserved", zeros(4)},
                    {462, "entry 1 dwOffset", number(8)},
                    {466, "entry 1 dwSize", number(100)},
                    {470, "entry 2 dwOffset", number(116)},
                    {474, "entry 2 dwSize", number(7)},
                    {478, "chunk id", bytesOf("ix01")},
                    {482, "chunk size", number(32)},
                    {486, "wLongsPerEntry, bIndexSubType, bIndexType", bytesOf({"\2\0\0\1", 4})},
                    {490, "nEntriesInUse", number(1)},
                    {494, "dwChunkId", bytesOf("01wb")},
                    {498, "qwBaseOffset", wideNumber(641)},
                    {506, "dwReserved", zeros(4)},
                    {510, "entry 1 dwOffset", number(8)},
                    {514, "entry 1 dwSize", number(50)},
                    {518, "video chunk 1", bytesOf("00dc")},
                    {522, "size", number(100)},
                    {526, "payload", Bytes(100, std::byte{0x61})},
                    {626, "video chunk 2", bytesOf("00db")},
                    {630, "size", number(7)},
                    {634, "payload", Bytes(7, std::byte{0x63})},
                    {641, "audio chunk 1", bytesOf("01wb")},
                    {645, "size", number(50)},
                    {649, "payload", Bytes(50, std::byte{0x62})}});
  EXPECT_EQ(file.size(), 699U);
}

TEST_F(RebuiltFile, WithoutChunksIsTheFormatsAnd436BytesLong) {
  const Bytes file = write();
  EXPECT_EQ(file.size(), 40U + 18 + 436);
  EXPECT_EQ(bench.job->layout.movisize, 68U);
  EXPECT_EQ(numberAt(file, 422), 68U);
  EXPECT_EQ(textAt(file, 430, 4), "ix00");
  EXPECT_EQ(numberAt(file, 434), 24U);
  EXPECT_EQ(textAt(file, 462, 4), "ix01");
  EXPECT_EQ(numberAt(file, 466), 24U);
}

TEST_F(RebuiltFile, AudioStreamWithoutChunksStillGetsItsListAndAnEmptyIndex) {
  addChunk("00dc", 100);

  const Bytes file = write();

  EXPECT_EQ(textAt(file, 284, 4), "auds");
  EXPECT_EQ(numberAt(file, 316), 0U);  // dwLength
  EXPECT_EQ(textAt(file, 366, 4), "indx");
  EXPECT_EQ(numberAt(file, 378), 1U);   // its super index still has one entry
  EXPECT_EQ(numberAt(file, 406), 28U);  // dwSize
  EXPECT_EQ(textAt(file, 470, 4), "ix01");
  EXPECT_EQ(numberAt(file, 482), 0U);  // nEntriesInUse
  EXPECT_EQ(bench.job->layout.baseoffsetforaudio, file.size());
}

TEST_F(RebuiltFile, FormatsOf40And18BytesPutMoviAt418AndIx00At430) {
  const Bytes file = write();
  EXPECT_EQ(textAt(file, 418, 4) + textAt(file, 426, 4), "LISTmovi");
  EXPECT_EQ(textAt(file, 430, 4), "ix00");
  EXPECT_EQ(bench.job->layout.ix00location, 438U);
}

TEST_F(RebuiltFile, OddFormatIsNotPaddedAndMovesEverythingBehindIt) {
  setFormats(41, 17);
  const Bytes file = write();
  EXPECT_EQ(textAt(file, 172 + 41, 4), "indx");
  EXPECT_EQ(textAt(file, 308 + 41 + 17, 4), "indx");
  EXPECT_EQ(textAt(file, 360 + 41 + 17, 4), "LIST");
  EXPECT_EQ(file.size(), 41U + 17 + 436);
}

TEST_F(RebuiltFile, OddChunksLieBackToBack) {
  addChunk("00dc", 5);
  addChunk("00dc", 3);
  addChunk("01wb", 1);

  const Bytes file = write();

  const std::size_t video = 40 + 18 + 436 + 3 * 8;
  EXPECT_EQ(textAt(file, video, 4), "00dc");
  EXPECT_EQ(textAt(file, video + 13, 4), "00dc");
  EXPECT_EQ(textAt(file, video + 13 + 11, 4), "01wb");
  EXPECT_EQ(file.size(), video + 13 + 11 + 9);
}

TEST_F(RebuiltFile, FormSizeIsTheFilesLengthLess8) {
  addChunk("00dc", 1000);
  addChunk("01wb", 333);
  const Bytes file = write();
  EXPECT_EQ(numberAt(file, 4), file.size() - 8);
}

TEST_F(RebuiltFile, DbChangesTheStandardIndexOnly) {
  addChunk("00db", 100);
  bench.job->db = false;
  const Bytes clear = write();
  EXPECT_EQ(textAt(clear, 228, 4), "00db");
  EXPECT_EQ(textAt(clear, 446, 4), "00dc");

  bench.job->db = true;
  const Bytes set = write();
  EXPECT_EQ(textAt(set, 228, 4), "00db");
  EXPECT_EQ(textAt(set, 446, 4), "00db");
}

TEST_F(RebuiltFile, EmptyVideoIndexHasASuperEntryOfSize28AndDuration0) {
  const Bytes file = write();
  EXPECT_EQ(numberAt(file, 224), 1U);
  EXPECT_EQ(numberAt(file, 252), 28U);
  EXPECT_EQ(hexAt(file, 256, 8), hexOf(zeros(8)));
}

TEST_F(RebuiltFile, SizesWrapAt32BitsInTheFileOnly) {
  setFormats(40, 18);
  bench.job->videostrfsize = 0xffffffffU;  // the payload itself is short
  write();
  EXPECT_EQ(bench.job->layout.ix00location, std::uint64_t{0xffffffffU} + 18 + 380);
  EXPECT_EQ(numberAt(bench.output(), 16), 0xffffffffU + 18U + 340U);  // wraps
  EXPECT_EQ(numberAt(bench.output(), 244), 0xffffffffU + 18U + 372U);
  EXPECT_EQ(numberAt(bench.output(), 248), 0U);
}

// ---- Stream formats ----

TEST_F(RebuiltFile, FormatShorterThanItsSizeIsWrittenAsItCame) {
  bench.job->videostrfdata.held.resize(25);

  const Bytes file = write();

  EXPECT_EQ(numberAt(file, 168), 40U);               // declared
  EXPECT_EQ(textAt(file, 172 + 25, 4), "indx");      // what follows moves up
  EXPECT_EQ(numberAt(file, 172 + 25 + 32), 430U);    // positions keep the declared size
  EXPECT_EQ(numberAt(file, 4), 40U + 18 + 436 - 8);  // so do sizes
  EXPECT_EQ(file.size(), 40U + 18 + 436 - 15);
}

TEST_F(RebuiltFile, FormatHeldAsARangeIsCopiedFromTheInput) {
  Bytes& input = bench.files.at("/in.avi").bytes;
  const std::uint64_t offset = input.size();
  const Bytes format = counting(100000, 3);
  input.insert(input.end(), format.begin(), format.end());
  bench.files.at("/in.avi").size = input.size();
  bench.job->videostrfsize = format.size();
  bench.job->videostrfdata = {.held = {}, .rangeOffset = offset, .rangeSize = format.size()};

  const Bytes file = write();

  EXPECT_TRUE(std::equal(format.begin(), format.end(), file.begin() + 172));
  EXPECT_EQ(textAt(file, 172 + 100000, 4), "indx");
}

TEST_F(RebuiltFile, FormatRangeOfGigabytesCopiesWhatTheInputHolds) {
  bench.job->videostrfsize = 0xffffffffU;
  bench.job->videostrfdata = {.held = {}, .rangeOffset = 1900, .rangeSize = 0xffffffffU};

  const Bytes file = write();

  EXPECT_EQ(numberAt(file, 168), 0xffffffffU);
  EXPECT_EQ(textAt(file, 172 + 100, 4), "indx");
}

// ---- The audio codec label ----

TEST_F(RebuiltFile, AudioHandlerOfFourZeroBytesShowsUnknown) {
  bench.job->audiocodec = zeros(4);
  write();
  EXPECT_EQ(bench.screen.audiocodecfield.stringValue(), "Unknown");
  EXPECT_EQ(bench.job->audiocodecstring.get(), "Unknown");
  EXPECT_TRUE(happened("log: audiocodecstring=Unknown"));
}

TEST_F(RebuiltFile, AudioHandlerWhoseFirstByteAloneIsZeroShowsAnEmptyText) {
  bench.job->audiocodec = bytesOf({"\0abc", 4});
  write();
  EXPECT_TRUE(happened("audiocodecfield.setStringValue()"));
  EXPECT_EQ(bench.job->audiocodecstring.get(), "");
}

TEST_F(RebuiltFile, AudioHandlerIsShownUpToAZeroByte) {
  bench.job->audiocodec = bytesOf({"U\0\0\0", 4});
  write();
  EXPECT_EQ(bench.screen.audiocodecfield.stringValue(), "U");
}

TEST_F(RebuiltFile, CodecIsOnlyLoggedWhenNoAudioHandlerWasFound) {
  bench.job->audiocodecfound = false;
  write();
  EXPECT_FALSE(happened("audiocodecfield.setStringValue(mp3 )"));
  EXPECT_TRUE(happened("log: audiocodecstring=(null)"));
}

TEST_F(RebuiltFile, CodecOfAnEarlierRunIsLoggedWhenNoneWasFoundNow) {
  write();
  bench.job->audiocodecfound = false;
  bench.events.clear();
  write();
  EXPECT_TRUE(happened("log: audiocodecstring=mp3 "));
}

TEST_F(RebuiltFile, CodecLabelIsSetInTheMiddleOfTheAudioStreamHeader) {
  // Both formats are copied from the input while the headers are written: video before the label, audio after it.
  bench.job->videostrfdata = {.held = {}, .rangeOffset = 100, .rangeSize = 40};
  bench.job->audiostrfdata = {.held = {}, .rangeOffset = 200, .rangeSize = 18};
  bench.files.at("/in.avi").onRead = [this](std::uint64_t offset, std::size_t size) {
    bench.events.add("read " + std::to_string(size) + " at " + std::to_string(offset));
  };
  bench.files.onTouch = [this](const std::string& what) { bench.events.add(what); };

  write();

  const std::vector<std::string> expected = {"log: Construct RIFF file",
                                             "createFile(/out.avi)",
                                             "openForWriting(/out.avi)",
                                             "read 40 at 100",
                                             "audiocodecfield.setStringValue(mp3 )",
                                             "log: audiocodecstring=mp3 ",
                                             "read 18 at 200",
                                             "setMovieView(/out.avi)",
                                             "log: Repair file completed"};
  EXPECT_EQ(bench.events.lines(), expected);
}

}  // namespace
}  // namespace zelvo::tests
