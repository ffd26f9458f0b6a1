#include "tests/support/literal_writer.h"

namespace zelvo::tests::literal {

namespace {

struct StreamHeader {
  const char* type;
  const platform::Bytes& codec;
  const platform::Bytes& scaleAndRate;
  const platform::Bytes& start;
  const platform::Bytes& format;
  std::uint64_t formatSize;
  std::uint64_t listSize;
  std::uint64_t chunks;
};

void writeStreamHeader(Output& out, const StreamHeader& stream) {
  out.writeText("LIST");
  out.writeInt(stream.listSize);
  out.writeText("strl");
  out.writeText("strh");
  out.writeInt(56);
  out.writeText(stream.type);
  out.writeData(stream.codec);
  out.writeZeros(4);  // dwFlags
  out.writeZeros(2);  // wPriority
  out.writeZeros(2);  // wLanguage
  out.writeZeros(4);  // dwInitialFrames
  out.writeData(stream.scaleAndRate);
  out.writeZeros(4);            // dwStart
  out.writeInt(stream.chunks);  // dwLength
  out.writeInt(16777215);       // dwSuggestedBufferSize
  out.writeZeros(4);            // dwQuality
  out.writeData(stream.start);  // dwSampleSize
  out.writeZeros(8);            // rcFrame
  out.writeText("strf");
  out.writeInt(stream.formatSize);
  out.writeData(stream.format);
}

void writeSuperIndex(Output& out, std::uint64_t chunkSize, const char* chunkId, std::uint64_t offset,
                     std::uint64_t size, std::uint64_t duration) {
  out.writeText("indx");
  out.writeInt(chunkSize);
  out.writeData(std::array{std::byte{4}, std::byte{0}});  // wLongsPerEntry
  out.writeZeros(1);                                      // bIndexSubType
  out.writeZeros(1);                                      // bIndexType
  out.writeInt(1);                                        // nEntriesInUse
  out.writeText(chunkId);
  out.writeZeros(12);
  out.writeIntTo8byte(offset);
  out.writeInt(size);
  out.writeIntTo8byte(duration);
}

void writeStandardIndex(Output& out, const char* code, std::uint64_t chunkSize, const char* chunkId,
                        std::uint64_t baseOffset, const Table& table) {
  out.writeText(code);
  out.writeInt(chunkSize);
  out.writeData(std::array{std::byte{2}, std::byte{0}});  // wLongsPerEntry
  out.writeZeros(1);                                      // bIndexSubType
  out.writeData(std::array{std::byte{1}});                // bIndexType
  out.writeInt(table.count);
  out.writeText(chunkId);
  out.writeIntTo8byte(baseOffset);
  out.writeZeros(4);
  std::uint64_t running = 0;
  for (std::uint64_t i = 1; i <= table.count; ++i) {
    const std::uint32_t before = i == 1 ? 0 : static_cast<std::uint32_t>(table.sizes[i - 1] % 4294967296);
    running += static_cast<std::uint32_t>(before + 8U);
    out.writeInt(running);
    out.writeInt(table.sizes[i]);
  }
}

void copyChunks(Input& input, Output& out, const Table& table) {
  for (std::uint64_t i = 1; i <= table.count; ++i) {
    input.seekToFileOffset(table.offsets[i]);
    out.writeData(input.readDataOfLength(table.sizes[i] + 8));
  }
}

std::uint64_t sumFromEntryZero(const Table& table) {
  std::uint64_t sum = 0;
  for (std::uint64_t i = 0; i <= table.count; ++i) sum += table.sizes[i];
  return sum;
}

void writeHeaderPart(const Headers& headers, const Tables& tables, const Layout& layout, Output& out) {
  out.writeText("RIFF");
  out.writeInt(layout.RIFFLISTsize);
  out.writeText("AVI ");
  out.writeText("LIST");
  out.writeInt(layout.AVILISTsize);
  out.writeText("hdrl");
  out.writeText("avih");
  out.writeData(headers.avihdata1);
  out.writeInt(tables.video.count);
  out.writeData(headers.avihdata2);
  writeStreamHeader(out, {"vids", headers.videocodec, headers.videoscaleratedata, headers.videoscaledata,
                          headers.videostrfdata, headers.videostrfsize, layout.videostrlListsize, tables.video.count});
  writeSuperIndex(out, layout.videoindxsize, "00db", layout.ix00location - 8, layout.ix00size + 4, tables.video.count);
  writeStreamHeader(out, {"auds", headers.audiocodec, headers.audioscaleratedata, headers.audioscaledata,
                          headers.audiostrfdata, headers.audiostrfsize, layout.audiostrlListsize, tables.audio.count});
  writeSuperIndex(out, layout.audioindxsize, "01wb", layout.ix01location, layout.ix01size + 4, tables.audio.count);
}

}  // namespace

Layout layoutOf(const Headers& headers, const Tables& tables) {
  Layout out;
  out.ix00size = tables.video.count * 8 + 24;
  out.ix01size = tables.audio.count * 8 + 24;
  out.audioindxsize = 44;
  out.videoindxsize = 44;
  out.ix00location = headers.videostrfsize + 8 + 164 + (out.videoindxsize + 8) + 76 + (headers.audiostrfsize + 8) +
                     (out.audioindxsize + 8) + 20;
  out.ix01location = out.ix00location + out.ix00size;
  out.audiostrlListsize = headers.audiostrfsize + 76 + 8 + out.audioindxsize;
  out.videostrlListsize = headers.videostrfsize + 76 + 8 + out.videoindxsize;
  out.AVILISTsize = out.videostrlListsize + 76 + 8 + out.audiostrlListsize;
  out.baseoffsetforvideo = out.AVILISTsize + 20 + (out.ix00size + 20) + (out.ix01size + 8);
  out.audiodatasize = sumFromEntryZero(tables.audio);
  out.videodatasize = sumFromEntryZero(tables.video);
  out.movisize = (out.ix00size + 8 + 4) + (out.ix01size + 8) + 8 * tables.video.count + 8 * tables.audio.count +
                 out.audiodatasize + out.videodatasize;
  out.RIFFLISTsize = out.AVILISTsize + 12 + 8 + out.movisize;
  out.baseoffsetforaudio = out.baseoffsetforvideo + out.videodatasize + 8 * tables.video.count;
  return out;
}

Layout constructRIFFList(Input& input, const Headers& headers, const Tables& tables, Output& out,
                         const WriterStops& stops) {
  const Layout layout = layoutOf(headers, tables);
  writeHeaderPart(headers, tables, layout, out);
  out.writeText("LIST");
  out.writeInt(layout.movisize);
  out.writeText("movi");
  writeStandardIndex(out, "ix00", layout.ix00size, headers.db ? "00db" : "00dc", layout.baseoffsetforvideo,
                     tables.video);
  writeStandardIndex(out, "ix01", layout.ix01size, "01wb", layout.baseoffsetforaudio, tables.audio);
  if (!stops.beforeVideo()) copyChunks(input, out, tables.video);
  if (!stops.beforeAudio()) copyChunks(input, out, tables.audio);
  return layout;
}

}  // namespace zelvo::tests::literal
