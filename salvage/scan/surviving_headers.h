/// What is left of a damaged film's headers: each piece that parses by itself, wherever it lies before the media.
/// Nothing here is judged; lengths and counts are witnesses for later stages. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "avi/fourcc.h"
#include "avi/input_file.h"
#include "platform/bytes.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

/// Headers are looked for in this much of the front of the file, and no more of it is read.
inline constexpr std::size_t kHeaderReach = std::size_t{1} << 20U;
/// A chunk code numbers its stream with two digits.
inline constexpr std::size_t kMaxStreams = 100;

/// An entry of the super index: where a standard index lies, as the film's writer saw it.
struct SuperIndexEntry {
  std::uint64_t offset = 0;    ///< qwOffset
  std::uint32_t size = 0;      ///< dwSize: of the standard index with its chunk header
  std::uint32_t duration = 0;  ///< dwDuration: in the stream's units
};

/// "indx" of type AVI_INDEX_OF_INDEXES.
struct SuperIndex {
  avi::FourCC chunkId;                   ///< dwChunkId: of the chunks that it leads to
  std::vector<SuperIndexEntry> entries;  ///< as many of nEntriesInUse as the chunk holds
};

/// A "strh" of 48 bytes or more with a known type, followed by its "strf" of 14 bytes or more, whose size is borne out
/// by its own fields or by what follows it.
struct SurvivingStream {
  std::uint64_t offset = 0;         ///< of the code "strh"
  avi::FourCC type;                 ///< fccType: "vids", "auds", "txts", "mids" or "iavs"
  avi::FourCC handler;              ///< fccHandler
  std::uint32_t initialFrames = 0;  ///< dwInitialFrames
  std::uint32_t scale = 0;          ///< dwScale
  std::uint32_t rate = 0;           ///< dwRate
  std::uint32_t start = 0;          ///< dwStart
  std::uint32_t length = 0;         ///< dwLength
  std::uint32_t sampleSize = 0;     ///< dwSampleSize
  platform::Bytes header;           ///< payload of "strh": 48, 56 or 64 bytes are usual
  platform::Bytes format;           ///< payload of "strf"
  platform::Bytes data;             ///< payload of "strd"; empty without one, as the two below
  platform::Bytes name;             ///< payload of "strn"
  platform::Bytes properties;       ///< payload of "vprp"
  std::optional<SuperIndex> superIndex;
};

/// "avih" of 40 bytes or more.
struct SurvivingMainHeader {
  std::uint64_t offset = 0;               ///< of the code "avih"
  std::uint32_t microSecPerFrame = 0;     ///< dwMicroSecPerFrame
  std::uint32_t flags = 0;                ///< dwFlags
  std::uint32_t totalFrames = 0;          ///< dwTotalFrames
  std::uint32_t initialFrames = 0;        ///< dwInitialFrames
  std::uint32_t streams = 0;              ///< dwStreams
  std::uint32_t suggestedBufferSize = 0;  ///< dwSuggestedBufferSize
  std::uint32_t width = 0;                ///< dwWidth
  std::uint32_t height = 0;               ///< dwHeight
};

/// The first "movi" list.
struct MediaList {
  std::uint64_t offset = 0;  ///< of the code "LIST"
  std::uint32_t size = 0;    ///< as the list itself claims
};

struct SurvivingHeaders {
  std::optional<SurvivingMainHeader> main;
  std::vector<SurvivingStream> streams;        ///< in file order
  std::optional<std::uint32_t> openDmlFrames;  ///< dwTotalFrames of "dmlh"
  std::optional<std::uint32_t> formSize;       ///< of the form "AVI " at the very front, as it claims
  std::optional<MediaList> media;              ///< none within the reach of headers
  platform::Bytes information;                 ///< what the list "INFO" holds after its type; empty without one
  std::uint64_t end = 0;                       ///< where the last piece that was found ends

  /// Where chunks may begin: at the first "movi" list, without one after the last header.
  [[nodiscard]] std::uint64_t mediaBegin() const { return media ? media->offset : end; }
  /// Whether the main header counts as many streams as were found.
  [[nodiscard]] bool areComplete() const { return main && !streams.empty() && main->streams == streams.size(); }
};

/// Looks for headers in front of the first "movi" list. The sizes of lists are not believed, so a stream header is
/// found whatever is lost around it.
/// `unrescued`: bytes that are not what they were, rising and apart; no header that has one of them survives.
/// Failure: bytes that cannot be read hold no header; the input remembers them.
/// Thread: any.
[[nodiscard]] SurvivingHeaders survivingHeaders(avi::InputFile& input, const std::vector<ByteSpan>& unrescued = {});

}  // namespace zelvo::salvage
