// 1. Open the film, tell its streams.
// 2. Read and decode it packet by packet. Some pictures' fingerprints are kept on the way.
// 3. Open it once more, as for somebody who has not watched it, jump to these pictures, and compare.
#include "platform/linux/player_run.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "platform/linux/player_film.h"
#include "platform/linux/player_marks.h"
#include "platform/linux/player_stream.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr AVRational kMicroseconds{1, 1'000'000};
/// Of the last packets that say so of themselves.
constexpr std::size_t kMaxRecovers = 64;
/// Packets of its stream that are decoded after a jump before the picture is given up.
constexpr unsigned kMaxDecoded = 400;
/// Packets that are read after a jump to meet those of other streams.
constexpr unsigned kMaxFollowed = 500;
/// What the times of other streams may be off after a jump, in microseconds.
constexpr std::int64_t kStep = 200'000;
/// Packets of other streams between two signs of life.
constexpr std::uint64_t kQuiet = 1000;

/// Whether an H.264 packet says that decoding may begin with it, although its picture does not stand alone: the whole
/// picture is refreshed bit by bit after it (a recovery point, in supplemental information of type 6).
bool isRecoveryPoint(AVCodecID codec, const AVPacket& packet) {
  constexpr int kMaxHead = 4096;
  constexpr std::uint8_t kInformation = 6;
  constexpr std::uint8_t kRecoveryPoint = 6;
  if (codec != AV_CODEC_ID_H264) return false;
  const std::span head(packet.data, static_cast<std::size_t>(std::clamp(packet.size, 0, kMaxHead)));
  for (std::size_t i = 0; i + 5 <= head.size(); ++i) {
    const bool isUnit = head[i] == 0 && head[i + 1] == 0 && head[i + 2] == 1;
    if (isUnit && (head[i + 3] & 0x1fU) == kInformation && head[i + 4] == kRecoveryPoint) return true;
  }
  return false;
}

class Run {
 public:
  Run(int film, const PlayerTask& task, PlayerRecords& records) : descriptor_(film), task_(task), records_(records) {}

  void perform() {
    PlayerFilm film(descriptor_, [this](std::uint64_t offset) { tellUnreadable(offset); });
    if (!film.open(task_.looksAhead)) {
      records_.add(PlayerRecord{.kind = PlayerRecordKind::noFilm});
      records_.flush();
      return;
    }
    addStreams(film.context());
    records_.flush();
    playThrough(film);
    if (task_.seeks > 0 && sought_) jump();
    records_.add(PlayerRecord{.kind = PlayerRecordKind::end});
    records_.flush();
  }

 private:
  [[nodiscard]] bool isLeftOut(std::size_t stream) const { return stream < 64 && (task_.leftOut >> stream & 1U) != 0; }

  void tellUnreadable(std::uint64_t offset) {
    if (!hasToldStreams_) {
      early_.push_back(offset);
      return;
    }
    records_.add(PlayFault{.kind = PlayFaultKind::unreadable, .offset = offset});
    records_.flush();
  }

  /// Of streams that turn up while the film is read as well.
  void addStreams(const AVFormatContext& context) {
    const std::size_t count = std::min<std::size_t>(context.nb_streams, FilmPlayer::kMaxStreams);
    if (hasToldStreams_ || streams_.size() >= count) return;
    for (std::size_t i = 0; i < count; ++i) {
      const AVStream& stream = *context.streams[i];
      streams_.emplace_back(stream, task_.threads);
      awaitsKey_.push_back(task_.firstPacket > 0);
      records_.add(streams_.back().told(static_cast<std::uint32_t>(i)));
    }
    const auto find = [this](PlayedKind kind) -> std::optional<std::size_t> {
      for (std::size_t i = 0; i < streams_.size(); ++i) {
        if (streams_[i].kind() == kind && streams_[i].hasDecoder() && !isLeftOut(i)) return i;
      }
      return std::nullopt;
    };
    sought_ = find(PlayedKind::video);
    if (!sought_) sought_ = find(PlayedKind::sound);
    hasToldStreams_ = true;
    for (const std::uint64_t offset : early_) tellUnreadable(offset);
    lastTimes_.resize(streams_.size());
  }

