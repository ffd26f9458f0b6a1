/// The list "INFO" of writers that put it after the media. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>

#include "avi/input_file.h"
#include "platform/bytes.h"
#include "salvage/scan/candidate.h"

namespace zelvo::salvage {

/// A longer list is taken for damage.
inline constexpr std::size_t kMaxInformation = std::size_t{64} << 10U;

/// What the last "INFO" list of `candidates` holds after its type: one whose chunks fill it to the byte. Empty without
/// one.
/// Failure: a list that cannot be read whole is none.
/// Thread: any.
[[nodiscard]] platform::Bytes informationAfterMedia(avi::InputFile& input, const CandidateList& candidates);

}  // namespace zelvo::salvage
