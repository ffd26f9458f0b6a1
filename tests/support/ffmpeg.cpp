#include "tests/support/ffmpeg.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace zelvo::tests {

namespace {

constexpr auto kProgram = "ffmpeg -nostdin -hide_banner -v error -y ";

struct Finished {
  std::string output;
  bool good = false;
};

Finished run(const std::string& command) {
  Finished finished;
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return finished;
  std::array<char, 4096> buffer{};
  for (std::size_t count = 0; (count = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    finished.output.append(buffer.data(), count);
  }
  finished.good = ::pclose(pipe) == 0;
  return finished;
}

std::string quoted(const std::string& path) { return "'" + path + "'"; }

/// Lines "stream, dts, pts, duration, size, hash"; others begin with '#'.
std::vector<Packet> packetsIn(const std::string& listing) {
  std::vector<Packet> packets;
  std::istringstream lines(listing);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::array<std::string, 6> fields;
    std::istringstream columns(line);
    for (std::string& field : fields) std::getline(columns, field, ',');
    packets.push_back({std::atoi(fields[0].c_str()), std::strtoull(fields[4].c_str(), nullptr, 10),
                       static_cast<std::uint32_t>(std::strtoul(fields[5].c_str(), nullptr, 16))});
  }
  return packets;
}

}  // namespace

bool ffmpegIsInstalled() { return run("ffmpeg -version 2>/dev/null").good; }

bool runFfmpeg(const std::string& arguments) { return run(kProgram + arguments).good; }

std::optional<std::vector<Packet>> storedPackets(const std::string& path) {
  const Finished finished = run(std::string(kProgram) + "-fflags +nofillin+noparse -i " + quoted(path) +
                                " -map 0 -copy_unknown -c copy -f framehash -hash CRC32 - 2>/dev/null");
  if (!finished.good) return std::nullopt;
  std::vector<Packet> packets = packetsIn(finished.output);
  std::stable_sort(packets.begin(), packets.end(),
                   [](const Packet& a, const Packet& b) { return a.stream < b.stream; });
  return packets;
}

std::optional<std::uint64_t> decodedPictures(const std::string& path) {
  const Finished finished = run(std::string(kProgram) + "-i " + quoted(path) +
                                " -map 0:v:0 -fps_mode passthrough -f framehash -hash CRC32 - 2>/dev/null");
  if (!finished.good) return std::nullopt;
  return packetsIn(finished.output).size();
}

std::uint32_t checksumOf(std::span<const std::byte> bytes) {
  std::uint32_t sum = 0xffffffff;
  for (const std::byte byte : bytes) {
    sum ^= std::to_integer<std::uint32_t>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1U) != 0 ? sum >> 1U ^ 0xedb88320U : sum >> 1U;
  }
  return ~sum;
}

}  // namespace zelvo::tests
