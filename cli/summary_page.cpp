// Totals as tiles, the shares of the verdicts as one bar, and the table. The table is whole without the script, which
// only sorts and filters it.
#include "cli/summary_page.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/html_text.h"
#include "cli/shown_text.h"
#include "cli/summary_text.h"
#include "platform/paths.h"

namespace zelvo::cli {

namespace {

using salvage::BatchLine;
using salvage::LineState;

/// More rows than this make a page that no browser likes; the worst are shown.
constexpr std::size_t kMaxSummaryRows = 5000;

constexpr std::string_view kSummaryStyle = R"(
:root { color-scheme: light dark; --page: #f6f7f9; --card: #ffffff; --text: #1c2430; --soft: #5b6675; --line: #dfe4ea;
  --whole: #8fc7ae; --lost: #b52a1c; --hurt: #e69f00; --mended: #0072b2; --extra: #9b5c94; --shade: #eef1f5; }
@media (prefers-color-scheme: dark) { :root { --page: #12161c; --card: #1a2029; --text: #e6eaf0; --soft: #9aa6b6;
  --line: #2c3541; --whole: #2f6b55; --lost: #f2665a; --hurt: #f0b93c; --mended: #4aa8e0; --extra: #d796cf;
  --shade: #222a35; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 88rem; padding: 2rem 1.25rem 4rem; background: var(--page); color: var(--text);
  font: 16px/1.5 system-ui, sans-serif; }
h1 { font-size: 1.6rem; margin: 0 0 .2rem; } h2 { font-size: 1.1rem; margin: 2rem 0 .6rem; }
p { margin: .3rem 0; } .soft { color: var(--soft); }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(10.5rem, 1fr)); gap: .8rem; margin: 1.2rem 0; }
.tile { background: var(--card); border: 1px solid var(--line); border-radius: .6rem; padding: .7rem .9rem; }
.tile b { display: block; font-size: 1.35rem; font-weight: 650; font-variant-numeric: tabular-nums;
  white-space: nowrap; }
.tile span { color: var(--soft); font-size: .9rem; }
.bar { display: flex; height: .9rem; border-radius: .45rem; overflow: hidden; background: var(--shade); }
.bar i { display: block; min-width: 3px; }
.key { display: flex; flex-wrap: wrap; gap: .3rem 1.2rem; margin-top: .6rem; font-size: .9rem; color: var(--soft); }
.key i { display: inline-block; width: .8rem; height: .8rem; margin-right: .4rem; border-radius: 2px; }
.bar .w, .key .w { background: var(--whole); } .bar .m, .key .m { background: var(--mended); }
.bar .h, .key .h { background: var(--hurt); } .bar .l, .key .l { background: var(--lost); }
.bar .x, .key .x { background: var(--extra); }
.wide { overflow-x: auto; background: var(--card); border: 1px solid var(--line); border-radius: .6rem; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; font-size: .93rem; }
th, td { text-align: left; padding: .45rem .7rem; border-bottom: 1px solid var(--line); vertical-align: middle; }
tbody tr:last-child td { border-bottom: 0; } tbody tr:hover { background: var(--shade); }
th { color: var(--soft); font-weight: 600; white-space: nowrap; position: sticky; top: 0; background: var(--card); }
th button { all: unset; cursor: pointer; } th button:focus-visible { outline: 2px solid var(--mended); }
th[aria-sort=ascending] button::after { content: " \2191"; }
th[aria-sort=descending] button::after { content: " \2193"; }
td.n, th.n { text-align: right; white-space: nowrap; }
td.name { min-width: 13rem; max-width: 30rem; overflow-wrap: anywhere; }
td.name small { color: var(--soft); display: block; }
td.name div { max-height: 12rem; overflow: auto; }
td.pic { width: 24rem; min-width: 14rem; } td.pic svg { display: block; width: 100%; }
.verdict { display: inline-block; padding: 0 .55rem; border-radius: .8rem; color: #fff; font-size: .85rem;
  font-weight: 600; white-space: nowrap; background: #5b6675; }
.v-clean, .v-repaired { background: #2c7d55; } .v-partial { background: #a8590b; }
.v-hopeless, .v-failed { background: #b02a22; }
input { font: inherit; padding: .35rem .6rem; border: 1px solid var(--line); border-radius: .4rem; width: 20rem;
  max-width: 100%; margin: 0 0 .6rem; background: var(--card); color: inherit; }
svg .b { fill: var(--whole); } svg .m { fill: var(--mended); } svg .h { fill: var(--hurt); }
svg .l { fill: var(--lost); } svg .x { fill: var(--extra); }
)";

constexpr std::string_view kSummaryScript = R"(
const table = document.getElementById("films"), body = table.tBodies[0];
const value = (row, at) => { const cell = row.cells[at]; const sort = cell.dataset.sort;
  return sort === undefined ? cell.textContent : Number(sort); };
table.querySelectorAll("th button").forEach(button => button.addEventListener("click", () => {
  const head = button.parentElement, up = head.getAttribute("aria-sort") !== "ascending";
  table.querySelectorAll("th").forEach(other => other.removeAttribute("aria-sort"));
  head.setAttribute("aria-sort", up ? "ascending" : "descending");
  const rows = [...body.rows], at = head.cellIndex;
  rows.sort((one, other) => { const a = value(one, at), b = value(other, at);
    return (typeof a === "number" ? a - b : a.localeCompare(b)) * (up ? 1 : -1); });
  body.append(...rows);
}));
const find = document.getElementById("find");
find.hidden = false;
find.addEventListener("input", () => { const words = find.value.toLowerCase();
  for (const row of body.rows) row.hidden = !row.textContent.toLowerCase().includes(words); });
)";

struct Paint {
  std::string_view verdict;
  std::string_view letter;
};
constexpr std::array kPaints = {Paint{"clean", "w"}, Paint{"repaired", "m"}, Paint{"partial", "h"},
                                Paint{"hopeless", "l"}, Paint{"failed", "l"}};

std::string_view paintOfVerdict(std::string_view verdict) {
  const auto found = std::ranges::find(kPaints, verdict, &Paint::verdict);
  return found == kPaints.end() ? "x" : found->letter;
}

/// The word that a film is sorted under.
std::string wordOf(const BatchLine& line) {
  if (line.state == LineState::naming) return "not finished";
  if (line.state == LineState::failed) return "failed";
  return line.verdict.empty() ? line.outcome : line.verdict;
}

std::string tile(const std::string& figure, std::string_view words) {
  return "<div class=\"tile\"><b>" + htmlText(figure) + "</b><span>" + std::string(words) + "</span></div>\n";
}

std::string verdictBar(const std::vector<const BatchLine*>& films) {
  std::map<std::string, std::uint64_t> counts;
  for (const BatchLine* line : films) ++counts[wordOf(*line)];
  std::string bar;
  std::string key;
  const auto add = [&](const std::string& word, std::uint64_t count) {
    const std::string paint(paintOfVerdict(word));
    bar +=
        "<i class=\"" + paint + "\" style=\"flex:" + std::to_string(count) + "\" title=\"" + htmlText(word) + "\"></i>";
    key += "<span><i class=\"" + paint + "\"></i>" + shownNumber(count) + " " + htmlText(word) + "</span>";
  };
  for (const Paint& paint : kPaints) {
    const auto found = counts.find(std::string(paint.verdict));
    if (found == counts.end()) continue;
    add(found->first, found->second);
    counts.erase(found);
  }
  for (const auto& [word, count] : counts) add(word, count);
  return "<div class=\"bar\">" + bar + "</div><div class=\"key\">" + key + "</div>\n";
}

/// Each row a bar of its own, drawn in as many rectangles as it has stretches.
std::string pictureOf(const BatchLine& line) {
  if (line.picture.empty()) return "<td class=\"pic soft\">&#8212;";
  constexpr std::size_t kRowHeight = 9;
  std::string drawing;
  std::string words;
  std::size_t width = 1;
  for (const salvage::BatchPicture& row : line.picture) width = std::max(width, row.cells.size());
  std::size_t y = 0;
  for (const salvage::BatchPicture& row : line.picture) {
    for (std::size_t at = 0; at < row.cells.size();) {
      const char letter = row.cells[at];
      const std::size_t end = std::min(row.cells.find_first_not_of(letter, at), row.cells.size());
      drawing += "<rect class=\"" + std::string(1, letter == '.' ? 'b' : letter) + "\" x=\"" + std::to_string(at) +
                 "\" y=\"" + std::to_string(y) + "\" width=\"" + std::to_string(end - at) + "\" height=\"6\"/>";
      at = end;
    }
    y += kRowHeight;
    words += (words.empty() ? "" : ", ") + row.name;
  }
  return "<td class=\"pic\"><svg viewBox=\"0 0 " + std::to_string(width) + " " + std::to_string(y - 3) +
         "\" preserveAspectRatio=\"none\" height=\"" + std::to_string(y) + "\" role=\"img\"><title>" +
         htmlText("from top to bottom: " + words) + "</title>" + drawing + "</svg>";
}

std::string number(double sort, const std::string& shown) {
  return "<td class=\"n\" data-sort=\"" + fixedPoint(std::clamp(sort, -1e15, 1e15), 4) + "\">" + htmlText(shown);
}

std::string filmRow(const BatchLine& line) {
  const std::string word = wordOf(line);
  const double share = salvage::lostShare(line);
  std::string kind;
  for (const char one : word) kind += one >= 'a' && one <= 'z' ? one : '-';
  return "<tr><td class=\"name\"><div>" + htmlText(platform::nameOf(line.input)) + "<small>" +
         htmlText(platform::folderOf(line.input)) + "</small>" +
         (line.reason.empty() ? "" : "<small>" + htmlText(line.reason) + "</small>") +
         "</div><td><span class=\"verdict v-" + kind + "\">" + htmlText(word) + "</span>" + pictureOf(line) +
         number(share, shownLostShare(share)) +
         number(salvage::figureOf(line, "seconds_lost"), shownLength(salvage::figureOf(line, "seconds_lost"))) +
         number(salvage::figureOf(line, "seconds"), shownLength(salvage::figureOf(line, "seconds"))) +
         number(static_cast<double>(line.inputSize), shownSize(line.inputSize)) +
         number(line.seconds, shownSeconds(line.seconds)) + "</tr>\n";
}

std::string filmTable(const std::vector<const BatchLine*>& worst) {
  std::string text =
      "<input id=\"find\" type=\"search\" placeholder=\"Show only films with ...\" aria-label=\"Show only films with\" "
      "hidden>\n<div class=\"wide\"><table id=\"films\"><thead><tr>";
  constexpr std::array<std::string_view, 8> kHeads{"Film",      "Verdict", "Damage", "Lost",
                                                   "Lost time", "Length",  "Size",   "Worked on for"};
  for (std::size_t i = 0; i < kHeads.size(); ++i) {
    const std::string head(kHeads[i]);
    const bool isSorted = head == "Lost";
    text += "<th" + std::string(i > 2 ? " class=\"n\"" : "") + (isSorted ? " aria-sort=\"descending\"" : "") + ">" +
            (head == "Damage" ? head : "<button>" + head + "</button>");
  }
  text += "</tr></thead><tbody>\n";
  for (std::size_t i = 0; i < std::min(worst.size(), kMaxSummaryRows); ++i) text += filmRow(*worst[i]);
  text += "</tbody></table></div>\n";
  if (worst.size() > kMaxSummaryRows) {
    text += "<p class=\"soft\">" + counted(worst.size() - kMaxSummaryRows, "film") +
            " with less damage not shown; the table for a spreadsheet has all.</p>\n";
  }
  return text;
}

}  // namespace

std::string summaryPage(const salvage::CollectionSummary& summary, std::size_t journals) {
  const salvage::CollectionTotals totals = summary.totals();
  const auto worst = summary.worst();
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
      "script-src 'unsafe-inline'\">\n<title>A collection's films</title>\n<style>" +
      std::string(kSummaryStyle) + "</style></head><body>\n<h1>" + counted(totals.films, "film") +
      "</h1>\n<p class=\"soft\">" + shownNumber(totals.done) + " done, " + shownNumber(totals.failed) + " failed, " +
      shownNumber(totals.unfinished) + " not finished, as " + counted(journals, "journal") +
      (journals == 1 ? " tells" : " tell") + ".</p>\n<div class=\"tiles\">\n";
  if (totals.filmSeconds > 0) {
    page += tile(shownLength(totals.filmSeconds), "of film") + tile(shownLength(totals.lostSeconds), "lost or hurt") +
            tile(shownLostShare(totals.lostSeconds / totals.filmSeconds), "of all of it");
  }
  page +=
      tile(shownSize(totals.inputBytes), "read") + tile(shownSize(totals.outputBytes), "written") +
      tile(shownLength(totals.workSeconds), "of work") + tile(shownSize(totals.peakMemory), "of memory for a film") +
      "</div>\n" + verdictBar(worst) + "<h2>Films, the worst first</h2>\n" + filmTable(worst) +
      "<div class=\"key\"><span><i class=\"w\"></i>as it was</span><span><i class=\"m\"></i>mended</span>"
      "<span><i class=\"x\"></i>not of this film</span><span><i class=\"h\"></i>hurt, kept as it is</span>"
      "<span><i class=\"l\"></i>lost</span></div>\n<p class=\"soft\">The upper bar of a picture is the damaged file "
      "from its first byte to its last, each bar below it a stream from its beginning to its end.</p>\n<script>";
  return page + std::string(kSummaryScript) + "</script></body></html>\n";
}

}  // namespace zelvo::cli
