// What a look at a film by decoding it found, as JSON.
#include "cli/json_writer.h"
#include "cli/outline_words.h"
#include "cli/verify_words.h"

namespace zelvo::cli {

namespace {

using platform::PlayedKind;
using platform::PlayedPacket;
using platform::PlayedSeek;
using platform::SeekEnd;
using salvage::FilmCheck;
using salvage::PlayedStreamTally;
using salvage::PlayError;

void writePlace(JsonWriter& json, std::uint64_t offset) {
  json.key("offset");
  if (offset == PlayedPacket::kNowhere) {
    json.null();
  } else {
    json.number(offset);
  }
}

void writeSeconds(JsonWriter& json, std::string_view name, double seconds) {
  json.key(name);
  json.seconds(seconds);
}

void writeFault(JsonWriter& json, const PlayError& fault) {
  json.beginObject();
  json.member("kind", nameOf(fault.kind));
  writeSeconds(json, "time_begin", fault.begin);
  writeSeconds(json, "time_end", fault.end);
  writePlace(json, fault.offset);
  json.member("packets", fault.packets);
  writeSeconds(json, "seconds", fault.seconds);
  json.member("sentence", faultWords(fault));
  json.endObject();
}

void writeStream(JsonWriter& json, const PlayedStreamTally& stream) {
  const bool isVideo = stream.told.kind == PlayedKind::video;
  json.beginObject();
  json.member("number", stream.told.stream);
  json.member("kind", nameOf(stream.told.kind));
  json.member("codec", stream.told.codec);
  json.member("decoded", stream.told.hasDecoder);
  if (isVideo) {
    json.member("width", stream.told.width);
    json.member("height", stream.told.height);
    json.member("pictures", stream.pictures);
    json.member("key_pictures", stream.keys);
  } else if (stream.told.kind == PlayedKind::sound) {
    json.member("rate", stream.told.rate);
    json.member("channels", stream.told.channels);
    json.member("samples", stream.samples);
  }
  json.member("packets", stream.packets);
  writeSeconds(json, "seconds", stream.seconds);
  json.member("errors", stream.errors);
  json.key("faults");
  json.beginArray();
  for (const PlayError& fault : stream.faults) writeFault(json, fault);
  json.endArray();
  json.member("faults_left_out", stream.faultsLeftOut);
  if (isVideo) {
    writeSeconds(json, "still_seconds", stream.still);
    json.key("stills");
    json.beginArray();
    for (const salvage::StillPicture& still : stream.stills) {
      json.beginObject();
      writeSeconds(json, "time", still.begin);
      writeSeconds(json, "seconds", still.seconds);
      json.endObject();
    }
    json.endArray();
  } else if (stream.told.kind == PlayedKind::sound) {
    writeSeconds(json, "drift_from_clock", stream.creep);
    writeSeconds(json, "drift_from_pictures", stream.step);
  }
  json.endObject();
}

void writeContainer(JsonWriter& json, const salvage::ContainerCheck& container) {
  json.key("container");
  json.beginObject();
  json.member("chunks", container.chunks);
  json.member("indexed_chunks", container.indexed);
  json.member("index", container.lacksIndex() ? "missing" : container.hasShortIndex() ? "short" : "whole");
  json.member("bytes_after_end", container.harmless);
  json.key("short_streams");
  json.beginArray();
  for (const salvage::ShortStream& stream : container.shortStreams) {
    json.beginObject();
    json.member("number", stream.stream);
    json.member("promised", stream.promised);
    json.member("found", stream.found);
    json.member("offset", stream.offset);
    json.endObject();
  }
  json.endArray();
  json.key("problems");
  json.beginArray();
  for (const avi::Problem& problem : container.problems) {
    json.beginObject();
    json.member("offset", problem.offset);
    json.member("text", inWords(problem));
    json.endObject();
  }
  json.endArray();
  json.member("problem_count", container.problemCount);
  json.endObject();
}

void writeSeeks(JsonWriter& json, const FilmCheck& check) {
  json.member("seeks_tried", static_cast<std::uint64_t>(check.play.seeks.size()));
  json.key("wrong_seeks");
  json.beginArray();
  for (const PlayedSeek& seek : check.play.seeks) {
    if (seek.end == SeekEnd::right) continue;
    json.beginObject();
    json.member("kind", nameOf(seek.end));
    writeSeconds(json, "target", static_cast<double>(seek.target) / 1e6);
    writeSeconds(json, "landed", static_cast<double>(seek.landed) / 1e6);
    writePlace(json, seek.offset);
    json.endObject();
  }
  json.endArray();
}

}  // namespace

void writeCheck(JsonWriter& json, const std::optional<FilmCheck>& check) {
  if (!check) {
    json.null();
    return;
  }
  json.beginObject();
  json.member("verdict", nameOf(check->verdict()));
  json.member("sentence", verdictSentence(*check));
  json.member("confined", check->wasConfined);
  writeSeconds(json, "seconds", check->play.seconds);
  json.key("streams");
  json.beginArray();
  for (const PlayedStreamTally& stream : check->play.streams) writeStream(json, stream);
  json.endArray();
  writeSeeks(json, *check);
  json.member("false_keys", check->falseKeyPictures());
  writeContainer(json, check->container);
  json.member("unreadable_places", check->play.unreadable);
  json.endObject();
}

std::string inJson(const VerifyOutcome& outcome) {
  constexpr std::uint64_t kVerifyVersion = 1;
  JsonWriter json;
  json.beginObject();
  json.member("version", kVerifyVersion);
  beginJson(json, outcome.outcome);
  json.key("check");
  writeCheck(json, outcome.check);
  endJson(json, outcome.outcome);
  json.endObject();
  return json.take() + "\n";
}

}  // namespace zelvo::cli
