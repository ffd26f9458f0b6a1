// A request is sent and its answer read before the next one, both within one limit of time. Whatever goes wrong, the
// program is killed; the next stream that is opened starts another, a few times.
#include "platform/linux/trial_decoder.h"

#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/linux/spawn.h"

namespace zelvo::platform::linux_ {

LinuxTrialDecoder::LinuxTrialDecoder(std::string program, std::chrono::milliseconds limit)
    : program_(std::move(program)), limit_(limit) {}

LinuxTrialDecoder::~LinuxTrialDecoder() { end(false); }

std::string LinuxTrialDecoder::programBeside(const std::string& runningProgram) {
  return runningProgram.substr(0, runningProgram.rfind('/') + 1) + "zelvo-avi-decoder";
}

bool LinuxTrialDecoder::start() {
  if (process_ != 0) return true;
  if (failures_ >= kMaxFailures) return false;
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
  const Spawned spawned = spawn({.program = program_, .hasOwnSession = true, .input = ends[1]});
  ::close(ends[1]);
  if (spawned.error) {
    ::close(ends[0]);
    failures_ = kMaxFailures;  // it will not be there the next time either
    return false;
  }
  process_ = spawned.process;
  socket_ = ends[0];
  DecoderHello hello;
  const bool isOurs = receive(&hello, sizeof hello, Clock::now() + limit_) && hello.magic == DecoderHello::kMagic &&
                      hello.version == DecoderHello::kVersion;
  isConfined_ = isOurs && hello.isConfined == 1;
  if (!isOurs) end(true);
  return isOurs;
}

/// Nobody waits for long: a program that reads and writes no file ends at once when it is killed.
void LinuxTrialDecoder::end(bool isFailure) {
  if (process_ == 0) return;
  ::close(socket_);
  // One that ended by itself is not changed by it.
  ::kill(process_, SIGKILL);
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  if (isFailure) {
    ++failures_;
    lastSignal_ = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  }
  process_ = 0;
  socket_ = -1;
}

bool LinuxTrialDecoder::isReady(short events, Clock::time_point latest) const {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - Clock::now()).count();
    if (left <= 0) return false;
    pollfd wanted{socket_, events, 0};
    const int ready = ::poll(&wanted, 1, static_cast<int>(left));
    if (ready < 0 && errno != EINTR) return false;
    if (ready > 0) return true;
  }
}

bool LinuxTrialDecoder::send(const void* data, std::size_t size, Clock::time_point latest) const {
  const auto* at = static_cast<const std::byte*>(data);
  while (size > 0) {
    const ssize_t count = ::send(socket_, at, size, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count > 0) {
      at += count;
      size -= static_cast<std::size_t>(count);
    } else if (errno != EINTR && (errno != EAGAIN || !isReady(POLLOUT, latest))) {
      return false;
    }
  }
  return true;
}

bool LinuxTrialDecoder::receive(void* data, std::size_t size, Clock::time_point latest) const {
  auto* at = static_cast<std::byte*>(data);
  while (size > 0) {
    const ssize_t count = ::recv(socket_, at, size, MSG_DONTWAIT);
    if (count > 0) {
      at += count;
      size -= static_cast<std::size_t>(count);
    } else if (count == 0 || (errno != EINTR && (errno != EAGAIN || !isReady(POLLIN, latest)))) {
      return false;
    }
  }
  return true;
}

std::optional<DecoderReply> LinuxTrialDecoder::ask(DecoderRequest request, std::span<const std::byte> body) {
  if (process_ == 0 || body.size() > kMaxPayload) return std::nullopt;
  const auto latest = Clock::now() + limit_;
  request.size = static_cast<std::uint32_t>(body.size());
  DecoderReply reply;
  const bool isAnswered = send(&request, sizeof request, latest) && send(body.data(), body.size(), latest) &&
                          receive(&reply, sizeof reply, latest) && reply.kind == request.kind &&
                          reply.size <= kMaxDecoderReply;
  if (isAnswered) {
    body_.resize(reply.size);
    if (receive(body_.data(), body_.size(), latest)) return reply;
  }
  end(true);
  return std::nullopt;
}

DecoderRequest LinuxTrialDecoder::requestOf(DecoderRequestKind kind, const TrialStream& stream) {
  return {.kind = kind, .codec = stream.codec, .width = stream.width, .height = stream.height, .bits = stream.bits};
}

bool LinuxTrialDecoder::open(const TrialStream& stream) {
  if (!start()) return false;
  const auto reply = ask(requestOf(DecoderRequestKind::open, stream), stream.extra);
  return reply && reply->isAccepted == 1;
}

std::optional<TrialAnswer> LinuxTrialDecoder::decode(std::span<const std::byte> payload, WantedPlanes wanted) {
  return answerOf(ask({.kind = DecoderRequestKind::decode, .wanted = static_cast<std::uint32_t>(wanted)}, payload));
}

std::optional<TrialAnswer> LinuxTrialDecoder::finish(WantedPlanes wanted) {
  return answerOf(ask({.kind = DecoderRequestKind::finish, .wanted = static_cast<std::uint32_t>(wanted)}, {}));
}

/// Reads the pictures from the reply's bytes; a program that sends what is none is taken for one that failed.
std::optional<TrialAnswer> LinuxTrialDecoder::answerOf(const std::optional<DecoderReply>& reply) {
  if (!reply) return std::nullopt;
  TrialAnswer answer{reply->isAccepted == 1, reply->complaints, {}};
  std::span<const std::byte> left(body_);
  bool isSound = reply->pictures <= kMaxDecoderPictures;
  for (std::uint32_t i = 0; isSound && i < reply->pictures; ++i) {
    DecoderPicture told;
    isSound = left.size() >= sizeof told;
    if (!isSound) break;
    std::memcpy(&told, left.data(), sizeof told);
    left = left.subspan(sizeof told);
    isSound = told.planes <= DecoderPicture::kMaxPlanes &&
              told.type <= static_cast<std::uint32_t>(PictureType::bidirectional);
    TrialPicture picture{
        told.payload, isSound ? static_cast<PictureType>(told.type) : PictureType::unknown, told.isKey == 1, {}};
    for (std::uint32_t plane = 0; isSound && plane < told.planes; ++plane) {
      const std::uint64_t size = std::uint64_t{told.widths[plane]} * told.heights[plane];
      isSound = size <= left.size();
      if (!isSound) break;
      const auto samples = left.first(static_cast<std::size_t>(size));
      picture.planes.push_back({told.widths[plane], told.heights[plane], {samples.begin(), samples.end()}});
      left = left.subspan(samples.size());
    }
    answer.pictures.push_back(std::move(picture));
  }
  if (isSound) return answer;
  end(true);
  return std::nullopt;
}

Bytes LinuxTrialDecoder::usualExtra(const TrialStream& stream) {
  if (!start()) return {};
  const auto reply = ask(requestOf(DecoderRequestKind::usualExtra, stream), {});
  return reply ? body_ : Bytes();
}

bool LinuxTrialDecoder::isThere() { return start(); }

}  // namespace zelvo::platform::linux_
