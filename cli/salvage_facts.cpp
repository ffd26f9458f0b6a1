#include "cli/salvage_facts.h"
#include "salvage/salvage_words.h"

#include <algorithm>
#include <cmath>

namespace zelvo::cli {

namespace {

constexpr std::size_t kFactCells = 160;
/// A film has seldom more than two; the journal's lines stay short.
constexpr std::size_t kMaxFactStreams = 6;

char letterOf(salvage::LossCause cause) {
  using salvage::LossCause;
  switch (cause) {
    case LossCause::sizeField:
    case LossCause::code:
    case LossCause::moved:
      return 'm';
    case LossCause::inserted:
    case LossCause::doubled:
    case LossCause::foreign:
      return 'x';
    case LossCause::overwritten:
    case LossCause::zeroed:
    case LossCause::unreadable:
    case LossCause::unrescued:
      return 'h';
    case LossCause::missing:
    case LossCause::cut:
      break;
  }
  return 'l';
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

  Row file("file", static_cast<double>(report.inputSize - std::min(report.inputSize, report.returnsLeftOut)));
  std::vector<Row> streams;
  for (std::size_t i = 0; i < std::min(report.streams.size(), kMaxFactStreams); ++i) {
    streams.emplace_back(std::string(kindOf(report.streams[i])), report.streams[i].all().seconds);
  }
  if (report.verdict == salvage::SalvageVerdict::hopeless) file.mark(0, static_cast<double>(report.inputSize), 'l');
  for (const salvage::SalvagedSpan& span : report.spans) {
    const char letter = letterOf(span.span.cause);
    file.mark(static_cast<double>(span.span.begin), static_cast<double>(span.span.end), letter);
    for (const salvage::SpanShare& share : span.streams) {
      if (share.stream < streams.size()) streams[share.stream].mark(span.begin, span.end, letter);
    }
  }
  facts.picture.push_back(file.picture());
  for (const Row& row : streams) facts.picture.push_back(row.picture());
  return facts;
}

}  // namespace zelvo::cli
