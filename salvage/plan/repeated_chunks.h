/// Chunks of a chain that stand in the file a second time: a span that was written twice, or bytes of another place of
/// the film over the film's own.
#pragma once

#include "avi/input_file.h"
#include "salvage/plan/chain_film.h"

namespace zelvo::salvage {

/// Takes out the chunks after a gap that repeat chunks in front of it one by one, or, if nothing else stands between
/// the gap and the next one, chunks after that. Where the film goes on after the copy with the chunk that the gap
/// tore, the span was doubled, and nothing is missing; so, too, where all between the torn chunk and that one is its
/// front and a copy of what stands before it. Elsewhere the copy's bytes are a gap. Reads payloads of the size of those
/// after gaps; their number is bounded.
/// Failure: what cannot be read repeats nothing.
/// Thread: any.
void dropRepeated(avi::InputFile& input, ChainFilm& film);

}  // namespace zelvo::salvage
