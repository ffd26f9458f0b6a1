/// What is wrong with a film's container, without a look into its payloads: sizes that do not fit, bytes that are no
/// chunk, index entries that point at nothing, an index that is missing. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "avi/outline.h"
#include "avi/read_failures.h"

namespace zelvo::salvage {

/// A stream whose header promises more pictures than the film holds.
struct ShortStream {
  std::uint32_t stream = 0;
  std::uint64_t promised = 0;  ///< dwLength
  std::uint64_t found = 0;     ///< chunks
  std::uint64_t offset = 0;    ///< of the header

  friend bool operator==(const ShortStream&, const ShortStream&) = default;
};

struct ContainerCheck {
  /// Of these, the first are kept.
  static constexpr std::size_t kMaxProblems = 100;
  /// So many chunks may be missing from an index, or from what a header promises, or a hundredth of them.
  static constexpr std::uint64_t kFew = 2;

  std::vector<avi::Problem> problems;  ///< that a player may stumble over
  std::uint64_t problemCount = 0;
  std::uint64_t harmless = 0;  ///< bytes after the film's end, which no player looks at
  std::uint64_t chunks = 0;    ///< of streams
  std::uint64_t indexed = 0;   ///< of these, that the fullest kind of index has entries for
  std::vector<ShortStream> shortStreams;
  avi::ReadFailures readFailures;
  bool isAvi = false;

  [[nodiscard]] bool lacksIndex() const { return chunks > 0 && indexed == 0; }
  /// Whether an index is there and leaves a part of the film out.
  [[nodiscard]] bool hasShortIndex() const;
  /// Takes it back that a stream is short of pictures when so many were met elsewhere: a wrong size may hide chunks
  /// from a walk through the container that a player finds all the same.
  void metPictures(std::uint32_t stream, std::uint64_t pictures);
  [[nodiscard]] bool isFaultless() const {
    return problemCount == 0 && !lacksIndex() && !hasShortIndex() && shortStreams.empty();
  }
};

/// Thread: any; as long as reading the file takes. `isEnding` ends it early, with what was found until then.
[[nodiscard]] ContainerCheck checkContainer(platform::ReadableFile& file, const std::function<bool()>& isEnding);

}  // namespace zelvo::salvage
