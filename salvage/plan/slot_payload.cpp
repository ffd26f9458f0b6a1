#include "salvage/plan/slot_payload.h"

namespace zelvo::salvage {

platform::Bytes readPayload(avi::InputFile& input, const Slot& slot, std::span<const Piece> pieces) {
  if (slot.pieces == Slot::kOnePiece) return input.readBytes(slot.source, slot.size);
  platform::Bytes bytes;
  for (const Piece& piece : pieces.subspan(slot.pieces)) {
    if (bytes.size() >= slot.size) break;
    const platform::Bytes more =
        piece.offset == Piece::kSilence ? platform::Bytes(piece.size) : input.readBytes(piece.offset, piece.size);
    bytes.insert(bytes.end(), more.begin(), more.end());
    if (more.size() < piece.size) break;
  }
  return bytes;
}

}  // namespace zelvo::salvage
