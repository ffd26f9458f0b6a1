/// What a repaired film will hold, slot by slot, before a byte of it is copied. Payloads are named by where they lie in
/// the damaged file. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "avi/fourcc.h"

namespace zelvo::salvage {

/// Longer payloads are not looked into.
inline constexpr std::uint32_t kMaxJudgedPayload = std::uint32_t{8} << 20U;

/// What came of one chunk of the original.
enum class SlotState : std::uint8_t {
  whole,       ///< as it was, as far as anything tells
  sizeMended,  ///< whole; its size field was wrong
  codeMended,  ///< whole; its code was overwritten
  rejoined,    ///< whole; foreign bytes were cut out where decoding shows that they begin
  // From here on something is missing or wrong.
  damaged,   ///< its length is right, some of its bytes are overwritten in place
  torn,      ///< bytes are missing inside, or foreign ones are or were there
  cut,       ///< the data end inside
  lost,      ///< nothing of it is left: an empty chunk or silence keeps its time
  refilled,  ///< the same, where only clocks tell that something was there
};

/// Bytes of the input that are a part of a payload.
struct Piece {
  static constexpr std::uint64_t kSilence = std::numeric_limits<std::uint64_t>::max();

  std::uint64_t offset = 0;  ///< `kSilence`: of silence instead, or of zeros in a picture
  std::uint32_t size = 0;

  friend bool operator==(const Piece&, const Piece&) = default;
};

/// A chunk of the repaired film: 16 bytes.
struct Slot {
  static constexpr std::uint32_t kOnePiece = std::numeric_limits<std::uint32_t>::max();
  /// Offsets are smaller: 1 TiB.
  static constexpr std::uint64_t kSourceMask = (std::uint64_t{1} << 40U) - 1;

  std::uint64_t source : 40 = 0;  ///< where its payload lies in the input; of lost and refilled ones nothing
  std::uint8_t stream = 0;        ///< index in the repaired film's list of streams
  SlotState state = SlotState::whole;
  bool hasKeyFlag : 1 = false;       ///< an index of the film names it as a key chunk
  bool isIndexed : 1 = false;        ///< an index of the film names it, so `hasKeyFlag` counts
  bool isPalette : 1 = false;        ///< it changes the palette of the pictures after it, and takes no time
  std::uint32_t size = 0;            ///< of its payload in the repaired film; of lost and refilled ones that of the
                                     ///< silence, 0 for pictures
  std::uint32_t pieces = kOnePiece;  ///< else the number of its first piece in `FilmPlan::pieces`, and there are
                                     ///< as many as add up to `size`

  /// Whether it holds bytes of the input.
  [[nodiscard]] bool hasSource() const { return state != SlotState::lost && state != SlotState::refilled && size > 0; }
};
static_assert(sizeof(Slot) == 16);

/// Why part of a film is not as it was.
enum class LossCause : std::uint8_t {
  overwritten,  ///< other bytes stand in its place
  zeroed,       ///< zeros stand in its place
  missing,      ///< the bytes are gone; what follows moved up
  inserted,     ///< bytes that were never in the film
  doubled,      ///< a copy of bytes that are there already
  foreign,      ///< chunks of another film
  sizeField,    ///< a size field was wrong
  code,         ///< a chunk's code was wrong
  cut,          ///< the file ends early
  unreadable,   ///< the disk did not give it
  unrescued,    ///< the map of a rescue says that the disk did not give it
  moved,        ///< its parts lie at several places; nothing of it is lost
};

/// One stretch of damage.
struct PlanSpan {
  std::uint64_t begin = 0;  ///< in the damaged file
  std::uint64_t end = 0;
  /// The same in the original where an index tells it.
  std::optional<std::uint64_t> originalBegin;
  std::optional<std::uint64_t> originalEnd;
  std::uint32_t firstSlot = 0;  ///< slots that it touches
  std::uint32_t slots = 0;      ///< how many of them; 0 where none is touched
  LossCause cause = LossCause::overwritten;
};

/// The film in the order in which it is written.
struct FilmPlan {
  std::vector<Slot> slots;
  std::vector<Piece> pieces;        ///< of slots of several pieces
  std::vector<PlanSpan> spans;      ///< rising by `begin`
  std::uint64_t indexedChunks = 0;  ///< entries of a believed index that the plan was made from
  std::uint64_t leftOut = 0;        ///< chunks of the chain for which there was no room
  std::size_t cutsFound = 0;        ///< places inside pictures where foreign bytes begin, that decoding has found
  std::size_t cutsOpen = 0;         ///< that it has not found, or could not look for
  /// Seconds that sound and pictures are apart at worst, after gaps that only clocks tell of, more than before them.
  double drift = 0;
};

struct Evidence;
struct SpentEvidence;

/// Weighs the evidence and plans the film: by its index where one survives, by the chain of its chunks elsewhere.
/// `spent`: the same evidence, parts of which are let go as soon as the plan needs them no more; null keeps all.
/// Failure: what cannot be read is no evidence.
/// Thread: any.
[[nodiscard]] FilmPlan planFilm(const Evidence& evidence, SpentEvidence* spent = nullptr);

}  // namespace zelvo::salvage
