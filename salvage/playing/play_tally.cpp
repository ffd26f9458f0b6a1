#include "salvage/playing/play_tally.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zelvo::salvage {

namespace {

using platform::PlayedKind;
using platform::PlayedPacket;

/// Pictures come out of order, and of a decoder with threads late.
constexpr std::size_t kMaxPending = 160;
/// Packets so small say that nothing changes.
constexpr std::uint32_t kNoChange = 16;
/// Seconds without a picture that make a gap.
constexpr double kGap = 0.5;
/// Errors that are no farther apart are told as one.
constexpr double kOneError = 1;
/// Seconds of sound that come at once too few or too many; decoders hold back less.
constexpr double kJump = 0.2;
/// Losses of sound that are hardly more than what is told are one when no farther apart: they go on all the time.
constexpr double kOneRun = 10;
constexpr double kSmall = 1.5;
/// What sound may run away from its clock for each second of it before that counts as a jump.
constexpr double kCreep = 0.02;
/// Seconds that sound and pictures may come apart. People notice less, films of uneven interleaving have as much.
constexpr double kStep = 0.5;
constexpr std::size_t kMaxPacketPlaces = 2'000'000;
/// Seconds between the places of a stream that are looked at.
constexpr double kSampled = 0.2;
constexpr std::size_t kFewMoments = 8;

/// How far a stream was behind the first pictures at a place.
struct Moment {
  double skew = 0;
  double time = 0;
  std::uint64_t offset = 0;
};

double inSeconds(std::int64_t time) { return static_cast<double>(time) / 1e6; }

bool isMerged(PlayErrorKind kind) { return kind == PlayErrorKind::refused || kind == PlayErrorKind::hurt; }

/// Seconds of sound that are told when they come at once too few or too many.
double leastJump(double longestPacket) { return kJump + longestPacket * 0.1; }

double median(const std::vector<Moment>& moments, std::size_t begin, std::size_t end) {
  std::vector<double> skews;
  for (std::size_t i = begin; i < end; ++i) skews.push_back(moments[i].skew);
  std::ranges::nth_element(skews, skews.begin() + static_cast<std::ptrdiff_t>(skews.size() / 2));
  return skews[skews.size() / 2];
}

}  // namespace

void PlayCount::take(const platform::PlayEvent& event) {
  if (const auto* stream = std::get_if<platform::PlayedStream>(&event)) {
    takeStream(*stream);
  } else if (const auto* packet = std::get_if<PlayedPacket>(&event)) {
    if (packet->stream < streams_.size()) takePacket(*packet);
  } else if (const auto* picture = std::get_if<platform::PlayedPicture>(&event)) {
    if (picture->stream < streams_.size()) takePicture(*picture);
  } else if (const auto* sound = std::get_if<platform::PlayedSound>(&event)) {
    if (sound->stream < streams_.size()) takeSound(*sound);
  } else if (const auto* fault = std::get_if<platform::PlayFault>(&event)) {
    takeFault(*fault);
  } else if (const auto* seek = std::get_if<platform::PlayedSeek>(&event)) {
    tally_.seeks.push_back(*seek);
  }
}

void PlayCount::takeStream(const platform::PlayedStream& told) {
  Stream stream;
  stream.tally.told = told;
  const bool isPlayed = told.kind == PlayedKind::video || told.kind == PlayedKind::sound;
  if (told.kind == PlayedKind::video && !pictures_) pictures_ = streams_.size();
  if (isPlayed && !told.hasDecoder) addFault(stream, {.kind = PlayErrorKind::noDecoder});
  streams_.push_back(std::move(stream));
}

void PlayCount::takePacket(const PlayedPacket& packet) {
  Stream& stream = streams_[packet.stream];
  const double time = inSeconds(packet.time);
  const double duration = inSeconds(packet.duration);
  ++stream.tally.packets;
  if (stream.tally.told.kind == PlayedKind::video) {
    if (stream.first && time > stream.end + 0.5 * duration) addStill(stream, stream.end, time);
    if (packet.size == 0) addStill(stream, time, time + duration);
    stream.pending.push_back({.packet = packet});
    if (stream.pending.size() > kMaxPending) {
      judge(stream, stream.pending.front());
      stream.pending.pop_front();
    }
  } else if (stream.tally.told.kind == PlayedKind::sound) {
    if (stream.first) {
      const double taken = std::max(0.0, time - stream.last);
      watchClock(stream, time, taken);
      stream.longest = std::max(stream.longest, taken);
      if (stream.lastSize > 0) stream.secondsAByte = taken / stream.lastSize;
    }
    stream.lastSize = packet.size;
  }
  if (!stream.first) stream.first = time;
  stream.last = time;
  stream.end = time + (duration > 0 ? duration : stream.secondsAByte * packet.size);
  stream.lastOffset = packet.offset;
  notePlace(stream, packet);
}

