#include "salvage/batch_summary.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace zelvo::salvage {

double figureOf(const BatchLine& line, std::string_view name) {
  const auto found = std::ranges::find(line.figures, name, &BatchFigure::name);
  return found == line.figures.end() ? 0 : found->value;
}

double lostShare(const BatchLine& line) {
  if (line.state == LineState::failed || line.outcome == "not-supported" || line.outcome == "invalid") return 1;
  const double all = figureOf(line, "seconds");
  return all > 0 ? std::clamp(figureOf(line, "seconds_lost") / all, 0.0, 1.0) : 0;
}

void CollectionSummary::add(BatchLine line) {
  std::string key = line.command + '\0' + line.input;
  const auto known = lines_.find(key);
  if (known == lines_.end()) {
    if (isFull()) return;
    if (lines_.size() >= kMaxPictures) line.picture = {};
    lines_.emplace(std::move(key), std::move(line));
    return;
  }
  // A film that is done stays so when a later run left it at its naming, or failed where the first had not.
  if (known->second.state == LineState::done && line.state != LineState::done) return;
  if (lines_.size() > kMaxPictures) line.picture = {};
  known->second = std::move(line);
}

std::vector<const BatchLine*> CollectionSummary::films() const {
  std::vector<const BatchLine*> films;
  films.reserve(lines_.size());
  for (const auto& [key, line] : lines_) films.push_back(&line);
  std::ranges::sort(films, {}, [](const BatchLine* line) { return std::tie(line->input, line->command); });
  return films;
}

std::vector<const BatchLine*> CollectionSummary::worst() const {
  auto worst = films();
  std::ranges::stable_sort(worst, [](const BatchLine* one, const BatchLine* other) {
    const auto weight = [](const BatchLine& line) {
      return std::pair(line.state == LineState::failed, lostShare(line));
    };
    return weight(*one) > weight(*other);
  });
  return worst;
}

CollectionTotals CollectionSummary::totals() const {
  CollectionTotals totals;
  for (const BatchLine* film : films()) {
    const BatchLine& line = *film;
    ++totals.films;
    if (line.isAdopted) ++totals.adopted;
    totals.inputBytes += line.inputSize;
    if (line.state == LineState::naming) {
      ++totals.unfinished;
      continue;
    }
    ++(line.state == LineState::done ? totals.done : totals.failed);
    ++totals.outcomes[line.outcome];
    if (!line.verdict.empty()) ++totals.verdicts[line.verdict];
    if (line.output) totals.outputBytes += line.output->size;
    // Not every command looks for what is lost.
    if (std::ranges::count(line.figures, "seconds_lost", &BatchFigure::name) > 0) {
      totals.filmSeconds += figureOf(line, "seconds");
      totals.lostSeconds += figureOf(line, "seconds_lost");
    }
    totals.workSeconds += line.seconds;
    totals.peakMemory = std::max(totals.peakMemory, line.peakMemory);
  }
  return totals;
}

}  // namespace zelvo::salvage
