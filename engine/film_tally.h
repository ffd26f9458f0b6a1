/// What the sample scan has found, added up as it comes, and how much of the damaged film that is. Offsets and sizes
/// are in bytes.
#pragma once

#include <cstdint>

namespace zelvo::avi {
class InputFile;
}

namespace zelvo::engine {

/// A data chunk that was recorded.
struct FoundChunk {
  std::uint64_t position = 0;   ///< of its code
  std::uint64_t size = 0;       ///< payload
  bool isSound = false;         ///< "01wb"
  bool isBlank = false;         ///< nothing but zero bytes
  bool isPaddedBehind = false;  ///< a "JUNK" chunk follows
};

/// Counts each byte of the file once, whatever chunks lie within others.
/// Thread: one.
class FilmTally {
 public:
  /// Chunks come in file order. One that lies before the last, since positions beyond 4 GiB are those of the beginning
  /// again, was added before and is left out.
  void add(const FoundChunk& chunk);

  [[nodiscard]] std::uint64_t pictures() const { return pictures_; }  ///< blank ones left out
  [[nodiscard]] std::uint64_t blankPictures() const { return blankPictures_; }
  [[nodiscard]] std::uint64_t soundChunks() const { return soundChunks_; }
  [[nodiscard]] std::uint64_t soundBytes() const { return soundBytes_; }  ///< payloads
  /// Bytes of chunks, headers and pad bytes included, blank pictures left out.
  [[nodiscard]] std::uint64_t kept() const { return kept_; }
  /// Bytes of "JUNK" between chunks, of which some cameras write much: they are no part of the film.
  [[nodiscard]] std::uint64_t padding() const { return padding_; }
  [[nodiscard]] std::uint64_t begin() const { return begin_; }  ///< of the first chunk
  [[nodiscard]] std::uint64_t end() const { return end_; }      ///< after the last one; 0 when there is none

 private:
  std::uint64_t pictures_ = 0;
  std::uint64_t blankPictures_ = 0;
  std::uint64_t soundChunks_ = 0;
  std::uint64_t soundBytes_ = 0;
  std::uint64_t kept_ = 0;
  std::uint64_t padding_ = 0;
  std::uint64_t begin_ = 0;
  std::uint64_t end_ = 0;
  std::uint64_t last_ = 0;  ///< position of the chunk added last
  bool isPaddedBehind_ = false;
};

/// Where the film's data lies in the damaged file.
struct FilmRange {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

/// Looks for the "movi" list from chunk to chunk, and takes its size where that can be true: within the file, and not
/// before the end of what was found. Elsewhere the film ends at the index ("idx1") after what was found, or with the
/// file. Standard indexes ("ix##") among the list's first chunks are no film: `end` lies before the film's by their
/// length. Without a list it begins with what was found, or where headers end at the latest. Some dozen small reads,
/// whose failures are not remembered.
/// Thread: one.
[[nodiscard]] FilmRange filmRange(avi::InputFile& input, const FilmTally& tally);

/// How much of the film `range` was kept, 0 to 1. `unreadable` bytes of it could not be read.
[[nodiscard]] double keptShare(const FilmTally& tally, const FilmRange& range, std::uint64_t unreadable);

}  // namespace zelvo::engine
