/// A JPEG picture of waves and noise, written code by code.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>

#include "platform/bytes.h"

namespace zelvo::tests {

/// What it is like. Sizes are in pixels.
struct MadeJpeg {
  std::uint32_t width = 320;
  std::uint32_t height = 160;
  unsigned sampling = 0x22;  ///< of the first component
  unsigned components = 3;
  unsigned restartUnits = 0;
  unsigned seed = 1;

  [[nodiscard]] platform::Bytes bytes() const;
};

class JpegWriter {
 public:
  explicit JpegWriter(const MadeJpeg& made) : made_(made), random_(made.seed) {}

  platform::Bytes write();

 private:
  static constexpr std::uint32_t kEndCode = 0;  ///< of two bits; the others of the table have eight
  static constexpr std::uint32_t kFirstLongCode = 0x40;

  void put(std::initializer_list<unsigned> values) {
    for (const unsigned value : values) out_.push_back(static_cast<std::byte>(value));
  }
  void bits(std::uint32_t value, unsigned count) {
    for (; count > 0; --count) {
      byte_ = byte_ << 1U | (value >> (count - 1) & 1U);
      if (++filled_ < 8) continue;
      put({byte_});
      if (byte_ == 0xff) put({0});
      byte_ = filled_ = 0;
    }
  }
  void fill() {
    while (filled_ != 0) bits(1, 1);
  }
  /// The bits of a number after those that tell its length.
  void number(int value, unsigned length) {
    bits(static_cast<std::uint32_t>(value < 0 ? value + (1 << length) - 1 : value), length);
  }
  static unsigned lengthOf(int value) {
    unsigned length = 0;
    for (int left = std::abs(value); left > 0; left /= 2) ++length;
    return length;
  }
  void block(int level, int& before) {
    const unsigned length = lengthOf(level - before);
    bits(length, 4);
    number(level - before, length);
    before = level;
    unsigned at = 1;
    for (auto coefficients = random_() % 9; coefficients > 0; --coefficients) {
      const auto run = static_cast<unsigned>(random_() % 4);
      if ((at += run + 1) > 63) break;
      const int value = static_cast<int>(1 + random_() % 6) * (random_() % 2 == 0 ? 1 : -1);
      // The long codes are those of runs from 0 to 15 and lengths from 1 to 10, one after another.
      bits(kFirstLongCode + run * 10 + lengthOf(value) - 1, 8);
      number(value, lengthOf(value));
    }
    bits(kEndCode, 2);
  }

  const MadeJpeg& made_;
  platform::Bytes out_;
  unsigned byte_ = 0;
  unsigned filled_ = 0;
  std::mt19937 random_;
};

inline platform::Bytes JpegWriter::write() {
  const auto [width, height, sampling, components, restartUnits, seed] = made_;
  put({0xff, 0xd8, 0xff, 0xc4, 0, 31, 0x00, 0, 0, 0, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  for (unsigned symbol = 0; symbol < 12; ++symbol) put({symbol});
  put({0xff, 0xc4, 0, 180, 0x10, 0, 1, 0, 0, 0, 0, 0, 160, 0, 0, 0, 0, 0, 0, 0, 0, 0x00});
  for (unsigned run = 0; run < 16; ++run) {
    for (unsigned length = 1; length <= 10; ++length) put({run << 4U | length});
  }
  if (restartUnits != 0) put({0xff, 0xdd, 0, 4, restartUnits >> 8U, restartUnits & 0xffU});
  put({0xff, 0xc0, 0, 8 + 3 * components, 8, height >> 8U, height & 0xffU, width >> 8U, width & 0xffU, components});
  for (unsigned i = 1; i <= components; ++i) put({i, i == 1 ? sampling : 0x11, 0});
  put({0xff, 0xda, 0, 6 + 2 * components, components});
  for (unsigned i = 1; i <= components; ++i) put({i, 0});
  put({0, 63, 0});
  const unsigned across = components == 1 ? 1 : sampling >> 4U;
  const unsigned down = components == 1 ? 1 : sampling & 0xfU;
  const unsigned columns = (width + 8 * across - 1) / (8 * across);
  const unsigned units = columns * ((height + 8 * down - 1) / (8 * down));
  std::array<int, 3> levels{};
  for (unsigned unit = 0; unit < units; ++unit) {
    if (restartUnits != 0 && unit != 0 && unit % restartUnits == 0) {
      fill();
      put({0xff, 0xd0 + (unit / restartUnits - 1) % 8});
      levels.fill(0);
    }
    const int wave = static_cast<int>(60 * std::sin(unit % columns * 0.4)) + static_cast<int>(unit / columns);
    for (unsigned i = 0; i < across * down; ++i) block(wave + static_cast<int>(random_() % 5), levels[0]);
    for (unsigned i = 1; i < components; ++i) block(wave / 2 + static_cast<int>(random_() % 3), levels.at(i));
  }
  fill();
  put({0xff, 0xd9});
  return out_;
}

inline platform::Bytes MadeJpeg::bytes() const { return JpegWriter(*this).write(); }

}  // namespace zelvo::tests
