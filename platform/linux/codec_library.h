/// What the programs that decode ask of the library that does it.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <memory>

#include "platform/trial_decoder.h"

namespace zelvo::platform::linux_ {

struct ContextEnd {
  void operator()(AVCodecContext* context) const { ::avcodec_free_context(&context); }
};
struct PacketEnd {
  void operator()(AVPacket* packet) const { ::av_packet_free(&packet); }
};
struct FrameEnd {
  void operator()(AVFrame* frame) const { ::av_frame_free(&frame); }
};
using Context = std::unique_ptr<AVCodecContext, ContextEnd>;
using Packet = std::unique_ptr<AVPacket, PacketEnd>;
using Frame = std::unique_ptr<AVFrame, FrameEnd>;

/// The library's own decoder or encoder; those that only hand over to other libraries do not count. Null without one.
[[nodiscard]] const AVCodec* ownCodec(AVCodecID id, AVMediaType type, bool isEncoder);

[[nodiscard]] PictureType typeOf(const AVFrame& frame);

}  // namespace zelvo::platform::linux_
