/// A small film whose payloads all differ, so that it can be told where each of them went.
#pragma once

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/salvage/planned_film.h"

namespace zelvo::tests {

/// Pictures of many sizes, each followed by its sound: chunk 2 k is a picture, chunk 2 k + 1 the sound. Sound is PCM of
/// 8000 samples a second in two channels, 1280 bytes for each of 25 pictures a second.
struct MadeFilm {
  static constexpr std::uint32_t kSound = 1280;

  explicit MadeFilm(int pairs = 40, unsigned seed = 1, bool withIndex = true) {
    std::mt19937 random(seed);
    AviBuilder builder;
    builder.videoHandler = builder.videoCompression = "ZZZZ";
    builder.withIndex = withIndex;
    for (int i = 0; i < pairs; ++i) {
      builder.chunks.push_back({"00dc", static_cast<std::uint32_t>(900 + random() % 800)});
      builder.chunks.push_back({"01wb", kSound});
    }
    bytes = builder.build();
    headers = chunkOffsets(builder);
    for (std::size_t i = 0; i < headers.size(); ++i) {
      // No byte of a payload is one of a code, and no sound is louder than a tenth.
      for (std::uint32_t k = 0; k < builder.chunks[i].size; ++k) {
        const bool isQuiet = i % 2 == 1 && k % 2 == 1;
        at(headers[i] + 8 + k) = static_cast<std::byte>(isQuiet ? random() % 10 : 0x80 + random() % 0x80);
      }
      if (i % 2 == 0) overwriteNumber(bytes, static_cast<std::size_t>(headers[i] + 8), 0x87654321);
      payloads.push_back(part(headers[i] + 8, builder.chunks[i].size));
    }
    const auto main = positionOf("avih");
    overwriteNumber(bytes, main + 24, static_cast<std::uint32_t>(pairs));                // dwTotalFrames
    overwriteNumber(bytes, positionOf("vids") + 32, static_cast<std::uint32_t>(pairs));  // dwLength
    const auto sound = positionOf("auds");
    overwriteNumber(bytes, sound + 20, 4);           // dwScale
    overwriteNumber(bytes, sound + 24, 32'000);      // dwRate
    overwriteNumber(bytes, sound + 44, 4);           // dwSampleSize
    overwriteNumber(bytes, sound + 64, 0x00020001);  // wFormatTag, nChannels
    overwriteNumber(bytes, sound + 68, 8000);        // nSamplesPerSec
    overwriteNumber(bytes, sound + 76, 0x00100004);  // nBlockAlign, wBitsPerSample
  }

  [[nodiscard]] std::size_t positionOf(std::string_view code) const {
    platform::Bytes letters;
    appendText(letters, code);
    return static_cast<std::size_t>(std::search(bytes.begin(), bytes.end(), letters.begin(), letters.end()) -
                                    bytes.begin());
  }
  [[nodiscard]] std::byte& at(std::uint64_t offset) { return bytes[static_cast<std::size_t>(offset)]; }
  [[nodiscard]] platform::Bytes part(std::uint64_t offset, std::uint64_t size) const {
    const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    return {from, from + static_cast<std::ptrdiff_t>(size)};
  }
  void remove(std::uint64_t offset, std::uint64_t size) {
    const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
    bytes.erase(from, from + static_cast<std::ptrdiff_t>(size));
  }
  void insert(std::uint64_t offset, const platform::Bytes& added) {
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(offset), added.begin(), added.end());
  }
  void fill(std::uint64_t offset, std::uint64_t size, std::byte value = std::byte{0}) {
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), size, value);
  }
  void cut(std::uint64_t size) { bytes.resize(static_cast<std::size_t>(size)); }
  [[nodiscard]] std::uint64_t indexBegin() const { return headers.back() + 8 + payloads.back().size() + 8; }

  platform::Bytes bytes;
  std::vector<std::uint64_t> headers;     ///< in the undamaged film
  std::vector<platform::Bytes> payloads;  ///< the same
};

/// Bytes that no code occurs in.
[[nodiscard]] inline platform::Bytes noise(std::size_t size, unsigned seed = 7) {
  std::mt19937 random(seed);
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(0x80 + random() % 0x80);
  return bytes;
}

/// What a slot's payload is in the repaired film; silence is zero.
[[nodiscard]] inline platform::Bytes contentOf(const PlannedFilm& planned, const salvage::Slot& slot) {
  platform::Bytes content;
  if (!slot.hasSource()) return platform::Bytes(slot.size);
  if (slot.pieces == salvage::Slot::kOnePiece) return planned.scanned.input->readBytes(slot.source, slot.size);
  for (std::size_t i = slot.pieces; content.size() < slot.size; ++i) {
    const salvage::Piece& piece = planned.plan.pieces.at(i);
    const bool isSilence = piece.offset == salvage::Piece::kSilence;
    const auto bytes =
        isSilence ? platform::Bytes(piece.size) : planned.scanned.input->readBytes(piece.offset, piece.size);
    content.insert(content.end(), bytes.begin(), bytes.end());
  }
  return content;
}

/// Slot by slot: the number of the chunk whose payload it has, whatever its state; else what it is, "lost", "torn" and
/// the like, with the stream's number.
[[nodiscard]] inline std::vector<std::string> fates(const PlannedFilm& planned, const MadeFilm& film) {
  static constexpr const char* kStates[] = {"other", "size", "code", "rejoined", "damaged",
                                            "torn",  "cut",  "lost", "refilled"};
  std::map<platform::Bytes, std::size_t> numbers;
  for (std::size_t i = 0; i < film.payloads.size(); ++i) numbers[film.payloads[i]] = i;
  std::vector<std::string> words;
  for (const salvage::Slot& slot : planned.plan.slots) {
    const auto found = slot.hasSource() ? numbers.find(contentOf(planned, slot)) : numbers.end();
    words.push_back(found != numbers.end() ? std::to_string(found->second)
                                           : kStates[static_cast<int>(slot.state)] + std::to_string(slot.stream));
  }
  return words;
}

/// "0", "1" and so on, but for those that `instead` names.
[[nodiscard]] inline std::vector<std::string> allBut(std::size_t count,
                                                     const std::map<std::size_t, std::string>& instead = {}) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < count; ++i) {
    const auto found = instead.find(i);
    words.push_back(found != instead.end() ? found->second : std::to_string(i));
  }
  return words;
}

}  // namespace zelvo::tests
