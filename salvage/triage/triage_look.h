/// What a stretch of a file holds, by its bytes alone. Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "salvage/scan/stream_codes.h"
#include "salvage/triage/triage_sample.h"

namespace zelvo::salvage {

enum class TriageKind : std::uint8_t {
  film,         ///< chunks of pictures and sound, headers, indexes
  zeros,        ///< whole sectors
  noise,        ///< every byte value is as frequent as any other: random or encrypted
  text,         ///< readable text
  otherFormat,  ///< begins with the signature of another format
  unreadable,   ///< the disk did not give it
  unrescued,    ///< a rescue map says so
  unknown,      ///< nothing of these
};
inline constexpr std::size_t kTriageKinds = 8;

/// Bytes of a film's stream, or of no stream: headers, indexes, padding.
struct TriageClaim {
  static constexpr std::uint8_t kNoStream = 0xff;

  std::uint64_t begin = 0;  ///< in the file
  std::uint64_t end = 0;    ///< not beyond its extent
  std::uint8_t stream = kNoStream;
  bool isProved = false;  ///< it ends where the next one begins
};

struct TriageChunk {
  std::uint32_t payload = 0;
  std::uint8_t stream = 0;  ///< its number
};

/// The chunks that begin in an extent, rising and apart.
struct TriageClaims {
  std::vector<TriageClaim> claims;
  TriageChunk largest;                ///< of those that end where the next begins
  std::vector<TriageChunk> unproved;  ///< those of whose end nothing is seen
  bool hasIndex = false;              ///< an index, or a part of one, stands there
};

/// `from`: where in the file chunks may begin; headers stand before it.
/// Thread: any.
[[nodiscard]] TriageClaims claimChunks(const TriageExtent& extent, std::uint64_t from, const StreamCodes& codes,
                                       std::uint64_t fileSize);

struct TriageTally {
  std::array<std::uint64_t, kTriageKinds> bytes{};       ///< by TriageKind
  std::array<std::uint64_t, kMaxStreams + 1> streams{};  ///< of `film`, by number; the last: of no stream
  std::uint64_t kept = 0;                                ///< claimed for streams that are recognised, zeros too
  std::string_view format;                               ///< of the first signature that was met

  [[nodiscard]] std::uint64_t of(TriageKind kind) const { return bytes[static_cast<std::size_t>(kind)]; }
  void add(const TriageTally& other);
};

/// What is known of a stream.
struct StreamTrait {
  bool isRecognised = false;  ///< a deep repair keeps its chunks
  bool holdsZeros = false;    ///< its payloads have zeros of their own
};
using StreamTraits = std::array<StreamTrait, kMaxStreams>;

/// Sorts the bytes of an extent. `streams`: by number.
/// Thread: any.
[[nodiscard]] TriageTally tallyExtent(const TriageExtent& extent, const std::vector<TriageClaim>& claims,
                                      const StreamTraits& streams);

}  // namespace zelvo::salvage
