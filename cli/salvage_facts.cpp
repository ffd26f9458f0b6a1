#include "cli/salvage_facts.h"

#include <algorithm>
#include <cmath>

#include "salvage/damage_picture.h"
#include "salvage/salvage_words.h"

namespace zelvo::cli {

namespace {

constexpr std::size_t kFactCells = 160;
/// A film has seldom more than two; the journal's lines stay short.
constexpr std::size_t kMaxFactStreams = 6;

char letterOf(platform::DamagePaint paint) {
  using platform::DamagePaint;
  switch (paint) {
    case DamagePaint::mended:
      return 'm';
    case DamagePaint::doubled:
    case DamagePaint::foreign:
      return 'x';
    case DamagePaint::hurt:
      return 'h';
    case DamagePaint::lost:
      return 'l';
    case DamagePaint::kept:
    case DamagePaint::header:
    case DamagePaint::index:
      break;
  }
  return '.';
}

/// A row of cells, in each the worst of what lies there.
class Row {
 public:
  Row(std::string name, double all) : name_(std::move(name)), all_(all), cells_(kFactCells, '.') {}

  void mark(double begin, double end, char letter) {
    if (!(all_ > 0)) return;
    const auto place = [&](double at) { return std::clamp(at / all_, 0.0, 1.0) * kFactCells; };
    const auto first = std::min(kFactCells - 1, static_cast<std::size_t>(place(begin)));
    const auto last = std::clamp(static_cast<std::size_t>(std::ceil(place(end))), first + 1, kFactCells);
    for (std::size_t cell = first; cell < last; ++cell) {
      if (salvage::kPictureLetters.find(letter) > salvage::kPictureLetters.find(cells_[cell])) cells_[cell] = letter;
    }
  }
  [[nodiscard]] salvage::BatchPicture picture() const { return {name_, cells_}; }

 private:
  std::string name_;
  double all_;
  std::string cells_;
};

}  // namespace

FilmFacts factsOf(const salvage::SalvageReport& report) {
  FilmFacts facts;
  facts.verdict = nameOf(report.verdict);
  salvage::SlotTally all;
  salvage::SlotTally damaged;
  double seconds = 0;
  double lost = 0;
  for (const salvage::SalvagedStream& stream : report.streams) {
    all.chunks += stream.all().chunks;
    damaged.chunks += stream.notWhole().chunks;
    // The film lasts as long as the longest of its streams, and lacks what lacks most in one.
    seconds = std::max(seconds, stream.all().seconds);
    lost = std::max(lost, stream.notWhole().seconds);
  }
  const auto add = [&](std::string_view name, double value) { facts.figures.push_back({std::string(name), value}); };
  add("seconds", seconds);
  add("seconds_lost", lost);
  add("chunks", static_cast<double>(all.chunks));
  add("chunks_lost", static_cast<double>(damaged.chunks));
  add("places", static_cast<double>(report.spans.size() + report.spansLeftOut));
  add("sync_after", report.syncAfter);

  const platform::DamagePicture picture = salvage::damagePicture(report);
  for (std::size_t bar = 0; bar < std::min(picture.bars.size(), kMaxFactStreams + 1); ++bar) {
    Row row(bar == 0 ? "file" : std::string(kindOf(report.streams[bar - 1])), picture.bars[bar].extent);
    for (const platform::DamageMark& mark : picture.bars[bar].marks)
      row.mark(mark.begin, mark.end, letterOf(mark.paint));
    if (report.verdict == salvage::SalvageVerdict::hopeless) row.mark(0, picture.bars[bar].extent, 'l');
    facts.picture.push_back(row.picture());
  }
  return facts;
}

}  // namespace zelvo::cli