void PlayCount::notePlace(Stream& stream, const PlayedPacket& packet) {
  const PlayedKind kind = stream.tally.told.kind;
  if (!pictures_ || (kind != PlayedKind::video && kind != PlayedKind::sound)) return;
  if (packet.offset == PlayedPacket::kNowhere || places_ == kMaxPacketPlaces) return;
  const bool isMeasure = packet.stream == pictures_;
  const double time = isMeasure ? stream.end : stream.last;
  if (!isMeasure && !stream.places.empty() && time < stream.places.back().time + kSampled) return;
  stream.places.push_back({packet.offset, time});
  ++places_;
}

void PlayCount::takePicture(const platform::PlayedPicture& picture) {
  Stream& stream = streams_[picture.stream];
  ++stream.tally.pictures;
  if (picture.isKey || picture.type == platform::PictureType::intra) ++stream.tally.keys;
  if (picture.isHurt) countError(stream, picture.packet, PlayErrorKind::hurt);
  const auto from =
      std::ranges::find(stream.pending, picture.packet, [](const Pending& one) { return one.packet.number; });
  if (from == stream.pending.end()) return;
  const bool isDependent =
      picture.type == platform::PictureType::predicted || picture.type == platform::PictureType::bidirectional;
  if (from->packet.isKey && !from->hasPicture && isDependent && !picture.isKey && !picture.isHurt &&
      from->packet.offset != PlayedPacket::kNowhere && stream.tally.falseKeys.size() < PlayedStreamTally::kMaxFalseKeys)
    stream.tally.falseKeys.push_back(from->packet.offset);
  from->hasPicture = true;
}

void PlayCount::takeSound(const platform::PlayedSound& sound) {
  Stream& stream = streams_[sound.stream];
  stream.tally.samples += sound.samples;
  stream.tally.seconds += static_cast<double>(sound.samples) / sound.rate;
  if (sound.isHurt) countError(stream, sound.packet, PlayErrorKind::hurt);
}

void PlayCount::takeFault(const platform::PlayFault& fault) {
  if (fault.kind == platform::PlayFaultKind::unreadable) {
    if (tally_.unreadable++ == 0) tally_.firstUnreadable = fault.offset;
    return;
  }
  // A player that fails before it knows the streams fails on the film as a whole.
  if (streams_.empty()) streams_.emplace_back();
  Stream& stream = streams_[std::min<std::size_t>(fault.stream, streams_.size() - 1)];
  switch (fault.kind) {
    case platform::PlayFaultKind::refused:
      return countError(stream, fault.packet, PlayErrorKind::refused);
    case platform::PlayFaultKind::complained:
      return countError(stream, fault.packet, PlayErrorKind::hurt);
    case platform::PlayFaultKind::noMemory:
      return countError(stream, fault.packet, PlayErrorKind::noMemory);
    case platform::PlayFaultKind::crashed:
      return countError(stream, fault.packet, PlayErrorKind::crashed, fault.signal);
    case platform::PlayFaultKind::hung:
      return countError(stream, fault.packet, PlayErrorKind::hung);
    case platform::PlayFaultKind::unreadable:
      break;
  }
}

void PlayCount::countError(Stream& stream, std::uint64_t packet, PlayErrorKind kind, int signal) {
  PlayError error{.kind = kind,
                  .begin = stream.last,
                  .end = stream.end,
                  .offset = stream.lastOffset,
                  .packets = 1,
                  .signal = signal};
  const auto from = std::ranges::find(stream.pending, packet, [](const Pending& one) { return one.packet.number; });
  if (from != stream.pending.end()) {
    if (isMerged(kind) && std::exchange(from->isCounted, true)) return;
    error.begin = inSeconds(from->packet.time);
    error.end = error.begin + inSeconds(from->packet.duration);
    error.offset = from->packet.offset;
  }
  std::vector<PlayError>& faults = stream.tally.faults;
  const bool followsOn = isMerged(kind) && !faults.empty() && faults.back().kind == kind &&
                         std::abs(error.begin - faults.back().end) <= kOneError;
  if (!followsOn) return addFault(stream, error);
  ++stream.tally.errors;
  ++faults.back().packets;
  faults.back().end = std::max(faults.back().end, error.end);
}

void PlayCount::addFault(Stream& stream, const PlayError& error) {
  ++stream.tally.errors;
  if (stream.tally.faults.size() < PlayedStreamTally::kMaxErrors) {
    stream.tally.faults.push_back(error);
  } else {
    ++stream.tally.faultsLeftOut;
  }
}

/// Sound that is lost or too much. What follows on a fault of that kind is a part of it.
void PlayCount::addLoss(Stream& stream, const PlayError& error) {
  std::vector<PlayError>& faults = stream.tally.faults;
  const auto before = std::ranges::find(faults.rbegin(), faults.rend(), error.kind, &PlayError::kind);
  if (before == faults.rend()) return addFault(stream, error);
  const double small = kSmall * leastJump(stream.longest);
  const bool isRun = error.seconds <= small && before->seconds <= small * static_cast<double>(before->packets);
  if (error.begin - before->end > (isRun ? kOneRun : kOneError)) return addFault(stream, error);
  before->end = std::max(before->end, error.end);
  before->packets += error.packets;
  before->seconds += error.seconds;
}

