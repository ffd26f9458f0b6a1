#include "platform/linux/player_stream.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <atomic>
#include <cstdarg>

namespace zelvo::platform::linux_ {

namespace {

/// Errors that decoders told of since the last look. Decoders may have threads of their own.
std::atomic<std::uint32_t> playerComplaints;

void countPlayerComplaint(void* /*sender*/, int level, const char* /*format*/, va_list /*values*/) {
  if (level <= AV_LOG_ERROR) playerComplaints.fetch_add(1, std::memory_order_relaxed);
}

PlayedKind kindOf(AVMediaType type) {
  switch (type) {
    case AVMEDIA_TYPE_VIDEO:
      return PlayedKind::video;
    case AVMEDIA_TYPE_AUDIO:
      return PlayedKind::sound;
    case AVMEDIA_TYPE_SUBTITLE:
      return PlayedKind::text;
    default:
      return PlayedKind::data;
  }
}

std::uint32_t upTo(int value, int most) { return static_cast<std::uint32_t>(value < 0 || value > most ? 0 : value); }

}  // namespace

void countComplaints() {
  ::av_log_set_callback(countPlayerComplaint);
  ::av_log_set_level(AV_LOG_ERROR);
}

PlayerStream::PlayerStream(const AVStream& stream, unsigned threads)
    : kind_(kindOf(stream.codecpar->codec_type)), parameters_(stream.codecpar), frame_(::av_frame_alloc()) {
  if (kind_ != PlayedKind::video && kind_ != PlayedKind::sound) return;
  constexpr std::int64_t kMaxPixels = 8192 * 4608;
  const AVCodec* codec = ownCodec(parameters_->codec_id, parameters_->codec_type, false);
  if (codec == nullptr) codec = ::avcodec_find_decoder(parameters_->codec_id);
  if (codec == nullptr || !frame_) return;
  Context context(::avcodec_alloc_context3(codec));
  if (!context || ::avcodec_parameters_to_context(context.get(), parameters_) < 0) return;
  context->pkt_timebase = stream.time_base;
  context->thread_count = static_cast<int>(threads);
  context->flags |= AV_CODEC_FLAG_BITEXACT;
  context->err_recognition |= AV_EF_CRCCHECK;
  context->max_pixels = kMaxPixels;
  if (needsParser(stream)) {
    parser_.reset(::av_parser_init(parameters_->codec_id));
    parsed_.reset(::av_packet_alloc());
    if (!parsed_) return;
  }
  if (::avcodec_open2(context.get(), codec, nullptr) >= 0) context_ = std::move(context);
}

bool PlayerStream::needsParser(const AVStream& stream) const {
  constexpr std::uint32_t kCutAnywhere = MKTAG('V', 'S', 'S', 'H');
  if (kind_ == PlayedKind::video) return stream.codecpar->codec_tag == kCutAnywhere;
  // Without headers of its own, sound lies in whole frames.
  const bool isBareAac = parameters_->codec_id == AV_CODEC_ID_AAC && parameters_->extradata_size > 0;
  return !isBareAac && parameters_->codec_id != AV_CODEC_ID_FLAC;
}

PlayedStream PlayerStream::told(std::uint32_t number) const {
  constexpr int kMaxSide = 1 << 16;
  constexpr int kMaxRate = 1 << 24;
  constexpr int kMaxChannels = 1024;
  PlayedStream stream{
      .stream = number, .kind = kind_, .hasDecoder = hasDecoder(), .codec = ::avcodec_get_name(parameters_->codec_id)};
  if (kind_ == PlayedKind::video) {
    stream.width = upTo(parameters_->width, kMaxSide);
    stream.height = upTo(parameters_->height, kMaxSide);
  } else if (kind_ == PlayedKind::sound) {
    stream.rate = upTo(parameters_->sample_rate, kMaxRate);
    stream.channels = upTo(parameters_->ch_layout.nb_channels, kMaxChannels);
  }
  return stream;
}

PlayerStream::Trouble PlayerStream::decode(const AVPacket& packet, std::uint64_t number, const Take& take) {
  Trouble trouble;
  playerComplaints = 0;
  context_->reordered_opaque = static_cast<std::int64_t>(number);
  if (parser_) {
    decodeParsed({packet.data, static_cast<std::size_t>(packet.size)}, trouble, take);
  } else {
    send(packet, trouble, take);
  }
  trouble.hasComplaints = playerComplaints > 0;
  return trouble;
}

void PlayerStream::decodeParsed(std::span<const std::uint8_t> bytes, Trouble& trouble, const Take& take) {
  const bool isEnd = bytes.empty();
  do {
    const int used = ::av_parser_parse2(parser_.get(), context_.get(), &parsed_->data, &parsed_->size, bytes.data(),
                                        static_cast<int>(bytes.size()), AV_NOPTS_VALUE, AV_NOPTS_VALUE, -1);
    if (used < 0 || (used == 0 && parsed_->size == 0)) break;
    bytes = bytes.subspan(std::min(bytes.size(), static_cast<std::size_t>(used)));
    if (parsed_->size > 0) send(*parsed_, trouble, take);
  } while (!bytes.empty() && !isEnd);
  parsed_->data = nullptr;
  parsed_->size = 0;
}

void PlayerStream::send(const AVPacket& packet, Trouble& trouble, const Take& take) {
  int error = ::avcodec_send_packet(context_.get(), &packet);
  if (error == AVERROR(EAGAIN)) {
    receive(trouble, take);
    error = ::avcodec_send_packet(context_.get(), &packet);
  }
  trouble.isRefused = trouble.isRefused || error < 0;
  trouble.lacksMemory = trouble.lacksMemory || error == AVERROR(ENOMEM);
  receive(trouble, take);
}

PlayerStream::Trouble PlayerStream::finish(const Take& take) {
  Trouble trouble;
  playerComplaints = 0;
  if (parser_) decodeParsed({}, trouble, take);
  if (::avcodec_send_packet(context_.get(), nullptr) >= 0) receive(trouble, take);
  trouble.hasComplaints = playerComplaints > 0;
  return trouble;
}

void PlayerStream::receive(Trouble& trouble, const Take& take) {
  for (;;) {
    const int error = ::avcodec_receive_frame(context_.get(), frame_.get());
    if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) return;
    if (error < 0) {
      trouble.isRefused = true;
      trouble.lacksMemory = trouble.lacksMemory || error == AVERROR(ENOMEM);
      return;
    }
    take(*frame_, static_cast<std::uint64_t>(frame_->reordered_opaque));
    ::av_frame_unref(frame_.get());
  }
}

