/// A film in memory, damaged by chance, with what a deep repair keeps of it and what a quick look says of that.
#pragma once

#include <algorithm>
#include <random>
#include <string>

#include "platform/headless/workers.h"
#include "salvage/triage/triage.h"
#include "tests/salvage/made_film.h"
#include "tests/salvage/salvage_bench.h"

namespace zelvo::tests {

/// Reads of it are counted.
class CountedFile final : public platform::ReadableFile {
 public:
  explicit CountedFile(const platform::Bytes& bytes) : bytes_(bytes) {}
  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    ++reads;
    if (offset >= bytes_.size()) return {};
    const std::size_t count = std::min<std::size_t>(into.size(), bytes_.size() - offset);
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, into.begin());
    bytesRead += count;
    return {count, {}};
  }
  std::uint64_t size() override { return bytes_.size(); }

  std::uint64_t reads = 0;
  std::uint64_t bytesRead = 0;

 private:
  const platform::Bytes& bytes_;
};

[[nodiscard]] inline salvage::TriageReport triageOf(const platform::Bytes& bytes, salvage::TriageLimits limits = {},
                                                    const salvage::FilmRescue* rescue = nullptr) {
  CountedFile file(bytes);
  const platform::CancelMark cancel;
  platform::headless::HeadlessWorkers workers;
  return salvage::triage({.input = file, .rescue = rescue, .cancel = cancel, .workers = workers, .limits = limits});
}

/// What the deep repair itself keeps.
[[nodiscard]] inline double keptOf(const platform::Bytes& bytes) {
  SalvageBench bench(bytes);
  bench.isDry = true;
  return salvage::keptShare(bench.perform());
}

struct ChanceDamage {
  std::string name;
  platform::Bytes bytes;
};

/// One to three kinds of damage, from slight to nearly total.
[[nodiscard]] inline ChanceDamage damagedByChance(const MadeFilm& film, unsigned seed) {
  constexpr std::size_t kSector = 512;
  std::mt19937 random(seed);
  ChanceDamage made{"seed " + std::to_string(seed) + ":", film.bytes};
  platform::Bytes& bytes = made.bytes;
  const auto below = [&](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
  const auto iter = [&](std::size_t offset) { return bytes.begin() + static_cast<std::ptrdiff_t>(offset); };
  const auto stretch = [&](std::size_t most) {
    const std::size_t size = std::min(bytes.size(), (1 + below(most / kSector + 1)) * kSector);
    return std::pair(below(bytes.size() - size + 1) / kSector * kSector, size);
  };
  const auto overwrite = [&](std::size_t offset, std::size_t size, bool withNoise) {
    size = std::min(size, bytes.size() - offset);
    for (std::size_t i = 0; i < size; ++i)
      bytes[offset + i] = withNoise ? static_cast<std::byte>(random()) : std::byte{0};
  };
  const std::size_t kinds = 1 + below(3);
  for (std::size_t i = 0; i < kinds && bytes.size() > 4 * kSector; ++i) {
    const bool withNoise = below(2) == 0;
    switch (below(8)) {
      case 0: {  // many bad sectors
        const std::size_t step = 8 + below(200);
        made.name += " sectors";
        for (std::size_t at = below(step) * kSector; at + kSector < bytes.size(); at += (1 + below(2 * step)) * kSector)
          overwrite(at, kSector * (1 + below(8)), withNoise);
        break;
      }
      case 1: {  // one long stretch
        const auto [offset, size] = stretch(bytes.size() * 3 / 4);
        made.name += " stretch";
        overwrite(offset, size, withNoise);
        break;
      }
      case 2:
        made.name += " cut";
        bytes.resize(bytes.size() / 10 + below(bytes.size() * 9 / 10));
        break;
      case 3: {
        made.name += " front";
        overwrite(0, below(bytes.size() / 3), withNoise);
        break;
      }
      case 4: {
        const auto [offset, size] = stretch(bytes.size() / 2);
        made.name += " missing";
        bytes.erase(iter(offset), iter(offset + size));
        break;
      }
      case 5: {  // what was reserved for the film and never written
        const std::size_t held = bytes.size();
        made.name += " tail";
        bytes.resize(held + below(held));
        overwrite(held, bytes.size() - held, withNoise);
        break;
      }
      case 6: {
        const auto [offset, size] = stretch(bytes.size() / 2);
        made.name += " inserted";
        const platform::Bytes foreign = noise(size, seed);
        bytes.insert(iter(offset), foreign.begin(), foreign.end());
        break;
      }
      default: {
        made.name += " index";
        const std::size_t from = std::min<std::size_t>(bytes.size(), film.indexBegin());
        overwrite(from, bytes.size() - from, withNoise);
      }
    }
  }
  return made;
}

}  // namespace zelvo::tests
