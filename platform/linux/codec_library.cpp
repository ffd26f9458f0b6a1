#include "platform/linux/codec_library.h"

namespace zelvo::platform::linux_ {

const AVCodec* ownCodec(AVCodecID id, AVMediaType type, bool isEncoder) {
  void* place = nullptr;
  while (const AVCodec* const codec = ::av_codec_iterate(&place)) {
    const bool isOfKind = (isEncoder ? ::av_codec_is_encoder(codec) : ::av_codec_is_decoder(codec)) != 0;
    if (codec->id == id && codec->type == type && isOfKind && codec->wrapper_name == nullptr &&
        (codec->capabilities & AV_CODEC_CAP_HARDWARE) == 0)
      return codec;
  }
  return nullptr;
}

PictureType typeOf(const AVFrame& frame) {
  switch (frame.pict_type) {
    case AV_PICTURE_TYPE_I:
    case AV_PICTURE_TYPE_SI:
    case AV_PICTURE_TYPE_BI:
      return PictureType::intra;
    case AV_PICTURE_TYPE_P:
    case AV_PICTURE_TYPE_S:
    case AV_PICTURE_TYPE_SP:
      return PictureType::predicted;
    case AV_PICTURE_TYPE_B:
      return PictureType::bidirectional;
    default:
      return PictureType::unknown;
  }
}

}  // namespace zelvo::platform::linux_
