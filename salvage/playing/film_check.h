/// Whether a film plays: its container looked at, all of it decoded as a player would, and jumped about in. Offsets and
/// sizes are in bytes, times in seconds.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/film_player.h"
#include "salvage/playing/container_check.h"
#include "salvage/playing/key_flags.h"
#include "salvage/playing/play_tally.h"

namespace zelvo::salvage {

enum class FilmVerdict : std::uint8_t {
  plays,       ///< throughout
  faults,      ///< something is wrong
  unreadable,  ///< it cannot be read, or no player knows it, or there is none
};

struct FilmCheck {
  ContainerCheck container;
  PlayTally play;
  platform::PlayEnd end = platform::PlayEnd::played;
  /// Entries of the indexes that call a picture a key which is none, as decoding shows.
  std::vector<KeyEntry> falseKeys;
  bool wasConfined = false;  ///< the decoders could do no harm

  [[nodiscard]] FilmVerdict verdict() const;
  [[nodiscard]] std::uint64_t wrongSeeks() const;
  /// Pictures that an index falsely calls keys. Several indexes may name the same.
  [[nodiscard]] std::uint64_t falseKeyPictures() const;
  /// Errors of a kind of stream.
  [[nodiscard]] std::uint64_t errorsOf(platform::PlayedKind kind) const;
};

/// Whether sound runs away from its own clock so far that people notice.
[[nodiscard]] bool isCreeping(const PlayedStreamTally& stream);

struct FilmCheckRun {
  platform::ReadableFile& file;
  std::string path;  ///< of that very file
  platform::FilmPlayer& player;
  platform::PlayChoices choices;
  const platform::CancelMark& cancel;
  /// Hears where in the file the player is. May be called many times a second.
  std::function<void(std::uint64_t offset)> progress = {};
};

/// Thread: any; as long as decoding lasts. Throws std::bad_alloc alone.
[[nodiscard]] FilmCheck checkFilm(const FilmCheckRun& run);

}  // namespace zelvo::salvage
