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

<<<<<<< HEAD
void write(JsonWriter& json, std::string_view name, const SlotTally& tally) {
  json.key(name);
  json.beginObject();
  json.member("chunks", tally.chunks);
  json.member("bytes", tally.bytes);
  json.key("seconds");
  json.seconds(tally.seconds);
  json.endObject();
}

void writeStreams(JsonWriter& json, const SalvageReport& report) {
  json.key("streams");
  json.beginArray();
  for (const salvage::SalvagedStream& stream : report.streams) {
    json.beginObject();
    json.member("kind", kindOf(stream));
    json.member("codec", codecOf(stream));
    if (stream.formatTag) json.member("format_tag", *stream.formatTag);
    json.member("number", stream.number);
    json.member("header", nameOf(stream.origin));
    write(json, "all", stream.all());
    for (std::size_t state = 0; state < salvage::kSlotStates; ++state) {
      write(json, nameOf(static_cast<SlotState>(state)), stream.slots[state]);
    }
    json.endObject();
  }
  json.endArray();
}

void writeFields(JsonWriter& json, const SalvageReport& report) {
  json.key("fields");
  json.beginArray();
  for (const salvage::FoundField& field : report.fields) {
    json.beginObject();
    json.member("number", field.stream);
    json.member("name", field.name);
    json.member("value", field.value);
    json.key("alternatives");
    json.beginArray();
    for (const std::string& other : field.alternatives) json.text(other);
    json.endArray();
    json.endObject();
  }
  json.endArray();
  json.member("streams_without_header", report.streamsWithoutHeader);
}

void writeIndexes(JsonWriter& json, const SalvageReport& report) {
  json.key("indexes");
  json.beginArray();
  for (const salvage::TemplateSource& index : report.indexes) {
    json.beginObject();
    json.member("offset", index.offset);
    json.member("entries", index.entries);
    constexpr std::array<std::string_view, 3> kNames{"unknown", "own", "foreign"};
    json.member("film", kNames[static_cast<std::size_t>(index.belonging)]);
    json.endObject();
  }
  json.endArray();
  json.member("indexed_chunks", report.indexedChunks);
}

void writeOffset(JsonWriter& json, std::string_view name, const std::optional<std::uint64_t>& offset) {
  json.key(name);
  if (offset) {
    json.number(*offset);
  } else {
    json.null();
  }
}

void writeSpans(JsonWriter& json, const SalvageReport& report) {
  json.key("spans");
  json.beginArray();
  for (const salvage::SalvagedSpan& span : report.spans) {
    json.beginObject();
    json.member("begin", span.span.begin);
    json.member("end", span.span.end);
    writeOffset(json, "original_begin", span.span.originalBegin);
    writeOffset(json, "original_end", span.span.originalEnd);
    json.key("time_begin");
    json.seconds(span.begin);
    json.key("time_end");
    json.seconds(span.end);
    json.member("cause", nameOf(span.span.cause));
    json.member("done", doneAbout(span.span.cause));
    json.member("evidence", evidenceOf(span, report));
    json.member("confidence", confidenceOf(span, report));
    json.member("chunks", span.span.slots);
    json.key("streams");
    json.beginArray();
    for (const salvage::SpanShare& share : span.streams) json.number(share.stream);
    json.endArray();
    json.endObject();
  }
  json.endArray();
  json.member("spans_left_out", report.spansLeftOut);
  json.member("chunks_left_out", report.chunksLeftOut);
}

void writeReport(JsonWriter& json, const SalvageOutcome& outcome) {
=======
void writeOutcomeReport(JsonWriter& json, const SalvageOutcome& outcome) {
>>>>>>> main
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
