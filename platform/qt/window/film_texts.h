/// What the window says of films: sizes, lengths, what a repair has kept, why there is none, how far it is. A megabyte
/// has 1,000,000 bytes.
#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "platform/film_report.h"
#include "platform/rejection.h"
#include "platform/run_progress.h"

namespace zelvo::platform::qt::texts {

/// 1234567 as "1,234,567".
[[nodiscard]] QString number(std::uint64_t value);
/// "0.6 MB", "1,234.5 MB".
[[nodiscard]] QString megabytes(std::uint64_t bytes);
/// "4 s", "1 min 36 s", "1 h 32 min".
[[nodiscard]] QString length(double seconds);

// ---- The chosen film ----
/// Size, and length where it is known.
[[nodiscard]] QString chosenFacts(std::uint64_t bytes, std::optional<double> seconds);

// ---- How far a run is ----
/// Empty when there is nothing to say. `secondsLeft` may stand empty.
[[nodiscard]] QString progress(const RunProgress& progress, std::optional<double> secondsLeft);

// ---- What was kept ----
/// Picture of the sheet that tells of the end.
[[nodiscard]] QString completedPicture(FilmVerdict verdict);
[[nodiscard]] QString completedTitle(FilmVerdict verdict);
[[nodiscard]] QString completedMessage(FilmVerdict verdict);
[[nodiscard]] QString resultTitle(FilmVerdict verdict);
[[nodiscard]] QString resultMessage(const FilmReport& report);
[[nodiscard]] QString keptPictures(const FilmReport& report);
[[nodiscard]] QString keptSound(const FilmReport& report);
[[nodiscard]] QString keptShare(const FilmReport& report);
/// What could not be read and what that means; empty when all could.
[[nodiscard]] QString unreadable(const FilmReport& report);

// ---- Why a film cannot be repaired ----
[[nodiscard]] QString rejection(Rejection reason);

}  // namespace zelvo::platform::qt::texts
