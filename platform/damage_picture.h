/// The picture of a film's damage: a bar for the damaged file, by byte, and one for each stream of the repaired film,
/// by time. Offsets are in bytes, times in seconds.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo::platform {

/// What a part of a bar is. What no mark covers is `kept`.
enum class DamagePaint : std::uint8_t {
  kept,     ///< as it was
  header,   ///< header lists of the damaged film
  index,    ///< an index of the damaged film
  mended,   ///< wrong, and right again
  hurt,     ///< there, with wrong bytes in it
  lost,     ///< not there
  doubled,  ///< a copy of what is there already; left out
  foreign,  ///< of no film, or of another one; left out
};
inline constexpr std::size_t kDamagePaints = 8;

/// In a legend: texts that a translator knows.
inline constexpr std::array<std::string_view, kDamagePaints> kDamagePaintNames = {"as it was",
                                                                                  "header",
                                                                                  "index",
                                                                                  "mended",
                                                                                  "hurt, kept as it is",
                                                                                  "lost",
                                                                                  "there twice, left out",
                                                                                  "not of this film, left out"};

struct DamageMark {
  static constexpr std::size_t kNoLoss = std::numeric_limits<std::size_t>::max();

  double begin = 0;
  double end = 0;  ///< the same as `begin` where it has no extent
  DamagePaint paint = DamagePaint::lost;
  std::size_t loss = kNoLoss;  ///< index in `DamagePicture::losses`

  friend bool operator==(const DamageMark&, const DamageMark&) = default;
};

struct DamageBar {
  std::string name;    ///< what it stands for
  std::string length;  ///< how long it is, as a person reads it
  double extent = 0;   ///< from 0 to here
  bool isTime = false;
  std::vector<DamageMark> marks;  ///< in the order in which they are painted: later ones over earlier ones

  friend bool operator==(const DamageBar&, const DamageBar&) = default;
};

/// One stretch of damage.
struct DamageLoss {
  std::string words;   ///< what happened there, as a person reads it
  double seconds = 0;  ///< where it begins, on the clock of the repaired film

  friend bool operator==(const DamageLoss&, const DamageLoss&) = default;
};

struct DamagePicture {
  std::vector<DamageBar> bars;      ///< the file's first
  std::vector<DamageLoss> losses;   ///< rising by where they lie in the damaged file
  std::uint64_t lossesLeftOut = 0;  ///< for which there was no room

  friend bool operator==(const DamagePicture&, const DamagePicture&) = default;
};

}  // namespace zelvo::platform
