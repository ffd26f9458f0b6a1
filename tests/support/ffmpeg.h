/// FFmpeg as maker of sample files and as yardstick: what it reads out of a file, packet by packet.
/// Decision: tests, FFmpeg has to read the packets
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace zelvo::tests {

/// One packet of the stream `stream` (0 video, 1 audio in a rebuilt file); `size` in bytes.
struct Packet {
  int stream = 0;
  std::uint64_t size = 0;
  std::uint32_t checksum = 0;  ///< CRC-32 of its bytes
  friend bool operator==(const Packet&, const Packet&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Packet& packet) {
    return out << packet.stream << ":" << packet.size << ":" << packet.checksum;
  }
};

[[nodiscard]] bool ffmpegIsInstalled();

/// Runs "ffmpeg ARGUMENTS" quietly through the shell; true when it exits with 0.
[[nodiscard]] bool runFfmpeg(const std::string& arguments);

/// The packets of the file as they are stored, neither split nor joined by a parser, stream after stream; nothing when
/// FFmpeg cannot read it.
[[nodiscard]] std::optional<std::vector<Packet>> storedPackets(const std::string& path);

/// How many pictures of the first video stream come out of the decoder; nothing when it cannot be decoded at all.
[[nodiscard]] std::optional<std::uint64_t> decodedPictures(const std::string& path);

/// CRC-32 as FFmpeg's "CRC32" hash computes it.
[[nodiscard]] std::uint32_t checksumOf(std::span<const std::byte> bytes);

}  // namespace zelvo::tests