void PlayCount::addStill(Stream& stream, double begin, double end) {
  std::vector<StillPicture>& stills = stream.tally.stills;
  stream.tally.still += end - begin;
  const double shortest = (end - begin) / 100;
  if (!stills.empty() && std::abs(stills.back().begin + stills.back().seconds - begin) <= shortest) {
    stills.back().seconds += end - begin;
  } else if (stills.size() < PlayedStreamTally::kMaxStills) {
    stills.push_back({begin, end - begin});
  }
}

/// No more pictures come of this packet.
void PlayCount::judge(Stream& stream, const Pending& oldest) {
  const PlayedPacket& packet = oldest.packet;
  if (!stream.tally.told.hasDecoder || oldest.hasPicture) return closeSilence(stream);
  if (packet.size <= kNoChange && packet.isDecoded) return;
  const double begin = inSeconds(packet.time);
  if (!stream.silent) {
    stream.silent = PlayError{.kind = PlayErrorKind::noPictures, .begin = begin, .end = begin, .offset = packet.offset};
  }
  ++stream.silent->packets;
  stream.silent->end = begin + inSeconds(packet.duration);
}

void PlayCount::closeSilence(Stream& stream) {
  if (!stream.silent) return;
  stream.silent->seconds = stream.silent->end - stream.silent->begin;
  if (stream.silent->seconds >= kGap) addFault(stream, *stream.silent);
  stream.silent.reset();
}

/// Sound that comes against the clock of its packets, up to a packet of this time that has not been decoded yet.
void PlayCount::watchClock(Stream& stream, double time, double duration) {
  if (!stream.tally.told.hasDecoder) return;
  const double behind = time - *stream.first - stream.tally.seconds;
  const double change = behind - stream.base;
  if (std::abs(change) > leastJump(stream.longest)) {
    addLoss(stream, {.kind = change > 0 ? PlayErrorKind::lostSound : PlayErrorKind::extraSound,
                     .begin = stream.last,
                     .end = time,
                     .offset = stream.lastOffset,
                     .packets = 1,
                     .seconds = std::abs(change)});
    stream.jumps += change;
    stream.base = behind;
    return;
  }
  stream.base += std::clamp(change, -kCreep * duration, kCreep * duration);
}

/// The place in the file where the first pictures give way to another stream is where both stand for the same time,
/// give or take how the film is interleaved, which is the same all through it.
void PlayCount::watchStep(Stream& stream) {
  if (!pictures_ || &stream == &streams_[*pictures_]) return;
  const std::vector<Place>& pictures = streams_[*pictures_].places;
  std::vector<Moment> moments;
  std::size_t before = 0;
  std::ranges::sort(stream.places, {}, &Place::offset);
  for (const Place& place : stream.places) {
    const auto next = std::ranges::lower_bound(pictures, place.offset, {}, &Place::offset);
    const auto passed = static_cast<std::size_t>(next - pictures.begin());
    if (passed == std::exchange(before, passed)) continue;
    moments.push_back({place.time - pictures[passed - 1].time, place.time, place.offset});
  }
  if (moments.size() < kFewMoments) return;
  const std::size_t some = std::max<std::size_t>(3, moments.size() / 10);
  const double first = median(moments, 0, some);
  const double last = median(moments, moments.size() - some, moments.size());
  stream.tally.step = last - first;
  if (std::abs(stream.tally.step) <= kStep + 1.5 * stream.longest) return;
  // Where the way from the one to the other is half done for good.
  const double half = first + stream.tally.step / 2;
  std::size_t at = moments.size();
  while (at > 0 && (moments[at - 1].skew > half) == (last > half)) --at;
  const Moment& moment = moments[std::min(at, moments.size() - 1)];
  addFault(stream, {.kind = PlayErrorKind::outOfStep,
                    .begin = moment.time,
                    .end = moment.time,
                    .offset = moment.offset,
                    .packets = 1,
                    .seconds = stream.tally.step});
}

PlayTally PlayCount::finish() {
  if (pictures_) std::ranges::sort(streams_[*pictures_].places, {}, &Place::offset);
  for (Stream& stream : streams_) {
    for (const Pending& pending : stream.pending) judge(stream, pending);
    closeSilence(stream);
    const double length = stream.first ? stream.end - *stream.first : 0;
    if (stream.tally.told.kind == PlayedKind::sound && stream.first) {
      watchClock(stream, stream.end, 0);
      stream.tally.creep = stream.end - *stream.first - stream.tally.seconds - stream.jumps;
    } else {
      stream.tally.seconds = length;
    }
    watchStep(stream);
    tally_.seconds = std::max(tally_.seconds, stream.end);
  }
  for (Stream& stream : streams_) tally_.streams.push_back(std::move(stream.tally));
  streams_.clear();
  return std::move(tally_);
}

}  // namespace zelvo::salvage
