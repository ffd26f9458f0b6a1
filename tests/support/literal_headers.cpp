#include "tests/support/literal_headers.h"

#include <array>

namespace zelvo::tests::literal {

using platform::Bytes;

namespace {

bool anyNonZero(const Bytes& bytes, std::size_t count) {
  for (std::size_t k = 0; k < count && k < bytes.size(); ++k) {
    if (bytes[k] != std::byte{0}) return true;
  }
  return false;
}

Bytes readAt(Input& input, std::uint32_t offset, std::uint64_t length) {
  input.seekToFileOffset(offset);
  return input.readDataOfLength(length);
}

/// One of the twelve codes, or nothing.
const char* signatureAt(std::span<const std::byte> block, std::size_t position) {
  static constexpr std::array kCodes{"RIFF", "AVI ", "LIST", "hdrl", "avih", "strl",
                                     "strh", "indx", "00db", "00dc", "00wb", "movi"};
  for (const char* code : kCodes) {
    if (isCode(block, position, code)) return code;
  }
  return nullptr;
}

}  // namespace

bool fileValidityCheck(Input& input, std::uint64_t inputfilesize, Headers& headers) {
  headers.valid = false;
  headers.db = false;
  headers.avihscaleratedatafound = false;
  headers.videocodecfound = false;
  headers.videostrfcodecfound = false;
  headers.audiocodecfound = false;
  headers.audiostrfcodecfound = false;
  if (inputfilesize < 1024) return false;
  for (std::uint32_t sector = 1; sector <= 10; ++sector) {
    std::array<std::byte, 1024 + 3> block{};
    input.seekToFileOffset((sector - 1) * 1024);
    input.getBytes(std::span(block).first(1024));
    for (std::size_t i = 0; i <= 1023; ++i) {
      const char* code = signatureAt(block, i);
      if (code == nullptr) continue;
      headers.valid = true;
      headers.db = std::string_view(code) == "00db";
      return true;
    }
  }
  return false;
}

bool harvestHeaders(Input& input, std::uint64_t inputfilesize, Headers& headers) {
  const auto mod = static_cast<std::size_t>(inputfilesize % 1024);
  for (std::uint32_t sector = 1; sector <= 50; ++sector) {
    std::array<std::byte, 3072> buffer{};
    input.seekToFileOffset((sector - 1) * 1024);
    input.getBytes(std::span(buffer).first(sector == 50 ? mod : 3072));
    for (std::uint32_t i = 0; i <= 1023; ++i) {
      const std::uint32_t at = (sector - 1) * 1024 + i;
      if (isCode(buffer, i, "avih")) {
        headers.avihdata1 = readAt(input, at + 4, 20);
        headers.avihscaleratedatafound = anyNonZero(headers.avihdata1, 2);
        headers.avihdata2 = readAt(input, at + 28, 36);
      } else if (isCode(buffer, i, "vids")) {
        headers.videocodec = readAt(input, at + 4, 4);
        headers.videocodecfound = anyNonZero(headers.videocodec, 4);
        headers.videoscaleratedata = readAt(input, at + 20, 8);
        headers.videoscaledata = readAt(input, at + 28, 4);
        headers.videostrfsize = numberIn(readAt(input, at + 60, 4));
        headers.videostrfdata = readAt(input, at + 64, headers.videostrfsize);
        headers.videostrfcodecfound = anyNonZero(readAt(input, at + 80, 4), 4);
      } else if (isCode(buffer, i, "auds")) {
        headers.audiocodec = readAt(input, at + 4, 4);
        headers.audiocodecfound = true;
        headers.audioscaleratedata = readAt(input, at + 20, 8);
        headers.audioscaledata = readAt(input, at + 28, 4);
        headers.audiostrfsize = numberIn(readAt(input, at + 60, 4));
        headers.audiostrfdata = readAt(input, at + 64, headers.audiostrfsize);
        headers.audiostrfcodecfound = anyNonZero(readAt(input, at + 80, 4), 4);
      }
    }
    if (headers.allFound() && inputfilesize > 524288) break;
  }
  return headers.allFound() && inputfilesize >= 524289;
}

}  // namespace zelvo::tests::literal
