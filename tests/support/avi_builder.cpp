#include "tests/support/avi_builder.h"

#include <algorithm>

namespace zelvo::tests {

using platform::Bytes;

void appendText(Bytes& out, std::string_view text) {
  for (const char character : text) out.push_back(static_cast<std::byte>(character));
}

void appendNumber(Bytes& out, std::uint32_t value) {
  for (unsigned shift = 0; shift < 32; shift += 8) out.push_back(static_cast<std::byte>(value >> shift & 0xffU));
}

void append16(Bytes& out, std::uint16_t value) {
  out.push_back(static_cast<std::byte>(value & 0xffU));
  out.push_back(static_cast<std::byte>(value >> 8U));
}

void overwrite(Bytes& out, std::size_t offset, std::string_view text) {
  std::transform(text.begin(), text.end(), out.begin() + static_cast<std::ptrdiff_t>(offset),
                 [](char character) { return static_cast<std::byte>(character); });
}

void appendChunk(Bytes& out, std::string_view code, std::uint32_t size, std::byte fill) {
  appendText(out, code);
  appendNumber(out, size);
  out.insert(out.end(), size + size % 2, fill);
}

namespace {

void appendList(Bytes& out, std::string_view type, const Bytes& content) {
  appendText(out, "LIST");
  appendNumber(out, static_cast<std::uint32_t>(content.size() + 4));
  appendText(out, type);
  out.insert(out.end(), content.begin(), content.end());
}

}  // namespace

platform::Bytes blank(std::size_t size) {
  platform::Bytes bytes(size, std::byte{0x20});
  overwrite(bytes, 0, "AVI ");
  return bytes;
}

AviBuilder& AviBuilder::interleaved(int count, std::uint32_t videoSize, std::uint32_t audioSize,
                                    std::string_view videoCode) {
  for (int i = 0; i < count; ++i) {
    chunks.push_back({videoCode, videoSize, static_cast<std::byte>(0x60 + i % 0x10)});
    chunks.push_back({"01wb", audioSize, static_cast<std::byte>(0x70 + i % 0x08)});
  }
  return *this;
}

AviBuilder& AviBuilder::atLeast(std::uint64_t size) {
  std::uint64_t now = build().size();
  for (; now < size; now += 4096 + 8) chunks.push_back({"00dc", 4096});
  return *this;
}

void AviBuilder::appendStream(Bytes& hdrl, bool video) const {
  Bytes strl;
  appendText(strl, "strh");
  appendNumber(strl, 56);
  appendText(strl, video ? "vids" : "auds");
  appendText(strl, video ? videoHandler : audioHandler);
  appendNumber(strl, 0);  // dwFlags
  appendNumber(strl, 0);  // wPriority, wLanguage
  appendNumber(strl, 0);  // dwInitialFrames
  appendNumber(strl, video ? videoScale : audioScale);
  appendNumber(strl, video ? videoRate : audioRate);
  appendNumber(strl, 0);                                                           // dwStart
  appendNumber(strl, frames.value_or(static_cast<std::uint32_t>(chunks.size())));  // dwLength
  appendNumber(strl, 65536);                                                       // dwSuggestedBufferSize
  appendNumber(strl, 0xffffffff);                                                  // dwQuality
  appendNumber(strl, 0);                                                           // dwSampleSize
  appendNumber(strl, 0);
  appendNumber(strl, video ? height << 16U | width : 0);  // rcFrame
  appendText(strl, "strf");
  if (video) {
    appendNumber(strl, 40);
    appendNumber(strl, 40);  // biSize
    appendNumber(strl, width);
    appendNumber(strl, height);
    append16(strl, 1);   // biPlanes
    append16(strl, 24);  // biBitCount
    appendText(strl, videoCompression);
    appendNumber(strl, width * height * 3);
    for (int i = 0; i < 4; ++i) appendNumber(strl, 0);
  } else {
    appendNumber(strl, audioFormatSize);
    const std::size_t start = strl.size();
    append16(strl, audioFormatTag);
    append16(strl, 2);  // nChannels
    appendNumber(strl, 44100);
    appendNumber(strl, audioBytesPerSecond.value_or(audioRate));
    append16(strl, audioBlockAlign);
    append16(strl, 16);                                                // wBitsPerSample
    append16(strl, static_cast<std::uint16_t>(audioFormatSize - 18));  // cbSize
    append16(strl, 1);
    strl.resize(start + audioFormatSize);
    if (audioFormatSize % 2 != 0) strl.push_back(std::byte{0});
  }
  appendList(hdrl, "strl", strl);
}

void AviBuilder::appendMainHeader(Bytes& hdrl) const {
  appendText(hdrl, "avih");
  appendNumber(hdrl, avihSize);
  appendNumber(hdrl, microSecPerFrame);
  appendNumber(hdrl, 1000000);  // dwMaxBytesPerSec
  appendNumber(hdrl, 0);        // dwPaddingGranularity
  appendNumber(hdrl, 0x10);     // dwFlags: has an index
  appendNumber(hdrl, frames.value_or(static_cast<std::uint32_t>(chunks.size())));
  appendNumber(hdrl, 0);  // dwInitialFrames
  appendNumber(hdrl, 2);  // dwStreams
  appendNumber(hdrl, 65536);
  appendNumber(hdrl, width);
  appendNumber(hdrl, height);
  for (int i = 0; i < 4; ++i) appendNumber(hdrl, 0);
}

Bytes AviBuilder::headers() const {
  Bytes hdrl;
  if (withMainHeader) appendMainHeader(hdrl);
  if (withVideoStream) appendStream(hdrl, true);
  if (withAudioStream) appendStream(hdrl, false);
  Bytes out;
  appendText(out, "RIFF");
  appendNumber(out, 0);
  appendText(out, "AVI ");
  appendList(out, "hdrl", hdrl);
  return out;
}

Bytes AviBuilder::build() const {
  Bytes out = headers();
  Bytes movi;
  Bytes idx1;
  for (const AviChunk& chunk : chunks) {
    appendText(idx1, chunk.code);
    appendNumber(idx1, 0x10);  // AVIIF_KEYFRAME
    appendNumber(idx1, static_cast<std::uint32_t>(movi.size() + 4));
    appendNumber(idx1, chunk.size);
    appendChunk(movi, chunk.code, chunk.size, chunk.fill);
  }
  if (withTrailer) appendChunk(movi, "JUNK", 16, std::byte{0});
  appendList(out, "movi", movi);
  if (withIndex) {
    appendText(out, "idx1");
    appendNumber(out, static_cast<std::uint32_t>(idx1.size()));
    out.insert(out.end(), idx1.begin(), idx1.end());
  }
  Bytes size;
  appendNumber(size, static_cast<std::uint32_t>(out.size() - 8));
  std::copy(size.begin(), size.end(), out.begin() + 4);
  return out;
}

}  // namespace zelvo::tests
