/// AVI files made in memory: just large enough to be repaired, with every part that a test may want to leave out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zelvo::tests {

struct SmallAvi {
  std::size_t frames = 150;      ///< pairs of a "00dc" and a "01wb" chunk
  std::size_t frameSize = 4000;  ///< bytes of each "00dc" payload
  std::size_t soundSize = 400;   ///< bytes of each "01wb" payload
  bool hasMainHeader = true;
  bool hasVideoHeader = true;
  bool hasAudioHeader = true;
  bool hasVideoCompression = true;  ///< biCompression is set
  std::string_view videoHandler = "MJPG";
  bool hasIndex = true;  ///< an "idx1" after the data

  [[nodiscard]] std::string bytes() const;
};

/// A file of 5 MB whose repair is 2 GB long, since its accepted chunks lie over each other: 400 of 5,000,000 bytes.
[[nodiscard]] std::string overlappingAvi(std::size_t chunks = 400);

/// Four bytes, the least significant first.
[[nodiscard]] std::string le32(std::uint64_t number);
[[nodiscard]] std::string le16(std::uint64_t number);
/// A chunk: code, size, payload and, after an odd one, a pad byte.
[[nodiscard]] std::string chunk(std::string_view id, std::string_view payload);
/// A list or form of the type, with what it holds.
[[nodiscard]] std::string list(std::string_view id, std::string_view type, std::string_view content);

}  // namespace zelvo::tests
