#include "cli/summary_text.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/json_writer.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

using salvage::BatchLine;
using salvage::CollectionTotals;

constexpr std::array<std::string_view, 3> kSummaryStates{"not finished", "done", "failed"};

std::string countedWords(const std::map<std::string, std::uint64_t>& counts) {
  std::string text;
  for (const auto& [word, count] : counts) {
    text += (text.empty() ? "" : ", ") + shownNumber(count) + " " + printable(word);
  }
  return text;
}

std::string labelled(std::string_view label, const std::string& text) {
  std::string line = "  " + std::string(label) + ":";
  line.resize(std::max<std::size_t>(line.size() + 1, 13), ' ');
  return line + text + "\n";
}

void writeCounts(JsonWriter& json, std::string_view name, const std::map<std::string, std::uint64_t>& counts) {
  json.key(name);
  json.beginObject();
  for (const auto& [word, count] : counts) json.member(word, count);
  json.endObject();
}

/// Whether a spreadsheet would calculate it.
bool isFormula(std::string_view text) {
  return !text.empty() && std::string_view("=+-@\t\r\n|%").find(text.front()) != std::string_view::npos;
}

std::string csvText(std::string_view text) {
  std::string out = "\"";
  const std::string shown = printable(text);
  if (isFormula(text) || isFormula(shown)) out += '\'';
  for (const char one : shown) {
    if (one == '"') out += '"';
    out += one;
  }
  return out + "\"";
}

}  // namespace

std::string shownLength(double seconds) {
  if (!(seconds < 1e15)) return "very long";
  if (seconds > 0 && seconds < 9.95) return fixedPoint(seconds, 1) + " s";
  const auto whole = static_cast<std::uint64_t>(std::max(0.0, seconds) + 0.5);
  if (whole < 60) return shownNumber(whole) + " s";
  if (whole < 3600) return shownNumber(whole / 60) + " min " + shownNumber(whole % 60) + " s";
  return shownNumber(whole / 3600) + " h " + shownNumber(whole / 60 % 60) + " min";
}

std::string shownLostShare(double share) { return fixedPoint(100 * share, 1) + " %"; }

std::string summaryInWords(const salvage::CollectionSummary& summary, std::size_t journals) {
  const CollectionTotals totals = summary.totals();
  std::string text = counted(totals.films, "film") + " in " + counted(journals, "journal") + ": " +
                     shownNumber(totals.done) + " done, " + shownNumber(totals.failed) + " failed, " +
                     shownNumber(totals.unfinished) + " not finished.\n";
  if (!totals.verdicts.empty()) text += labelled("Verdicts", countedWords(totals.verdicts));
  if (!totals.outcomes.empty()) text += labelled("Outcomes", countedWords(totals.outcomes));
  if (totals.filmSeconds > 0) {
    text += labelled("Film", shownLength(totals.filmSeconds) + " in all, " + shownLength(totals.lostSeconds) +
                                 " lost or hurt (" + shownLostShare(totals.lostSeconds / totals.filmSeconds) + ")");
  }
  text += labelled("Data", shownSize(totals.inputBytes) + " read, " + shownSize(totals.outputBytes) + " written");
  text += labelled("Work", shownLength(totals.workSeconds) + ", at most " + shownSize(totals.peakMemory) +
                               " of memory for one film");
  std::string worst;
  for (const BatchLine* line : summary.worst()) {
    const double share = salvage::lostShare(*line);
    if (share == 0 || std::ranges::count(worst, '\n') >= static_cast<std::ptrdiff_t>(kWorstFilms)) break;
    std::string shown = shownLostShare(share);
    shown.insert(0, shown.size() < 7 ? 7 - shown.size() : 0, ' ');
    worst += "    " + shown + "  " + printable(line->input) +
             (line->reason.empty() ? "" : ": " + printable(line->reason)) + "\n";
  }
  if (!worst.empty()) text += "  Worst films, by how much is lost:\n" + worst;
  return text;
}

std::string summaryInJson(const salvage::CollectionSummary& summary, std::size_t journals) {
  const CollectionTotals totals = summary.totals();
  JsonWriter json;
  json.beginObject();
  json.member("version", std::uint64_t{1});
  json.member("command", "summary");
  json.member("journals", journals);
  json.member("films", totals.films);
  json.member("done", totals.done);
  json.member("failed", totals.failed);
  json.member("unfinished", totals.unfinished);
  json.member("adopted", totals.adopted);
  writeCounts(json, "outcomes", totals.outcomes);
  writeCounts(json, "verdicts", totals.verdicts);
  json.member("input_bytes", totals.inputBytes);
  json.member("output_bytes", totals.outputBytes);
  const auto seconds = [&](std::string_view name, double value) {
    json.key(name);
    json.seconds(value);
  };
  seconds("film_seconds", totals.filmSeconds);
  seconds("lost_seconds", totals.lostSeconds);
  seconds("work_seconds", totals.workSeconds);
  json.member("peak_memory", totals.peakMemory);
  json.key("worst");
  json.beginArray();
  std::size_t told = 0;
  for (const BatchLine* line : summary.worst()) {
    const double share = salvage::lostShare(*line);
    if (share == 0 || told++ == kWorstFilms) break;
    json.beginObject();
    json.pathMembers(line->input);
    json.member("command", line->command);
    json.member("state", line->state == salvage::LineState::naming
                             ? "unfinished"
                             : kSummaryStates[static_cast<std::size_t>(line->state)]);
    seconds("lost_share", share);
    json.key("reason");
    line->reason.empty() ? json.null() : json.text(line->reason);
    json.endObject();
  }
  json.endArray();
  json.endObject();
  return json.take() + "\n";
}

std::string summaryInCsv(const salvage::CollectionSummary& summary) {
  std::string text =
      "input,command,state,outcome,verdict,exit,seconds,seconds_lost,lost_share,input_bytes,output,output_bytes,"
      "work_seconds,peak_memory,input_sha256,output_sha256,reason\r\n";
  for (const BatchLine* film : summary.films()) {
    const BatchLine& line = *film;
    const auto number = [&](double value) { text += "," + fixedPoint(std::clamp(value, -1e15, 1e15), 3); };
    const auto count = [&](std::uint64_t value) { text += "," + std::to_string(value); };
    text += csvText(line.input) + "," + csvText(line.command) + "," +
            csvText(kSummaryStates[static_cast<std::size_t>(line.state)]) + "," + csvText(line.outcome) + "," +
            csvText(line.verdict) + "," + std::to_string(line.exit);
    number(salvage::figureOf(line, "seconds"));
    number(salvage::figureOf(line, "seconds_lost"));
    number(salvage::lostShare(line));
    count(line.inputSize);
    text += "," + csvText(line.output ? line.output->path : "");
    count(line.output ? line.output->size : 0);
    number(line.seconds);
    count(line.peakMemory);
    text += "," + csvText(line.inputSha256) + "," + csvText(line.output ? line.output->sha256 : "") + "," +
            csvText(line.reason) + "\r\n";
  }
  return text;
}

}  // namespace zelvo::cli
