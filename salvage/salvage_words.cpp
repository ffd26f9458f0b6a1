#include "salvage/salvage_words.h"

#include <algorithm>
#include <cmath>

#include "avi/codec_names.h"
#include "avi/codec_text.h"
#include "platform/printable_text.h"
#include "platform/shown_text.h"

namespace zelvo::salvage {

using platform::counted;
using platform::fixedPoint;
using platform::shownHex;
using platform::shownNumber;
using platform::shownTime;

namespace {

SlotTally both(const SalvagedStream& stream, SlotState one, SlotState other) {
  const SlotTally& first = stream.of(one);
  const SlotTally& second = stream.of(other);
  return {first.chunks + second.chunks, first.bytes + second.bytes, first.seconds + second.seconds};
}

/// "; 3 lost (0.12 s)"; nothing of none.
std::string share(const SlotTally& tally, std::string_view what) {
  if (tally.chunks == 0) return {};
  std::string text = ", " + shownNumber(tally.chunks) + " " + std::string(what);
  if (tally.seconds > 0) text += " (" + fixedPoint(tally.seconds, 2) + " s)";
  return text;
}

/// Seconds of the film's first stream of a type that are not as they were; nothing of a film without one.
/// Of the stream of the kind that is hurt worst; nullopt without one.
std::optional<double> secondsHurt(const SalvageReport& report, avi::FourCC type) {
  std::optional<double> most;
  for (const SalvagedStream& stream : report.streams) {
    if (stream.type == type) most = std::max(most.value_or(0), stream.notWhole().seconds);
  }
  return most;
}

/// What is there is never "0.0 s".
std::string shownAmount(double seconds) { return seconds < 0.05 ? "less than 0.1 s" : fixedPoint(seconds, 1) + " s"; }

}  // namespace

std::string_view nameOf(SalvageVerdict verdict) {
  switch (verdict) {
    case SalvageVerdict::clean:
      return "clean";
    case SalvageVerdict::repaired:
      return "repaired";
    case SalvageVerdict::partial:
      return "partial";
    case SalvageVerdict::hopeless:
      break;
  }
  return "hopeless";
}

std::string_view nameOf(HeaderOrigin origin) {
  switch (origin) {
    case HeaderOrigin::donor:
      return "donor";
    case HeaderOrigin::synthesised:
      return "synthesised";
    case HeaderOrigin::own:
      break;
  }
  return "own";
}

std::string_view nameOf(LossCause cause) {
  switch (cause) {
    case LossCause::overwritten:
      return "overwritten";
    case LossCause::zeroed:
      return "zeroed";
    case LossCause::missing:
      return "missing";
    case LossCause::inserted:
      return "inserted";
    case LossCause::doubled:
      return "doubled";
    case LossCause::foreign:
      return "foreign";
    case LossCause::sizeField:
      return "size-field";
    case LossCause::code:
      return "code";
    case LossCause::cut:
      return "cut";
    case LossCause::moved:
      return "moved";
    case LossCause::unrescued:
      return "not-rescued";
    case LossCause::unreadable:
      break;
  }
  return "unreadable";
}

std::string_view doneAbout(LossCause cause) {
  switch (cause) {
    case LossCause::overwritten:
    case LossCause::zeroed:
    case LossCause::unreadable:
    case LossCause::unrescued:
      return "what is left is kept, the time of what is lost is filled";
    case LossCause::missing:
    case LossCause::cut:
      return "the time of what is lost is filled";
    case LossCause::inserted:
    case LossCause::doubled:
    case LossCause::foreign:
      return "left out";
    case LossCause::moved:
      return "put together again";
    case LossCause::sizeField:
      return "the size is mended";
    case LossCause::code:
      break;
  }
  return "the code is mended";
}

std::string_view wordsFor(LossCause cause) {
  if (cause == LossCause::sizeField) return "wrong size";
  if (cause == LossCause::code) return "wrong code";
  if (cause == LossCause::cut) return "cut off";
  if (cause == LossCause::unrescued) return "not rescued from the disk";
  if (cause == LossCause::moved) return "in parts at several places";
  return nameOf(cause);
}

std::string_view evidenceOf(const SalvagedSpan& span, const SalvageReport& report) {
  return report.indexedChunks > 0 && span.span.originalBegin ? "index" : "chunks";
}

std::string_view confidenceOf(const SalvagedSpan& span, const SalvageReport& report) {
  // That sizes and codes were wrong is proved by the chunks around them, which close on one another.
  const LossCause cause = span.span.cause;
  const bool isProved = cause == LossCause::sizeField || cause == LossCause::code || cause == LossCause::unreadable ||
                        cause == LossCause::unrescued;
  return isProved || evidenceOf(span, report) == "index" ? "high" : "fair";
}

std::string_view nameOf(SlotState state) {
  switch (state) {
    case SlotState::whole:
      return "whole";
    case SlotState::sizeMended:
      return "size-mended";
    case SlotState::codeMended:
      return "code-mended";
    case SlotState::rejoined:
      return "rejoined";
    case SlotState::damaged:
      return "damaged";
    case SlotState::torn:
      return "torn";
    case SlotState::cut:
      return "cut";
    case SlotState::lost:
      return "lost";
    case SlotState::refilled:
      break;
  }
  return "refilled";
}

std::string_view kindOf(const SalvagedStream& stream) {
  if (stream.type == avi::kVids) return "video";
  if (stream.type == avi::kAuds) return "sound";
  if (stream.type == avi::FourCC{"txts"}) return "text";
  return "data";
}

std::string codecOf(const SalvagedStream& stream) {
  if (stream.formatTag) {
    const std::string_view name = avi::audioFormatName(*stream.formatTag);
    return name.empty() ? "format " + shownHex(*stream.formatTag, 4) : std::string(name);
  }
  const auto code = stream.handler.bytes();
  const std::string_view name = avi::videoCodecName(code);
  if (!name.empty()) return std::string(name);
  const std::string text = platform::printableText(avi::codecText(code));
  return text.empty() ? "uncompressed" : text;
}

std::string verdictSentence(const SalvageReport& report) {
  switch (report.verdict) {
    case SalvageVerdict::clean:
      return "Nothing is wrong with this film.";
    case SalvageVerdict::repaired:
      return "This film was damaged; all of its pictures and sound are there again.";
    case SalvageVerdict::hopeless:
      return "Nothing of this film can be brought back.";
    case SalvageVerdict::partial:
      break;
  }
  std::string text = "This film was damaged; ";
  const auto video = secondsHurt(report, avi::kVids);
  const auto sound = secondsHurt(report, avi::kAuds);
  if (report.streamsWithoutHeader > 0) {
    text += counted(report.streamsWithoutHeader, "stream") + " of it cannot be recognised and " +
            (report.streamsWithoutHeader == 1 ? "is" : "are") + " left out";
    if (video.value_or(0) + sound.value_or(0) == 0) return text + ".";
    text += "; ";
  }
  const bool isVideoHurt = video.value_or(0) > 0;
  const bool isSoundHurt = sound.value_or(0) > 0;
  if (isVideoHurt) text += shownAmount(*video) + " of its pictures";
  if (isVideoHurt && isSoundHurt) text += " and ";
  if (isSoundHurt) text += shownAmount(*sound) + " of its sound";
  if (!isVideoHurt && !isSoundHurt) return text + "a part of it is lost or hurt, the rest is there, in step.";
  text += isVideoHurt ? " are lost or hurt" : " is lost or hurt";
  if (video && !isVideoHurt) return text + ", all of its pictures are there, in step.";
  if (sound && !isSoundHurt) return text + ", all of its sound is there, in step.";
  return text + ", the rest is there, in step.";
}

std::string streamWords(const SalvagedStream& stream) {
  std::string text = counted(stream.all().chunks, "chunk");
  text += share(stream.mended(), "mended");
  text += share(both(stream, SlotState::damaged, SlotState::torn), "damaged");
  text += share(stream.of(SlotState::cut), "cut short");
  text += share(both(stream, SlotState::lost, SlotState::refilled), "lost");
  return text;
}

std::string spanWords(const SalvagedSpan& span, const SalvageReport& report) {
  std::string text =
      "bytes " + shownNumber(span.span.begin) + " to " + shownNumber(span.span.end) + ", at " + shownTime(span.begin);
  if (span.end > span.begin) text += " to " + shownTime(span.end);
  text += ": " + std::string(wordsFor(span.span.cause));
  for (const SpanShare& share : span.streams) {
    text += (share == span.streams.front() ? " (" : ", ") + std::string(kindOf(report.streams[share.stream])) + " " +
            std::to_string(share.stream);
  }
  if (!span.streams.empty()) text += ")";
  return text + "; " + std::string(doneAbout(span.span.cause));
}

std::string lossWords(const SalvagedSpan& span, const SalvageReport& report) {
  std::string text = shownTime(span.begin);
  if (span.end > span.begin) text += " to " + shownTime(span.end);
  const std::string cause(wordsFor(span.span.cause));
  std::string hit;
  for (const SpanShare& share : span.streams) {
    const SalvagedStream& stream = report.streams[share.stream];
    const std::string_view noun = stream.type == avi::kVids   ? "picture"
                                  : stream.type == avi::kAuds ? "sound chunk"
                                                              : "chunk";
    if (share.gone > 0) hit += ", " + counted(share.gone, noun) + " lost";
    if (share.hurt > 0) hit += ", " + counted(share.hurt, noun) + " hurt";
  }
  if (hit.empty()) return text + ": " + cause + "; " + std::string(doneAbout(span.span.cause));
  const auto goesOn = [&](avi::FourCC type) {
    const auto isOfType = [&](const SalvagedStream& stream) { return stream.type == type; };
    const auto isTouched = [&](const SpanShare& share) {
      return isOfType(report.streams[share.stream]) && share.gone + share.hurt > 0;
    };
    return std::ranges::any_of(report.streams, isOfType) && std::ranges::none_of(span.streams, isTouched);
  };
  if (goesOn(avi::kAuds)) hit += ", the sound goes on";
  if (goesOn(avi::kVids)) hit += ", the pictures go on";
  return text + ": " + hit.substr(2) + " (" + cause + ")";
}

std::string leftOutWords(const SalvageReport& report) {
  return counted(report.chunksLeftOut, "chunk") + " more than are kept of a film of this size";
}

std::string transferWords(const SalvageReport& report) {
  return "sent as if it were text, which put " + counted(report.returnsLeftOut, "byte") +
         " in; they are left out, and places are told without them";
}

}  // namespace zelvo::salvage
