// Any bytes on the socket between this program and the one that decodes. The first byte says at whose end: the
// decoding program is sent requests, or this one is sent replies. Whatever comes, both end, and what is answered holds
// together. Codecs are few and simple, since it is the talk that is tried here.
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <thread>

#include "avi/fourcc.h"
#include "platform/linux/decoder_protocol.h"
#include "platform/linux/decoder_service.h"
#include "platform/linux/trial_decoder.h"
#include "tests/support/temp_folder.h"

namespace {

using namespace zelvo;
using namespace zelvo::platform::linux_;
using ByteView = std::span<const std::byte>;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

/// The requests that any bytes stand for, of codecs that are no film's own.
platform::Bytes requestsOf(ByteView data) {
  constexpr std::array<std::uint32_t, 3> kCodecs = {0, avi::FourCC("MJPG").value, avi::FourCC("????").value};
  constexpr std::uint32_t kMaxSide = 64;
  platform::Bytes out;
  while (data.size() >= sizeof(DecoderRequest)) {
    DecoderRequest request;
    std::memcpy(&request, data.data(), sizeof request);
    data = data.subspan(sizeof request);
    request.codec = kCodecs[request.codec % kCodecs.size()];
    request.width %= kMaxSide;
    request.height %= kMaxSide;
    const auto* const raw = reinterpret_cast<const std::byte*>(&request);
    out.insert(out.end(), raw, raw + sizeof request);
    const std::size_t body = std::min<std::size_t>(request.size, data.size());
    out.insert(out.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(body));
    data = data.subspan(body);
  }
  out.insert(out.end(), data.begin(), data.end());
  return out;
}

bool receive(int socket, void* into, std::size_t size) {
  auto* at = static_cast<char*>(into);
  while (size > 0) {
    const ssize_t count = ::read(socket, at, size);
    if (count <= 0) return false;
    at += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

/// Each reply is one of those that may be.
void readReplies(int socket) {
  DecoderHello hello;
  if (!receive(socket, &hello, sizeof hello) || hello.magic != DecoderHello::kMagic) fail("no hello");
  DecoderReply reply;
  while (receive(socket, &reply, sizeof reply)) {
    if (reply.size > kMaxDecoderReply || reply.pictures > kMaxDecoderPictures) fail("a reply is too large");
    platform::Bytes body(reply.size);
    if (!receive(socket, body.data(), body.size())) fail("a reply ends early");
  }
}

void serve(ByteView data) {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) fail("no sockets");
  std::thread service([socket = ends[1]] {
    serveDecoding(socket, false);
    ::close(socket);
  });
  std::thread reader(readReplies, ends[0]);
  const platform::Bytes requests = requestsOf(data);
  // The other side may end before it has read all.
  static_cast<void>(::send(ends[0], requests.data(), requests.size(), MSG_NOSIGNAL));
  ::shutdown(ends[0], SHUT_WR);
  service.join();
  reader.join();
  ::close(ends[0]);
}

void check(const std::optional<platform::TrialAnswer>& answer) {
  if (!answer) return;
  if (answer->pictures.size() > kMaxDecoderPictures) fail("too many pictures");
  for (const platform::TrialPicture& picture : answer->pictures) {
    for (const platform::PicturePlane& plane : picture.planes) {
      if (plane.samples.size() != std::size_t{plane.width} * plane.height) fail("a plane has another size");
    }
  }
}

/// A program that says hello, unless the bytes shall be that too, and then them.
void answer(ByteView data) {
  static const tests::TempFolder folder;
  platform::Bytes replies;
  if (!data.empty() && data.front() != std::byte{0}) {
    const DecoderHello hello;
    const auto* const raw = reinterpret_cast<const std::byte*>(&hello);
    replies.assign(raw, raw + sizeof hello);
  }
  replies.insert(replies.end(), data.begin(), data.end());
  const std::string said =
      folder.put("said", std::string(reinterpret_cast<const char*>(replies.data()), replies.size()));
  static const std::string program = [&] {
    const std::string path = folder.put("decoder", "#!/bin/sh\nexec cat '" + said + "' >&0\n");
    ::chmod(path.c_str(), S_IRWXU);
    return path;
  }();
  constexpr std::chrono::milliseconds kLimit{500};
  LinuxTrialDecoder decoder(program, kLimit);
  const platform::TrialStream stream{0, 16, 16, 24, {}};
  const platform::Bytes payload(10);
  if (!decoder.open(stream)) return;
  check(decoder.decode(payload, platform::WantedPlanes::all));
  check(decoder.finish(platform::WantedPlanes::all));
  if (decoder.usualExtra(stream).size() > kMaxDecoderReply) fail("too much extra");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMost = 65'536;  // what a socket holds without a reader
  if (size == 0 || size > kMost) return 0;
  const ByteView bytes = std::as_bytes(std::span(data, size));
  if ((data[0] & 1U) != 0) {
    serve(bytes.subspan(1));
  } else {
    answer(bytes.subspan(1));
  }
  return 0;
}
