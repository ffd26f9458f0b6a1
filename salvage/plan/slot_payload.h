/// A slot's payload as it lies in the damaged file, piece by piece.
#pragma once

#include <span>

#include "avi/input_file.h"
#include "platform/bytes.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// All of it; zeros stand for silence. `pieces`: the plan's. Shorter where the input does not give it.
/// \pre the slot holds bytes of the input.
/// Thread: any.
[[nodiscard]] platform::Bytes readPayload(avi::InputFile& input, const Slot& slot, std::span<const Piece> pieces);

}  // namespace zelvo::salvage
