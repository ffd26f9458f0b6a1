#include "cli/batch_lines.h"

#include <algorithm>

#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

/// More running films than this would fill the terminal.
constexpr std::size_t kMaxFilmLines = 16;

std::string timeLeftWords(double seconds) {
  if (seconds < 90) return shownNumber(static_cast<std::uint64_t>(seconds) + 1) + " s left";
  if (seconds < 5400) return shownNumber(static_cast<std::uint64_t>(seconds / 60) + 1) + " min left";
  return fixedPoint(seconds / 3600, 1) + " h left";
}

}  // namespace

std::vector<std::string> batchProgressLines(const salvage::BatchProgress& progress) {
  std::vector<std::string> lines;
  for (const salvage::RunningFilm& film : progress.running) {
    if (lines.size() == kMaxFilmLines) {
      lines.push_back("... and " + counted(progress.running.size() - kMaxFilmLines, "film") + " more");
      break;
    }
    if (!film.progress.empty()) lines.push_back(film.progress);
  }
  std::string all = shownNumber(progress.ended) + " of " + counted(progress.films, "film") + " done, " +
                    shownSize(progress.endedBytes) + " of " + shownSize(progress.bytes);
  if (progress.secondsLeft) all += ", about " + timeLeftWords(*progress.secondsLeft);
  lines.push_back(std::move(all));
  return lines;
}

}  // namespace zelvo::cli
