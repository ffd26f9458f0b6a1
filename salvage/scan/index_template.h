/// What the indexes of a film tell of it as it was: one list of chunks by their original offsets. Later stages lay it
/// over the damaged bytes. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "avi/input_file.h"
#include "salvage/scan/media_scan.h"
#include "salvage/scan/stream_codes.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

/// A chunk of the original film: 16 bytes.
struct TemplateEntry {
  std::uint64_t offset = 0;  ///< of its header in the original
  std::uint32_t size = 0;    ///< of its payload
  std::uint8_t stream = 0;   ///< 0 to 99
  std::uint8_t suffix = 0;   ///< number of its suffix in StreamCodes; what the standard index names, for those
  bool isKey = false;        ///< AVIIF_KEYFRAME, or bit 31 clear
  bool isForeign = false;    ///< named by a foreign index alone

  [[nodiscard]] std::uint64_t end() const { return offset + 8 + size; }
};
static_assert(sizeof(TemplateEntry) == 16);

/// Whether an index is of the film that the headers tell of.
enum class Belonging {
  unknown,  ///< nothing is left to compare it with
  belongs,
  foreign,  ///< every witness contradicts it
};

/// One index that the template was made from.
struct TemplateSource {
  std::uint64_t offset = 0;   ///< of its first entry in the damaged file
  std::uint64_t entries = 0;  ///< that were read, lists not counted
  Belonging belonging = Belonging::unknown;
  std::uint32_t entrySize = 16;  ///< of a table; 8 of a standard index
};

struct IndexTemplate {
  std::vector<TemplateEntry> entries;    ///< rising, without overlaps
  std::vector<TemplateSource> tables;    ///< of 16-byte entries; parts of one "idx1" are judged together
  std::vector<TemplateSource> standard;  ///< standard indexes
  std::int64_t tableBase = 0;            ///< what was added to the offsets of the tables
  std::uint64_t overlapping = 0;         ///< entries dropped, since they overlapped better ones
  std::uint64_t repeated = 0;            ///< entries that another index names as well
  std::uint64_t leftOut = 0;             ///< entries that found no room or that lie beyond all files
};

/// Entries beyond this number are left out: 48 MiB. Of a short file fewer are kept: as many as a whole film of chunks
/// of 88 bytes has, and an eighth of a million more, so that the time for a file grows with its size.
inline constexpr std::size_t kMaxTemplateEntries = 3'000'000;

/// Reads the indexes that the scan found and merges them by original offset. Where entries overlap, one whose header
/// stands just there stays, else the one that ends first, so that a wild size costs that entry alone.
/// O(e log e + c) in time.
/// Failure: entries that cannot be read are missing.
/// Thread: any.
[[nodiscard]] IndexTemplate indexTemplate(avi::InputFile& input, const SurvivingHeaders& headers,
                                          const StreamCodes& codes, const MediaScan& scan,
                                          std::size_t mostEntries = kMaxTemplateEntries);

}  // namespace zelvo::salvage
