// Any bytes as journals. What is read of them
// - is the same when what follows its whole lines is left out,
// - comes back from the line that is written of it,
// - can be summed up, in numbers that make sense,
// - comes back from what a film's program would say of it.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

#include "platform/json_reader.h"
#include "salvage/batch_journal.h"
#include "salvage/batch_queue.h"
#include "salvage/batch_summary.h"

namespace {

using namespace zelvo;

void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s\n", claim);
  std::abort();
}

struct Read {
  salvage::JournalReading reading;
  std::vector<salvage::BatchLine> lines;
};

/// The whole text as a journal.
Read read(std::span<const std::uint8_t> bytes) {
  Read result;
  result.reading = salvage::readJournal(
      [&](std::uint64_t offset, std::span<std::byte> into) {
        const auto from = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes.size()));
        const auto part = std::as_bytes(bytes.subspan(from, std::min(into.size(), bytes.size() - from)));
        std::ranges::copy(part, into.begin());
        return platform::IoResult{part.size(), {}};
      },
      [&](salvage::BatchLine line) { result.lines.push_back(std::move(line)); });
  return result;
}

/// Seconds are written with three places, so a line is compared with what has been written of it once.
void lineComesBack(const salvage::BatchLine& line) {
  std::string text = salvage::journalLine(line);
  require(std::ranges::count(text, '\n') == 1 && text.ends_with('\n'), "a line is one line");
  text.pop_back();
  const auto again = salvage::readJournalLine(text);
  require(again.has_value() || text.size() > salvage::kMaxJournalLine, "what is written can be read");
  if (!again) return;
  require(salvage::journalLine(*again) == text + "\n", "what is read again is written the same");
  require(again->input == line.input && again->output == line.output && again->figures == line.figures,
          "paths, output and figures come back");
  const auto message = salvage::readFilmMessage(salvage::filmMessage({salvage::FilmMessage::Kind::end, {}, line}));
  require(message && message->line && message->line->input == line.input, "a message comes back");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span bytes(data, size);
  const Read all = read(bytes);
  require(all.reading.lines == all.lines.size(), "each line is handed over");
  require(all.reading.end + all.reading.tornBytes <= size, "no more is read than there is");
  require(all.reading.foreignLine <= all.reading.lines + 1, "the first foreign line is the next one");
  // What was whole stays whole without what comes after it.
  const Read front = read(bytes.first(static_cast<std::size_t>(all.reading.end)));
  require(front.lines == all.lines && front.reading.foreignLine == 0, "whole lines stand for themselves");
  salvage::CollectionSummary summary;
  for (const salvage::BatchLine& line : all.lines) {
    lineComesBack(line);
    const double share = salvage::lostShare(line);
    require(share >= 0 && share <= 1, "a share is one");
    summary.add(line);
  }
  const salvage::CollectionTotals totals = summary.totals();
  require(totals.done + totals.failed + totals.unfinished == totals.films, "each film counts once");
  require(summary.worst().size() == totals.films && totals.films <= all.lines.size(), "no film is made up");
  static_cast<void>(platform::readJson({reinterpret_cast<const char*>(data), size}));
  return 0;
}