  void playThrough(PlayerFilm& film) {
    const Packet packet(::av_packet_alloc());
    if (!packet) return;
    int error = 0;
    for (std::uint64_t number = 0; (error = film.read(*packet)) >= 0; ++number) {
      const auto stream = static_cast<std::size_t>(packet->stream_index);
      if (stream < streams_.size() && number >= task_.firstPacket) take(film.context(), *packet, number);
      if (number % kQuiet == 0) tellAlive();
      ::av_packet_unref(packet.get());
      last_ = number;
    }
    if (error == AVERROR(ENOMEM) && hasPacket_) tellFault(PlayFaultKind::noMemory, lastStream_, last_);
    for (std::size_t i = 0; i < streams_.size(); ++i) {
      if (!streams_[i].hasDecoder() || isLeftOut(i)) continue;
      const auto trouble = streams_[i].finish([&](const AVFrame& frame, std::uint64_t of) { came(i, frame, of); });
      if (numberOf_.contains(i)) tell(trouble, i, numberOf_[i]);
    }
    records_.flush();
  }

  void take(const AVFormatContext& context, const AVPacket& packet, std::uint64_t number) {
    const auto stream = static_cast<std::size_t>(packet.stream_index);
    PlayerStream& decoder = streams_[stream];
    const bool isKey = (packet.flags & AV_PKT_FLAG_KEY) != 0;
    if (isKey || decoder.kind() != PlayedKind::video) awaitsKey_[stream] = false;
    const bool isDecoded = decoder.hasDecoder() && !isLeftOut(stream) && !awaitsKey_[stream];
    const AVRational base = context.streams[stream]->time_base;
    const std::int64_t stamp = stampOf(packet);
    if (stamp != AV_NOPTS_VALUE) lastTimes_[stream] = bounded(::av_rescale_q(stamp, base, kMicroseconds));
    // A picture takes one unit of its stream's clock. What sound takes only the next packet tells.
    const std::int64_t units = packet.duration > 0 ? packet.duration : decoder.kind() == PlayedKind::video ? 1 : 0;
    const std::int64_t duration = std::max<std::int64_t>(0, bounded(::av_rescale_q(units, base, kMicroseconds)));
    records_.add(PlayedPacket{.stream = static_cast<std::uint32_t>(stream),
                              .number = number,
                              .time = lastTimes_[stream],
                              .duration = duration,
                              .offset = offsetOf(packet),
                              .size = static_cast<std::uint32_t>(std::max(packet.size, 0)),
                              .isKey = isKey,
                              .isDecoded = isDecoded});
    if (stamp == AV_NOPTS_VALUE) lastTimes_[stream] = bounded(lastTimes_[stream] + duration);
    records_.flush();
    hasPacket_ = true;
    lastStream_ = stream;
    if (isKey && isRecoveryPoint(context.streams[stream]->codecpar->codec_id, packet)) {
      recovers_.insert(number);
      if (recovers_.size() > kMaxRecovers) recovers_.erase(recovers_.begin());
    }
    numberOf_[stream] = number;
    if (packet.size > 0 && task_.seeks > 0 && decoder.hasDecoder()) {
      sought_ == stream ? marks_.packet(packet, number) : otherTimes_.packet(packet);
    }
    if (!isDecoded || packet.size <= 0) return;
    tell(decoder.decode(packet, number, [&](const AVFrame& frame, std::uint64_t of) { came(stream, frame, of); }),
         stream, number);
  }

  static std::int64_t bounded(std::int64_t time) {
    constexpr std::int64_t kMaxTime = std::int64_t{1} << 49U;
    return std::clamp(time, -kMaxTime, kMaxTime);
  }

