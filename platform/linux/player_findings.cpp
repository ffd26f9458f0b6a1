#include "platform/linux/player_findings.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace zelvo::platform::linux_ {

namespace {

/// Of one film; the player tries fewer.
constexpr std::uint32_t kMaxSeeks = 1000;
/// A film's times: thirty years.
constexpr std::int64_t kMaxTime = std::int64_t{1} << 50U;
constexpr std::uint32_t kMaxSide = 1U << 16U;
constexpr std::uint32_t kMaxRate = 1U << 24U;
constexpr std::uint32_t kMaxChannels = 1024;
/// Of one answer of a decoder.
constexpr std::uint64_t kMaxSamples = std::uint64_t{1} << 28U;

bool isTime(std::int64_t time) { return time >= -kMaxTime && time <= kMaxTime; }

bool isOffset(std::uint64_t offset) { return offset == PlayedPacket::kNowhere || offset <= INT64_MAX; }

bool has(const PlayerRecord& record, std::uint32_t flag) { return (record.flags & flag) != 0; }

std::string textOf(const PlayerRecord& record) {
  std::string text(record.text.begin(), std::ranges::find(record.text, '\0'));
  std::ranges::replace_if(
      text, [](char letter) { return letter < ' ' || letter > '~'; }, '?');
  return text;
}

}  // namespace

bool PlayerFindings::read(std::span<const std::byte> bytes) {
  while (isSound_ && !bytes.empty()) {
    const std::size_t count = std::min(bytes.size(), part_.size() - held_);
    std::memcpy(part_.data() + held_, bytes.data(), count);
    held_ += count;
    bytes = bytes.subspan(count);
    if (held_ < part_.size()) break;
    held_ = 0;
    PlayerRecord record;
    std::memcpy(&record, part_.data(), sizeof record);
    isSound_ = takeRecord(record);
  }
  return isSound_;
}

bool PlayerFindings::takeRecord(const PlayerRecord& record) {
  if (isEnded_) return false;
  if (!isGreeted_) {
    isGreeted_ = record.kind == PlayerRecordKind::hello && record.a == kPlayerMagic && record.b == kPlayerVersion;
    isConfined_ = has(record, PlayerRecord::kFlagOne);
    return isGreeted_;
  }
  switch (record.kind) {
    case PlayerRecordKind::stream:
      return takeStream(record);
    case PlayerRecordKind::packet:
      return takePacket(record);
    case PlayerRecordKind::picture:
    case PlayerRecordKind::sound:
    case PlayerRecordKind::fault:
      return takeResult(record);
    case PlayerRecordKind::seek:
      return takeSeek(record);
    case PlayerRecordKind::alive:
      return true;
    case PlayerRecordKind::noFilm:
    case PlayerRecordKind::end:
      isNoFilm_ = record.kind == PlayerRecordKind::noFilm;
      isEnded_ = true;
      return !isNoFilm_ || streams_ == 0;
    case PlayerRecordKind::hello:
      break;
  }
  return false;
}

bool PlayerFindings::takeStream(const PlayerRecord& record) {
  const auto high = static_cast<std::uint32_t>(record.b >> 32U);
  const auto low = static_cast<std::uint32_t>(record.b);
  if (hasPacket_ || record.stream != streams_ || streams_ == FilmPlayer::kMaxStreams ||
      record.a > static_cast<std::uint64_t>(PlayedKind::data))
    return false;
  PlayedStream stream{.stream = record.stream,
                      .kind = static_cast<PlayedKind>(record.a),
                      .hasDecoder = has(record, PlayerRecord::kFlagOne),
                      .codec = textOf(record)};
  if (stream.kind == PlayedKind::video) {
    if (high > kMaxSide || low > kMaxSide) return false;
    stream.width = high;
    stream.height = low;
  } else if (stream.kind == PlayedKind::sound) {
    if (high > kMaxRate || low > kMaxChannels) return false;
    stream.rate = high;
    stream.channels = low;
  }
  ++streams_;
  take_(stream);
  return true;
}

bool PlayerFindings::takePacket(const PlayerRecord& record) {
  const auto duration = static_cast<std::int64_t>(record.a);
  if (seeks_ > 0 || record.stream >= streams_ || record.number < nextPacket_ || record.number > INT64_MAX ||
      !isTime(record.time) || duration < 0 || duration > kMaxTime || !isOffset(record.b))
    return false;
  lastPacket_ = {.stream = record.stream,
                 .number = record.number,
                 .time = record.time,
                 .duration = duration,
                 .offset = record.b,
                 .size = record.size,
                 .isKey = has(record, PlayerRecord::kFlagOne),
                 .isDecoded = has(record, PlayerRecord::kFlagTwo)};
  hasPacket_ = true;
  nextPacket_ = record.number + 1;
  take_(lastPacket_);
  return true;
}

bool PlayerFindings::takeResult(const PlayerRecord& record) {
  const bool isOfNone =
      record.kind == PlayerRecordKind::fault && record.a == static_cast<std::uint64_t>(PlayFaultKind::unreadable);
  if (!isOfNone && (record.stream >= streams_ || record.number >= nextPacket_)) return false;
  const bool isHurt = has(record, PlayerRecord::kFlagTwo);
  if (record.kind == PlayerRecordKind::picture) {
    if (record.a > static_cast<std::uint64_t>(PictureType::bidirectional)) return false;
    take_(PlayedPicture{record.stream, record.number, static_cast<PictureType>(record.a),
                        has(record, PlayerRecord::kFlagOne), isHurt});
  } else if (record.kind == PlayerRecordKind::sound) {
    if (record.a > kMaxSamples || record.b > kMaxRate || record.b == 0) return false;
    take_(PlayedSound{record.stream, record.number, static_cast<std::uint32_t>(record.a),
                      static_cast<std::uint32_t>(record.b), isHurt});
  } else {
    // That a player crashed or hung is what its starter sees.
    if (record.a > static_cast<std::uint64_t>(PlayFaultKind::unreadable) || !isOffset(record.b)) return false;
    take_(PlayFault{.kind = static_cast<PlayFaultKind>(record.a),
                    .stream = record.stream,
                    .packet = record.number,
                    .offset = record.b});
  }
  return true;
}

bool PlayerFindings::takeSeek(const PlayerRecord& record) {
  const auto landed = static_cast<std::int64_t>(record.a);
  if (record.stream >= streams_ || seeks_ == kMaxSeeks || !isTime(record.time) || !isTime(landed) ||
      !isOffset(record.b) || record.number > static_cast<std::uint64_t>(SeekEnd::outOfStep))
    return false;
  ++seeks_;
  take_(PlayedSeek{record.stream, record.time, landed, record.b, static_cast<SeekEnd>(record.number)});
  return true;
}

}  // namespace zelvo::platform::linux_
