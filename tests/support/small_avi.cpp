#include "tests/support/small_avi.h"

namespace zelvo::tests {

std::string le16(std::uint64_t number) {
  return {static_cast<char>(number & 0xffU), static_cast<char>(number >> 8U & 0xffU)};
}

std::string le32(std::uint64_t number) { return le16(number) + le16(number >> 16U); }

std::string chunk(std::string_view id, std::string_view payload) {
  std::string bytes = std::string(id) + le32(payload.size()) + std::string(payload);
  if (payload.size() % 2 != 0) bytes += '\0';
  return bytes;
}

std::string list(std::string_view id, std::string_view type, std::string_view content) {
  return std::string(id) + le32(content.size() + 4) + std::string(type) + std::string(content);
}

namespace {

std::string zeros(std::size_t count) { return std::string(count, '\0'); }

std::string mainHeader(std::size_t frames) {
  return le32(40000) + le32(100000) + le32(0) + le32(0x110) + le32(frames) + le32(0) + le32(2) + le32(5000) +
         le32(320) + le32(240) + zeros(16);
}

std::string streamHeader(std::string_view type, std::string_view handler, std::uint64_t scale, std::uint64_t rate,
                         std::size_t length) {
  return std::string(type) + std::string(handler) + zeros(12) + le32(scale) + le32(rate) + le32(0) + le32(length) +
         le32(5000) + le32(0) + le32(0) + zeros(4) + le16(320) + le16(240);
}

std::string bitmapInfo(bool hasCompression) {
  return le32(40) + le32(320) + le32(240) + le16(1) + le16(24) + (hasCompression ? "MJPG" : le32(0)) + le32(230400) +
         zeros(16);
}

std::string waveFormat() { return le16(1) + le16(2) + le32(44100) + le32(176400) + le16(4) + le16(16) + le16(0); }

std::string headerList(const SmallAvi& avi) {
  std::string content;
  if (avi.hasMainHeader) content += chunk("avih", mainHeader(avi.frames));
  if (avi.hasVideoHeader) {
    content += list("LIST", "strl",
                    chunk("strh", streamHeader("vids", avi.videoHandler, 1, 25, avi.frames)) +
                        chunk("strf", bitmapInfo(avi.hasVideoCompression)));
  }
  if (avi.hasAudioHeader) {
    content += list("LIST", "strl",
                    chunk("strh", streamHeader("auds", zeros(4), 1, 44100, avi.frames)) + chunk("strf", waveFormat()));
  }
  return list("LIST", "hdrl", content);
}

}  // namespace

std::string SmallAvi::bytes() const {
  std::string movi;
  std::string index;
  for (std::size_t i = 0; i < frames; ++i) {
    const auto letter = static_cast<char>('a' + i % 26);
    index += "00dc" + le32(0x10) + le32(movi.size() + 4) + le32(frameSize);
    movi += chunk("00dc", std::string(frameSize, letter));
    index += "01wb" + le32(0x10) + le32(movi.size() + 4) + le32(soundSize);
    movi += chunk("01wb", std::string(soundSize, static_cast<char>('A' + i % 26)));
  }
  movi += chunk("JUNK", zeros(16));  // otherwise the last chunk would be followed by no code that keeps it
  std::string content = headerList(*this) + list("LIST", "movi", movi);
  if (hasIndex) content += chunk("idx1", index);
  return list("RIFF", "AVI ", content);
}

std::string overlappingAvi(std::size_t chunks) {
  constexpr std::size_t kSize = 5000000;
  std::string bytes = list("RIFF", "AVI ", headerList({}));
  for (std::size_t i = 0; i < chunks; ++i) bytes += "00dc" + le32(kSize);
  bytes.append(kSize - 8 * (chunks - 1), '\0');
  // What follows each of them: a code of its own, whose size of zero keeps it from being recorded.
  for (std::size_t i = 0; i < chunks; ++i) bytes += "00dc" + le32(0);
  return bytes;
}

}  // namespace zelvo::tests
