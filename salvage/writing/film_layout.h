/// Where everything of a repaired film stands in its file: forms of bounded size, each with its media list and the
/// standard indexes at that list's end, the first form also with an "idx1". Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/headers/film_header.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// A form holds so many bytes of chunks and index entries at the most, unless one chunk alone is larger.
inline constexpr std::uint64_t kFormSize = std::uint64_t{1} << 30U;
/// A chunk's payload is cut to this, so that every size field of its form can hold what it must.
inline constexpr std::uint32_t kMaxPayload = std::uint32_t{1} << 30U;
/// A film of more forms is not written.
inline constexpr std::size_t kMaxForms = 4096;

/// Chunks of one stream.
struct ChunkSum {
  std::uint64_t chunks = 0;   ///< changes of a palette are none
  std::uint64_t bytes = 0;    ///< of their payloads
  std::uint32_t largest = 0;  ///< of their payloads
};

/// One "RIFF" of the repaired film.
struct FormLayout {
  std::size_t firstSlot = 0;
  std::size_t endSlot = 0;
  std::size_t written = 0;       ///< how many of these slots are written
  std::uint64_t begin = 0;       ///< of the code "RIFF"
  std::uint64_t media = 0;       ///< of the code "LIST" of its "movi"
  std::uint64_t mediaEnd = 0;    ///< after the last chunk, where the standard indexes begin
  std::uint64_t end = 0;         ///< after all
  std::vector<ChunkSum> chunks;  ///< by stream
};

struct FilmLayout {
  std::vector<FormLayout> forms;  ///< at least one
  std::vector<ChunkSum> chunks;   ///< by stream
  std::size_t slots = 0;          ///< that are written; the film's last ones are left out when nothing is left of them
  std::uint64_t headerSize = 0;   ///< of what stands in front of the first "movi" list
  [[nodiscard]] std::uint64_t size() const { return forms.back().end; }
};

/// Whether a slot becomes a chunk: a change of the palette that is not whole would spoil every picture after it.
[[nodiscard]] bool isWritten(const Slot& slot);

/// How long a slot's payload is in the repaired film: a lost picture is an empty chunk, whatever size an index names.
[[nodiscard]] std::uint32_t payloadSize(const Slot& slot, const FilmHeader& header);

/// The file's length without its headers, which are at most some KiB a stream. Cheap, and needs no memory, so it can be
/// judged before a layout is made.
[[nodiscard]] std::uint64_t roughSize(const FilmPlan& plan, const FilmHeader& header);

/// Nothing when the film would take more than `kMaxForms`.
/// \pre every slot's stream is one of `header`.
/// Thread: any.
[[nodiscard]] std::optional<FilmLayout> layOut(const FilmPlan& plan, const FilmHeader& header,
                                               std::uint64_t formSize = kFormSize);

/// A standard index: its chunk header, its own head and its entries.
[[nodiscard]] constexpr std::uint64_t standardIndexSize(std::uint64_t chunks) { return 8 + 24 + 8 * chunks; }

}  // namespace zelvo::salvage
