#include "salvage/salvage_words.h"

#include <algorithm>
#include <cmath>

#include "avi/codec_names.h"
#include "avi/codec_text.h"
#include "platform/printable_text.h"
#include "platform/shown_text.h"

namespace zelvo::salvage {

using platform::counted;
using platform::filled;
using platform::shownHex;
using platform::shownNumber;
using platform::shownTime;
using platform::translatable;
using platform::Translator;

namespace {

SlotTally both(const SalvagedStream& stream, SlotState one, SlotState other) {
  const SlotTally& first = stream.of(one);
  const SlotTally& second = stream.of(other);
  return {first.chunks + second.chunks, first.bytes + second.bytes, first.seconds + second.seconds};
}

/// ", 3 lost (0.12 s)"; nothing of none.
std::string share(const SlotTally& tally, std::string_view what, const Translator& translator) {
  if (tally.chunks == 0) return {};
  const std::string count = translator.counted(what, tally.chunks);
  if (tally.seconds <= 0) return ", " + count;
  return ", " + filled(translator.translated("%1 (%2 s)"), {count, translator.fixedPoint(tally.seconds, 2)});
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
std::string shownAmount(double seconds, const Translator& translator) {
  constexpr double kLeast = 0.1;
  const bool isLess = seconds < kLeast / 2;
  return filled(isLess ? translator.translated("less than %1 s") : translator.translated("%1 s"),
                {translator.fixedPoint(isLess ? kLeast : seconds, 1)});
}

/// What of a film's pictures and sound is not as it was: a part of a sentence.
std::string hurtWords(std::optional<double> video, std::optional<double> sound, const Translator& translator) {
  const bool isVideoHurt = video.value_or(0) > 0;
  const bool isSoundHurt = sound.value_or(0) > 0;
  const std::string pictures = isVideoHurt ? shownAmount(*video, translator) : "";
  const std::string heard = isSoundHurt ? shownAmount(*sound, translator) : "";
  if (isVideoHurt && isSoundHurt) {
    return filled(
        translator.translated("%1 of its pictures and %2 of its sound are lost or hurt, the rest is there, in step"),
        {pictures, heard});
  }
  if (isVideoHurt) {
    return filled(sound
                      ? translator.translated("%1 of its pictures are lost or hurt, all of its sound is there, in step")
                      : translator.translated("%1 of its pictures are lost or hurt, the rest is there, in step"),
                  {pictures});
  }
  if (isSoundHurt) {
    return filled(video
                      ? translator.translated("%1 of its sound is lost or hurt, all of its pictures are there, in step")
                      : translator.translated("%1 of its sound is lost or hurt, the rest is there, in step"),
                  {heard});
  }
  return translator.translated("a part of it is lost or hurt, the rest is there, in step");
}

/// "3 pictures lost".
std::string_view goneText(avi::FourCC type) {
  if (type == avi::kVids) return translatable("%n picture(s) lost");
  return type == avi::kAuds ? translatable("%n sound chunk(s) lost") : translatable("%n chunk(s) lost");
}

std::string_view damagedText(avi::FourCC type) {
  if (type == avi::kVids) return translatable("%n picture(s) hurt");
  return type == avi::kAuds ? translatable("%n sound chunk(s) hurt") : translatable("%n chunk(s) hurt");
}

/// "2:13.00 to 2:15.00".
std::string shownStretch(const SalvagedSpan& span, const Translator& translator) {
  const std::string begin = shownTime(span.begin, translator);
  if (span.end <= span.begin) return begin;
  return filled(translator.translated("%1 to %2"), {begin, shownTime(span.end, translator)});
}

/// True when the film has streams of a type, and none of them misses anything in the span.
bool goesOn(avi::FourCC type, const SalvagedSpan& span, const SalvageReport& report) {
  const auto isOfType = [&](const SalvagedStream& stream) { return stream.type == type; };
  const auto isTouched = [&](const SpanShare& share) {
    return isOfType(report.streams[share.stream]) && share.gone + share.hurt > 0;
  };
  return std::ranges::any_of(report.streams, isOfType) && std::ranges::none_of(span.streams, isTouched);
}

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
      return translatable("what is left is kept, the time of what is lost is filled");
    case LossCause::missing:
    case LossCause::cut:
      return translatable("the time of what is lost is filled");
    case LossCause::inserted:
    case LossCause::doubled:
    case LossCause::foreign:
      return translatable("left out");
    case LossCause::moved:
      return translatable("put together again");
    case LossCause::sizeField:
      return translatable("the size is mended");
    case LossCause::code:
      break;
  }
  return translatable("the code is mended");
}

std::string_view wordsFor(LossCause cause) {
  switch (cause) {
    case LossCause::overwritten:
      return translatable("overwritten");
    case LossCause::zeroed:
      return translatable("zeroed");
    case LossCause::missing:
      return translatable("missing");
    case LossCause::inserted:
      return translatable("inserted");
    case LossCause::doubled:
      return translatable("doubled");
    case LossCause::foreign:
      return translatable("foreign");
    case LossCause::sizeField:
      return translatable("wrong size");
    case LossCause::code:
      return translatable("wrong code");
    case LossCause::cut:
      return translatable("cut off");
    case LossCause::moved:
      return translatable("in parts at several places");
    case LossCause::unrescued:
      return translatable("not rescued from the disk");
    case LossCause::unreadable:
      break;
  }
  return translatable("unreadable");
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
  if (stream.type == avi::kVids) return translatable("video");
  if (stream.type == avi::kAuds) return translatable("sound");
  if (stream.type == avi::FourCC{"txts"}) return translatable("text");
  return translatable("data");
}

std::string codecOf(const SalvagedStream& stream, const Translator& translator) {
  if (stream.formatTag) {
    const std::string_view name = avi::audioFormatName(*stream.formatTag);
    if (!name.empty()) return std::string(name);
    return filled(translator.translated("format %1"), {shownHex(*stream.formatTag, 4)});
  }
  const auto code = stream.handler.bytes();
  const std::string_view name = avi::videoCodecName(code);
  if (!name.empty()) return std::string(name);
  const std::string text = platform::printableText(avi::codecText(code));
  if (!text.empty()) return text;
  if (stream.type == avi::FourCC{"txts"}) return translator.translated("plain");
  return translator.translated("uncompressed");
}

std::string verdictSentence(const SalvageReport& report, const Translator& translator) {
  switch (report.verdict) {
    case SalvageVerdict::clean:
      return translator.translated("Nothing is wrong with this film.");
    case SalvageVerdict::repaired:
      return translator.translated("This film was damaged; all of its pictures and sound are there again.");
    case SalvageVerdict::hopeless:
      return translator.translated("Nothing of this film can be brought back.");
    case SalvageVerdict::partial:
      break;
  }
  const auto video = secondsHurt(report, avi::kVids);
  const auto sound = secondsHurt(report, avi::kAuds);
  std::string what = hurtWords(video, sound, translator);
  if (report.streamsWithoutHeader > 0) {
    const std::string unknown = report.streamsWithoutHeader == 1
                                    ? translator.translated("1 stream of it cannot be recognised and is left out")
                                    : translator.counted("%n stream(s) of it cannot be recognised and are left out",
                                                         report.streamsWithoutHeader);
    const bool isAll = video.value_or(0) + sound.value_or(0) == 0;
    what = isAll ? unknown : filled(translator.translated("%1; %2"), {unknown, what});
  }
  return filled(translator.translated("This film was damaged; %1."), {what});
}

std::string streamWords(const SalvagedStream& stream, const Translator& translator) {
  std::string text = translator.counted("%n chunk(s)", stream.all().chunks);
  text += share(stream.mended(), translatable("%n mended"), translator);
  text += share(both(stream, SlotState::damaged, SlotState::torn), translatable("%n damaged"), translator);
  text += share(stream.of(SlotState::cut), translatable("%n cut short"), translator);
  text += share(both(stream, SlotState::lost, SlotState::refilled), translatable("%n lost"), translator);
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

std::string lossWords(const SalvagedSpan& span, const SalvageReport& report, const Translator& translator) {
  const std::string when = shownStretch(span, translator);
  const std::string cause = translator.translated(wordsFor(span.span.cause));
  std::string hit;
  const auto add = [&hit](const std::string& words) { hit += (hit.empty() ? "" : ", ") + words; };
  for (const SpanShare& share : span.streams) {
    const avi::FourCC type = report.streams[share.stream].type;
    if (share.gone > 0) add(translator.counted(goneText(type), share.gone));
    if (share.hurt > 0) add(translator.counted(damagedText(type), share.hurt));
  }
  if (hit.empty()) {
    return filled(translator.translated("%1: %2; %3"),
                  {when, cause, translator.translated(doneAbout(span.span.cause))});
  }
  if (goesOn(avi::kAuds, span, report)) add(translator.translated("the sound goes on"));
  if (goesOn(avi::kVids, span, report)) add(translator.translated("the pictures go on"));
  return filled(translator.translated("%1: %2 (%3)"), {when, hit, cause});
}

std::string leftOutWords(const SalvageReport& report) {
  return counted(report.chunksLeftOut, "chunk") + " more than are kept of a film of this size";
}

std::string transferWords(const SalvageReport& report) {
  return "sent as if it were text, which put " + counted(report.returnsLeftOut, "byte") +
         " in; they are left out, and places are told without them";
}

}  // namespace zelvo::salvage
