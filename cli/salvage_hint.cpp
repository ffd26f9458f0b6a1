#include "cli/salvage_hint.h"

#include <algorithm>

#include "avi/input_file.h"
#include "cli/shown_text.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::cli {

namespace {

/// Less is no film.
constexpr std::uint64_t kSmallestFilm = 1024;
constexpr std::uint64_t kChunkHeader = 8;

/// A repair keeps the pictures of the first stream and the sound of the second.
bool leavesStreamsOut(const salvage::SurvivingHeaders& headers) {
  const auto& streams = headers.streams;
  if (headers.main && std::max<std::size_t>(headers.main->streams, streams.size()) > 2) return true;
  if (!headers.areComplete()) return false;
  return streams[0].type != avi::kVids || (streams.size() > 1 && streams[1].type != avi::kAuds);
}

/// Whether the chunks kept are less than nine tenths of what the first "movi" list holds.
bool keepsLittle(const salvage::SurvivingHeaders& headers, const Outcome& outcome) {
  if (!headers.media || !outcome.inputSize || *outcome.inputSize <= headers.media->offset) return false;
  const std::uint64_t there = *outcome.inputSize - headers.media->offset;
  // A film that was never finished has no size there.
  const std::uint64_t media = headers.media->size == 0 ? there : std::min<std::uint64_t>(headers.media->size, there);
  std::uint64_t kept = 0;
  for (const engine::StreamReport& stream : outcome.streams) kept += stream.bytes + kChunkHeader * stream.chunks;
  return kept < media / 10 * 9;
}

bool mayBringMore(const ChosenInput& input, const Outcome& outcome) {
  if (outcome.verdict == Verdict::notSupported) return true;
  if (outcome.verdict == Verdict::invalid) return input.attributes.size >= kSmallestFilm;
  if (outcome.verdict != Verdict::repaired && outcome.verdict != Verdict::repairable) return false;
  avi::InputFile file(*input.file);
  const salvage::SurvivingHeaders headers = salvage::survivingHeaders(file);
  return leavesStreamsOut(headers) || keepsLittle(headers, outcome);
}

}  // namespace

std::optional<std::string> salvageHint(const ChosenInput& input, const Outcome& outcome) {
  if (!mayBringMore(input, outcome)) return std::nullopt;
  return "the deep repair may bring back more: zelvo-avi salvage " + printable(quotedForShell(input.path));
}

}  // namespace zelvo::cli
