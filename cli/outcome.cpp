#include "cli/outcome.h"

#include <algorithm>
#include <array>
#include <utility>

#include "avi/codec_names.h"
#include "cli/json_writer.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

constexpr std::uint64_t kResultVersion = 1;

std::string_view kindName(engine::StreamKind kind) { return kind == engine::StreamKind::video ? "video" : "audio"; }

std::string codecInWords(const engine::StreamReport& stream) {
  if (!stream.formatTag) return stream.codec.empty() ? "codec not named" : printable(stream.codec);
  const std::string_view name = avi::audioFormatName(*stream.formatTag);
  return name.empty() ? "format " + shownHex(*stream.formatTag, 4) : std::string(name);
}

std::string streamsInWords(const std::vector<engine::StreamReport>& streams) {
  std::string text;
  for (const engine::StreamReport& stream : streams) {
    text +=
        labelledLine(stream.kind == engine::StreamKind::video ? "Video" : "Audio",
                     codecInWords(stream) + ", " + counted(stream.chunks, "chunk") + ", " + shownSize(stream.bytes));
  }
  return text;
}

void writeMembers(JsonWriter& json, const engine::StreamReport& stream) {
  json.member("codec", stream.codec);
  if (stream.formatTag) json.member("format_tag", *stream.formatTag);
  json.member("chunks", stream.chunks);
  json.member("bytes", stream.bytes);
}

/// The first stream of a kind, under that kind's name.
void writeFirst(JsonWriter& json, const std::vector<engine::StreamReport>& streams, engine::StreamKind kind) {
  json.key(kindName(kind));
  const auto first = std::find_if(streams.begin(), streams.end(), [&](const auto& one) { return one.kind == kind; });
  if (first == streams.end()) {
    json.null();
    return;
  }
  json.beginObject();
  writeMembers(json, *first);
  json.endObject();
}

void writeAll(JsonWriter& json, const std::vector<engine::StreamReport>& streams) {
  json.key("streams");
  json.beginArray();
  for (const engine::StreamReport& stream : streams) {
    json.beginObject();
    json.member("kind", kindName(stream.kind));
    writeMembers(json, stream);
    json.endObject();
  }
  json.endArray();
}

void writeOptional(JsonWriter& json, std::string_view name, const std::optional<std::uint64_t>& value) {
  json.key(name);
  if (value) {
    json.number(*value);
  } else {
    json.null();
  }
}

void writeOutput(JsonWriter& json, const Outcome& outcome) {
  json.key("output");
  if (!outcome.outputSize) {
    json.null();
    return;
  }
  json.beginObject();
  if (outcome.outputPath) {
    json.pathMembers(*outcome.outputPath);
  } else {
    json.key("path");
    json.null();
  }
  json.member("size", *outcome.outputSize);
  json.endObject();
}

}  // namespace

Outcome outcomeOf(std::string command, const std::string& path) {
  Outcome outcome;
  outcome.command = std::move(command);
  outcome.inputPath = path;
  return outcome;
}

Exit exitOf(const Outcome& outcome) {
  switch (outcome.verdict) {
    case Verdict::repaired:
    case Verdict::repairable:
      // What could not be read is missing from the result, so it is no plain success.
      // Decision: command-line, Unreadable bytes exit with 3
      return outcome.readFailures.count > 0 ? Exit::ioFailed : Exit::done;
    case Verdict::plays:
      return Exit::done;
    case Verdict::notSupported:
    case Verdict::invalid:
    case Verdict::faults:
      return Exit::unrepairable;
    case Verdict::stopped:
      return Exit::stopped;
    case Verdict::failed:
      break;
  }
  return Exit::ioFailed;
}

std::string_view nameOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::repaired:
      return "repaired";
    case Verdict::repairable:
      return "repairable";
    case Verdict::notSupported:
      return "not-supported";
    case Verdict::invalid:
      return "invalid";
    case Verdict::plays:
      return "plays";
    case Verdict::faults:
      return "faults";
    case Verdict::stopped:
      return "stopped";
    case Verdict::failed:
      break;
  }
  return "failed";
}

