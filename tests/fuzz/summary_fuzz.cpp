// Any bytes as journals, summed up. The JSON is JSON; the page has as many rows as films and no tag of anybody else's;
// the table has a line for each film, and no cell that a spreadsheet would calculate; the text steers no terminal.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include "cli/summary_page.h"
#include "cli/summary_text.h"
#include "platform/json_reader.h"
#include "platform/printable_text.h"
#include "salvage/batch_journal.h"

namespace {

using namespace zelvo;

void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s\n", claim);
  std::abort();
}

std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

bool isPrintable(std::string text) {
  std::erase(text, '\n');
  std::erase(text, '\r');
  return platform::printableText(text) == text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span bytes(data, size);
  salvage::CollectionSummary summary;
  static_cast<void>(salvage::readJournal(
      [&](std::uint64_t offset, std::span<std::byte> into) {
        const auto from = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes.size()));
        const auto part = std::as_bytes(bytes.subspan(from, std::min(into.size(), bytes.size() - from)));
        std::ranges::copy(part, into.begin());
        return platform::IoResult{part.size(), {}};
      },
      [&](salvage::BatchLine line) { summary.add(std::move(line)); }));
  const std::size_t films = summary.films().size();

  std::string json = cli::summaryInJson(summary, 1);
  require(platform::readJson(json).has_value(), "the JSON can be read");
  require(isPrintable(cli::summaryInWords(summary, 1)), "the text steers no terminal");

  const std::string table = cli::summaryInCsv(summary);
  require(countOf(table, "\r\n") == films + 1 && countOf(table, "\n") == films + 1, "the table has a line a film");
  for (const char sign : std::string_view("=+-@")) {
    require(table.find(std::string(",\"") + sign) == std::string::npos || table.find("\"\"") != std::string::npos,
            "no cell is calculated");
  }
  require(isPrintable(table), "the table steers no terminal");

  const std::string page = cli::summaryPage(summary, 1);
  require(countOf(page, "<tr>") == films + 1, "the page has a row a film");
  require(countOf(page, "<script") == 1 && countOf(page, "<style") == 1, "no tag is anybody else's");
  require(countOf(page, "<img") + countOf(page, "<iframe") + countOf(page, "<a ") == 0, "nothing leads elsewhere");
  return 0;
}
