/// What an AVI file's outline tells, in words.
#pragma once

#include <string>
#include <string_view>

#include "avi/outline.h"

namespace zelvo::cli {

/// "3 bytes are too few for a chunk": a problem without its place.
[[nodiscard]] std::string inWords(const avi::Problem& problem);

/// "at byte 117 lies \"JUNK\", not \"01wb\"": what is wrong with an entry that does not match.
[[nodiscard]] std::string inWords(const avi::IndexEntry& entry);

/// Empty when there is nothing to say.
[[nodiscard]] std::string remarkInWords(const avi::IndexReport& index);

/// "bytes per second"; empty for none.
[[nodiscard]] std::string_view inWords(avi::Unit unit);

/// "25.000 frames per second", "AVIF_HASINDEX | AVIF_ISINTERLEAVED"; empty when nothing follows from the field.
[[nodiscard]] std::string noteOn(const avi::Field& field);

/// A code as text, or its number where it is a small one, as biCompression may be (0 is BI_RGB).
[[nodiscard]] std::string codeOrNumber(avi::FourCC code);

}  // namespace zelvo::cli
