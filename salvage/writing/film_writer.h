/// Writes a repaired film by its plan, in one pass over the input. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "avi/byte_ranges.h"
#include "avi/input_file.h"
#include "avi/write_failure.h"
#include "platform/files.h"
#include "platform/workers.h"
#include "salvage/headers/film_header.h"
#include "salvage/plan/film_plan.h"
#include "salvage/writing/film_layout.h"

namespace zelvo::salvage {

struct FilmWriting {
  avi::InputFile& input;
  platform::WritableFile& out;  ///< empty
  platform::Workers& workers;
  const FilmPlan& plan;
  const FilmHeader& header;
  const FilmLayout& layout;        ///< of these two
  std::function<bool()> isEnding;  ///< asked some hundred times a second; ends the writing
};

struct WrittenFilm {
  std::optional<avi::WriteFailure> failure;
  std::uint64_t unreadable = 0;   ///< bytes of payloads that could not be read: zeros stand in their place
  std::uint64_t keyPictures = 0;  ///< chunks of video that the index names as keys
};

/// Writes headers, chunks, indexes. A picture is named as a key when its codec's own bits say so; where these say
/// nothing, when an index of the damaged film does, and where none names it, when it is its stream's first; never when
/// it is empty or not whole. Sound always is. Silence stands for sound that is lost.
/// Failure: ends at the first write that fails, and what was written is of no use.
/// Thread: any.
[[nodiscard]] WrittenFilm writeFilm(const FilmWriting& writing);

}  // namespace zelvo::salvage
