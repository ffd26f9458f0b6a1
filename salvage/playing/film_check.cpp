#include "salvage/playing/film_check.h"

#include <algorithm>
#include <cmath>

namespace zelvo::salvage {

namespace {

using platform::PlayEnd;

bool hasFault(const PlayedStreamTally& stream) { return stream.errors > 0 || isCreeping(stream); }

/// The film's own word for keys counts only where an index has it.
std::vector<KeyEntry> falseKeysIn(const FilmCheckRun& run, const PlayTally& play) {
  std::vector<std::uint64_t> payloads;
  for (const PlayedStreamTally& stream : play.streams)
    payloads.insert(payloads.end(), stream.falseKeys.begin(), stream.falseKeys.end());
  if (payloads.empty()) return {};
  std::ranges::sort(payloads);
  return keyEntries(run.file, payloads, [&] { return run.cancel.abandoned(); });
}

}  // namespace

bool isCreeping(const PlayedStreamTally& stream) {
  constexpr double kNoticed = 0.5;
  constexpr double kShare = 0.001;
  return stream.told.kind == platform::PlayedKind::sound && stream.told.hasDecoder &&
         std::abs(stream.creep) > std::max(kNoticed, kShare * stream.seconds);
}

FilmVerdict FilmCheck::verdict() const {
  if (end != PlayEnd::played || play.unreadable > 0 || container.readFailures.count > 0) return FilmVerdict::unreadable;
  const bool isFaultless = container.isFaultless() && !play.streams.empty() &&
                           std::ranges::none_of(play.streams, hasFault) && wrongSeeks() == 0 && falseKeys.empty();
  return isFaultless ? FilmVerdict::plays : FilmVerdict::faults;
}

std::uint64_t FilmCheck::wrongSeeks() const {
  return static_cast<std::uint64_t>(
      std::ranges::count_if(play.seeks, [](const auto& seek) { return seek.end != platform::SeekEnd::right; }));
}

std::uint64_t FilmCheck::falseKeyPictures() const {
  std::vector<std::uint64_t> payloads;
  for (const KeyEntry& entry : falseKeys) payloads.push_back(entry.payload);
  std::ranges::sort(payloads);
  return static_cast<std::uint64_t>(std::unique(payloads.begin(), payloads.end()) - payloads.begin());
}

std::uint64_t FilmCheck::errorsOf(platform::PlayedKind kind) const {
  std::uint64_t errors = 0;
  for (const PlayedStreamTally& stream : play.streams) {
    if (stream.told.kind == kind) errors += stream.errors;
  }
  return errors;
}

FilmCheck checkFilm(const FilmCheckRun& run) {
  FilmCheck check;
  check.container = checkContainer(run.file, [&] { return run.cancel.abandoned(); });
  PlayCount count;
  check.end = run.player.play(run.path, run.choices, run.cancel, [&](const platform::PlayEvent& event) {
    count.take(event);
    const auto* const packet = std::get_if<platform::PlayedPacket>(&event);
    if (packet != nullptr && run.progress && packet->offset != platform::PlayedPacket::kNowhere)
      run.progress(packet->offset);
  });
  check.wasConfined = run.player.wasConfined();
  check.play = count.finish();
  for (const PlayedStreamTally& stream : check.play.streams)
    check.container.metPictures(stream.told.stream, stream.packets);
  check.falseKeys = falseKeysIn(run, check.play);
  if (run.cancel.abandoned()) check.end = PlayEnd::interrupted;
  return check;
}

}  // namespace zelvo::salvage
