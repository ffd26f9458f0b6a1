/// What a repair has found out so far: where it is in the input, what the header lists say, which chunks there are, and
/// the layout of the rebuilt file. The stages fill it one after the other. Blocks are 1024 bytes and numbered from 1;
/// offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "avi/chunk_run.h"
#include "avi/write_failure.h"
#include "engine/film_tally.h"
#include "engine/format_payload.h"
#include "engine/rebuilt_layout.h"
#include "engine/sample_tables.h"
#include "platform/bytes.h"
#include "platform/guarded.h"
#include "platform/relaxed.h"

namespace zelvo::engine {

/// 32 MiB of tables hang on it. Thread: the one that repairs; what is Relaxed or Guarded any other too.
struct RepairState {
 private:
  std::unique_ptr<SampleTables> tables_;

 public:
  RepairState();
  RepairState(const RepairState&) = delete;
  RepairState& operator=(const RepairState&) = delete;

  // ---- Scan cursor ----

  platform::Relaxed<std::uint32_t> sector;           ///< block examined now, from 1
  std::uint32_t mod = 0;                             ///< `inputfilesize` modulo 1024
  platform::Relaxed<std::uint32_t> numberofsectors;  ///< blocks in the input, the last partial one included
  std::uint64_t currentoffset = 0;                   ///< start of the block examined now
  bool validitycheck = false;
  bool db = false;  ///< the first code met was "00db"

  // ---- Harvested header data ----

  platform::Bytes avihdata1;   ///< avih cb, dwMicroSecPerFrame, dwMaxBytesPerSec, dwPaddingGranularity, dwFlags
  platform::Bytes avihdata2;   ///< dwInitialFrames, dwStreams, dwSuggestedBufferSize, dwWidth, dwHeight, dwReserved[4]
  platform::Bytes videocodec;  ///< fccHandler of the video stream header
  platform::Guarded<std::optional<std::string>> videocodecstring;
  platform::Bytes videoscaleratedata;  ///< dwScale, dwRate
  platform::Bytes videoscaledata;      ///< dwStart
  std::uint64_t videostrfsize = 0;     ///< strf cb
  FormatPayload videostrfdata;
  platform::Bytes videostrfcodecdata;  ///< biCompression
  platform::Bytes audiocodec;          ///< fccHandler of the audio stream header
  platform::Guarded<std::optional<std::string>> audiocodecstring;
  platform::Bytes audioscaleratedata;
  platform::Bytes audioscaledata;
  std::uint64_t audiostrfsize = 0;
  FormatPayload audiostrfdata;
  platform::Bytes audiostrfcodecdata;  ///< the four bytes at offset 16 of the audio format

  // ---- Harvest flags ----

  bool avihscaleratedatafound = false;
  bool videocodecfound = false;
  bool videostrfcodecfound = false;
  bool audiocodecfound = false;
  bool audiostrfcodecfound = false;
  [[nodiscard]] bool allHeadersFound() const {
    return avihscaleratedatafound && audiocodecfound && videocodecfound && videostrfcodecfound && audiostrfcodecfound;
  }

  // ---- Sample tables: entries 1 to the count ----

  std::uint64_t videosamplesize = 0;  ///< size field of the candidate judged last, video and audio alike
  std::uint64_t videosamplecount = 0;
  std::uint64_t videosampleoffset = 0;
  std::uint64_t audiosamplecount = 0;
  std::uint64_t audiosampleoffset = 0;
  std::uint64_t audiosamplesize = 0;
  std::uint64_t samplesleftout = 0;  ///< chunks of both kinds that were accepted and found their table full
  SampleTable& videosamplesizearray;
  SampleTable& videosampleoffsetarray;
  SampleTable& audiosampleoffsetarray;
  SampleTable& audiosamplesizearray;
  [[nodiscard]] avi::ChunkRun videoChunks() const {
    return filledPart(videosampleoffsetarray, videosamplesizearray, videosamplecount);
  }
  [[nodiscard]] avi::ChunkRun audioChunks() const {
    return filledPart(audiosampleoffsetarray, audiosamplesizearray, audiosamplecount);
  }

  // ---- What was kept, and the output ----

  FilmTally tally;
  FilmRange filmRange;
  RebuiltLayout layout;
  std::uint64_t outputsize = 0;                                      ///< what the output was made for
  platform::Guarded<std::optional<avi::WriteFailure>> writeFailure;  ///< the run's first
};

}  // namespace zelvo::engine