  void came(std::size_t stream, const AVFrame& frame, std::uint64_t packet) {
    const bool isHurt = (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame.decode_error_flags != 0;
    // A decoder that does not hand the number on names none that was given to it.
    const std::uint64_t number = std::min(packet, numberOf_[stream]);
    PlayerRecord record{.kind = PlayerRecordKind::picture,
                        .stream = static_cast<std::uint32_t>(stream),
                        .flags = isHurt ? PlayerRecord::kFlagTwo : 0,
                        .number = number,
                        .a = static_cast<std::uint64_t>(typeOf(frame))};
    if (streams_[stream].kind() == PlayedKind::sound) {
      if (frame.sample_rate <= 0 || frame.nb_samples < 0) return;
      record.kind = PlayerRecordKind::sound;
      record.a = static_cast<std::uint64_t>(frame.nb_samples);
      record.b = static_cast<std::uint64_t>(frame.sample_rate);
    } else {
      if (frame.key_frame != 0 || recovers_.contains(number)) record.flags |= PlayerRecord::kFlagOne;
      if (sought_ == stream && task_.seeks > 0) marks_.picture(frame, number);
    }
    records_.add(record);
  }

  void tell(const PlayerStream::Trouble& trouble, std::size_t stream, std::uint64_t number) {
    if (trouble.lacksMemory) {
      tellFault(PlayFaultKind::noMemory, stream, number);
    } else if (trouble.isRefused) {
      tellFault(PlayFaultKind::refused, stream, number);
    } else if (trouble.hasComplaints) {
      tellFault(PlayFaultKind::complained, stream, number);
    }
  }

  void tellFault(PlayFaultKind kind, std::size_t stream, std::uint64_t number) {
    records_.add(PlayFault{.kind = kind, .stream = static_cast<std::uint32_t>(stream), .packet = number});
  }

  void tellAlive() {
    records_.add(PlayerRecord{});
    records_.flush();
  }

  void jump() {
    const bool isVideo = streams_[*sought_].kind() == PlayedKind::video;
    PlayerFilm film(descriptor_, [](std::uint64_t) {});
    if (!film.open(task_.looksAhead) || film.context().nb_streams <= *sought_) return;
    const AVStream& stream = *film.context().streams[*sought_];
    PlayerStream decoder(stream, task_.threads);
    if (!decoder.hasDecoder()) return;
    otherTimes_.sort();
    for (const Mark& mark : marks_.some(task_.seeks, isVideo)) {
      PlayedSeek seek{.stream = static_cast<std::uint32_t>(*sought_),
                      .target = bounded(::av_rescale_q(mark.time, stream.time_base, kMicroseconds))};
      jumpTo(film, decoder, mark, seek);
      seek.landed =
          bounded(seek.landed == AV_NOPTS_VALUE ? 0 : ::av_rescale_q(seek.landed, stream.time_base, kMicroseconds));
      records_.add(seek);
      records_.flush();
    }
  }

  /// Finds out how the jump ends; `landed` is in the stream's own units.
  void jumpTo(PlayerFilm& film, PlayerStream& decoder, const Mark& mark, PlayedSeek& seek) {
    const bool isVideo = decoder.kind() == PlayedKind::video;
    seek.end = SeekEnd::refused;
    if (!film.seek(static_cast<int>(*sought_), mark.time)) return;
    decoder.forget();
    seek.end = SeekEnd::noPicture;
    const Packet packet(::av_packet_alloc());
    std::optional<std::uint64_t> print;
    bool hasPictures = false;
    bool isOver = false;  // a picture came out that stands after the one that is sought
    const auto look = [&](const AVFrame& frame, std::uint64_t offset) {
      hasPictures = true;
      if (isVideo && offset == mark.offset && !print) print = fingerprint(frame);
      isOver = isOver || offset > mark.offset;
    };
    std::set<int> others = otherTimes_.streams();
    bool isFirst = true;
    bool isMet = false;
    bool isInStep = true;
    unsigned decoded = 0;
    for (std::uint64_t read = 0; packet && !print && !isOver && film.read(*packet) >= 0;
         ::av_packet_unref(packet.get()), ++read) {
      if (read % kQuiet == 0) tellAlive();
      if (static_cast<std::size_t>(packet->stream_index) != *sought_) {
        isInStep = isInStep && hasItsTime(film, *packet, others);
        continue;
      }
      const std::uint64_t offset = offsetOf(*packet);
      if (isFirst && !isLandedRight(*packet, mark, isVideo, seek)) return;
      if (isFirst && isRecoveryPoint(decoder.codec(), *packet)) hasPictures = true;  // by and by
      isFirst = false;
      if (!isMet && (offset == mark.offset) != (stampOf(*packet) == mark.time) && packet->size > 0) {
        seek.end = SeekEnd::otherTime;
        return;
      }
      isMet = isMet || offset == mark.offset;
      if (isMet && !isVideo) break;
      if (++decoded > kMaxDecoded) {
        seek.end = SeekEnd::right;  // as far as anybody would wait
        return;
      }
      if (packet->size > 0) static_cast<void>(decoder.decode(*packet, offset, look));
      if (decoded % 16 == 0) tellAlive();
    }
    if (isVideo && isMet && !print) static_cast<void>(decoder.finish(look));
    if (!isMet) return;
    // A picture that needs one before the key is left out by every player, and the next one comes.
    const bool isRight = !isVideo || (print ? print == mark.print : hasPictures);
    seek.end = isRight ? SeekEnd::right : hasPictures ? SeekEnd::otherPicture : SeekEnd::noPicture;
    if (!isRight) return;
    for (unsigned read = 0; packet && isInStep && !others.empty() && read < kMaxFollowed; ++read) {
      ::av_packet_unref(packet.get());
      if (film.read(*packet) < 0) break;
      isInStep = hasItsTime(film, *packet, others);
    }
    if (!isInStep) seek.end = SeekEnd::outOfStep;
  }

  /// Whether a packet of another stream has about the time that it has when the film is played through. A stream that
  /// was met is taken off the list.
  bool hasItsTime(PlayerFilm& film, const AVPacket& packet, std::set<int>& others) const {
    const auto stream = others.find(packet.stream_index);
    const auto time = stream == others.end() ? std::nullopt : otherTimes_.timeOf(packet);
    if (!time || stampOf(packet) == AV_NOPTS_VALUE) return true;
    others.erase(stream);
    const AVRational base = film.context().streams[packet.stream_index]->time_base;
    return std::abs(bounded(::av_rescale_q(stampOf(packet) - *time, base, kMicroseconds))) <= kStep;
  }

  static bool isLandedRight(const AVPacket& packet, const Mark& mark, bool isVideo, PlayedSeek& seek) {
    seek.landed = stampOf(packet);
    seek.offset = offsetOf(packet);
    if (seek.landed > mark.time) {
      seek.end = SeekEnd::late;
    } else if (isVideo && mark.key != AV_NOPTS_VALUE && seek.landed < mark.key) {
      seek.end = SeekEnd::early;
    } else if (isVideo && (packet.flags & AV_PKT_FLAG_KEY) == 0) {
      seek.end = SeekEnd::noKey;
    } else {
      return true;
    }
    return false;
  }

  const int descriptor_;
  const PlayerTask& task_;
  PlayerRecords& records_;
  std::vector<PlayerStream> streams_;
  std::vector<bool> awaitsKey_;
  std::vector<std::int64_t> lastTimes_;
  std::map<std::size_t, std::uint64_t> numberOf_;  ///< of each stream's last packet
  std::set<std::uint64_t> recovers_;               ///< the last packets that say so of themselves
  std::vector<std::uint64_t> early_;
  std::optional<std::size_t> sought_;
  Marks marks_;
  OtherTimes otherTimes_;
  std::uint64_t last_ = 0;
  std::size_t lastStream_ = 0;
  bool hasPacket_ = false;
  bool hasToldStreams_ = false;
};

}  // namespace

void playFilm(int film, const PlayerTask& task, PlayerRecords& records) { Run(film, task, records).perform(); }

}  // namespace zelvo::platform::linux_
