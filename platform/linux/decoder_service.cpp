#include "platform/linux/decoder_service.h"

#include <unistd.h>

#include <cerrno>

#include "platform/linux/decoder_protocol.h"
#include "platform/linux/decoder_session.h"

namespace zelvo::platform::linux_ {

namespace {

class Service {
 public:
  explicit Service(int socket) : socket_(socket) {}

  [[nodiscard]] bool send(const void* data, std::size_t size) const {
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
      const ssize_t count = ::write(socket_, at, size);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      at += count;
      size -= static_cast<std::size_t>(count);
    }
    return true;
  }

  [[nodiscard]] bool receive(void* data, std::size_t size) const {
    char* at = static_cast<char*>(data);
    while (size > 0) {
      const ssize_t count = ::read(socket_, at, size);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) return false;
      at += count;
      size -= static_cast<std::size_t>(count);
    }
    return true;
  }

  /// False when there is none.
  [[nodiscard]] bool serveOne() {
    DecoderRequest request;
    if (!receive(&request, sizeof request) || request.size > TrialDecoder::kMaxPayload) return false;
    body_.resize(request.size);
    if (!receive(body_.data(), body_.size())) return false;
    DecoderReply reply{.kind = request.kind};
    reply_.clear();
    switch (request.kind) {
      case DecoderRequestKind::open:
        reply.isAccepted = session_.open(streamOf(request)) ? 1 : 0;
        break;
      case DecoderRequestKind::usualExtra:
        reply_ = DecoderSession::usualExtra(streamOf(request));
        if (reply_.size() > kMaxDecoderReply) reply_.clear();
        break;
      case DecoderRequestKind::decode:
        fill(session_.decode(body_, static_cast<WantedPlanes>(request.wanted)), reply);
        break;
      case DecoderRequestKind::finish:
        fill(session_.finish(static_cast<WantedPlanes>(request.wanted)), reply);
        break;
      default:
        return false;
    }
    reply.size = static_cast<std::uint32_t>(reply_.size());
    return send(&reply, sizeof reply) && send(reply_.data(), reply_.size());
  }

 private:
  [[nodiscard]] TrialStream streamOf(const DecoderRequest& request) const {
    return {request.codec, request.width, request.height, static_cast<std::uint16_t>(request.bits), body_};
  }

  void append(const void* data, std::size_t size) {
    const auto* const bytes = static_cast<const std::byte*>(data);
    reply_.insert(reply_.end(), bytes, bytes + size);
  }

  void fill(const TrialAnswer& answer, DecoderReply& reply) {
    reply.isAccepted = answer.isAccepted ? 1 : 0;
    reply.complaints = answer.complaints;
    reply.pictures = static_cast<std::uint32_t>(answer.pictures.size());
    for (const TrialPicture& picture : answer.pictures) {
      DecoderPicture told{.payload = picture.payload,
                          .type = static_cast<std::uint32_t>(picture.type),
                          .isKey = picture.isKey ? 1U : 0U,
                          .planes = static_cast<std::uint32_t>(picture.planes.size())};
      for (std::size_t i = 0; i < picture.planes.size(); ++i) {
        told.widths[i] = picture.planes[i].width;
        told.heights[i] = picture.planes[i].height;
      }
      append(&told, sizeof told);
      for (const PicturePlane& plane : picture.planes) append(plane.samples.data(), plane.samples.size());
    }
  }

  const int socket_;
  DecoderSession session_;
  Bytes body_;
  Bytes reply_;
};

}  // namespace

void serveDecoding(int socket, bool isConfined) {
  Service service(socket);
  const DecoderHello hello{.isConfined = isConfined ? 1U : 0U};
  if (!service.send(&hello, sizeof hello)) return;
  while (service.serveOne()) {
  }
}

}  // namespace zelvo::platform::linux_
