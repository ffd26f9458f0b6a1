/// The headers of a repaired film: as the damaged film has them, with lengths, flags and sizes that are true.
#pragma once

#include "platform/bytes.h"
#include "salvage/headers/film_header.h"
#include "salvage/writing/film_layout.h"

namespace zelvo::salvage {

/// The code of a stream's chunks in the repaired film: its place in the list of streams, and the letters of its code.
[[nodiscard]] avi::FourCC chunkCode(const FilmHeader& header, std::size_t stream);

/// The same of a slot: a change of the palette has a code of its own.
[[nodiscard]] avi::FourCC chunkCode(const FilmHeader& header, const Slot& slot);

/// All from "RIFF" up to, not including, the first "movi" list. How long it is depends on the streams, the number of
/// forms and which of these have chunks of which stream, not on the places that `layout` gives them.
[[nodiscard]] platform::Bytes headerBytes(const FilmHeader& header, const FilmLayout& layout);

/// What its chunks come to in units of dwScale / dwRate: whole samples where samples have a size, else chunks.
[[nodiscard]] std::uint64_t streamLength(const FilmStream& stream, const ChunkSum& chunks);

}  // namespace zelvo::salvage
