#include "cli/salvage_outcome.h"

#include <algorithm>

#include "cli/json_writer.h"
#include "cli/rescue_words.h"
#include "cli/shown_text.h"
#include "cli/verify_words.h"
#include "salvage/report_json.h"
#include "salvage/salvage_words.h"

namespace zelvo::cli {

namespace {

using salvage::SalvageReport;
using salvage::SlotState;
using salvage::SlotTally;

constexpr std::uint64_t kSalvageVersion = 1;

std::string headerWords(const SalvageReport& report) {
  const auto isOwn = [](const salvage::SalvagedStream& one) { return one.origin == salvage::HeaderOrigin::own; };
  const auto own = static_cast<std::size_t>(std::ranges::count_if(report.streams, isOwn));
  if (own == report.streams.size()) return report.hasMainHeader ? "the film's own" : "partly lost, and made again";
  return shownNumber(own) + " of " + shownNumber(report.streams.size()) + " are the film's own, the rest is made again";
}

/// A field that might be something else, as "frame rate 25 of stream 0; might also be 30 with 48000 Hz".
std::string choiceWords(const salvage::FoundField& field) {
  std::string text = field.name + " " + field.value + " of stream " + std::to_string(field.stream) + "; might also be ";
  for (const std::string& other : field.alternatives)
    text += (&other == &field.alternatives.front() ? "" : ", ") + other;
  return text;
}

std::string rescueLines(const salvage::RescueReport& rescue, bool all) {
  std::string text = labelledLine("Disk", rescueWords(rescue));
  const std::string wanted = wantedWords(rescue);
  if (!wanted.empty()) text += labelledLine("Wanted", wanted);
  for (std::size_t i = 0; all && i < std::min(rescue.wanted, kMaxToldPlaces); ++i)
    text += labelledLine("Wanted", gainWords(rescue.gains[i]));
  return text;
}

void writeOutcomeReport(JsonWriter& json, const SalvageOutcome& outcome) {
  const std::optional<SalvageReport>& report = outcome.report;
  json.key("report");
  if (!report) {
    json.null();
    return;
  }
  json.beginObject();
  salvage::writeReport(json, *report);
  writeRescue(json, report->rescue);
  json.key("plays");
  writeCheck(json, outcome.played);
  json.member("keys_dropped", outcome.keysDropped);
  json.endObject();
}

/// What playing it showed, when that was wanted.
std::string playedWords(const SalvageOutcome& outcome, bool all) {
  if (!outcome.played) return {};
  std::string text = labelledLine("Plays", verdictSentence(*outcome.played));
  for (const std::string& fault : checkLines(*outcome.played, all)) text += labelledLine("Fault", fault);
  if (outcome.keysDropped > 0)
    text +=
        labelledLine("Keys", counted(outcome.keysDropped, "picture") + " not called a key any more, as decoding shows");
  return text;
}

}  // namespace

std::string inWords(const SalvageOutcome& outcome, bool spans) {
  const Outcome& base = outcome.outcome;
  const bool isThere = base.verdict == Verdict::repaired || base.verdict == Verdict::repairable;
  if (!isThere || !outcome.report) return {};
  const SalvageReport& report = *outcome.report;
  const std::string input = printable(base.inputPath);
  std::string text = input + ": " + verdictSentence(report) + "\n";
  for (const salvage::SalvagedStream& stream : report.streams) {
    const std::string kind(kindOf(stream));
    text += labelledLine(std::string(1, static_cast<char>(kind.front() - 'a' + 'A')) + kind.substr(1),
                         codecOf(stream) + ", " + streamWords(stream));
  }
  if (report.returnsLeftOut > 0) text += labelledLine("Transfer", transferWords(report));
  text += labelledLine("Headers", headerWords(report));
  for (const salvage::FoundField& field : report.fields) {
    if (!field.alternatives.empty()) text += labelledLine("Chosen", choiceWords(field));
  }
  if (spans) {
    for (const salvage::SalvagedSpan& span : report.spans) text += labelledLine("Damage", spanWords(span, report));
  } else if (!report.spans.empty()) {
    text +=
        labelledLine("Damage", counted(report.spans.size() + report.spansLeftOut, "place") + "; --verbose tells each");
  }
  if (report.chunksLeftOut > 0) text += labelledLine("Left out", leftOutWords(report));
  if (report.rescue) text += rescueLines(*report.rescue, spans);
  if (base.verdict == Verdict::repairable) {
    return text + labelledLine("Output", shownSize(base.outputSize.value_or(0)) + " would be written");
  }
  const std::string output = base.outputPath.value_or("");
  text += labelledLine("Written", printable(output) + " (" + shownSize(base.outputSize.value_or(0)) + ", in " +
                                      shownSeconds(base.seconds) + ")");
  text += playedWords(outcome, spans);
  text +=
      labelledLine("To play", "open it with any video player, for instance: mpv " + printable(quotedForShell(output)));
  return text + labelledLine("Unchanged", input);
}

std::string reportInWords(const SalvageOutcome& outcome) {
  const std::string words = inWords(outcome, true);
  if (!words.empty() || outcome.outcome.reason.empty()) return words;
  return outcome.outcome.reason + "\n";
}

std::string inJson(const SalvageOutcome& outcome) {
  JsonWriter json;
  json.beginObject();
  json.member("version", kSalvageVersion);
  beginJson(json, outcome.outcome);
  writeOutcomeReport(json, outcome);
  endJson(json, outcome.outcome);
  json.endObject();
  return json.take() + "\n";
}

std::string whyNothing(const SalvageReport& report, const std::string& name) {
  if (report.inputSize == 0) return name + " is empty.";
  if (report.end == salvage::SalvageEnd::noHeader) {
    return name + " cannot be brought back: its headers are lost, and nothing tells what its chunks hold.";
  }
  if (report.end == salvage::SalvageEnd::manySounds) {
    return name + " has several sound tracks; --rate is for a film that has one.";
  }
  if (report.end == salvage::SalvageEnd::tooLarge) {
    return "the film salvaged from " + name + " would be " + shownSize(report.outputSize) +
           " large, and no more than " + shownSize(report.outputLimit) +
           " can be right; use --allow-growth to have it all the same.";
  }
  return "nothing can be brought back from " + name + ": no picture and no sound was found in it.";
}

}  // namespace zelvo::cli
