/// What a deep repair found and did. Offsets and sizes are in bytes, times in seconds from the film's beginning.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "avi/read_failures.h"
#include "avi/write_failure.h"
#include "salvage/headers/film_header.h"
#include "salvage/headers/header_synthesis.h"
#include "salvage/plan/film_plan.h"
#include "salvage/rescue_gains.h"
#include "salvage/scan/index_template.h"
#include "salvage/writing/film_layout.h"

namespace zelvo::salvage {

/// How a run ended.
enum class SalvageEnd : std::uint8_t {
  written,     ///< a film was written, or writing it failed: see `writeFailure`
  planned,     ///< a dry run came to its end
  noMedia,     ///< no chunk of any stream was found
  manySounds,  ///< a sample rate was given, and there are several sound tracks that it may be for
  noHeader,    ///< chunks are there, but nothing tells what they hold
  tooLarge,    ///< the film would be larger than it may be, or than any file can
  noOutput,    ///< nothing could be made to write it to
  stopped,
};

/// How much of the film is there.
enum class SalvageVerdict : std::uint8_t {
  clean,     ///< nothing was wrong
  repaired,  ///< something was, and nothing of the film is lost
  partial,   ///< something of the film is lost
  hopeless,  ///< nothing can be brought back
};

/// What became of chunks of one stream: how many, and how long they last.
struct SlotTally {
  std::uint64_t chunks = 0;
  std::uint64_t bytes = 0;  ///< of their payloads
  double seconds = 0;
};

inline constexpr std::size_t kSlotStates = 9;

struct SalvagedStream {
  std::uint8_t number = 0;                 ///< in the damaged film's codes
  avi::FourCC type;                        ///< fccType
  avi::FourCC handler;                     ///< biCompression of pictures, else fccHandler
  std::optional<std::uint16_t> formatTag;  ///< wFormatTag of sound
  HeaderOrigin origin = HeaderOrigin::own;
  std::array<SlotTally, kSlotStates> slots;  ///< by SlotState

  [[nodiscard]] const SlotTally& of(SlotState state) const { return slots[static_cast<std::size_t>(state)]; }
  [[nodiscard]] SlotTally all() const;
  /// Chunks that are as they were again.
  [[nodiscard]] SlotTally mended() const;
  /// Chunks of which something is missing or wrong.
  [[nodiscard]] SlotTally notWhole() const;
};

/// What a stretch of damage did to one stream, in chunks.
struct SpanShare {
  std::uint8_t stream = 0;  ///< index in the list of streams
  std::uint64_t gone = 0;   ///< nothing of them is left
  std::uint64_t hurt = 0;   ///< something of them is missing or wrong

  friend bool operator==(const SpanShare&, const SpanShare&) = default;
};

/// A stretch of damage, and what it did to the film.
struct SalvagedSpan {
  PlanSpan span;
  double begin = 0;                ///< on the clock of the film's pictures, or of its first stream without any
  double end = 0;                  ///< the same; as `begin` where the film goes on without a gap
  std::vector<SpanShare> streams;  ///< that it touches, rising
};

struct SalvageReport {
  SalvageEnd end = SalvageEnd::noMedia;
  SalvageVerdict verdict = SalvageVerdict::hopeless;
  std::uint64_t inputSize = 0;
  /// Returns in front of line feeds that a transfer as text had put in. They are left out, and all offsets are those
  /// without them.
  std::uint64_t returnsLeftOut = 0;
  std::uint64_t outputSize = 0;      ///< of the film that was or would be written
  std::uint64_t outputLimit = 0;     ///< how large it may be
  bool hasMainHeader = false;        ///< the damaged film's own "avih" survives
  std::uint64_t headerEnd = 0;       ///< where the damaged film's own header lists end; 0 without any
  std::uint32_t headersClaimed = 0;  ///< dwStreams of that; 0 without one
  std::vector<SalvagedStream> streams;
  std::vector<FoundField> fields;        ///< of headers that were put together
  std::size_t streamsWithoutHeader = 0;  ///< left out: nothing tells what they hold
  bool isDonorUseless = false;           ///< a donor was given, headers are lost, and none of its could stand in
  bool lacksDecoder = false;             ///< payloads were to be tried by decoding, and nothing could do it
  std::vector<TemplateSource> indexes;   ///< that were found, tables first
  std::uint64_t indexedChunks = 0;       ///< that the plan has from an index
  std::vector<SalvagedSpan> spans;       ///< rising by where they lie in the damaged file
  std::uint64_t spansLeftOut = 0;        ///< for which there was no room
  std::uint64_t chunksLeftOut = 0;       ///< or indexes: more of them than are kept, so the film lacks what is in them
  /// How far sound and pictures would be apart at worst if what is lost were just left out, and how far they are, each
  /// against the film as it was.
  double syncBefore = 0;
  double syncAfter = 0;
  std::uint64_t unreadable = 0;        ///< bytes of payloads in whose place zeros were written
  std::optional<RescueReport> rescue;  ///< of a film with the map of its rescue
  avi::ReadFailures readFailures;
  std::optional<avi::WriteFailure> writeFailure;
};

/// More spans than this are not told one by one.
inline constexpr std::size_t kMaxSpans = 10'000;

/// Fills in what the plan tells: streams, spans, sync and verdict. `closesGaps`: what is lost is not written.
void describePlan(SalvageReport& report, const FilmPlan& plan, const FilmHeader& header, bool closesGaps = false);

}  // namespace zelvo::salvage
