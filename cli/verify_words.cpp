#include "cli/verify_words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "cli/outline_words.h"
#include "cli/shown_text.h"
#include "salvage/salvage_words.h"

namespace zelvo::cli {

namespace {

using platform::PlayedKind;
using platform::PlayedPacket;
using platform::PlayedSeek;
using platform::SeekEnd;
using salvage::FilmCheck;
using salvage::FilmVerdict;
using salvage::PlayedStreamTally;
using salvage::PlayError;
using salvage::PlayErrorKind;

/// Faults of one stream, and of the container, that are shown unless all are wanted.
constexpr std::size_t kFewFaults = 3;

std::string capitalised(std::string_view word) {
  std::string text(word);
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') text.front() = static_cast<char>(text.front() - 32);
  return text;
}

std::string secondsText(double seconds) { return fixedPoint(seconds, seconds < 10 ? 2 : 1) + " s"; }

std::uint64_t packetsOf(const PlayedStreamTally& stream, PlayErrorKind kind) {
  std::uint64_t packets = 0;
  for (const PlayError& fault : stream.faults) packets += fault.kind == kind ? fault.packets : 0;
  return packets;
}

const PlayError* firstOf(const PlayedStreamTally& stream, PlayErrorKind kind) {
  const auto found = std::ranges::find(stream.faults, kind, &PlayError::kind);
  return found == stream.faults.end() ? nullptr : &*found;
}

double secondsOf(const PlayedStreamTally& stream, PlayErrorKind kind) {
  double seconds = 0;
  for (const PlayError& fault : stream.faults) seconds += fault.kind == kind ? fault.seconds : 0;
  return seconds;
}

/// "sound", and "sound of stream 2" where there are several.
std::string called(const FilmCheck& check, const PlayedStreamTally& stream, std::string_view word) {
  const auto same = std::ranges::count_if(
      check.play.streams, [&](const PlayedStreamTally& one) { return one.told.kind == stream.told.kind; });
  return std::string(word) + (same > 1 ? " of stream " + std::to_string(stream.told.stream) : "");
}

void addDecoding(std::vector<std::string>& parts, const FilmCheck& check, const PlayedStreamTally& stream) {
  const bool isVideo = stream.told.kind == PlayedKind::video;
  if (firstOf(stream, PlayErrorKind::noDecoder) != nullptr) {
    parts.push_back("nothing here decodes the " + called(check, stream, isVideo ? "pictures" : "sound") + " (" +
                    stream.told.codec + ")");
    return;
  }
  if (const PlayError* const crash = firstOf(stream, PlayErrorKind::crashed))
    parts.push_back("the decoder crashed at " + shownTime(crash->begin));
  if (const PlayError* const hang = firstOf(stream, PlayErrorKind::hung))
    parts.push_back("the decoder hung at " + shownTime(hang->begin));
  if (const PlayError* const greed = firstOf(stream, PlayErrorKind::noMemory))
    parts.push_back("the decoder asked for too much memory at " + shownTime(greed->begin));
  const std::uint64_t hurt = packetsOf(stream, PlayErrorKind::refused) + packetsOf(stream, PlayErrorKind::hurt);
  if (hurt > 0) {
    const auto first = std::ranges::find_if(stream.faults, [](const PlayError& fault) {
      return fault.kind == PlayErrorKind::refused || fault.kind == PlayErrorKind::hurt;
    });
    const std::string what = isVideo ? counted(hurt, "picture") : counted(hurt, "piece") + " of sound";
    parts.push_back(what + (hurt == 1 ? " is" : " are") + " damaged, the first at " + shownTime(first->begin));
  }
  if (const PlayError* const gap = firstOf(stream, PlayErrorKind::noPictures))
    parts.push_back("no picture comes for " + secondsText(secondsOf(stream, PlayErrorKind::noPictures)) +
                    ", first at " + shownTime(gap->begin));
  if (const PlayError* const lost = firstOf(stream, PlayErrorKind::lostSound))
    parts.push_back(secondsText(secondsOf(stream, PlayErrorKind::lostSound)) + " of " + called(check, stream, "sound") +
                    " are missing, first at " + shownTime(lost->begin));
  if (const PlayError* const extra = firstOf(stream, PlayErrorKind::extraSound))
    parts.push_back(called(check, stream, "sound") + " of " +
                    secondsText(secondsOf(stream, PlayErrorKind::extraSound)) + " is too much, first at " +
                    shownTime(extra->begin));
  if (const PlayError* const step = firstOf(stream, PlayErrorKind::outOfStep))
    parts.push_back((isVideo ? called(check, stream, "pictures") + " and the first ones are "
                             : called(check, stream, "sound") + " and pictures are ") +
                    secondsText(std::abs(step->seconds)) + " apart from about " + shownTime(step->begin) + " on");
  if (salvage::isCreeping(stream))
    parts.push_back(called(check, stream, "sound") + " runs away from the pictures, by " +
                    secondsText(std::abs(stream.creep)) + " at the end");
}

void addContainer(std::vector<std::string>& parts, const FilmCheck& check) {
  const salvage::ContainerCheck& container = check.container;
  if (check.wrongSeeks() > 0)
    parts.push_back(shownNumber(check.wrongSeeks()) + " of " + counted(check.play.seeks.size(), "jump") +
                    (check.wrongSeeks() == 1 ? " lands wrong" : " land wrong"));
  if (!check.falseKeys.empty())
    parts.push_back("its index calls " + counted(check.falseKeyPictures(), "picture") + " a key that " +
                    (check.falseKeyPictures() == 1 ? "is none" : "are none"));
  if (container.lacksIndex()) parts.emplace_back("it has no index, so players cannot jump in it");
  if (container.hasShortIndex())
    parts.push_back("its index leaves out " + shownNumber(container.chunks - container.indexed) + " of " +
                    counted(container.chunks, "chunk"));
  for (const salvage::ShortStream& stream : container.shortStreams)
    parts.push_back("its header promises " + counted(stream.promised, "picture") + ", and " +
                    shownNumber(stream.found) + " are there");
  if (container.problemCount > 0)
    parts.push_back(counted(container.problemCount, "fault") + " in its structure, the first at byte " +
                    shownNumber(container.problems.front().offset));
}

std::string inStep(const FilmCheck& check) {
  std::string text;
  std::uint64_t pictures = 0;
  double sound = 0;
  for (const PlayedStreamTally& stream : check.play.streams) {
    pictures += stream.pictures;
    if (stream.told.kind == PlayedKind::sound) sound = std::max(sound, stream.seconds);
  }
  if (pictures > 0) text = counted(pictures, "picture");
  if (sound > 0) text += (text.empty() ? "" : " and ") + shownTime(sound) + " of sound";
  if (pictures > 0 && sound > 0) text += ", in step";
  return text;
}

std::string streamText(const PlayedStreamTally& stream) {
  std::string text = stream.told.codec;
  if (stream.told.kind == PlayedKind::video) {
    text += ", " + std::to_string(stream.told.width) + " x " + std::to_string(stream.told.height) + ", " +
            counted(stream.pictures, "picture") + ", " + shownTime(stream.seconds);
  } else if (stream.told.kind == PlayedKind::sound) {
    text += ", " + shownNumber(stream.told.rate) + " Hz, " + counted(stream.told.channels, "channel") + ", " +
            shownTime(stream.seconds);
  } else {
    return text + ", " + counted(stream.packets, "packet") + ", not decoded";
  }
  if (!stream.told.hasDecoder) return text + ", not decoded";
  return text + ", " + (stream.errors == 0 ? "no errors" : counted(stream.errors, "error"));
}

/// How far sound and pictures come apart at worst; nothing of a film that has only one of them.
std::optional<double> apart(const FilmCheck& check) {
  std::optional<double> most;
  bool hasPictures = false;
  for (const PlayedStreamTally& stream : check.play.streams) {
    hasPictures = hasPictures || stream.pictures > 0;
    if (stream.told.kind == PlayedKind::sound && stream.samples > 0)
      most = std::max({most.value_or(0), std::abs(stream.creep), std::abs(stream.step)});
  }
  return hasPictures ? most : std::nullopt;
}

std::string seekWords(const PlayedSeek& seek) {
  const auto time = [](std::int64_t microseconds) { return shownTime(static_cast<double>(microseconds) / 1e6); };
  const std::string to = "a jump to " + time(seek.target);
  switch (seek.end) {
    case SeekEnd::refused:
      return to + " is not possible";
    case SeekEnd::late:
      return to + " lands after it, at " + time(seek.landed);
    case SeekEnd::early:
      return to + " lands far before it, at " + time(seek.landed);
    case SeekEnd::noKey:
      return to + " lands where no key picture is, at " + time(seek.landed);
    case SeekEnd::otherTime:
      return to + " finds another time there than playing through does";
    case SeekEnd::otherPicture:
      return to + " gives another picture than playing through does";
    case SeekEnd::noPicture:
      return to + " gives no picture";
    case SeekEnd::outOfStep:
      return to + " puts the streams out of step with one another";
    case SeekEnd::right:
      break;
  }
  return to + " lands right";
}

}  // namespace

std::string_view nameOf(FilmVerdict verdict) {
  constexpr std::array<std::string_view, 3> kNames{"plays", "faults", "unreadable"};
  return kNames[static_cast<std::size_t>(verdict)];
}

std::string_view nameOf(PlayedKind kind) {
  constexpr std::array<std::string_view, 4> kNames{"video", "sound", "text", "data"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string_view nameOf(PlayErrorKind kind) {
  constexpr std::array<std::string_view, 10> kNames{"refused",     "hurt",       "no-memory",  "crashed",
                                                    "hung",        "no-decoder", "no-picture", "lost-sound",
                                                    "extra-sound", "out-of-step"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string_view nameOf(SeekEnd end) {
  constexpr std::array<std::string_view, 9> kNames{"right",      "refused",       "late",       "early",      "no-key",
                                                   "other-time", "other-picture", "no-picture", "out-of-step"};
  return kNames[static_cast<std::size_t>(end)];
}

std::string verdictSentence(const FilmCheck& check) {
  if (check.verdict() == FilmVerdict::plays) {
    const std::string what = inStep(check);
    return "This film plays throughout" + (what.empty() ? "" : ": " + what) + ".";
  }
  std::vector<std::string> parts;
  for (const PlayedStreamTally& stream : check.play.streams) addDecoding(parts, check, stream);
  addContainer(parts, check);
  if (check.play.unreadable > 0)
    parts.push_back("it cannot be read at byte " + shownNumber(check.play.firstUnreadable));
  if (check.play.streams.empty()) parts.emplace_back("no player finds pictures or sound in it");
  std::string text = "This film does not play throughout";
  for (const std::string& part : parts) text += (&part == &parts.front() ? ": " : "; ") + part;
  return text + ".";
}

std::string faultWords(const PlayError& fault) {
  std::string text = shownTime(fault.begin);
  if (fault.end - fault.begin >= 0.1) text += " to " + shownTime(fault.end);
  if (fault.offset != PlayedPacket::kNowhere) text += ", at byte " + shownNumber(fault.offset);
  text += ": ";
  switch (fault.kind) {
    case PlayErrorKind::refused:
      return text + counted(fault.packets, "packet") + " refused by the decoder";
    case PlayErrorKind::hurt:
      return text + counted(fault.packets, "packet") + " damaged";
    case PlayErrorKind::noMemory:
      return text + "the decoder asked for too much memory";
    case PlayErrorKind::crashed:
      return text + "the decoder crashed" + (fault.signal == 0 ? "" : " (signal " + std::to_string(fault.signal) + ")");
    case PlayErrorKind::hung:
      return text + "the decoder hung";
    case PlayErrorKind::noDecoder:
      return "nothing here decodes this codec";
    case PlayErrorKind::noPictures:
      return text + counted(fault.packets, "packet") + " of which no picture came";
    case PlayErrorKind::lostSound:
      return text + secondsText(fault.seconds) + " of sound missing";
    case PlayErrorKind::extraSound:
      return text + secondsText(fault.seconds) + " of sound too much";
    case PlayErrorKind::outOfStep:
      break;
  }
  return text + "from about here on it is " + secondsText(std::abs(fault.seconds)) +
         (fault.seconds > 0 ? " late" : " early") + " against the pictures";
}

std::vector<std::string> checkLines(const FilmCheck& check, bool all) {
  std::vector<std::string> lines;
  const auto addSome = [&](std::size_t count, std::uint64_t leftOut, const auto& words) {
    const std::size_t told = all ? count : std::min(count, kFewFaults);
    for (std::size_t i = 0; i < told; ++i) lines.push_back(words(i));
    const std::uint64_t left = leftOut + count - told;
    if (left > 0) lines.push_back(shownNumber(left) + " more" + (all ? "" : "; --verbose tells each"));
  };
  for (const PlayedStreamTally& stream : check.play.streams) {
    const std::string name(nameOf(stream.told.kind));
    addSome(stream.faults.size(), stream.faultsLeftOut,
            [&](std::size_t i) { return name + ", " + faultWords(stream.faults[i]); });
  }
  std::vector<const PlayedSeek*> wrong;
  for (const PlayedSeek& seek : check.play.seeks) {
    if (seek.end != SeekEnd::right) wrong.push_back(&seek);
  }
  addSome(wrong.size(), 0, [&](std::size_t i) { return seekWords(*wrong[i]); });
  const salvage::ContainerCheck& container = check.container;
  addSome(container.problems.size(), container.problemCount - container.problems.size(), [&](std::size_t i) {
    return "byte " + shownNumber(container.problems[i].offset) + ": " + inWords(container.problems[i]);
  });
  return lines;
}

std::string inWords(const VerifyOutcome& outcome, bool all) {
  if (!outcome.check || outcome.check->end != platform::PlayEnd::played) return {};
  const FilmCheck& check = *outcome.check;
  std::string text = printable(outcome.outcome.inputPath) + ": " + verdictSentence(check) + "\n";
  for (const PlayedStreamTally& stream : check.play.streams) {
    text += labelledLine(capitalised(nameOf(stream.told.kind)), streamText(stream));
    if (stream.still > 0)
      text += labelledLine("Still", "the picture stands still for " + secondsText(stream.still) + " in " +
                                        counted(stream.stills.size(), "place") + ", as the film says");
  }
  if (const auto drift = apart(check))
    text += labelledLine("In step", "sound and pictures within " + secondsText(*drift));
  if (!check.play.seeks.empty())
    text += labelledLine("Jumps", shownNumber(check.play.seeks.size() - check.wrongSeeks()) + " of " +
                                      shownNumber(check.play.seeks.size()) + " land right");
  const salvage::ContainerCheck& container = check.container;
  text += labelledLine("Index", container.lacksIndex() ? "missing"
                                                       : shownNumber(std::min(container.indexed, container.chunks)) +
                                                             " of " + counted(container.chunks, "chunk"));
  if (container.harmless > 0)
    text += labelledLine("After it", counted(container.harmless, "byte") + " that players pass over");
  for (const std::string& fault : checkLines(check, all)) text += labelledLine("Fault", fault);
  return text;
}

}  // namespace zelvo::cli