void PlayerStream::forget() {
  ::avcodec_flush_buffers(context_.get());
  if (parser_) parser_.reset(::av_parser_init(parameters_->codec_id));
}

std::uint64_t fingerprint(const AVFrame& frame) {
  constexpr std::uint64_t kBasis = 0xcbf2'9ce4'8422'2325;
  constexpr std::uint64_t kPrime = 0x0000'0100'0000'01b3;
  const auto format = static_cast<AVPixelFormat>(frame.format);
  const AVPixFmtDescriptor* const description = ::av_pix_fmt_desc_get(format);
  std::uint64_t print = kBasis;
  if (description == nullptr || (description->flags & AV_PIX_FMT_FLAG_HWACCEL) != 0) return print;
  // A palette may have come in a chunk of its own long before; that a player jumps past it is no fault of the film.
  const bool hasPalette = (description->flags & AV_PIX_FMT_FLAG_PAL) != 0;
  const int planes = hasPalette ? 1 : ::av_pix_fmt_count_planes(format);
  for (int plane = 0; plane < planes; ++plane) {
    const int width = ::av_image_get_linesize(format, frame.width, plane);
    const bool isChroma = (plane == 1 || plane == 2) && (description->flags & AV_PIX_FMT_FLAG_RGB) == 0;
    const int height = isChroma ? AV_CEIL_RSHIFT(frame.height, description->log2_chroma_h) : frame.height;
    for (int row = 0; row < height; ++row) {
      const std::uint8_t* const bytes = frame.data[plane] + static_cast<std::ptrdiff_t>(row) * frame.linesize[plane];
      for (int i = 0; i < width; ++i) print = (print ^ bytes[i]) * kPrime;
    }
  }
  return print;
}

}  // namespace zelvo::platform::linux_
