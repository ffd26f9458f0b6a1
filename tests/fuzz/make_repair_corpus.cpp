// Writes the seeds of repair_fuzz, whole_run_fuzz and salvage_fuzz: make_repair_corpus FOLDER (tests/fuzz/corpus in the
// repository).
#include <algorithm>
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

/// A small film of `pairs` pictures with sound, and what is done to it.
bool writeSalvageSeeds(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  const auto film = [](int pairs) {
    AviBuilder avi;
    avi.interleaved(pairs, 301, 80);
    avi.chunks[3].size = 97;  // not all of one size
    avi.chunks[6].size = 0;
    return avi;
  };
  const Bytes whole = film(12).build();
  const auto begin = [](auto& bytes) { return bytes.begin(); };
  bool good = write(folder / "whole", whole);
  AviBuilder bare = film(12);
  bare.withIndex = false;
  good = good && write(folder / "no_index", bare.build());
  bare.withAudioStream = false;
  good = good && write(folder / "no_index_no_sound_header", bare.build());
  good = good && write(folder / "headers_only", film(12).headers());
  good = good && write(folder / "cut", Bytes(begin(whole), begin(whole) + 3000));
  good = good && write(folder / "no_front", Bytes(begin(whole) + 700, whole.end()));
  for (const std::ptrdiff_t at : {100, 1500, 2600, 4000}) {
    Bytes zeroed = whole;
    std::fill(begin(zeroed) + at, begin(zeroed) + at + 250, std::byte{0});
    Bytes missing = whole;
    missing.erase(begin(missing) + at, begin(missing) + at + 333);
    Bytes inserted = whole;
    inserted.insert(begin(inserted) + at, 777, std::byte{0x30});
    Bytes doubled = whole;
    doubled.insert(begin(doubled) + at, begin(whole) + 1000, begin(whole) + 2200);
    const std::string place = "_" + std::to_string(at);
    good = good && write(folder / ("zeroed" + place), zeroed) && write(folder / ("missing" + place), missing) &&
           write(folder / ("inserted" + place), inserted) && write(folder / ("doubled" + place), doubled);
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
  if (!zelvo::tests::writeRepairSeeds(folder / "repair") || !zelvo::tests::writeWholeRunSeeds(folder / "whole_run") ||
      !zelvo::tests::writeSalvageSeeds(folder / "salvage")) {
    std::fprintf(stderr, "cannot write into %s\n", argv[1]);
    return 1;
  }
  return 0;
}
