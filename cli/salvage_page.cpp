// Sentence and figures, the damage picture, the table of all damage, headers and indexes. The picture is drawn in units
// of which the bars are a thousand wide, so that it fits any window.
#include "cli/salvage_page.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/html_text.h"
#include "cli/rescue_words.h"
#include "cli/shown_text.h"
#include "cli/verify_words.h"
#include "salvage/damage_picture.h"
#include "salvage/salvage_words.h"

namespace zelvo::cli {

namespace {

using salvage::SalvagedSpan;
using salvage::SalvageReport;
using salvage::SlotState;

constexpr double kBar = 1000;
constexpr int kBarHeight = 22;
constexpr int kRow = 46;
/// Narrower marks could not be seen, or met with a pointer.
constexpr double kThinnest = 2;
/// More spans than this make a page that no reader reads; the first ones are told.
constexpr std::size_t kMaxRows = 2000;

constexpr std::string_view kStyle = R"(
:root { color-scheme: light dark; --page: #ffffff; --text: #1c2430; --soft: #5b6675; --line: #d5dbe3; --card: #f4f6f9;
  --kept: #8fc7ae; --header: #5b6675; --index: #9aa6b6; --mended: #0072b2; --hurt: #e69f00; --lost: #b52a1c;
  --doubled: #56b4e9; --foreign: #9b5c94; }
@media (prefers-color-scheme: dark) { :root { --page: #14181f; --text: #e6eaf0; --soft: #9aa6b6; --line: #323b48;
  --card: #1d232d; --kept: #2f6b55; --header: #93a0b3; --index: #66738a; --mended: #4aa8e0; --hurt: #f0b93c;
  --lost: #f2665a; --doubled: #8fd0f5; --foreign: #d796cf; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 72rem; padding: 2rem 1.25rem 4rem; background: var(--page); color: var(--text);
  font: 16px/1.5 system-ui, sans-serif; }
h1 { font-size: 1.5rem; margin: 0; overflow-wrap: anywhere; } h2 { font-size: 1.1rem; margin: 2.25rem 0 .6rem; }
p { margin: .5rem 0; } .soft { color: var(--soft); }
.verdict { display: inline-block; margin: .8rem 0 .2rem; padding: .15rem .7rem; border-radius: 1rem; color: #fff;
  font-weight: 600; }
.clean, .repaired { background: #2c7d55; } .partial { background: #a8590b; } .hopeless { background: #b02a22; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
th, td { text-align: left; padding: .35rem .7rem; border-bottom: 1px solid var(--line); vertical-align: top; }
th { color: var(--soft); font-weight: 600; white-space: nowrap; } td.n, th.n { text-align: right; white-space: nowrap; }
figure { margin: 0; padding: 1rem; background: var(--card); border-radius: .6rem; }
svg { display: block; width: 100%; height: auto; } svg text { fill: var(--text); font: 13px system-ui, sans-serif; }
svg .soft { fill: var(--soft); }
.key { display: flex; flex-wrap: wrap; gap: .3rem 1.2rem; margin-top: .8rem; font-size: .9rem; }
.key svg { display: inline-block; width: .9rem; height: .9rem; margin-right: .4rem; vertical-align: -.1rem; }
.kept { fill: var(--kept); } .header { fill: var(--header); } .index { fill: var(--index); }
.mended { fill: var(--mended); } .hurt { fill: var(--hurt); } .lost { fill: var(--lost); }
.doubled { fill: var(--doubled); } .foreign { fill: var(--foreign); }
pattern path { stroke: var(--page); stroke-width: 1.4; stroke-opacity: .6; fill: none; }
g.mark:hover rect { stroke: var(--text); stroke-width: 2; }
)";

/// Of DamagePaint: the classes of the colours, and the lines over these, which tell them apart without colour too.
struct PaintLook {
  std::string_view name;
  std::string_view lines;
};
constexpr std::array<PaintLook, platform::kDamagePaints> kPaintLooks = {{{"kept", ""},
                                                                         {"header", ""},
                                                                         {"index", "M0 0H8M0 4H8M0 0V8M4 0V8"},
                                                                         {"mended", "M0 4H8"},
                                                                         {"hurt", "M1 2H3M5 6H7"},
                                                                         {"lost", "M-2 2L2 -2M0 8L8 0M6 10L10 6"},
                                                                         {"doubled", "M4 0V8"},
                                                                         {"foreign", "M0 0L8 8M0 8L8 0"}}};

const PaintLook& lookOf(platform::DamagePaint paint) { return kPaintLooks[static_cast<std::size_t>(paint)]; }

std::string patterns() {
  std::string text = "<defs>\n";
  for (const PaintLook& look : kPaintLooks) {
    if (look.lines.empty()) continue;
    text += "<pattern id=\"over-" + std::string(look.name) +
            "\" width=\"8\" height=\"8\" patternUnits=\"userSpaceOnUse\"><path d=\"" + std::string(look.lines) +
            "\"/></pattern>\n";
  }
  return text + "</defs>\n";
}

/// A rectangle with its lines; with what it tells when it is pointed at.
std::string rectangle(double x, int y, double width, int height, platform::DamagePaint paint, std::string_view title) {
  const PaintLook& look = lookOf(paint);
  const std::string place = "x=\"" + fixedPoint(x, 2) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
                            fixedPoint(width, 2) + "\" height=\"" + std::to_string(height) + "\"/>";
  std::string text = "<g class=\"mark\">";
  if (!title.empty()) text += "<title>" + htmlText(title) + "</title>";
  text += "<rect class=\"" + std::string(look.name) + "\" " + place;
  constexpr double kPatternFrom = 4;
  if (!look.lines.empty() && width >= kPatternFrom)
    text += "<rect fill=\"url(#over-" + std::string(look.name) + ")\" " + place;
  return text + "</g>\n";
}

std::string drawnBar(const platform::DamageBar& bar, const SalvageReport& report, int y) {
  std::string text = "<text x=\"0\" y=\"" + std::to_string(y + 11) + "\">" + htmlText(bar.name) +
                     "</text><text class=\"soft\" text-anchor=\"end\" x=\"1000\" y=\"" + std::to_string(y + 11) +
                     "\">" + htmlText(bar.length) + "</text>\n" +
                     rectangle(0, y + 17, kBar, kBarHeight, platform::DamagePaint::kept, {});
  if (!(bar.extent > 0)) return text;
  for (const platform::DamageMark& mark : bar.marks) {
    const bool isLoss = mark.loss != platform::DamageMark::kNoLoss;
    if (isLoss && mark.loss >= kMaxRows) continue;
    const double width = std::clamp((mark.end - mark.begin) / bar.extent * kBar, kThinnest, kBar);
    const double x = std::clamp(mark.begin / bar.extent * kBar, 0.0, kBar - width);
    const std::string title = isLoss ? spanWords(report.spans[mark.loss], report)
                                     : std::string(platform::kDamagePaintNames[static_cast<std::size_t>(mark.paint)]);
    text += rectangle(x, y + 17, width, kBarHeight, mark.paint, title);
  }
  return text;
}

std::string picture(const SalvageReport& report) {
  const platform::DamagePicture told = salvage::damagePicture(report);
  std::string bars;
  std::array<bool, platform::kDamagePaints> isUsed{true};
  for (std::size_t i = 0; i < told.bars.size(); ++i) {
    bars += drawnBar(told.bars[i], report, 4 + static_cast<int>(i) * kRow);
    for (const platform::DamageMark& mark : told.bars[i].marks) isUsed[static_cast<std::size_t>(mark.paint)] = true;
  }
  std::string text = "<figure>\n<svg viewBox=\"0 0 1000 " + std::to_string(told.bars.size() * std::size_t{kRow}) +
                     "\" role=\"img\" aria-label=\"Where the film is damaged\">\n" + patterns() + bars +
                     "</svg>\n<div class=\"key\">";
  for (std::size_t i = 0; i < isUsed.size(); ++i) {
    if (!isUsed[i]) continue;
    text += "<span><svg viewBox=\"0 0 14 14\">" + rectangle(0, 0, 14, 14, static_cast<platform::DamagePaint>(i), {}) +
            "</svg>" + std::string(platform::kDamagePaintNames[i]) + "</span>";
  }
  return text + "</div></figure>\n";
}

std::string streamName(const SalvageReport& report, std::size_t stream) {
  return "Stream " + std::to_string(stream) + ": " + std::string(kindOf(report.streams[stream]));
}

std::string cell(const std::string& text, bool isNumber = false) {
  return (isNumber ? "<td class=\"n\">" : "<td>") + htmlText(text) + "</td>";
}

std::string streamTable(const SalvageReport& report) {
  std::string text =
      "<h2>Streams</h2>\n<div class=\"wide\"><table><tr><th>Stream<th>Codec<th>Header<th class=\"n\">Length"
      "<th class=\"n\">Chunks<th class=\"n\">Whole<th class=\"n\">Mended<th class=\"n\">Damaged<th class=\"n\">Lost"
      "</tr>\n";
  const auto both = [](const salvage::SalvagedStream& stream, SlotState one, SlotState other) {
    return shownNumber(stream.of(one).chunks + stream.of(other).chunks);
  };
  for (std::size_t i = 0; i < report.streams.size(); ++i) {
    const salvage::SalvagedStream& stream = report.streams[i];
    text += "<tr>" + cell(streamName(report, i)) + cell(codecOf(stream)) + cell(std::string(nameOf(stream.origin))) +
            cell(shownTime(stream.all().seconds), true) + cell(shownNumber(stream.all().chunks), true) +
            cell(shownNumber(stream.of(SlotState::whole).chunks), true) +
            cell(shownNumber(stream.mended().chunks), true) +
            cell(shownNumber(stream.notWhole().chunks - stream.of(SlotState::lost).chunks -
                             stream.of(SlotState::refilled).chunks),
                 true) +
            cell(both(stream, SlotState::lost, SlotState::refilled), true) + "</tr>\n";
  }
  return text + "</table></div>\n";
}

std::string spanTable(const SalvageReport& report) {
  if (report.spans.empty()) return {};
  std::string text =
      "<h2>Damage, place by place</h2>\n<div class=\"wide\"><table><tr><th class=\"n\">From byte<th class=\"n\">To "
      "byte"
      "<th class=\"n\">Time<th>Streams<th>What<th>What was done<th>Known by</tr>\n";
  const std::size_t told = std::min(report.spans.size(), kMaxRows);
  for (std::size_t i = 0; i < told; ++i) {
    const SalvagedSpan& span = report.spans[i];
    std::string streams;
    for (const salvage::SpanShare& share : span.streams)
      streams += (streams.empty() ? "" : ", ") + std::string(kindOf(report.streams[share.stream])) + " " +
                 std::to_string(share.stream);
    std::string time = shownTime(span.begin);
    if (span.end > span.begin) time += " to " + shownTime(span.end);
    text += "<tr>" + cell(shownNumber(span.span.begin), true) + cell(shownNumber(span.span.end), true) +
            cell(time, true) + cell(streams) + cell(std::string(wordsFor(span.span.cause))) +
            cell(std::string(doneAbout(span.span.cause))) + cell(std::string(evidenceOf(span, report))) + "</tr>\n";
  }
  text += "</table></div>\n";
  const std::uint64_t left = report.spans.size() - told + report.spansLeftOut;
  if (left > 0) text += "<p class=\"soft\">" + counted(left, "more place") + " not shown.</p>\n";
  return text;
}

std::string fieldTable(const SalvageReport& report) {
  if (report.fields.empty()) return {};
  std::string text =
      "<h2>Headers that were put together</h2>\n<div class=\"wide\"><table><tr><th>Stream<th>Field<th>Value"
      "<th>Might also be</tr>\n";
  for (const salvage::FoundField& field : report.fields) {
    std::string others;
    for (const std::string& other : field.alternatives) others += (others.empty() ? "" : "; ") + other;
    text +=
        "<tr>" + cell(std::to_string(field.stream)) + cell(field.name) + cell(field.value) + cell(others) + "</tr>\n";
  }
  return text + "</table></div>\n";
}

std::string rescueTable(const std::optional<salvage::RescueReport>& rescue) {
  if (!rescue) return {};
  const std::string wanted = wantedWords(*rescue);
  std::string text = "<h2>What the disk did not give</h2>\n<p>" + htmlText(rescueWords(*rescue)) + ". " +
                     (wanted.empty() ? "" : htmlText(wanted) + ".") + "</p>\n";
  if (rescue->gains.empty()) return text;
  text +=
      "<div class=\"wide\"><table><tr><th class=\"n\">From byte of the map<th class=\"n\">To byte<th "
      "class=\"n\">Seconds"
      "<th class=\"n\">Seconds per MiB<th>Holds<th>Wanted</tr>\n";
  const std::size_t told = std::min(rescue->gains.size(), kMaxRows);
  for (std::size_t i = 0; i < told; ++i) {
    const salvage::RescueGain& gain = rescue->gains[i];
    text += "<tr>" + cell(shownNumber(gain.place.begin), true) + cell(shownNumber(gain.place.end), true) +
            cell(fixedPoint(gain.seconds, 2), true) + cell(fixedPoint(gain.perMebibyte(), 2), true) +
            cell(gain.holdsHeaders  ? "headers"
                 : gain.seconds > 0 ? "film"
                                    : "nothing known") +
            cell(i < rescue->wanted ? "yes" : "no") + "</tr>\n";
  }
  text += "</table></div>\n";
  if (told < rescue->gains.size())
    text += "<p class=\"soft\">" + counted(rescue->gains.size() - told, "more place") + " not shown.</p>\n";
  return text;
}

std::string details(const SalvageReport& report) {
  std::uint64_t entries = 0;
  for (const salvage::TemplateSource& index : report.indexes) entries += index.entries;
  std::string text = "<h2>Indexes and sync</h2>\n<p>" + counted(report.indexes.size(), "index part") + " with " +
                     shownNumber(entries) + " entries found; " + counted(report.indexedChunks, "chunk") +
                     " of the film placed by them.</p>\n";
  return text + "<p>Had the lost parts just been left out, sound and pictures would be up to " +
         fixedPoint(report.syncBefore, 2) + " s apart; now they are " + fixedPoint(report.syncAfter, 2) +
         " s apart.</p>\n";
}

/// What playing the film showed, when that was wanted.
std::string playing(const SalvageOutcome& outcome) {
  if (!outcome.played) return {};
  std::string text = "<h2>Does it play?</h2>\n<p>" + htmlText(verdictSentence(*outcome.played)) + "</p>\n";
  if (outcome.keysDropped > 0)
    text += "<p>" + counted(outcome.keysDropped, "picture") + " not called a key any more, as decoding shows.</p>\n";
  const std::vector<std::string> faults = checkLines(*outcome.played, true);
  if (faults.empty()) return text;
  text += "<ul>\n";
  for (const std::string& fault : faults) text += "<li>" + htmlText(fault) + "</li>\n";
  return text + "</ul>\n";
}

}  // namespace

std::string salvagePage(const SalvageOutcome& outcome, bool namesOutput) {
  const Outcome& base = outcome.outcome;
  const std::string name = htmlText(base.inputPath);
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
      name + "</title>\n<style>" + std::string(kStyle) + "</style>\n</head>\n<body>\n<h1>" + name + "</h1>\n";
  if (!outcome.report) return page + "<p>" + htmlText(base.reason) + "</p>\n</body>\n</html>\n";
  const SalvageReport& report = *outcome.report;
  const std::string verdict(nameOf(report.verdict));
  page += "<p><span class=\"verdict " + verdict + "\">" + verdict + "</span></p>\n<p>" +
          htmlText(verdictSentence(report)) + "</p>\n";
  if (report.returnsLeftOut > 0) page += "<p>The file was " + htmlText(transferWords(report)) + ".</p>\n";
  if (report.chunksLeftOut > 0) page += "<p>Left out: " + htmlText(leftOutWords(report)) + ".</p>\n";
  if (!base.reason.empty()) page += "<p>" + htmlText(base.reason) + "</p>\n";
  if (base.outputPath) {
    page += "<p class=\"soft\">Written: " + (namesOutput ? htmlText(*base.outputPath) + ", " : "") +
            shownSize(base.outputSize.value_or(0)) + ". The damaged file is unchanged.</p>\n";
  }
  page += playing(outcome);
  page += "<h2>The damage picture</h2>\n" + picture(report) + streamTable(report) + spanTable(report) +
          rescueTable(report.rescue) + fieldTable(report) + details(report);
  return page + "</body>\n</html>\n";
}

}  // namespace zelvo::cli