Verdict verdictOf(std::string_view name) {
  for (const Verdict one : {Verdict::repaired, Verdict::repairable, Verdict::notSupported, Verdict::invalid,
                            Verdict::plays, Verdict::faults, Verdict::stopped}) {
    if (nameOf(one) == name) return one;
  }
  return Verdict::failed;
}

std::string inWords(const Outcome& outcome) {
  const std::string input = printable(outcome.inputPath);
  std::string text;
  if (outcome.verdict == Verdict::repaired) {
    text = input + ": repaired.\n" + streamsInWords(outcome.streams);
    const std::string output = outcome.outputPath.value_or("");
    text += labelledLine("Written", printable(output) + " (" + shownSize(outcome.outputSize.value_or(0)) + ", in " +
                                        shownSeconds(outcome.seconds) + ")");
    text += labelledLine("To play",
                         "open it with any video player, for instance: mpv " + printable(quotedForShell(output)));
    text += labelledLine("Unchanged", input);
  } else if (outcome.verdict == Verdict::repairable) {
    text = input + ": can be repaired.\n" + streamsInWords(outcome.streams);
    text += labelledLine("Output", shownSize(outcome.outputSize.value_or(0)) + " would be written");
    text += labelledLine("To repair", "zelvo-avi repair " + printable(quotedForShell(outcome.inputPath)));
  }
  return text;
}

void beginJson(JsonWriter& json, const Outcome& outcome) {
  json.member("command", outcome.command);
  json.key("input");
  json.beginObject();
  json.pathMembers(outcome.inputPath);
  writeOptional(json, "size", outcome.inputSize);
  json.endObject();
  json.member("outcome", nameOf(outcome.verdict));
  json.key("reason");
  if (outcome.reason.empty()) {
    json.null();
  } else {
    json.text(outcome.reason);
  }
  writeOutput(json, outcome);
}

void endJson(JsonWriter& json, const Outcome& outcome) {
  json.member("read_errors", outcome.readFailures.count);
  json.key("warnings");
  json.beginArray();
  for (const std::string& warning : outcome.warnings) json.text(warning);
  json.endArray();
  json.key("seconds");
  json.seconds(outcome.seconds);
}

std::string inJson(const Outcome& outcome) {
  JsonWriter json;
  json.beginObject();
  json.member("version", kResultVersion);
  beginJson(json, outcome);
  writeFirst(json, outcome.streams, engine::StreamKind::video);
  writeFirst(json, outcome.streams, engine::StreamKind::audio);
  writeAll(json, outcome.streams);
  endJson(json, outcome);
  json.endObject();
  return json.take() + "\n";
}

std::string summary(const std::vector<Verdict>& verdicts, std::size_t notStarted) {
  struct Share {
    Verdict verdict;
    std::string_view words;
  };
  constexpr std::array kShares = {Share{Verdict::repaired, "repaired"},
                                  Share{Verdict::repairable, "can be repaired"},
                                  Share{Verdict::notSupported, "cannot be repaired"},
                                  Share{Verdict::invalid, "not an AVI file"},
                                  Share{Verdict::plays, "play throughout"},
                                  Share{Verdict::faults, "with faults"},
                                  Share{Verdict::failed, "failed"},
                                  Share{Verdict::stopped, "stopped"}};
  std::string text = counted(verdicts.size() + notStarted, "input") + ":";
  std::string_view separator = " ";
  for (const Share& share : kShares) {
    const auto count = std::count(verdicts.begin(), verdicts.end(), share.verdict);
    if (count == 0) continue;
    text += std::string(separator) + std::to_string(count) + " " + std::string(share.words);
    separator = ", ";
  }
  if (notStarted > 0) text += std::string(separator) + std::to_string(notStarted) + " not started";
  return text + ".\n";
}

}  // namespace zelvo::cli
