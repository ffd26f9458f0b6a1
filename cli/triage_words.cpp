#include "cli/triage_words.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "cli/json_writer.h"
#include "cli/shown_text.h"
#include "salvage/salvage_words.h"

namespace zelvo::cli {

namespace {

using salvage::TriageHeaders;
using salvage::TriageKind;
using salvage::TriageReport;

constexpr std::uint64_t kTriageVersion = 1;
/// Less than this is nothing.
constexpr double kNearNothing = 0.0005;

struct TriagedKind {
  TriageKind kind;
  std::string_view member;
  std::string_view label;
};
constexpr std::array kTriagedKinds = {
    TriagedKind{TriageKind::film, "film", "Film"},
    TriagedKind{TriageKind::zeros, "zeros", "Zeros"},
    TriagedKind{TriageKind::noise, "noise", "Noise"},
    TriagedKind{TriageKind::text, "text", "Text"},
    TriagedKind{TriageKind::otherFormat, "other_format", "Foreign"},
    TriagedKind{TriageKind::unreadable, "unreadable", "Unread"},
    TriagedKind{TriageKind::unrescued, "not_rescued", "Not saved"},
    TriagedKind{TriageKind::unknown, "unknown", "Unknown"},
};

std::string_view explained(TriageKind kind) {
  switch (kind) {
    case TriageKind::film:
      return "chunks of pictures and sound, headers, indexes";
    case TriageKind::zeros:
      return "whole sectors";
    case TriageKind::noise:
      return "random or encrypted bytes";
    case TriageKind::text:
      return "readable text";
    case TriageKind::otherFormat:
      return "begins as another format does";
    case TriageKind::unreadable:
      return "the disk did not give it";
    case TriageKind::unrescued:
      return "not rescued, by the map";
    case TriageKind::unknown:
      break;
  }
  return "neither film nor anything else that is known";
}

std::string_view headersName(TriageHeaders headers) {
  switch (headers) {
    case TriageHeaders::own:
      return "own";
    case TriageHeaders::partlyLost:
      return "partly-lost";
    case TriageHeaders::lost:
      break;
  }
  return "lost";
}

/// "91 %"; what is there is never "0 %", and what is not all never "100 %".
std::string triagedShare(double share) {
  if (share > 0 && share < 0.01) return "less than 1 %";
  if (share > 0.99 && share < 0.9999) return "more than 99 %";
  return fixedPoint(share * 100, 0) + " %";
}

std::string inTenths(double share) {
  static constexpr std::array<std::string_view, 9> kWords{"one tenth",    "two tenths",   "three tenths",
                                                          "four tenths",  "half of it",   "six tenths",
                                                          "seven tenths", "eight tenths", "nine tenths"};
  if (share >= 0.95) return "Nearly all of it";
  if (share < 0.05) return "Less than a tenth of it";
  const auto number = static_cast<std::size_t>(std::clamp(std::lround(share * 10), 1L, 9L));
  return "About " + std::string(kWords.at(number - 1)) + (number == 5 ? "" : " of it");
}

/// Of what nothing can be brought back: what is there instead.
std::string nothingSentence(const TriageReport& report) {
  const std::string places = report.isWhole ? "all of it" : "every place looked at";
  if (report.fileSize == 0) return "Nothing is left: the file is empty.";
  if (report.isAll(TriageKind::zeros)) return "Nothing is left: " + places + " is zero.";
  const double readable = 1 - report.of(TriageKind::unreadable) - report.of(TriageKind::unrescued);
  if (readable < kNearNothing) return "Nothing can be told: no place of it could be read.";
  if (!report.format.empty() && report.of(TriageKind::film) < 0.5)
    return "This is no AVI film but begins as another format does: " + std::string(report.format) + ".";
  if (report.of(TriageKind::zeros) > 0.995 * readable) return "Nothing is left: what could be read is zero.";
  if (report.of(TriageKind::noise) > 0.9 * readable)
    return "Nothing is left of a film: its bytes are random or encrypted.";
  if (report.of(TriageKind::text) > 0.5 * readable) return "This is no film: it holds text.";
  if (report.of(TriageKind::film) > 0.5)
    return "Nothing should come back: chunks of a film are there, but nothing tells what they hold.";
  return "Nothing of a film was found in " + places + ".";
}

/// "MPEG-4 88 %, MP3 4 %".
std::string codecWords(const TriageReport& report) {
  std::string text;
  for (const salvage::TriagedStream& stream : report.streams) {
    if (stream.share < kNearNothing) continue;
    text += (text.empty() ? "" : ", ") + codecOf(stream.stream) + " " + triagedShare(stream.share);
  }
  return text;
}

void writeShares(JsonWriter& json, const TriageReport& report) {
  json.key("shares");
  json.beginObject();
  for (const TriagedKind& kind : kTriagedKinds) {
    json.key(kind.member);
    json.seconds(report.of(kind.kind));
  }
  json.endObject();
}

}  // namespace

bool isAnythingLeft(const TriageReport& report) { return report.kept.share >= kNearNothing; }

std::string triageSentence(const TriageReport& report) {
  if (!isAnythingLeft(report)) return nothingSentence(report);
  std::string text = inTenths(report.kept.share) + " should come back";
  if (report.headers == TriageHeaders::lost) text += "; the header is lost";
  if (report.headers == TriageHeaders::partlyLost) text += "; a part of the header is lost";
  return text + ".";
}

std::string inWords(const TriageOutcome& told) {
  if (!told.report || !told.report->isComplete) return {};
  const TriageReport& report = *told.report;
  std::string text = printable(told.outcome.inputPath) + ": " + triageSentence(report) + "\n";
  if (isAnythingLeft(report))
    text += labelledLine("Kept", triagedShare(report.kept.share) + " of its bytes, surely between " +
                                     fixedPoint(report.kept.low * 100, 0) + " and " +
                                     fixedPoint(report.kept.high * 100, 0) + " %, by a deep repair");
  for (const TriagedKind& kind : kTriagedKinds) {
    const double share = report.of(kind.kind);
    if (share < kNearNothing) continue;
    std::string what(explained(kind.kind));
    if (kind.kind == TriageKind::film && !codecWords(report).empty()) what = codecWords(report);
    if (kind.kind == TriageKind::otherFormat && !report.format.empty()) what += " (" + std::string(report.format) + ")";
    text += labelledLine(kind.label, triagedShare(share) + ": " + what);
  }
  return text + labelledLine("Looked at", counted(report.places, "place") + ", " + shownSize(report.bytesRead) +
                                              " of " + shownSize(report.fileSize));
}

std::string inJson(const TriageOutcome& told) {
  JsonWriter json;
  json.beginObject();
  json.member("version", kTriageVersion);
  beginJson(json, told.outcome);
  json.key("triage");
  if (!told.report || !told.report->isComplete) {
    json.null();
  } else {
    const TriageReport& report = *told.report;
    json.beginObject();
    json.member("sentence", triageSentence(report));
    json.key("kept");
    json.beginObject();
    const std::array<std::pair<std::string_view, double>, 3> bounds{
        {{"share", report.kept.share}, {"low", report.kept.low}, {"high", report.kept.high}}};
    for (const auto& [name, value] : bounds) {
      json.key(name);
      json.seconds(value);
    }
    json.endObject();
    writeShares(json, report);
    json.key("streams");
    json.beginArray();
    for (const salvage::TriagedStream& stream : report.streams) {
      json.beginObject();
      json.member("kind", kindOf(stream.stream));
      json.member("codec", codecOf(stream.stream));
      json.member("number", stream.stream.number);
      json.key("share");
      json.seconds(stream.share);
      json.endObject();
    }
    json.endArray();
    json.key("format");
    if (report.format.empty()) {
      json.null();
    } else {
      json.text(report.format);
    }
    json.member("headers", headersName(report.headers));
    json.key("whole");
    json.boolean(report.isWhole);
    json.member("places", report.places);
    json.member("bytes_read", report.bytesRead);
    json.endObject();
  }
  endJson(json, told.outcome);
  json.endObject();
  return json.take() + "\n";
}

}  // namespace zelvo::cli
