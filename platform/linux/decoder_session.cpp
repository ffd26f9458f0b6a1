#include "platform/linux/decoder_session.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/linux/codec_library.h"
#include "platform/linux/decoder_protocol.h"

namespace zelvo::platform::linux_ {

namespace {

/// Messages since the last look.
std::uint32_t complaints = 0;

void countComplaint(void* /*sender*/, int level, const char* /*format*/, va_list /*values*/) {
  if (level <= AV_LOG_INFO && complaints < std::numeric_limits<std::uint32_t>::max()) ++complaints;
}

AVCodecID codecOf(std::uint32_t code) {
  const AVCodecTag* const tags[] = {::avformat_get_riff_video_tags(), nullptr};
  return ::av_codec_get_id(tags, code);
}

/// What a decoder does not reach of a picture must not be what another picture left there.
int getGreyBuffer(AVCodecContext* context, AVFrame* frame, int flags) {
  constexpr int kGrey = 0x80;
  const int error = ::avcodec_default_get_buffer2(context, frame, flags);
  if (error < 0) return error;
  for (const AVBufferRef* buffer : frame->buf) {
    if (buffer != nullptr) std::memset(buffer->data, kGrey, buffer->size);
  }
  return 0;
}

void setFields(AVCodecContext& context, const TrialStream& stream) {
  context.codec_tag = stream.codec;
  context.width = static_cast<int>(stream.width);
  context.height = static_cast<int>(stream.height);
  context.coded_width = context.width;
  context.coded_height = context.height;
  context.bits_per_coded_sample = stream.bits;
  context.thread_count = 1;
  context.flags |= AV_CODEC_FLAG_BITEXACT;
}

bool isSize(const TrialStream& stream) {
  constexpr std::uint32_t kMaxSide = 1U << 15U;
  return stream.width <= kMaxSide && stream.height <= kMaxSide &&
         std::uint64_t{stream.width} * stream.height <= TrialDecoder::kMaxPixels;
}

bool giveExtra(AVCodecContext& context, const Bytes& extra) {
  if (extra.empty()) return true;
  context.extradata = static_cast<std::uint8_t*>(::av_mallocz(extra.size() + AV_INPUT_BUFFER_PADDING_SIZE));
  if (context.extradata == nullptr) return false;
  std::memcpy(context.extradata, extra.data(), extra.size());
  context.extradata_size = static_cast<int>(extra.size());
  return true;
}

/// What an encoder takes that has so many bits a pixel, else what it takes first.
AVPixelFormat formatOf(const AVCodec& encoder, std::uint16_t bits) {
  if (encoder.pix_fmts == nullptr) return AV_PIX_FMT_YUV420P;
  for (const AVPixelFormat* format = encoder.pix_fmts; *format != AV_PIX_FMT_NONE; ++format) {
    if (::av_get_bits_per_pixel(::av_pix_fmt_desc_get(*format)) == bits) return *format;
  }
  return encoder.pix_fmts[0];
}

PicturePlane planeOf(const AVFrame& frame, const AVPixFmtDescriptor& format, int number) {
  const bool isChroma = number > 0 && (format.flags & AV_PIX_FMT_FLAG_RGB) == 0;
  const int width = isChroma ? AV_CEIL_RSHIFT(frame.width, format.log2_chroma_w) : frame.width;
  const int height = isChroma ? AV_CEIL_RSHIFT(frame.height, format.log2_chroma_h) : frame.height;
  const AVComponentDescriptor& component = format.comp[number];
  const std::uint8_t* planes[4] = {frame.data[0], frame.data[1], frame.data[2], frame.data[3]};
  PicturePlane plane{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), {}};
  plane.samples.resize(std::size_t{plane.width} * plane.height);
  const bool isPlain = component.depth == 8 && component.step == 1 && component.shift == 0 &&
                       (format.flags & (AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM)) == 0;
  std::vector<std::uint16_t> row(plane.width);
  for (int y = 0; y < height; ++y) {
    std::byte* const to = plane.samples.data() + static_cast<std::size_t>(y) * plane.width;
    if (isPlain) {
      std::memcpy(to, planes[component.plane] + y * frame.linesize[component.plane] + component.offset, plane.width);
      continue;
    }
    const bool hasPalette = (format.flags & AV_PIX_FMT_FLAG_PAL) != 0;
    ::av_read_image_line2(row.data(), planes, frame.linesize, &format, 0, y, number, width, hasPalette ? 1 : 0,
                          sizeof row.front());
    const int depth = hasPalette ? 8 : component.depth;
    std::ranges::transform(row, to, [depth](std::uint16_t value) {
      return static_cast<std::byte>(depth > 8 ? value >> (depth - 8) : value << (8 - depth));
    });
  }
  return plane;
}

std::vector<PicturePlane> planesOf(const AVFrame& frame, WantedPlanes wanted) {
  const AVPixFmtDescriptor* const format = ::av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
  std::vector<PicturePlane> planes;
  if (format == nullptr || wanted == WantedPlanes::none || (format->flags & AV_PIX_FMT_FLAG_HWACCEL) != 0)
    return planes;
  const bool hasColours = format->nb_components >= 3;
  const int count = wanted == WantedPlanes::all && hasColours ? 3 : 1;
  for (int number = 0; number < count; ++number) planes.push_back(planeOf(frame, *format, number));
  return planes;
}

std::size_t sizeOf(const std::vector<PicturePlane>& planes) {
  std::size_t size = 0;
  for (const PicturePlane& plane : planes) size += plane.samples.size();
  return size;
}

}  // namespace

