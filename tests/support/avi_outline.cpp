#include "tests/support/avi_outline.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tests/support/byte_text.h"

namespace zelvo::tests {

namespace {

struct Field {
  std::string_view name;
  std::size_t size;  ///< 1, 2, 4 or 8; `kCode` for a four-character code
};
constexpr std::size_t kCode = 0;

constexpr std::array<Field, 14> kMainHeader = {{{"dwMicroSecPerFrame", 4},
                                                {"dwMaxBytesPerSec", 4},
                                                {"dwPaddingGranularity", 4},
                                                {"dwFlags", 4},
                                                {"dwTotalFrames", 4},
                                                {"dwInitialFrames", 4},
                                                {"dwStreams", 4},
                                                {"dwSuggestedBufferSize", 4},
                                                {"dwWidth", 4},
                                                {"dwHeight", 4},
                                                {"dwReserved[0]", 4},
                                                {"dwReserved[1]", 4},
                                                {"dwReserved[2]", 4},
                                                {"dwReserved[3]", 4}}};
constexpr std::array<Field, 14> kStreamHeader = {{{"fccType", kCode},
                                                  {"fccHandler", kCode},
                                                  {"dwFlags", 4},
                                                  {"wPriority", 2},
                                                  {"wLanguage", 2},
                                                  {"dwInitialFrames", 4},
                                                  {"dwScale", 4},
                                                  {"dwRate", 4},
                                                  {"dwStart", 4},
                                                  {"dwLength", 4},
                                                  {"dwSuggestedBufferSize", 4},
                                                  {"dwQuality", 4},
                                                  {"dwSampleSize", 4},
                                                  {"rcFrame", 8}}};
constexpr std::array<Field, 5> kIndexHeader = {
    {{"wLongsPerEntry", 2}, {"bIndexSubType", 1}, {"bIndexType", 1}, {"nEntriesInUse", 4}, {"dwChunkId", kCode}}};

class Outline {
 public:
  explicit Outline(std::span<const std::byte> avi) : avi_(avi) {}

  std::string text() {
    chunks(0, avi_.size(), 0);
    return text_;
  }

 private:
  void line(std::size_t depth, const std::string& what) { text_ += std::string(depth * 2, ' ') + what + "\n"; }

  /// A code as it stands when it can be printed, else its bytes.
  std::string codeAt(std::size_t offset) const {
    const std::string code = textAt(avi_, offset, 4);
    const bool printable = std::all_of(code.begin(), code.end(), [](char c) { return c >= ' ' && c <= '~'; });
    return printable ? "\"" + code + "\"" : hexAt(avi_, offset, 4);
  }

  std::string valueAt(std::size_t offset, const Field& field) const {
    if (field.size == kCode) return codeAt(offset);
    if (field.size == 1) return std::to_string(number16At(avi_, offset) & 0xffU);
    if (field.size == 2) return std::to_string(number16At(avi_, offset));
    if (field.size == 4) return std::to_string(numberAt(avi_, offset));
    const std::uint64_t value = numberAt(avi_, offset) | std::uint64_t{numberAt(avi_, offset + 4)} << 32U;
    return std::to_string(value);
  }

  template <std::size_t Count>
  std::size_t fields(const std::array<Field, Count>& all, std::size_t offset, std::size_t depth) {
    for (const Field& field : all) {
      line(depth, std::string(field.name) + " " + valueAt(offset, field));
      offset += field.size == kCode ? 4 : field.size;
    }
    return offset;
  }

  void superIndex(std::size_t start, std::size_t end, std::size_t depth) {
    std::size_t at = fields(kIndexHeader, start, depth);
    line(depth, "dwReserved " + hexAt(avi_, at, 12));
    at += 12;
    line(depth, "entry qwOffset " + valueAt(at, {"", 8}) + " dwSize " + valueAt(at + 8, {"", 4}) + " dwDuration " +
                    valueAt(at + 12, {"", 4}));
    at += 16;
    if (at < end) line(depth, "after the entry " + hexAt(avi_, at, end - at));
  }

  void standardIndex(std::size_t start, std::size_t end, std::size_t depth) {
    std::size_t at = fields(kIndexHeader, start, depth);
    line(depth, "qwBaseOffset " + valueAt(at, {"", 8}));
    line(depth, "dwReserved " + valueAt(at + 8, {"", 4}));
    for (at += 12; at + 8 <= end; at += 8) {
      line(depth, "entry dwOffset " + valueAt(at, {"", 4}) + " dwSize " + valueAt(at + 4, {"", 4}));
    }
  }

  void payload(std::size_t start, std::size_t end, std::size_t depth) {
    const std::span<const std::byte> bytes = avi_.subspan(start, end - start);
    const bool uniform = std::all_of(bytes.begin(), bytes.end(), [&](std::byte b) { return b == bytes.front(); });
    if (bytes.size() > 64 && uniform) {
      line(depth, std::to_string(bytes.size()) + " bytes " + hexAt(bytes, 0, 1));
    } else if (!bytes.empty()) {
      line(depth, hexAt(bytes, 0, 64) + (bytes.size() > 64 ? " ..." : ""));
    }
  }

  void chunk(std::string_view code, std::size_t start, std::size_t end, std::size_t depth) {
    if (code == "avih") {
      fields(kMainHeader, start, depth);
    } else if (code == "strh") {
      fields(kStreamHeader, start, depth);
    } else if (code == "indx") {
      superIndex(start, end, depth);
    } else if (code == "ix00" || code == "ix01") {
      standardIndex(start, end, depth);
    } else {
      payload(start, end, depth);
    }
  }

  void chunks(std::size_t start, std::size_t end, std::size_t depth) {
    while (start < end) {
      const std::string place = std::to_string(start) + " ";
      if (end - start < 8) {
        line(depth, place + "rest " + hexAt(avi_, start, end - start));
        return;
      }
      const std::string code = textAt(avi_, start, 4);
      const std::size_t size = numberAt(avi_, start + 4);
      const std::size_t held = std::min(size, end - start - 8);
      const std::string cut = held < size ? " cut short at " + std::to_string(held) : "";
      const bool list = (code == "RIFF" || code == "LIST") && held >= 4;
      line(depth,
           place + codeAt(start) + (list ? " " + codeAt(start + 8) : "") + " size " + std::to_string(size) + cut);
      if (list) {
        chunks(start + 12, start + 8 + held, depth + 1);
      } else {
        chunk(code, start + 8, start + 8 + held, depth + 1);
      }
      start += 8 + held;
    }
  }

  std::span<const std::byte> avi_;
  std::string text_;
};

}  // namespace

std::string outlineOf(std::span<const std::byte> avi) { return Outline(avi).text(); }

}  // namespace zelvo::tests
