/// What came of a repair. Sizes and offsets are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "avi/input_file.h"
#include "avi/write_failure.h"
#include "platform/film_report.h"
#include "platform/rejection.h"

namespace zelvo::engine {

/// An input of this size or a smaller one is not repaired.
inline constexpr std::uint64_t kLargestUnsupported = 524288;

/// How far a run came.
enum class RunEnd {
  none,          ///< it has not ended, was cancelled before its first step, or ran out of memory or threads
  invalid,       ///< no AVI code in the first ten blocks
  notSupported,  ///< a header is missing, or the file is 512 KiB or less
  searched,      ///< a check: what a repair would keep is known
  rebuilt,       ///< the file was written as far as no stop or write error cut it short
  refused,       ///< the output was refused; no file was created
  abandoned,     ///< nobody waits for it any more
};

enum class StreamKind { video, audio };

/// The chunks of one stream that were found.
struct StreamReport {
  StreamKind kind = StreamKind::video;
  std::string codec;  ///< fccHandler as a person reads it; "Unknown" for an audio one of zero bytes
  std::optional<std::uint32_t> formatTag;  ///< audio: wFormatTag
  std::uint64_t chunks = 0;
  std::uint64_t bytes = 0;  ///< what their size fields claim, payloads alone
};

/// Which descriptions the first 50 blocks hold.
struct HeadersFound {
  bool main = false;
  bool videoHeader = false;
  bool videoFormat = false;
  bool audioHeader = false;
  bool audioFormat = false;
};

struct RepairReport {
  RunEnd end = RunEnd::none;
  HeadersFound headers;
  platform::Rejection rejection{};  ///< of a film that is not supported

  // Once the input was searched.
  std::vector<StreamReport> streams;  ///< in the order in which they are written
  platform::FilmReport film;
  std::uint64_t samplesLeftOut = 0;  ///< chunks that were accepted and found their table full
  std::uint64_t repeatedChunks = 0;  ///< entries whose offset an earlier entry of the same stream holds
  std::uint64_t bytes = 0;           ///< length of the file that a repair writes

  avi::ReadFailures readFailures;
  std::optional<avi::WriteFailure> writeFailure;  ///< the first; a lack of memory or threads is one at byte 0
};

}  // namespace zelvo::engine