struct DecoderSession::Parts {
  Context context;
  Packet packet{::av_packet_alloc()};
  Frame frame{::av_frame_alloc()};
  std::uint32_t payloads = 0;
};

DecoderSession::DecoderSession() : parts_(std::make_unique<Parts>()) {
  ::av_log_set_callback(countComplaint);
  ::av_log_set_level(AV_LOG_INFO);
}

DecoderSession::~DecoderSession() = default;

bool DecoderSession::open(const TrialStream& stream) {
  parts_->context.reset();
  parts_->payloads = 0;
  const AVCodec* const codec = ownCodec(codecOf(stream.codec), AVMEDIA_TYPE_VIDEO, false);
  if (codec == nullptr || !isSize(stream) || !parts_->packet || !parts_->frame) return false;
  Context context(::avcodec_alloc_context3(codec));
  if (!context || !giveExtra(*context, stream.extra)) return false;
  setFields(*context, stream);
  context->flags |= AV_CODEC_FLAG_OUTPUT_CORRUPT;
  context->flags2 |= AV_CODEC_FLAG2_SHOW_ALL;
  context->error_concealment = 0;
  // Smoothing across blocks takes long, and lets a block depend on those after it.
  context->skip_loop_filter = AVDISCARD_ALL;
  context->err_recognition = AV_EF_CRCCHECK | AV_EF_BITSTREAM | AV_EF_BUFFER | AV_EF_CAREFUL | AV_EF_COMPLIANT;
  context->max_pixels = static_cast<std::int64_t>(TrialDecoder::kMaxPixels);
  context->get_buffer2 = getGreyBuffer;
  if (::avcodec_open2(context.get(), codec, nullptr) < 0) return false;
  parts_->context = std::move(context);
  complaints = 0;
  return true;
}

TrialAnswer DecoderSession::decode(std::span<const std::byte> payload, WantedPlanes wanted) {
  TrialAnswer answer;
  AVPacket& packet = *parts_->packet;
  const bool isPossible = parts_->context && !payload.empty() && payload.size() <= TrialDecoder::kMaxPayload;
  const std::uint32_t number = parts_->payloads++;
  // Nothing at all would be taken for the end of the stream.
  if (!isPossible || ::av_new_packet(&packet, static_cast<int>(payload.size())) < 0) return answer;
  std::memcpy(packet.data, payload.data(), payload.size());
  packet.pts = number;
  packet.dts = number;
  if (number == 0) packet.flags |= AV_PKT_FLAG_KEY;
  answer.isAccepted = ::avcodec_send_packet(parts_->context.get(), &packet) >= 0;
  ::av_packet_unref(&packet);
  receive(answer, wanted);
  return answer;
}

TrialAnswer DecoderSession::finish(WantedPlanes wanted) {
  TrialAnswer answer;
  if (!parts_->context) return answer;
  answer.isAccepted = ::avcodec_send_packet(parts_->context.get(), nullptr) >= 0;
  receive(answer, wanted);
  ::avcodec_flush_buffers(parts_->context.get());
  parts_->payloads = 0;
  return answer;
}

void DecoderSession::receive(TrialAnswer& answer, WantedPlanes wanted) {
  std::size_t room = kMaxDecoderReply - kMaxDecoderPictures * sizeof(DecoderPicture);
  AVFrame& frame = *parts_->frame;
  while (answer.pictures.size() < kMaxDecoderPictures) {
    const int error = ::avcodec_receive_frame(parts_->context.get(), &frame);
    if (error < 0) {
      if (error != AVERROR(EAGAIN) && error != AVERROR_EOF) answer.isAccepted = false;
      break;
    }
    if (frame.decode_error_flags != 0) ++complaints;
    TrialPicture picture{
        static_cast<std::uint32_t>(std::max<std::int64_t>(0, frame.pts)), typeOf(frame), frame.key_frame != 0, {}};
    picture.planes = planesOf(frame, wanted);
    if (sizeOf(picture.planes) > room) picture.planes.clear();
    room -= sizeOf(picture.planes);
    answer.pictures.push_back(std::move(picture));
    ::av_frame_unref(&frame);
  }
  answer.complaints = std::exchange(complaints, 0U);
}

Bytes DecoderSession::usualExtra(const TrialStream& stream) {
  const AVCodec* const codec = ownCodec(codecOf(stream.codec), AVMEDIA_TYPE_VIDEO, true);
  if (codec == nullptr || !isSize(stream)) return {};
  const Context context(::avcodec_alloc_context3(codec));
  if (!context) return {};
  setFields(*context, stream);
  constexpr int kPicturesASecond = 25;
  context->time_base = {1, kPicturesASecond};
  context->pix_fmt = formatOf(*codec, stream.bits);
  if (::avcodec_open2(context.get(), codec, nullptr) < 0 || context->extradata_size <= 0) return {};
  const auto* const extra = reinterpret_cast<const std::byte*>(context->extradata);
  return {extra, extra + context->extradata_size};
}

}  // namespace zelvo::platform::linux_
