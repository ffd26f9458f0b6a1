// Writes the seeds of repair_fuzz and whole_run_fuzz: make_repair_corpus FOLDER (tests/fuzz/corpus in the repository).
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/fuzz/repair_input.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

constexpr std::size_t kLargestSeed = 12000;

bool write(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream file(path, std::ios::binary);
  for (const std::byte byte : bytes) file.put(static_cast<char>(byte));
  return static_cast<bool>(file);
}

bool writeRepairSeeds(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  int written = 0;
  for (std::uint64_t seed = 1; written < 24; ++seed) {
    DamageGenerator generator(seed);
    RepairInput input{generator.small(), {}};
    if (input.input.bytes.size() > kLargestSeed) continue;
    if (seed % 4 == 1) input.stops.duringBlock = 1 + generator.below(5);
    if (seed % 4 == 2) input.stops.beforeVideo = true;
    if (seed % 4 == 3) input.stops.duringVideo = true;
    input.stops.byCancelMark = generator.chance(50);
    if (!write(folder / ("small_" + std::to_string(seed)), encodeRepairInput(input))) return false;
    ++written;
  }
  RepairInput dense{DamageGenerator(1).dense(6000, 6000), {}};
  return write(folder / "dense", encodeRepairInput(dense)) && write(folder / "empty", {});
}

bool writeWholeRunSeeds(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  AviBuilder avi;
  bool good = write(folder / "headers_only", avi.headers());
  avi.interleaved(6, 101, 40);
  Bytes bytes = avi.build();
  bytes.resize(bytes.size() + (bytes.size() % 8 == 0 ? 1 : 0));
  good = good && write(folder / "undamaged", bytes);
  int written = 0;
  for (std::uint64_t seed = 1; written < 16; ++seed) {
    const DamagedInput input = DamageGenerator(seed).wholeFile(static_cast<int>(1 + seed % 9));
    if (input.bytes.size() > kLargestSeed) continue;
    good = good && write(folder / ("damaged_" + std::to_string(seed)), input.bytes);
    ++written;
  }
  return good;
}

}  // namespace
}  // namespace zelvo::tests

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_repair_corpus FOLDER\n", stderr);
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  if (!zelvo::tests::writeRepairSeeds(folder / "repair") || !zelvo::tests::writeWholeRunSeeds(folder / "whole_run")) {
    std::fprintf(stderr, "cannot write into %s\n", argv[1]);
    return 1;
  }
  return 0;
}
